// SPDX-License-Identifier: Apache-2.0
// Differences between two models as a page and as JSON.
#pragma once

#include "omt/check/diff.h"

#include <string>

/// What is shown of the differences.
struct DiffView
{
    /// Only definitions whose octets changed, and only these.
    bool isOnlyWire = false;
    /// All details, however many a definition has.
    bool isWhole = false;
};

/// The page, with marks for colours.
std::string diffPage(const omt::Differences& differences, const DiffView& view);

/// The object that docs/diff.md describes.
std::string diffJson(const omt::Differences& differences, const DiffView& view);
