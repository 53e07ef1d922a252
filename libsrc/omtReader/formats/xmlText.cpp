// SPDX-License-Identifier: Apache-2.0
#include "omtReader/formats/xmlText.h"

#include <libxml/chvalid.h>
#include <libxml/tree.h>

#include <algorithm>

namespace
{

constexpr std::string_view theReplacement = "\xEF\xBF\xBD";  // U+FFFD

/// How one piece of a text can be written.
struct Piece
{
    std::size_t length;  // in octets
    bool isUtf8;
    bool isAllowed;
};

constexpr unsigned octetAt(std::string_view text, std::size_t place)
{
    return place < text.size() ? static_cast<unsigned char>(text[place]) : 0;
}

/// The character that a text begins with, or its first octet where that is not UTF-8.
Piece firstPiece(std::string_view text)
{
    const unsigned first = octetAt(text, 0);
    if (first < 0x80) return {1, true, xmlIsCharQ(first) != 0};

    constexpr Piece theOctet = {1, false, false};
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4) return theOctet;
    unsigned character = first & (0x7FU >> length);
    for (std::size_t place = 1; place < length; ++place)
    {
        const unsigned octet = octetAt(text, place);
        if ((octet & 0xC0) != 0x80) return theOctet;
        character = (character << 6) | (octet & 0x3F);
    }
    constexpr unsigned theSmallest[] = {0, 0, 0x80, 0x800, 0x10000};  // of a length: none is longer
    const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < theSmallest[length] || isSurrogate || character > 0x10FFFF) return theOctet;
    return {length, true, xmlIsCharQ(character) != 0};
}

bool isNameOctet(char octet)
{
    const bool isLetter = (octet >= 'a' && octet <= 'z') || (octet >= 'A' && octet <= 'Z');
    const bool isDigit = octet >= '0' && octet <= '9';
    return isLetter || isDigit || octet == '.' || octet == '-' || octet == '_';
}

}  // namespace

bool omtreader::isXmlText(std::string_view text)
{
    while (!text.empty())
    {
        const Piece piece = firstPiece(text);
        if (!piece.isAllowed) return false;
        text.remove_prefix(piece.length);
    }
    return true;
}

std::string omtreader::toXmlText(std::string_view text)
{
    std::string result;
    for (; !text.empty(); text.remove_prefix(firstPiece(text).length))
    {
        const Piece piece = firstPiece(text);
        if (piece.isAllowed)
            result += text.substr(0, piece.length);
        else if (piece.isUtf8)
            result += theReplacement;
        else
        {
            const unsigned octet = octetAt(text, 0);
            result += static_cast<char>(0xC0 | (octet >> 6));
            result += static_cast<char>(0x80 | (octet & 0x3F));
        }
    }
    return result;
}

std::string omtreader::toXmlName(std::string_view text)
{
    std::string name(text);
    if (isXmlText(name) &&
        xmlValidateNCName(reinterpret_cast<const xmlChar*>(name.c_str()), 0) == 0)
        return name;
    std::replace_if(
        name.begin(), name.end(), [](char octet) { return !isNameOctet(octet); }, '_');
    const bool mayBegin = !name.empty() && std::string_view("0123456789.-").find(name.front()) ==
                                               std::string_view::npos;
    return mayBegin ? name : '_' + name;
}
