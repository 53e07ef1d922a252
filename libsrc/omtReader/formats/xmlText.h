// SPDX-License-Identifier: Apache-2.0
// What any text is in XML 1.0.
#pragma once

#include <string>
#include <string_view>

namespace omtreader
{

/// Whether a text is UTF-8 and of characters that XML 1.0 allows.
bool isXmlText(std::string_view text);

/// The text with U+FFFD for each character that XML does not allow, and for each octet that is not
/// UTF-8 the Latin-1 character of its value: that is what old models were written in.
std::string toXmlText(std::string_view text);

/// A name for an element: the text where it can be one, else with "_" for each octet but ASCII
/// letters, digits, ".", "-" and "_", and one before it where the first may not begin a name.
std::string toXmlName(std::string_view text);

}  // namespace omtreader
