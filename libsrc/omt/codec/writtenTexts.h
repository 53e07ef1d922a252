// SPDX-License-Identifier: Apache-2.0
// Stores texts as the elements of arrays of characters.
#pragma once

#include "omt/codec/plan.h"

namespace omt
{

/// Stores characters as elements of one octet or of 16 bits, and says how many there are. There is
/// room for one element for each letter, and eight octets more. Gives what is wrong with the text,
/// or null. In UTF-8 a lone surrogate may take three octets.
const char* storeText(const Node& element, std::string_view letters, std::uint8_t* octets,
                      std::size_t& count);
const char* storeText(const Node& element, std::u16string_view letters, std::uint8_t* octets,
                      std::size_t& count);

}  // namespace omt
