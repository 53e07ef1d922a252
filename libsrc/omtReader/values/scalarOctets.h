// SPDX-License-Identifier: Apache-2.0
// What all representations of a fixed number of octets have in common.
#pragma once

#include "omtReader/conversionString.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace omtreader
{

/// The float nearest to a text's number: read from the text, as a double that is rounded again may
/// end at the float beside it. Where no float is read, it is what the double says.
inline float readFloat(const DtString& text)
{
    std::string_view digits = text.view();
    float nearest = 0.0F;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), nearest);
    if (error == std::errc() && end == digits.data() + digits.size()) return nearest;
    const double number = text.toDouble();
    nearest = static_cast<float>(number);
    digits.remove_prefix(std::min(digits.find_first_not_of(" \t\n\v\f\r+"), digits.size()));
    if (number != 0) std::from_chars(digits.data(), digits.data() + digits.size(), nearest);
    return nearest;
}

/// The octets of one number: `Order` says whether the most (big) or the least (little) significant
/// one comes first. A null position reads as 0 and as the empty text.
template <typename Number, std::endian Order>
struct ScalarOctets
{
    static constexpr unsigned int theWidth = sizeof(Number);

    static Number read(const void* position)
    {
        if (!position) return Number();
        Bits bits;
        std::memcpy(&bits, position, theWidth);
        return std::bit_cast<Number>(inOrder(bits));
    }

    /// The number of a text; of integers the low bits of what the text says in 32 bits.
    static Number parse(const DtString& text)
    {
        if constexpr (std::is_same_v<Number, float>)
            return readFloat(text);
        else if constexpr (std::is_same_v<Number, double>)
            return text.toDouble();
        else
            return static_cast<Number>(text.toInt());
    }

    static std::vector<char> write(Number number)
    {
        const Bits bits = inOrder(std::bit_cast<Bits>(number));
        std::vector<char> octets(theWidth);
        std::memcpy(octets.data(), &bits, theWidth);
        return octets;
    }

    static void append(Number number, std::vector<char>& octets)
    {
        const auto bits =
            std::bit_cast<std::array<char, theWidth>>(inOrder(std::bit_cast<Bits>(number)));
        octets.insert(octets.end(), bits.begin(), bits.end());
    }

    /// The same octets as a number without a sign.
    static auto readUnsigned(const void* position)
    {
        return static_cast<std::make_unsigned_t<Number>>(read(position));
    }

    static DtString integerText(const void* position, bool isUnsigned)
    {
        if (!position) return {};
        return isUnsigned ? DtString(readUnsigned(position)) : DtString(read(position));
    }

    static double integerNumber(const void* position, bool isUnsigned)
    {
        return isUnsigned ? static_cast<double>(readUnsigned(position))
                          : static_cast<double>(read(position));
    }

    static DtString floatText(const void* position, int precision)
    {
        if (!position) return {};
        return DtConversionString(read(position), precision);
    }

private:
    using Bits =
        std::conditional_t<sizeof(Number) == 8, std::uint64_t,
                           std::conditional_t<sizeof(Number) == 4, std::uint32_t, std::uint16_t>>;
    static_assert(sizeof(Bits) == sizeof(Number));

    static Bits inOrder(Bits bits)
    {
        if constexpr (Order == std::endian::native)
            return bits;
        else if constexpr (sizeof bits == 8)
            return __builtin_bswap64(bits);
        else if constexpr (sizeof bits == 4)
            return __builtin_bswap32(bits);
        else
            return __builtin_bswap16(bits);
    }
};

/// One octet without a sign; 0 for a null position.
inline unsigned char readOctet(const void* position)
{
    return position ? *static_cast<const unsigned char*>(position) : static_cast<unsigned char>(0);
}

/// The low octet of a number, as an encoded value.
inline std::vector<char> writeOctet(std::int64_t number)
{
    return {static_cast<char>(number)};
}

/// Two upper-case hexadecimal digits.
inline void appendHexadecimal(std::string& text, unsigned char octet)
{
    constexpr char theDigits[] = "0123456789ABCDEF";
    text += theDigits[octet >> 4];
    text += theDigits[octet & 0xF];
}

}  // namespace omtreader
