// SPDX-License-Identifier: Apache-2.0
// Reads texts of JSON as the octets of arrays.
#pragma once

#include "omt/codec/plan.h"

namespace omt
{

/// Two digits for each octet; false for anything else.
bool readHexadecimal(std::string_view letters, std::uint8_t* octets);

/// Characters between quotes, with their escapes, as elements of one octet or of 16 bits. There is
/// room for one element for each letter, and eight octets more, which are left zero. Gives what is
/// wrong with the text, or null.
const char* readCharacters(const Node& element, std::string_view letters, std::uint8_t* octets,
                           std::size_t& count);

}  // namespace omt
