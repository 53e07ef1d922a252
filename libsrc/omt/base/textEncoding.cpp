// SPDX-License-Identifier: Apache-2.0
#include "omt/base/textEncoding.h"

#include "omt/base/character.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>

namespace omt
{

namespace
{

/// What windows-1252 has at 80 to 9F, where ISO-8859-1 has control characters.
constexpr std::array<std::uint16_t, 32> theWindowsCharacters = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::string fromLatin1(std::string_view octets)
{
    std::string text;
    text.reserve(octets.size() + octets.size() / 8);
    for (const char octet : octets) appendUtf8(text, static_cast<unsigned char>(octet));
    return text;
}

std::string fromUtf16(std::string_view octets, bool isLittle)
{
    std::string text;
    text.reserve(octets.size() / 2 + octets.size() / 8);
    const auto unit = [&](std::size_t at)
    {
        const auto first = static_cast<unsigned char>(octets[at]);
        const auto second = static_cast<unsigned char>(octets[at + 1]);
        return static_cast<std::uint32_t>(isLittle ? second << 8 | first : first << 8 | second);
    };
    for (std::size_t at = 0; at + 1 < octets.size(); at += 2)
    {
        std::uint32_t code = unit(at);
        if (code >= 0xD800 && code < 0xDC00 && at + 3 < octets.size() && unit(at + 2) >= 0xDC00 &&
            unit(at + 2) < 0xE000)
        {
            code = 0x10000 + ((code - 0xD800) << 10) + (unit(at + 2) - 0xDC00);
            at += 2;
        }
        else if (code >= 0xD800 && code < 0xE000)
            code = 0xFFFD;
        appendUtf8(text, code);
    }
    return text;
}

/// The name after `encoding=` in an XML declaration, in lower case; empty without one.
std::string declaredEncoding(std::string_view text)
{
    if (text.substr(0, 5) != "<?xml") return {};
    const std::string_view declaration = text.substr(0, std::min(text.find("?>"), text.size()));
    const std::size_t word = declaration.find("encoding");
    if (word == std::string_view::npos) return {};
    const std::size_t quote = declaration.find_first_of("'\"", word);
    if (quote == std::string_view::npos) return {};
    const std::size_t end = declaration.find(declaration[quote], quote + 1);
    if (end == std::string_view::npos) return {};
    std::string name(declaration.substr(quote + 1, end - quote - 1));
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return name;
}

/// Octets of which each stands for a character of ASCII or is part of one beyond it.
void decodeOctets(std::string_view octets, DecodedText& decoded)
{
    constexpr std::size_t theLongestName = 40;
    const std::string name = declaredEncoding(octets.substr(0, 1000));
    if (name.empty() || name == "utf-8" || name == "utf8" || name == "us-ascii" || name == "ascii")
        decoded.text = octets;
    else if (name == "iso-8859-1" || name == "latin1" || name == "latin-1")
        decoded.text = decoded.converted = fromLatin1(octets);
    else if (name == "windows-1252" || name == "cp1252")
        decoded.text = decoded.converted = fromWindows1252(octets);
    else if (name.substr(0, 6) == "utf-16")
        decoded.fault = "says that it is UTF-16, and its octets are not";
    else
        decoded.fault = "is written in the encoding \"" + name.substr(0, theLongestName) +
                        "\"; UTF-8, UTF-16, ISO-8859-1 and windows-1252 are read";
}

}  // namespace

std::string fromWindows1252(std::string_view octets)
{
    std::string text;
    text.reserve(octets.size() + octets.size() / 8);
    for (const char c : octets)
    {
        const auto octet = static_cast<unsigned char>(c);
        appendUtf8(text,
                   octet >= 0x80 && octet < 0xA0 ? theWindowsCharacters[octet - 0x80] : octet);
    }
    return text;
}

bool isUtf8(std::string_view octets)
{
    for (std::size_t at = 0; at < octets.size();)
    {
        const auto first = static_cast<unsigned char>(octets[at++]);
        if (first < 0x80) continue;
        const std::size_t more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
        if (first < 0xC2 || first > 0xF4 || more > octets.size() - at) return false;
        std::uint32_t code = first & (0x3FU >> more);
        for (std::size_t i = 0; i < more; ++i)
        {
            const auto next = static_cast<unsigned char>(octets[at++]);
            if ((next & 0xC0) != 0x80) return false;
            code = code << 6 | (next & 0x3F);
        }
        const std::uint32_t least = more == 3 ? 0x10000 : more == 2 ? 0x800 : 0x80;
        if (code < least || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) return false;
    }
    return true;
}

void decodeText(std::string_view octets, DecodedText& decoded)
{
    using namespace std::string_view_literals;
    const auto begins = [octets](std::string_view mark)
    { return octets.substr(0, mark.size()) == mark; };

    if (begins("\xFF\xFE\0\0"sv) || begins("\0\0\xFE\xFF"sv) || begins("<\0\0\0"sv) ||
        begins("\0\0\0<"sv))
        decoded.fault = "is written in UTF-32, which is not read; UTF-8 or UTF-16 is";
    else if (begins("\xFF\xFE"sv) || begins("\xFE\xFF"sv))
        decoded.text = decoded.converted = fromUtf16(octets.substr(2), octets[0] == '\xFF');
    else if (begins("<\0"sv) || begins("\0<"sv))
        decoded.text = decoded.converted = fromUtf16(octets, octets[0] == '<');
    else if (begins("\xEF\xBB\xBF"sv))
        decoded.text = octets.substr(3);
    else
        decodeOctets(octets, decoded);
}

}  // namespace omt
