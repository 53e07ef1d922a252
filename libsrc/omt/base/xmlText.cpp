// SPDX-License-Identifier: Apache-2.0
#include "omt/base/xmlText.h"

#include "omt/base/character.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace omt
{

namespace
{

constexpr std::uint8_t theContent = 1;
constexpr std::uint8_t theValue = 2;
constexpr std::uint8_t theComment = 4;
constexpr std::uint8_t theNameStart = 8;
constexpr std::uint8_t theNamePart = 16;

/// Which octets a text cannot be copied at, and which ones names are made of.
constexpr std::array<std::uint8_t, 256> theClasses = []
{
    std::array<std::uint8_t, 256> classes = {};
    for (unsigned octet = 0; octet < 256; ++octet)
        if (octet < 0x20 || octet >= 0x80) classes[octet] = theContent | theValue | theComment;
    for (const char c : {'\t', '\n'}) classes[static_cast<unsigned char>(c)] = theValue;
    for (const char c : {'&', '<', '>'})
        classes[static_cast<unsigned char>(c)] = theContent | theValue;
    classes['"'] = theValue;
    for (unsigned octet = 'a'; octet <= 'z'; ++octet)
    {
        classes[octet] |= theNameStart | theNamePart;
        classes[octet - 'a' + 'A'] |= theNameStart | theNamePart;
    }
    classes['_'] |= theNameStart | theNamePart;
    for (const char c : {'0', '1', '2', '3', '4', '5', '6', '7', '8', '9', '-', '.'})
        classes[static_cast<unsigned char>(c)] |= theNamePart;
    return classes;
}();

constexpr std::string_view theReplacement = "\xEF\xBF\xBD";

/// Appends the character that a text begins with, as XML writes it; how many octets it took.
std::size_t appendOdd(GrowingText& out, std::string_view text, std::uint8_t use)
{
    const char first = text.front();
    const auto octet = static_cast<unsigned char>(first);
    if (octet >= 0x80)
    {
        const Character character = firstCharacter(text);
        const bool isOdd =
            character.octets == 0 || character.code == 0xFFFE || character.code == 0xFFFF;
        out += isOdd ? theReplacement : text.substr(0, character.octets);
        return character.octets == 0 ? 1 : character.octets;
    }
    switch (first)
    {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '\t':
            out += "&#9;";
            break;
        case '\n':
            out += "&#10;";
            break;
        case '\r':
            out += use == theComment ? "\n" : "&#13;";
            break;
        default:
            out += theReplacement;
    }
    return 1;
}

void append(GrowingText& out, std::string_view text, std::uint8_t use)
{
    std::size_t from = 0;
    for (std::size_t at = 0; at < text.size();)
    {
        if ((theClasses[static_cast<unsigned char>(text[at])] & use) == 0)
        {
            ++at;
            continue;
        }
        out += text.substr(from, at - from);
        at += appendOdd(out, text.substr(at), use);
        from = at;
    }
    out += text.substr(from);
}

struct Range
{
    std::uint32_t first;
    std::uint32_t last;
};

/// What may begin a name beyond ASCII; all but the last two rows. These may only follow.
constexpr Range theNameRanges[] = {
    {0xC0,    0xD6   },
    {0xD8,    0xF6   },
    {0xF8,    0x2FF  },
    {0x370,   0x37D  },
    {0x37F,   0x1FFF },
    {0x200C,  0x200D },
    {0x2070,  0x218F },
    {0x2C00,  0x2FEF },
    {0x3001,  0xD7FF },
    {0xF900,  0xFDCF },
    {0xFDF0,  0xFFFD },
    {0x10000, 0xEFFFF},
    {0xB7,    0xB7   },
    {0x300,   0x36F  },
};

bool isNameCharacter(const Character& character, bool isFirst)
{
    if (character.octets <= 1)
        return character.octets == 1 &&
               (theClasses[character.code] & (isFirst ? theNameStart : theNamePart)) != 0;
    const std::size_t count = std::size(theNameRanges) - (isFirst ? 2 : 0);
    for (std::size_t i = 0; i < count; ++i)
        if (character.code >= theNameRanges[i].first && character.code <= theNameRanges[i].last)
            return true;
    return false;
}

}  // namespace

void appendXmlContent(GrowingText& out, std::string_view text)
{
    append(out, text, theContent);
}

void appendXmlValue(GrowingText& out, std::string_view text)
{
    append(out, text, theValue);
}

void appendXmlComment(GrowingText& out, std::string_view text)
{
    std::string parted;
    const bool endsOdd = !text.empty() && text.back() == '-';
    if (endsOdd || text.find("--") != std::string_view::npos)
    {
        for (const char c : text)
        {
            if (c == '-' && !parted.empty() && parted.back() == '-') parted += ' ';
            parted += c;
        }
        if (endsOdd) parted += ' ';
        text = parted;
    }
    append(out, text, theComment);
}

std::size_t copyPlainXml(char* to, std::string_view text)
{
    // Eight octets at a time: each bit at the top of one says that there is something odd.
    constexpr std::uint64_t theOnes = 0x0101010101010101;
    constexpr std::uint64_t theTops = 0x8080808080808080;
    constexpr auto hasZero = [](std::uint64_t octets) { return (octets - theOnes) & ~octets; };
    std::size_t at = 0;
    for (; text.size() - at >= sizeof(std::uint64_t); at += sizeof(std::uint64_t))
    {
        std::uint64_t octets = 0;
        std::memcpy(&octets, text.data() + at, sizeof octets);
        // Octets below 0x20 or above 0x7F; & is 0x26, < and > are 0x3C and 0x3E.
        const std::uint64_t odd = octets | (octets - 0x20 * theOnes) |
                                  hasZero(octets ^ (0x26 * theOnes)) |
                                  hasZero((octets | (0x02 * theOnes)) ^ (0x3E * theOnes));
        if ((odd & theTops) != 0) return at;
        std::memcpy(to + at, &octets, sizeof octets);
    }
    for (; at < text.size(); ++at)
    {
        if ((theClasses[static_cast<unsigned char>(text[at])] & theContent) != 0) return at;
        to[at] = text[at];
    }
    return at;
}

bool isXmlName(std::string_view text)
{
    if (text.empty()) return false;
    bool isFirst = true;
    if ((theClasses[static_cast<unsigned char>(text.front())] & theNameStart) != 0)
    {
        std::size_t at = 1;
        while (at < text.size() &&
               (theClasses[static_cast<unsigned char>(text[at])] & theNamePart) != 0)
            ++at;
        if (at == text.size()) return true;
        text.remove_prefix(at);
        isFirst = false;
    }
    while (!text.empty())
    {
        const auto octet = static_cast<unsigned char>(text.front());
        const bool isPlain = (theClasses[octet] & (isFirst ? theNameStart : theNamePart)) != 0;
        if (!isPlain && octet < 0x80) return false;
        const Character character = isPlain ? Character{octet, 1} : firstCharacter(text);
        if (!isPlain && !isNameCharacter(character, isFirst)) return false;
        text.remove_prefix(character.octets);
        isFirst = false;
    }
    return true;
}

std::string asXmlName(std::string_view text)
{
    std::string name;
    while (!text.empty())
    {
        const Character character = firstCharacter(text);
        const bool isPart = isNameCharacter(character, false);
        if (name.empty() && (!isPart || !isNameCharacter(character, true))) name += '_';
        const std::size_t octets = character.octets == 0 ? 1 : character.octets;
        if (isPart)
            name += text.substr(0, octets);
        else if (name.back() != '_')
            name += '_';
        text.remove_prefix(octets);
    }
    return name.empty() ? "_" : name;
}

}  // namespace omt
