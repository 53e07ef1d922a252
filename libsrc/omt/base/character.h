// SPDX-License-Identifier: Apache-2.0
// Takes texts apart into characters, and tells which of them a terminal would obey.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace omt
{

/// One character of UTF-8.
struct Character
{
    std::uint32_t code = 0;
    /// How many octets it takes; 0 where the text does not go on with a character.
    std::size_t octets = 0;
};

/// The first character of a text that is not empty.
inline Character firstCharacter(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80) return {lead, 1};
    const std::size_t octets = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < octets) return {};
    std::uint32_t code = lead & (0x7FU >> octets);
    for (std::size_t i = 1; i < octets; ++i)
    {
        const auto next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0U) != 0x80U) return {};
        code = code << 6U | (next & 0x3FU);
    }
    constexpr std::uint32_t theSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < theSmallest[octets] || code > 0x10FFFF || isSurrogate) return {};
    return {code, octets};
}

/// Appends a character in UTF-8; a lone surrogate takes three octets.
inline void appendUtf8(std::string& text, std::uint32_t code)
{
    const auto add = [&text](std::uint32_t octet) { text += static_cast<char>(octet); };
    if (code < 0x80) return add(code);
    if (code < 0x800)
    {
        add(0xC0 | (code >> 6));
    }
    else
    {
        if (code < 0x10000)
            add(0xE0 | (code >> 12));
        else
        {
            add(0xF0 | (code >> 18));
            add(0x80 | ((code >> 12) & 0x3F));
        }
        add(0x80 | ((code >> 6) & 0x3F));
    }
    add(0x80 | (code & 0x3F));
}

/// Whether a character is a control, or turns the direction of writing or ends a line unseen.
inline bool isControl(std::uint32_t code)
{
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x061C || code == 0x200E ||
           code == 0x200F || (code >= 0x2028 && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

}  // namespace omt
