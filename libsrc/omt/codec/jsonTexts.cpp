// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/jsonTexts.h"

#include "omt/codec/jsonNumbers.h"
#include "omt/codec/jsonScanner.h"

namespace omt
{

namespace
{

constexpr std::array<std::uint8_t, 256> theDigits = []
{
    std::array<std::uint8_t, 256> digits{};
    for (std::size_t i = 0; i < digits.size(); ++i)
        digits[i] = static_cast<std::uint8_t>(digitOf(static_cast<char>(i)));
    return digits;
}();

bool isPlain(char letter)
{
    const auto code = static_cast<unsigned char>(letter);
    return code >= 0x20 && code < 0x80 && letter != '"' && letter != '\\';
}

// Letters of ASCII that stand for themselves, in blocks and at the end one by one; gives how many.
std::size_t readPlain(const Node& element, std::string_view letters, std::uint8_t* octets)
{
    const bool isWide = element.size == 2;
    const std::size_t size = isWide ? 4 : 8;
    std::size_t count = 0;
    while (letters.size() - count >= 8)
    {
        const auto block = loadWord<std::uint64_t>(letters.data() + count);
        std::uint64_t shown = block;
        if (isWide)
        {
            shown = unitsOf(static_cast<std::uint32_t>(block));
            if (!element.isLittleEndian) shown = swappedUnits(shown);
        }
        std::memcpy(octets + count * (isWide ? 2 : 1), &shown, 8);
        const auto plain = static_cast<std::size_t>(std::countr_zero(specialOctets(block)) / 8);
        count += std::min(plain, size);
        if (plain < size) return count;
    }
    for (; count < letters.size() && isPlain(letters[count]); ++count)
    {
        const auto letter = static_cast<std::uint16_t>(letters[count]);
        const std::uint16_t unit = element.isLittleEndian ? letter : __builtin_bswap16(letter);
        if (isWide)
            std::memcpy(octets + 2 * count, &unit, sizeof unit);
        else
            octets[count] = static_cast<std::uint8_t>(letter);
    }
    return count;
}

}  // namespace

bool readHexadecimal(std::string_view letters, std::uint8_t* octets)
{
    if (letters.size() % 2 != 0) return false;
    unsigned all = 0;
    for (std::size_t i = 0; i < letters.size(); i += 2)
    {
        const unsigned high = theDigits[static_cast<unsigned char>(letters[i])];
        const unsigned low = theDigits[static_cast<unsigned char>(letters[i + 1])];
        all |= high | low;
        octets[i / 2] = static_cast<std::uint8_t>(high << 4 | low);
    }
    return all <= 15;
}

const char* readCharacters(const Node& element, std::string_view letters, std::uint8_t* octets,
                           std::size_t& count)
{
    const std::size_t size = element.size;
    count = 0;
    std::uint32_t code = 0;
    for (JsonCharacters characters(letters); !characters.isAtEnd(); ++count)
    {
        const std::size_t plain = readPlain(element, characters.rest(), octets + count * size);
        characters.skip(plain);
        count += plain;
        if (characters.isAtEnd()) break;
        if (!characters.next(code)) return "a text that is no UTF-8";
        if (size == 1 && code > 0xFF) return "a character that no octet holds";
        if (code >= 0x10000)
        {
            storeBits(element, 0xD800 + ((code - 0x10000) >> 10), octets + 2 * count++);
            code = 0xDC00 + (code & 0x3FF);
        }
        storeBits(element, code, octets + count * size);
    }
    std::memset(octets + count * size, 0, 8);
    return nullptr;
}

}  // namespace omt
