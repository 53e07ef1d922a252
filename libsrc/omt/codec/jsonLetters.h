// SPDX-License-Identifier: Apache-2.0
// Looks at several letters of a text of JSON at once.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace omt
{

static_assert(std::endian::native == std::endian::little, "the first octet is the lowest");

template <typename Word>
Word loadWord(const void* from)
{
    Word word;
    std::memcpy(&word, from, sizeof word);
    return word;
}

/// Eight octets as a number, the first lowest: the highest bit of each that does not stand for
/// itself in JSON, or is no ASCII.
inline std::uint64_t specialOctets(std::uint64_t octets)
{
    constexpr std::uint64_t theOnes = 0x0101010101010101;
    constexpr std::uint64_t theHighest = 0x80 * theOnes;
    const std::uint64_t low = octets & ~theHighest;
    const std::uint64_t printing = low + 0x60 * theOnes;
    const std::uint64_t noQuote = (low ^ 0x22 * theOnes) + 0x7F * theOnes;
    const std::uint64_t noBackslash = (low ^ 0x5C * theOnes) + 0x7F * theOnes;
    return (octets | ~(printing & noQuote & noBackslash)) & theHighest;
}

/// The same for four units of 16 bits.
inline std::uint64_t specialUnits(std::uint64_t units)
{
    constexpr std::uint64_t theOnes = 0x0001000100010001;
    constexpr std::uint64_t theHighest = 0x8000 * theOnes;
    const std::uint64_t low = units & 0x7F * theOnes;
    const std::uint64_t noAscii = (units & 0x7F80 * theOnes) + 0x7FFF * theOnes;
    const std::uint64_t printing = low + 0x7FE0 * theOnes;
    const std::uint64_t noQuote = (low ^ 0x22 * theOnes) + 0x7FFF * theOnes;
    const std::uint64_t noBackslash = (low ^ 0x5C * theOnes) + 0x7FFF * theOnes;
    return (units | noAscii | ~(printing & noQuote & noBackslash)) & theHighest;
}

/// Exchanges the octets of each of four units.
inline std::uint64_t swappedUnits(std::uint64_t units)
{
    constexpr std::uint64_t theLow = 0x00FF00FF00FF00FF;
    return (units & theLow) << 8 | (units >> 8 & theLow);
}

/// The low octets of four units, one after the other.
inline std::uint32_t lowOctets(std::uint64_t units)
{
    units = (units | units >> 8) & 0x0000FFFF0000FFFF;
    return static_cast<std::uint32_t>(units | units >> 16);
}

/// The other way.
inline std::uint64_t unitsOf(std::uint32_t octets)
{
    std::uint64_t units = octets;
    units = (units | units << 16) & 0x0000FFFF0000FFFF;
    return (units | units << 8) & 0x00FF00FF00FF00FF;
}

/// Both hexadecimal digits of each octet.
inline constexpr std::array<char, 512> theHexadecimal = []
{
    constexpr char theDigits[] = "0123456789abcdef";
    std::array<char, 512> all{};
    for (std::size_t i = 0; i < 256; ++i)
    {
        all[2 * i] = theDigits[i >> 4];
        all[2 * i + 1] = theDigits[i & 15];
    }
    return all;
}();

/// The numbers below 1000: three places for digits, and how many there are.
inline constexpr std::array<char, 4000> theSmallNumbers = []
{
    std::array<char, 4000> all{};
    for (std::size_t i = 0; i < 1000; ++i)
    {
        const char digits[] = {static_cast<char>('0' + i / 100),
                               static_cast<char>('0' + i / 10 % 10),
                               static_cast<char>('0' + i % 10)};
        const std::size_t size = i < 10 ? 1 : i < 100 ? 2 : 3;
        for (std::size_t k = 0; k < size; ++k) all[4 * i + k] = digits[3 - size + k];
        all[4 * i + 3] = static_cast<char>(size);
    }
    return all;
}();

}  // namespace omt
