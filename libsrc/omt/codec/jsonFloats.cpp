// SPDX-License-Identifier: Apache-2.0
// The shortest digits are found as by the algorithm Schubfach of Raffaello Giulietti. Numbers from
// 10^-4 to those that count whole units need no table of rounded powers for it: what is compared
// are products with a power of five that fit into two registers, or one, and are exact.
#include "omt/codec/jsonFloats.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace omt
{

namespace
{

/// Twice the octets of a register.
__extension__ using Wide = unsigned __int128;

template <typename Number>
struct Format;
template <>
struct Format<double>
{
    using Bits = std::uint64_t;
    /// Four significands times 5^20.
    using Product = Wide;
    /// The most digits, and all but the first as text.
    static constexpr std::size_t theDigits = 17;
    using Text = Wide;
};
template <>
struct Format<float>
{
    using Bits = std::uint32_t;
    /// Four significands times 5^12.
    using Product = std::uint64_t;
    static constexpr std::size_t theDigits = 9;
    using Text = std::uint64_t;
};

constexpr std::array<std::uint64_t, 24> theFives = []
{
    std::array<std::uint64_t, 24> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = 5 * powers[i - 1];
    return powers;
}();

constexpr std::array<std::uint64_t, 19> theTens = []
{
    std::array<std::uint64_t, 19> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = 10 * powers[i - 1];
    return powers;
}();

/// digits * 10^-places
struct Decimal
{
    std::uint64_t digits;
    int places;
};

/// The nearest to significand * 2^exponent of all decimal numbers with the fewest digits that lie
/// nearer to it than to its neighbours. The exponent is from -66 to 0, and both neighbours are
/// equally far away.
template <typename Product>
Decimal shortest(std::uint64_t significand, int exponent)
{
    // 10^-places is the largest power of ten that is not above 2^exponent.
    constexpr int theFactor = 78913;
    constexpr int theFactorBits = 18;
    const int places = -(exponent * theFactor >> theFactorBits);
    const int shift = (-exponent - places) & 63;
    // In quarters of 10^-places: the number, and how far it is to where its neighbours begin. The
    // lowest bit says whether there is a rest, too.
    const Product power = theFives[static_cast<std::size_t>(places)];
    const Product middle = Product{4 * significand} * power;
    const auto quarters = [shift](Product product)
    {
        const auto rest = static_cast<std::uint64_t>(product) & ((std::uint64_t{1} << shift) - 1);
        return static_cast<std::uint64_t>(product >> shift) | (rest != 0 ? 1U : 0U);
    };
    const std::uint64_t number = quarters(middle);
    // An even significand wins where a decimal number is as near to its neighbour.
    const std::uint64_t open = significand & 1;
    const std::uint64_t lower = quarters(middle - 2 * power) + open;
    const std::uint64_t upper = quarters(middle + 2 * power) - open;
    const std::uint64_t digits = number / 4;
    const std::uint64_t fewer = digits / 10;
    const bool isBelow = lower <= 40 * fewer;
    const bool isAbove = 40 * fewer + 40 <= upper;
    if (isBelow != isAbove) return {fewer + (isAbove ? 1 : 0), places - 1};
    const bool isDown = lower <= 4 * digits;
    const bool isUp = 4 * digits + 4 <= upper;
    const std::uint64_t rest = number & 3;
    const bool isNearer = rest > 2 || (rest == 2 && digits % 2 != 0);
    return {digits + ((isDown != isUp ? isUp : isNearer) ? 1 : 0), places};
}

int countDigits(std::uint64_t number)
{
    const auto least = static_cast<std::size_t>(std::bit_width(number) * 1233 >> 12);
    return static_cast<int>(least) + (number >= theTens[least] ? 1 : 0);
}

/// The eight digits of a number below 10^8 as memory has them: pairs of digits are split in all
/// lanes of a register at once.
std::uint64_t eightDigits(std::uint32_t number)
{
    const std::uint64_t fours = number / 10000 | std::uint64_t{number % 10000} << 32;
    const std::uint64_t hundreds = (fours * 10486 >> 20) & 0x0000007F0000007F;
    const std::uint64_t twos = (fours - 100 * hundreds) << 16 | hundreds;
    const std::uint64_t tens = (twos * 103 >> 10) & 0x000F000F000F000F;
    return ((twos - 10 * tens) << 8 | tens) + 0x3030303030303030;
}

char* writeWhole(char* at, std::uint32_t number)
{
    const std::uint64_t digits = eightDigits(number);
    const int zeros = 8 - countDigits(number | 1);
    const std::uint64_t shown = digits >> 8 * zeros;
    std::memcpy(at, &shown, sizeof shown);
    return at + 8 - zeros;
}

/// All digits of a number but the first as memory has them.
std::uint64_t textOf(float, std::uint64_t digits)
{
    return eightDigits(static_cast<std::uint32_t>(digits));
}

Wide textOf(double, std::uint64_t digits)
{
    constexpr std::uint64_t theEight = 100000000;
    const std::uint64_t high = eightDigits(static_cast<std::uint32_t>(digits / theEight));
    const std::uint64_t low = eightDigits(static_cast<std::uint32_t>(digits % theEight));
    return Wide{low} << 64 | high;
}

int zerosAtEnd(std::uint64_t text)
{
    return std::countl_zero(text - 0x3030303030303030) / 8;
}

int zerosAtEnd(Wide text)
{
    const int zeros = zerosAtEnd(static_cast<std::uint64_t>(text >> 64));
    return zeros < 8 ? zeros : 8 + zerosAtEnd(static_cast<std::uint64_t>(text));
}

/// The digits of a decimal number with a point in or before them; null where it is shorter with an
/// exponent.
template <typename Number>
char* writeFixed(char* at, const Decimal& decimal)
{
    using Text = typename Format<Number>::Text;
    constexpr std::size_t theDigits = Format<Number>::theDigits;
    constexpr std::uint64_t theFirst = theTens[theDigits - 1];
    const int size = countDigits(decimal.digits);
    // So many digits stand before the point.
    const int whole = size - decimal.places;
    const std::uint64_t digits =
        decimal.digits * theTens[theDigits - static_cast<std::size_t>(size)];
    const Text text = textOf(Number(), digits % theFirst);
    const int shown = static_cast<int>(theDigits) - zerosAtEnd(text);
    if (shown < whole || whole < (shown == 1 ? -2 : -3)) return nullptr;
    if (whole <= 0)
    {
        std::memcpy(at, "0.000", 5);
        at += 2 - whole;
    }
    *at = static_cast<char>('0' + digits / theFirst);
    std::memcpy(at + 1, &text, sizeof text);
    if (whole <= 0 || shown == whole) return at + shown;
    at[whole] = '.';
    const Text rest = text >> 8 * (whole - 1);
    std::memcpy(at + whole + 1, &rest, sizeof rest);
    return at + shown + 1;
}

template <typename Number>
char* write(char* at, Number number)
{
    using Bits = typename Format<Number>::Bits;
    using Limits = std::numeric_limits<Number>;
    constexpr Bits theFraction = (Bits{1} << (Limits::digits - 1)) - 1;
    constexpr int theLeast = -14;
    constexpr int theMostWhole = 100000;
    const auto bits = std::bit_cast<Bits>(number);
    char* const start = at;
    const auto usual = [start, number]
    { return std::to_chars(start, start + theShortestRoom, number).ptr; };
    // Digits are put together as such a machine has them in memory.
    if constexpr (std::endian::native != std::endian::little) return usual();
    *at = '-';
    at += bits >> (8 * sizeof bits - 1);
    const Number size = std::abs(number);
    // More often than others; powers of ten from here on are shorter with an exponent.
    if (size < theMostWhole && static_cast<Number>(static_cast<int>(size)) == size)
        return writeWhole(at, static_cast<std::uint32_t>(size));
    const int exponent =
        static_cast<int>(bits >> (Limits::digits - 1) & (2 * Limits::max_exponent - 1)) -
        Limits::max_exponent + 1;
    // A power of two has a neighbour that is nearer than the other.
    if (exponent < theLeast || exponent >= Limits::digits || (bits & theFraction) == 0)
        return usual();
    const Decimal decimal = shortest<typename Format<Number>::Product>(
        (bits & theFraction) | (theFraction + 1), exponent - Limits::digits + 1);
    char* const end = writeFixed<Number>(at, decimal);
    return end ? end : usual();
}

}  // namespace

char* writeShortest(char* at, double number)
{
    return write(at, number);
}

char* writeShortest(char* at, float number)
{
    return write(at, number);
}

}  // namespace omt
