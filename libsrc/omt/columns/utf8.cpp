// SPDX-License-Identifier: Apache-2.0
#include "omt/columns/utf8.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace omt
{

namespace
{

static_assert(std::endian::native == std::endian::little, "letters are taken out of whole words");

constexpr std::uint64_t theHigh = 0x8080808080808080;
constexpr std::uint64_t theOnes = 0x0101010101010101;

std::uint64_t load64(const std::uint8_t* octets)
{
    std::uint64_t bits;
    std::memcpy(&bits, octets, sizeof bits);
    return bits;
}

/// The high bits of eight octets where one is zero or no ASCII; none where all are letters.
std::uint64_t oddOf(std::uint64_t eight)
{
    return ((eight - theOnes) | eight) & theHigh;
}

/// Copies octets, and says whether all of them are ASCII, and none zero.
bool copyLetters(std::uint8_t* to, const std::uint8_t* octets, std::size_t count)
{
    std::uint64_t odd = 0;
    if (count < 8)
    {
        for (std::size_t i = 0; i < count; ++i)
        {
            to[i] = octets[i];
            odd |= static_cast<std::uint8_t>((octets[i] - 1) | octets[i]);
        }
        return (odd & theHigh) == 0;
    }
    const auto copy = [&](std::size_t at)
    {
        const std::uint64_t eight = load64(octets + at);
        std::memcpy(to + at, &eight, sizeof eight);
        odd |= oddOf(eight);
    };
    for (std::size_t at = 0; at + 8 < count; at += 8) copy(at);
    copy(count - 8);
    return odd == 0;
}

/// A character below U+0800, without a branch, which would be guessed wrong in mixed texts; by
/// arithmetic, as compilers make a branch of a choice.
std::uint8_t* putOneOrTwo(std::uint8_t* to, std::uint32_t code)
{
    const std::uint32_t isTwo = (code + 0x780) >> 11;
    const std::uint32_t first = 0xC0 | code >> 6;
    to[0] = static_cast<std::uint8_t>(code ^ ((code ^ first) & (0 - isTwo)));
    to[1] = static_cast<std::uint8_t>(0x80 | (code & 0x3F));
    return to + 1 + isTwo;
}

std::uint8_t* putAny(std::uint8_t* to, std::uint32_t code)
{
    const auto put = [&to](std::uint32_t bits) { *to++ = static_cast<std::uint8_t>(bits); };
    if (code < 0x800) return putOneOrTwo(to, code);
    if (code < 0x10000)
        put(0xE0 | code >> 12);
    else
    {
        put(0xF0 | code >> 18);
        put(0x80 | (code >> 12 & 0x3F));
    }
    put(0x80 | (code >> 6 & 0x3F));
    put(0x80 | (code & 0x3F));
    return to;
}

/// Units of one byte order; a part of a text at a time, by the largest characters in it.
template <bool isLittleEndian>
class Units
{
public:
    Units(const std::uint8_t* octets, std::size_t count) : myOctets(octets), myCount(count) {}

    std::uint8_t* put(std::uint8_t* to) const
    {
        constexpr std::size_t thePart = 64;
        for (std::size_t i = 0; i < myCount;)
        {
            const std::size_t end = std::min(i + thePart, myCount);
            const std::uint32_t all = bitsOf(i, end);
            to = all < 0x80    ? putAscii(to, i, end)
                 : all < 0x800 ? putShort(to, i, end)
                               : putPairs(to, i, end);
        }
        return to;
    }

private:
    std::uint32_t load(std::size_t i) const
    {
        std::uint16_t unit;
        std::memcpy(&unit, myOctets + 2 * i, sizeof unit);
        return isLittleEndian ? unit : __builtin_bswap16(unit);
    }

    // Those of all units together.
    std::uint32_t bitsOf(std::size_t i, std::size_t end) const
    {
        std::uint64_t four = 0;
        std::uint32_t all = 0;
        for (; i + 4 <= end; i += 4) four |= load64(myOctets + 2 * i);
        for (; i < end; ++i) all |= load(i);
        four |= four >> 32;
        const auto unit = static_cast<std::uint16_t>(four | four >> 16);
        return all | (isLittleEndian ? unit : __builtin_bswap16(unit));
    }

    std::uint8_t* putAscii(std::uint8_t* to, std::size_t& i, std::size_t end) const
    {
        for (; i + 4 <= end; i += 4, to += 4)
        {
            std::uint64_t four = load64(myOctets + 2 * i);
            if (!isLittleEndian) four >>= 8;
            four |= four >> 8;
            four = (four & 0xFFFF) | (four >> 16 & 0xFFFF0000);
            std::memcpy(to, &four, 4);
        }
        for (; i < end; ++i) *to++ = static_cast<std::uint8_t>(load(i));
        return to;
    }

    std::uint8_t* putShort(std::uint8_t* to, std::size_t& i, std::size_t end) const
    {
        for (; i < end; ++i) to = putOneOrTwo(to, load(i));
        return to;
    }

    // The second half of a pair may stand after the part.
    std::uint8_t* putPairs(std::uint8_t* to, std::size_t& i, std::size_t end) const
    {
        for (; i < end; ++i)
        {
            std::uint32_t code = load(i);
            if ((code & 0xF800) == 0xD800)
            {
                const std::uint32_t next = i + 1 < myCount ? load(i + 1) : 0;
                const bool isPair = (code & 0xFC00) == 0xD800 && (next & 0xFC00) == 0xDC00;
                code = isPair ? 0x10000 + ((code & 0x3FF) << 10) + (next & 0x3FF) : 0xFFFD;
                if (isPair) ++i;
            }
            to = putAny(to, code);
        }
        return to;
    }

    const std::uint8_t* myOctets;
    std::size_t myCount;
};

}  // namespace

std::uint8_t* putLatin1(std::uint8_t* to, const std::uint8_t* octets, std::size_t count)
{
    if (copyLetters(to, octets, count)) return to + count;
    for (std::size_t i = 0; i < count; ++i) to = putOneOrTwo(to, octets[i]);
    return to;
}

std::uint8_t* putText(std::uint8_t* to, const std::uint8_t* octets, std::size_t count)
{
    if (copyLetters(to, octets, count)) return to + count;
    const void* const zero = std::memchr(octets, 0, count);
    const auto* const end = zero ? static_cast<const std::uint8_t*>(zero) : octets + count;
    return putLatin1(to, octets, static_cast<std::size_t>(end - octets));
}

std::uint8_t* putUtf16(std::uint8_t* to, const std::uint8_t* octets, std::size_t count,
                       bool isLittleEndian)
{
    return isLittleEndian ? Units<true>(octets, count).put(to)
                          : Units<false>(octets, count).put(to);
}

}  // namespace omt
