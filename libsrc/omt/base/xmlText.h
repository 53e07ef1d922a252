// SPDX-License-Identifier: Apache-2.0
// Appends texts to an XML document so that they read back as they are.
#pragma once

#include "omt/base/growingText.h"

#include <string>
#include <string_view>

namespace omt
{

/// Appends a text as the content of an element. What XML cannot hold becomes U+FFFD: octets that
/// are no UTF-8, and control characters.
void appendXmlContent(GrowingText& out, std::string_view text);

/// The same as the value of an XML attribute, without its quotes.
void appendXmlValue(GrowingText& out, std::string_view text);

/// The same between the delimiters of a comment; two hyphens are parted by a blank.
void appendXmlComment(GrowingText& out, std::string_view text);

/// Copies a text as the content of an element until something may have to be written otherwise; how
/// many octets were copied. `to` has room for the whole text.
std::size_t copyPlainXml(char* to, std::string_view text);

/// Whether a text may be the name of an element or attribute, or of a definition: an XML name
/// without colon (NCName).
bool isXmlName(std::string_view text);

/// A text with each character that an XML name cannot hold as "_", and one in front where it begins
/// with none that may be first; "_" for an empty one.
std::string asXmlName(std::string_view text);

}  // namespace omt
