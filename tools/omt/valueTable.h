// SPDX-License-Identifier: Apache-2.0
// A decoded value as a table for people.
#pragma once

#include "omt/codec/overlay.h"

#include <string>

struct TableChoice
{
    /// Whether there is a column with the octets of each number, text and row of octets.
    bool hasOctets = false;
    /// Whether all elements, long texts and octets are shown.
    bool isWhole = false;
};

/// One row for every part that was decoded: where it begins, its name, datatype, value and units.
/// Overlays stand beside the values of their parts. `name` is that of the value as a whole.
std::string valueTable(const std::string& name, const omt::Value& value,
                       const std::vector<omt::Overlay>& overlays, const TableChoice& choice);
