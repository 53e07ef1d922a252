// SPDX-License-Identifier: Apache-2.0
#include "plainText.h"

#include <algorithm>
#include <cstdint>

namespace
{

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool isContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

/// One character at the front of a text; of no octets where the text is not UTF-8.
struct Character
{
    std::uint32_t code = 0;
    std::size_t octets = 0;
};

Character firstCharacter(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80) return {lead, 1};
    const std::size_t octets = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < octets) return {};
    std::uint32_t code = lead & (0x7FU >> octets);
    for (std::size_t i = 1; i < octets; ++i)
    {
        if (!isContinuation(text[i])) return {};
        code = code << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    constexpr std::uint32_t theSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < theSmallest[octets] || code > 0x10FFFF || isSurrogate) return {};
    return {code, octets};
}

bool isHarmless(std::uint32_t code)
{
    const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
    const bool turnsDirection = code == 0x061C || code == 0x200E || code == 0x200F ||
                                (code >= 0x2028 && code <= 0x202E) ||
                                (code >= 0x2066 && code <= 0x2069);
    return !isControl && !turnsDirection;
}

std::string escape(char letter, std::uint32_t code, unsigned digits)
{
    std::string result = {'\\', letter};
    while (digits-- > 0) result += "0123456789abcdef"[code >> 4U * digits & 0xFU];
    return result;
}

}  // namespace

std::string visible(std::string_view text)
{
    std::string result;
    while (!text.empty())
    {
        const Character first = firstCharacter(text);
        const std::size_t octets = std::max<std::size_t>(first.octets, 1);
        if (first.octets != 0 && isHarmless(first.code))
            result += text.substr(0, octets);
        else if (octets == 1)
            result += escape('x', static_cast<unsigned char>(text.front()), 2);
        else
            result += escape('u', first.code, 4);
        text.remove_prefix(octets);
    }
    return result;
}

std::string oneLine(std::string_view text)
{
    std::string line;
    bool isBehindBlank = false;
    for (const char c : text)
    {
        if (!isBlank(c))
        {
            if (isBehindBlank && !line.empty()) line += ' ';
            line += c;
        }
        isBehindBlank = isBlank(c);
    }
    return visible(line);
}

std::size_t columnsOf(std::string_view text)
{
    const auto continuations = std::count_if(text.begin(), text.end(), isContinuation);
    return text.size() - static_cast<std::size_t>(continuations);
}

std::string clipped(const std::string& text, std::size_t columns)
{
    constexpr std::string_view theMark = "...";
    if (columnsOf(text) <= columns) return text;
    const std::size_t kept = columns > theMark.size() ? columns - theMark.size() : 0;
    std::size_t end = 0;
    for (std::size_t seen = 0; end < text.size(); ++end)
        if (!isContinuation(text[end]) && seen++ == kept) break;
    while (end > 0 && text[end - 1] == ' ') --end;
    return text.substr(0, end).append(theMark);
}

std::vector<std::string> wrapped(std::string_view text, std::size_t columns)
{
    std::vector<std::string> lines(1);
    std::size_t used = 0;
    while (!text.empty())
    {
        const std::string_view word = text.substr(0, text.find(' '));
        text.remove_prefix(std::min(word.size() + 1, text.size()));
        const std::size_t needed = columnsOf(word);
        if (used > 0 && used + 1 + needed > columns)
        {
            lines.emplace_back();
            used = 0;
        }
        if (used > 0) lines.back() += ' ';
        lines.back() += word;
        used += needed + (used > 0 ? 1 : 0);
    }
    return lines;
}

std::string joined(const std::vector<std::string>& texts, std::string_view separator)
{
    std::string result;
    for (const std::string& text : texts)
    {
        if (&text != &texts.front()) result += separator;
        result += text;
    }
    return result;
}
