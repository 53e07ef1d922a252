// SPDX-License-Identifier: Apache-2.0
#include "entityKey.h"

#include "entityTableCheck.h"
#include "modelInput.h"
#include "plainText.h"

#include <algorithm>
#include <iterator>

namespace
{

constexpr const char* theOpenWords[] = {"*", "any", "Any", "ANY", "-1"};

/// The texts between the separators, of which one may have blanks around it.
std::vector<std::string> piecesOf(const std::string& text)
{
    constexpr std::string_view theBlanks = " \t\r\n\f\v";
    std::vector<std::string> pieces(1);
    bool isBehindBlank = false;
    for (const char c : text)
    {
        const bool isBlank = theBlanks.find(c) != std::string_view::npos;
        const bool isMark = c == ':' || c == '.';
        if (isMark || (isBehindBlank && !isBlank)) pieces.emplace_back();
        if (!isMark && !isBlank) pieces.back() += c;
        isBehindBlank = isBlank && !pieces.back().empty();
    }
    return pieces;
}

int readNumber(const std::string& piece, const EntityLevel& level)
{
    if (std::find(std::begin(theOpenWords), std::end(theOpenWords), piece) !=
        std::end(theOpenWords))
        return DtEntityMapperKey::theAny;
    const bool hasDigitsOnly =
        !piece.empty() && piece.find_first_not_of("0123456789") == std::string::npos;
    const int number = hasDigitsOnly ? DtString(piece).toInt(nullptr) : -1;
    if (number >= 0 && number <= level.highest) return number;
    throw InputError("the key: " + std::string(level.name) + ": \"" + clipped(oneLine(piece), 30) +
                     "\" is no number from 0 to " + std::to_string(level.highest) +
                     ", and no \"any\" or \"*\"");
}

}  // namespace

DtEntityMapperKey readEntityKey(const std::string& text)
{
    const std::vector<std::string> pieces = piecesOf(text);
    if (pieces.size() > std::size(theEntityLevels))
        throw InputError("the key: more than seven numbers");
    DtEntityMapperKey key;
    for (std::size_t at = 0; at < pieces.size(); ++at)
        key[static_cast<int>(at)] = readNumber(pieces[at], theEntityLevels[at]);
    return key;
}

std::string textOf(const DtEntityMapperKey& key)
{
    std::vector<std::string> numbers;
    for (int place = 0; place < DtEntityMapperKey::theSize; ++place)
        numbers.push_back(key[place] == DtEntityMapperKey::theAny ? "any"
                                                                  : std::to_string(key[place]));
    return joined(numbers, ":");
}

bool isOpen(const DtEntityMapperKey& key)
{
    for (int place = 0; place < DtEntityMapperKey::theSize; ++place)
        if (key[place] == DtEntityMapperKey::theAny) return true;
    return false;
}
