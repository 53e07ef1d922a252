// SPDX-License-Identifier: Apache-2.0
#include "omt/recording/octetText.h"

#include <array>

namespace omt
{

namespace
{

constexpr std::uint8_t theNoDigit = 0xFF;

/// What each octet of a text is worth as a digit.
constexpr std::array<std::uint8_t, 256> theDigits = []
{
    std::array<std::uint8_t, 256> digits{};
    digits.fill(theNoDigit);
    for (std::uint8_t i = 0; i < 10; ++i) digits['0' + i] = i;
    for (std::uint8_t i = 0; i < 6; ++i)
        digits['a' + i] = digits['A' + i] = static_cast<std::uint8_t>(10 + i);
    return digits;
}();

std::uint8_t digitAt(std::string_view text, std::size_t at)
{
    return at < text.size() ? theDigits[static_cast<unsigned char>(text[at])] : theNoDigit;
}

bool isBetween(char c)
{
    return std::string_view(" \t,:;-").find(c) != std::string_view::npos;
}

bool isPrefix(std::string_view text)
{
    return text == "0x" || text == "0X" || text == "\\x";
}

}  // namespace

bool readOctets(std::string_view text, std::vector<std::uint8_t>& octets, std::string& why)
{
    octets.resize(text.size() / 2);
    std::size_t size = 0;
    for (std::size_t at = 0; at < text.size();)
    {
        const std::uint8_t high = digitAt(text, at);
        const std::uint8_t low = digitAt(text, at + 1);
        if ((high | low) < 16)
        {
            octets[size++] = static_cast<std::uint8_t>(high << 4 | low);
            at += 2;
        }
        else if (isPrefix(text.substr(at, 2)) && digitAt(text, at + 2) != theNoDigit)
            at += 2;
        else if (isBetween(text[at]))
            ++at;
        else
        {
            const bool isAlone = high < 16 && (at + 1 == text.size() || isBetween(text[at + 1]));
            why = "octets: character " + std::to_string(at + (high < 16 && !isAlone ? 2 : 1)) +
                  (isAlone ? " is alone, and an octet has two digits" : " is no hexadecimal digit");
            return false;
        }
    }
    octets.resize(size);
    return true;
}

}  // namespace omt
