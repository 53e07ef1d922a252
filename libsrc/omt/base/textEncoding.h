// SPDX-License-Identifier: Apache-2.0
// decodeText() turns the octets of a document into UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace omt
{

/// A document's text as UTF-8. Octets that were UTF-8 before are not copied: then `text` is a view
/// of them, else one of `converted`.
struct DecodedText
{
    DecodedText() = default;
    DecodedText(const DecodedText&) = delete;
    DecodedText& operator=(const DecodedText&) = delete;

    std::string_view text;
    std::string converted;
    /// Empty where the text could be told; else a clause such as "is written in UTF-32, which is
    /// not read".
    std::string fault;
};

/// Tells the encoding by byte order mark, by the first octets, and by an XML declaration: UTF-8,
/// UTF-16, ISO-8859-1, windows-1252 and US-ASCII. Does not check what calls itself UTF-8; a lone
/// surrogate of UTF-16 becomes U+FFFD.
void decodeText(std::string_view octets, DecodedText& decoded);

/// Whether all octets are well-formed UTF-8.
bool isUtf8(std::string_view octets);

/// Octets of windows-1252 as UTF-8, for documents that say no encoding and are no UTF-8.
std::string fromWindows1252(std::string_view octets);

}  // namespace omt
