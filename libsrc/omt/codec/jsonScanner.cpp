// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/jsonScanner.h"

namespace omt
{

const char* JsonScanner::endOfText(const char* at, const char* end, bool& hasEscapes)
{
    for (; at != end; ++at)
    {
        if (end - at >= 8)
        {
            const std::uint64_t special = specialOctets(loadWord<std::uint64_t>(at));
            at += std::countr_zero(special) / 8 - (special == 0 ? 1 : 0);
            if (special == 0) continue;
        }
        if (*at == '"') return at;
        if (static_cast<unsigned char>(*at) < 0x20) return nullptr;
        if (*at != '\\') continue;
        hasEscapes = true;
        if (++at == end) return nullptr;
    }
    return nullptr;
}

bool JsonScanner::raw(RawText& text)
{
    text.hasEscapes = false;
    if (!takes('"')) return false;
    const char* const first = myAt;
    const char* const last = endOfText(first, myEnd, text.hasEscapes);
    if (last == nullptr) return false;
    text.letters = {first, static_cast<std::size_t>(last - first)};
    myAt = last + 1;
    return true;
}

std::string_view JsonScanner::word()
{
    peek();
    const char* const first = myAt;
    while (!isEndOfWord(myAt)) ++myAt;
    return {first, static_cast<std::size_t>(myAt - first)};
}

bool JsonScanner::skip()
{
    std::size_t depth = 0;
    RawText text;
    do
    {
        switch (peek())
        {
            case '{':
            case '[':
                ++myAt;
                ++depth;
                break;
            case '}':
            case ']':
                if (depth == 0) return false;
                ++myAt;
                --depth;
                break;
            case '"':
                if (!raw(text)) return false;
                break;
            case ',':
            case ':':
                if (depth == 0) return false;
                ++myAt;
                break;
            default:
                if (word().empty()) return false;
        }
    } while (depth > 0);
    return true;
}

std::pair<std::size_t, std::size_t> JsonScanner::lineAndColumn() const
{
    std::size_t line = 1;
    const char* start = myStart;
    for (const char* at = myStart; at != myAt; ++at)
        if (*at == '\n')
        {
            ++line;
            start = at + 1;
        }
    return {line, static_cast<std::size_t>(myAt - start) + 1};
}

bool JsonCharacters::next(std::uint32_t& code)
{
    const auto first = static_cast<unsigned char>(myText.front());
    if (first == '\\') return escape(code);
    if (first < 0x80)
    {
        code = first;
        myText.remove_prefix(1);
        return true;
    }
    const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || myText.size() < size) return false;
    code = first & (0x7FU >> size);
    for (std::size_t i = 1; i < size; ++i)
    {
        const auto letter = static_cast<unsigned char>(myText[i]);
        if ((letter & 0xC0) != 0x80) return false;
        code = code << 6 | (letter & 0x3FU);
    }
    myText.remove_prefix(size);
    constexpr std::uint32_t theLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    return code >= theLeast[size] && code <= 0x10FFFF && (code & 0xFFFFF800) != 0xD800;
}

bool JsonCharacters::escape(std::uint32_t& code)
{
    constexpr std::string_view theLetters = "\"\\/bfnrt";
    constexpr std::string_view theMeanings = "\"\\/\b\f\n\r\t";
    if (myText.size() < 2) return false;
    const char letter = myText[1];
    myText.remove_prefix(2);
    if (const std::size_t place = theLetters.find(letter); place != std::string_view::npos)
    {
        code = static_cast<unsigned char>(theMeanings[place]);
        return true;
    }
    if (letter != 'u' || myText.size() < 4) return false;
    code = 0;
    for (std::size_t i = 0; i < 4; ++i)
    {
        const unsigned digit = digitOf(myText[i]);
        if (digit > 15) return false;
        code = code << 4 | digit;
    }
    myText.remove_prefix(4);
    return true;
}

void appendUtf8(std::string& text, std::uint32_t code)
{
    const auto add = [&text](std::uint32_t bits) { text += static_cast<char>(bits); };
    if (code < 0x80) return add(code);
    if (code < 0x800)
        add(0xC0 | code >> 6);
    else if (code < 0x10000)
    {
        add(0xE0 | code >> 12);
        add(0x80 | (code >> 6 & 0x3F));
    }
    else
    {
        add(0xF0 | code >> 18);
        add(0x80 | (code >> 12 & 0x3F));
        add(0x80 | (code >> 6 & 0x3F));
    }
    add(0x80 | (code & 0x3F));
}

}  // namespace omt
