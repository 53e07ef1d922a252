// SPDX-License-Identifier: Apache-2.0
// ASCII to other character sets and back, and what is reported when a text cannot be converted.
#pragma once

#include "util/dtString.h"

#include <string>
#include <string_view>
#include <vector>

namespace omtreader
{

/// The octets of a text in `charset` as ASCII, up to a zero octet; empty, with a warning, if they
/// cannot be converted as a whole.
std::string readAscii(const char* charset, std::string_view octets);

/// An ASCII text and the zero after it in `charset`, two octets for each character whatever they
/// need: what is not needed, or not reached because of a character that cannot be converted, is
/// filled with the letter "a". `beforeReason` stands before the reason in the warning.
std::vector<char> writeAscii(const DtString& text, const char* charset, const char* beforeReason);

}  // namespace omtreader
