// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/writtenTexts.h"

#include "omt/base/character.h"
#include "omt/codec/jsonLetters.h"

namespace omt
{

namespace
{

constexpr const char* theTooLarge = "a character that no octet holds";

void storeUnit(const Node& element, std::uint32_t unit, std::uint8_t* octets)
{
    const auto bits = static_cast<std::uint16_t>(unit);
    const std::uint16_t stored = element.isLittleEndian ? bits : __builtin_bswap16(bits);
    std::memcpy(octets, &stored, sizeof stored);
}

// Four units; little-endian ones as they are in memory.
void storeUnits(const Node& element, std::uint64_t units, std::uint8_t* octets)
{
    if (!element.isLittleEndian) units = swappedUnits(units);
    std::memcpy(octets, &units, sizeof units);
}

// Letters of ASCII, eight at a time; gives how many.
std::size_t storePlain(const Node& element, std::string_view letters, std::uint8_t* octets)
{
    std::size_t count = 0;
    for (; letters.size() - count >= 8; count += 8)
    {
        const auto block = loadWord<std::uint64_t>(letters.data() + count);
        if ((block & 0x8080808080808080) != 0) break;
        if (element.size == 1)
        {
            std::memcpy(octets + count, &block, sizeof block);
            continue;
        }
        storeUnits(element, unitsOf(static_cast<std::uint32_t>(block)), octets + 2 * count);
        storeUnits(element, unitsOf(static_cast<std::uint32_t>(block >> 32)),
                   octets + 2 * count + 8);
    }
    return count;
}

// Three octets of a surrogate too.
Character characterAt(std::string_view text)
{
    const Character character = firstCharacter(text);
    if (character.octets > 0 || text.size() < 3 || text[0] != '\xED') return character;
    const auto second = static_cast<unsigned char>(text[1]);
    const auto third = static_cast<unsigned char>(text[2]);
    if ((second & 0xE0) != 0xA0 || (third & 0xC0) != 0x80) return {};
    return {0xD000U | (second & 0x3FU) << 6 | (third & 0x3FU), 3};
}

}  // namespace

const char* storeText(const Node& element, std::string_view letters, std::uint8_t* octets,
                      std::size_t& count)
{
    const std::size_t size = element.size;
    for (count = 0; !letters.empty(); ++count)
    {
        const std::size_t plain = storePlain(element, letters, octets + count * size);
        count += plain;
        letters.remove_prefix(plain);
        if (letters.empty()) break;
        const Character character = characterAt(letters);
        if (character.octets == 0) return "a text that is no UTF-8";
        letters.remove_prefix(character.octets);
        std::uint32_t code = character.code;
        if (size == 1)
        {
            if (code > 0xFF) return theTooLarge;
            octets[count] = static_cast<std::uint8_t>(code);
            continue;
        }
        if (code >= 0x10000)
        {
            storeUnit(element, 0xD800 + ((code - 0x10000) >> 10), octets + 2 * count++);
            code = 0xDC00 + (code & 0x3FF);
        }
        storeUnit(element, code, octets + 2 * count);
    }
    return nullptr;
}

const char* storeText(const Node& element, std::u16string_view letters, std::uint8_t* octets,
                      std::size_t& count)
{
    std::size_t i = 0;
    if (element.size == 2)
    {
        for (; letters.size() - i >= 4; i += 4)
            storeUnits(element, loadWord<std::uint64_t>(letters.data() + i), octets + 2 * i);
        for (; i < letters.size(); ++i) storeUnit(element, letters[i], octets + 2 * i);
    }
    for (; i < letters.size(); ++i)
    {
        if (letters[i] > 0xFF) return theTooLarge;
        octets[i] = static_cast<std::uint8_t>(letters[i]);
    }
    count = letters.size();
    return nullptr;
}

}  // namespace omt
