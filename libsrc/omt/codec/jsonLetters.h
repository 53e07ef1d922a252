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

/// Eight units of 16 bits.
using Units [[gnu::vector_size(16)]] = std::uint16_t;

inline bool isAscii(Units units)
{
    std::uint64_t halves[2];
    std::memcpy(halves, &units, sizeof halves);
    return ((halves[0] | halves[1]) & 0xFF80FF80FF80FF80) == 0;
}

/// Writes units of ASCII, but for the first `done`, with octets too many at the end, which it
/// gives.
inline char* putAscii(char* at, Units units, std::size_t done)
{
    using Eight [[gnu::vector_size(8)]] = std::uint8_t;
    const auto octets = __builtin_convertvector(units, Eight);
    std::uint64_t word;
    std::memcpy(&word, &octets, sizeof word);
    word >>= 8 * done;
    std::memcpy(at, &word, sizeof word);
    return at + (8 - done);
}

/// Whether one of them does not stand for itself in JSON, or takes more than two octets in UTF-8.
inline bool hasOdd(Units units)
{
    const auto odd = (units - 0x20 >= 0x7E0) | (units == '"') | (units == '\\');
    std::uint64_t halves[2];
    std::memcpy(halves, &odd, sizeof halves);
    return (halves[0] | halves[1]) != 0;
}

/// Writes units of which none is odd as UTF-8, but for the first `done`, with one octet too many at
/// the end, which it gives. Both forms of each unit are made, as a branch would often be foretold
/// wrongly.
inline char* putUnits(char* at, Units units, std::size_t done)
{
    constexpr Units thePlaces = {0, 1, 2, 3, 4, 5, 6, 7};
    const Units isLong = reinterpret_cast<Units>(units >= 0x80);
    const Units both = 0x80C0 | units >> 6 | (units & 0x3F) << 8;
    const Units octets = (units & ~isLong) | (both & isLong);
    const Units isNew = reinterpret_cast<Units>(thePlaces >= static_cast<std::uint16_t>(done));
    const Units sizes = (1 - isLong) & isNew;
    std::uint64_t words[2], counts[2];
    std::memcpy(words, &octets, sizeof words);
    std::memcpy(counts, &sizes, sizeof counts);
    for (std::size_t i = 0; i < 8; ++i)
    {
        const auto two = static_cast<std::uint16_t>(words[i / 4] >> 16 * (i % 4));
        std::memcpy(at, &two, sizeof two);
        at += counts[i / 4] >> 16 * (i % 4) & 3;
    }
    return at;
}

/// Exchanges the octets of each of four units.
inline std::uint64_t swappedUnits(std::uint64_t units)
{
    constexpr std::uint64_t theLow = 0x00FF00FF00FF00FF;
    return (units & theLow) << 8 | (units >> 8 & theLow);
}

/// Four octets as units.
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
