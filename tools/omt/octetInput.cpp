// SPDX-License-Identifier: Apache-2.0
#include "octetInput.h"

#include "inputFile.h"
#include "modelInput.h"
#include "plainText.h"

#include <algorithm>
#include <cstdio>
#include <limits>

namespace
{

constexpr std::string_view theBlanks = " \t\r\n\f\v";

std::string givenText(const OctetChoice& choice)
{
    if (!choice.words.empty()) return joined(choice.words, " ");
    const std::string name = choice.file.empty() ? "standard input" : choice.file;
    std::string content = choice.file.empty() ? contentOf(stdin, name) : contentOf(name);
    if (content.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw InputError(name + ": more octets than a value can have");
    return content;
}

int digitOf(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

std::vector<GivenValue> readValues(const OctetChoice& choice)
{
    const std::string content = givenText(choice);
    if (!choice.isByLine)
        return {
            {"", content, choice.file.empty()}
        };
    std::vector<GivenValue> values;
    std::size_t number = 0;
    for (std::size_t begin = 0; begin < content.size();)
    {
        const std::size_t end = std::min(content.find('\n', begin), content.size());
        std::string line = content.substr(begin, end - begin);
        begin = end + 1;
        ++number;
        if (line.find_first_not_of(theBlanks) != std::string::npos)
            values.push_back({"line " + std::to_string(number) + ": ", std::move(line), true});
    }
    return values;
}

DtDatatypeManager::Octets octetsOf(const GivenValue& value)
{
    const std::string_view text = value.content;
    DtDatatypeManager::Octets octets;
    octets.reserve(text.size() + 1);  // an address even where there is no octet
    if (!value.isHexadecimal)
    {
        octets.assign(text.begin(), text.end());
        return octets;
    }
    const auto refuse = [&value](std::size_t place, const std::string& why) {
        throw InputError(value.place + "octets: character " + std::to_string(place + 1) + ": " +
                         why);
    };
    for (std::size_t at = 0; at < text.size(); ++at)
    {
        if (theBlanks.find(text[at]) != std::string_view::npos) continue;
        const int high = digitOf(text[at]);
        if (high < 0) refuse(at, '"' + std::string(1, text[at]) + "\" is no hexadecimal digit");
        ++at;
        const bool isAlone = at == text.size() || theBlanks.find(text[at]) != theBlanks.npos;
        if (isAlone) refuse(at - 1, "an odd number of digits; an octet has two");
        const int low = digitOf(text[at]);
        if (low < 0) refuse(at, '"' + std::string(1, text[at]) + "\" is no hexadecimal digit");
        octets.push_back(static_cast<char>(high << 4 | low));
    }
    return octets;
}

std::string hexadecimalText(const DtDatatypeManager::Octets& octets)
{
    constexpr char theDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const char c : octets)
    {
        const auto octet = static_cast<unsigned char>(c);
        if (!text.empty()) text += ' ';
        text += theDigits[octet >> 4];
        text += theDigits[octet & 0xF];
    }
    return text;
}
