// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/jsonNumbers.h"

#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <limits>

namespace omt
{

namespace
{

unsigned digitAt(const char* at, const char* end)
{
    return at == end ? 10 : static_cast<unsigned>(static_cast<unsigned char>(*at)) - '0';
}

/// A number as JSON writes it, without its sign: digits * 10^exponent.
struct Decimal
{
    std::uint64_t digits = 0;
    int exponent = 0;
    /// Whether digits holds all of them.
    bool isExact = false;
};

const char* readDigits(const char* at, const char* end, std::uint64_t& digits)
{
    for (unsigned digit = digitAt(at, end); digit < 10; digit = digitAt(++at, end))
        digits = digits * 10 + digit;
    return at;
}

// An exponent of more than four digits is not read as a number, but passed over.
const char* readExponent(const char* at, const char* end, Decimal& number)
{
    if (at == end || (*at | 0x20) != 'e') return at;
    ++at;
    const bool isNegative = at != end && *at == '-';
    if (at != end && (*at == '-' || *at == '+')) ++at;
    std::uint64_t digits = 0;
    const char* const last = readDigits(at, end, digits);
    if (last == at) return nullptr;
    constexpr std::ptrdiff_t theMost = 4;
    number.isExact = number.isExact && last - at <= theMost;
    if (number.isExact) number.exponent += static_cast<int>(digits) * (isNegative ? -1 : 1);
    return last;
}

// Null for what JSON does not have: "01", "1.", ".5".
const char* readDecimal(const char* at, const char* end, Decimal& number)
{
    const char* const first = at;
    at = readDigits(at, end, number.digits);
    std::ptrdiff_t size = at - first;
    if (size == 0 || (size > 1 && *first == '0')) return nullptr;
    if (at != end && *at == '.')
    {
        const char* const point = ++at;
        at = readDigits(at, end, number.digits);
        if (at == point) return nullptr;
        number.exponent = static_cast<int>(point - at);
        size += at - point;
    }
    constexpr std::ptrdiff_t theMost = std::numeric_limits<std::uint64_t>::digits10;
    number.isExact = size <= theMost;
    return readExponent(at, end, number);
}

/// All powers of ten below 2^64.
constexpr std::array<std::uint64_t, 20> thePowers = []
{
    std::array<std::uint64_t, 20> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = 10 * powers[i - 1];
    return powers;
}();

/// Twice the octets of a register, for one product or quotient.
__extension__ using Wide = unsigned __int128;

/// The nearest floating point number to digits / 10^n for n up to 19, by a division of whole
/// numbers: its quotient has at least 63 bits, and one more says whether there is a rest.
template <typename Number, typename Bits>
Bits nearest(std::uint64_t digits, std::uint64_t power)
{
    if (digits == 0) return 0;
    const int shift = std::countl_zero(power) - std::countl_zero(digits);
    digits <<= std::countl_zero(digits);
    power <<= std::countl_zero(power);
    const Wide dividend = Wide{digits} << 63;
    auto quotient = static_cast<std::uint64_t>(dividend / power);
    const bool hasRest = Wide{quotient} * power != dividend;
    const int low = std::countl_zero(quotient);
    quotient = quotient << low | (hasRest ? 1U : 0U);
    constexpr int theBits = std::numeric_limits<Number>::digits;
    constexpr std::uint64_t theHalf = std::uint64_t{1} << (63 - theBits);
    const std::uint64_t dropped = quotient & (2 * theHalf - 1);
    std::uint64_t kept = quotient >> (64 - theBits);
    if (dropped > theHalf || (dropped == theHalf && kept % 2 != 0)) ++kept;
    // The highest bit kept is not stored, but adds one to the exponent.
    const int exponent = shift - low + std::numeric_limits<Number>::max_exponent - 2;
    return static_cast<Bits>((static_cast<std::uint64_t>(exponent) << (theBits - 1)) + kept);
}

template <typename Number, typename Bits>
const char* readFloating(const Node& node, const char* at, const char* end, std::uint8_t* octets)
{
    constexpr Bits theSign = Bits{1} << (8 * sizeof(Bits) - 1);
    const char* const first = at;
    const bool isNegative = at != end && *at == '-';
    if (isNegative) ++at;
    Decimal decimal;
    at = readDecimal(at, end, decimal);
    if (at == nullptr) return nullptr;
    Bits bits = 0;
    const auto power = static_cast<std::size_t>(-decimal.exponent);
    if (decimal.isExact && power < thePowers.size())
        bits = nearest<Number, Bits>(decimal.digits, thePowers[power]) | (isNegative ? theSign : 0);
    else
    {
        Number number = 0;
        if (std::from_chars(first, at, number).ec != std::errc()) return nullptr;
        bits = std::bit_cast<Bits>(number);
    }
    storeBits(node, bits, octets);
    return at;
}

}  // namespace

void storeBits(const Node& node, std::uint64_t bits, std::uint8_t* octets)
{
    if (node.size == 1)
    {
        *octets = static_cast<std::uint8_t>(bits);
        return;
    }
    // The octets in the order in which they stand begin at the lowest.
    if (!node.isLittleEndian) bits = __builtin_bswap64(bits) >> (64 - 8 * node.size);
    switch (node.size)
    {
        case 2:
            return static_cast<void>(std::memcpy(octets, &bits, 2));
        case 4:
            return static_cast<void>(std::memcpy(octets, &bits, 4));
        case 8:
            return static_cast<void>(std::memcpy(octets, &bits, 8));
        default:
            std::memcpy(octets, &bits, node.size);
    }
}

bool isInRange(const Node& node, std::int64_t number)
{
    const unsigned bits = 8 * node.size;
    if (bits == 64) return true;
    if (node.scalar == Scalar::unsignedInteger)
        return static_cast<std::uint64_t>(number) >> bits == 0;
    return number >> (bits - 1) == 0 || number >> (bits - 1) == -1;
}

const char* readInteger(const Node& node, const char* at, const char* end, std::uint8_t* octets)
{
    const bool isNegative =
        node.scalar == Scalar::signedInteger && at != end && *at == '-' ? (++at, true) : false;
    std::uint64_t digits = 0;
    const char* const last = readDigits(at, end, digits);
    constexpr std::ptrdiff_t theMost = std::numeric_limits<std::int64_t>::digits10;
    if (last == at || last - at > theMost || (last - at > 1 && *at == '0')) return nullptr;
    const auto number = static_cast<std::int64_t>(isNegative ? ~digits + 1 : digits);
    if (!isInRange(node, number)) return nullptr;
    storeBits(node, static_cast<std::uint64_t>(number), octets);
    return last;
}

const char* readFloating(const Node& node, const char* at, const char* end, std::uint8_t* octets)
{
    return node.size == 4 ? readFloating<float, std::uint32_t>(node, at, end, octets)
                          : readFloating<double, std::uint64_t>(node, at, end, octets);
}

bool isNumber(std::string_view text)
{
    const char* const end = text.data() + text.size();
    Decimal number;
    return readDecimal(text.data() + (text.substr(0, 1) == "-" ? 1 : 0), end, number) == end;
}

}  // namespace omt
