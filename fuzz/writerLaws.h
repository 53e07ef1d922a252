// SPDX-License-Identifier: Apache-2.0
// What holds for a ValueWriter, whatever it is told; gives the law that is broken, or an empty
// text.
#pragma once

#include "omt/codec/valueWriter.h"

#include <string>

/// A value without faults, notes and octets left, whose JSON this is, is told to a writer and gives
/// its octets again: as a visitor is told it, and without what need not be told.
std::string checkWriting(const omt::Type& type, const omt::Value& value, const std::string& json);

/// Any calls that any octets stand for: what is taken is a value.
std::string checkCalls(const omt::Type& type, omt::Octets octets);
