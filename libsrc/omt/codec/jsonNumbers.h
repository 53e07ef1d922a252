// SPDX-License-Identifier: Apache-2.0
// Reads the usual numbers of JSON as the octets of a number of a plan.
#pragma once

#include "omt/codec/plan.h"

namespace omt
{

/// Stores the lowest octets of a number as its node has them.
void storeBits(const Node& node, std::uint64_t bits, std::uint8_t* octets);
/// Whether a number of this node can be so large; unsigned ones come as two's complement.
bool isInRange(const Node& node, std::int64_t number);

/// Reads a number as JSON has it, up to where its last digit stands, and stores it. Null, with
/// nothing stored, where there is none, where it is out of range, and for an integer of more than
/// 18 digits. What follows it is not looked at.
const char* readInteger(const Node& node, const char* at, const char* end, std::uint8_t* octets);
const char* readFloating(const Node& node, const char* at, const char* end, std::uint8_t* octets);

/// Whether a text is a number as JSON has it, however large.
bool isNumber(std::string_view text);

}  // namespace omt
