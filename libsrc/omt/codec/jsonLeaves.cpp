// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/jsonLeaves.h"

#include "omt/codec/jsonFloats.h"
#include "omt/codec/jsonLetters.h"
#include "omt/codec/valueParts.h"

#include <algorithm>
#include <cmath>

namespace omt
{

namespace
{

template <std::size_t size>
char* put(char* at, const char (&literal)[size])
{
    std::memcpy(at, literal, size - 1);
    return at + size - 1;
}

char* digitsOf(char* at, std::uint8_t octet)
{
    std::memcpy(at, theHexadecimal.data() + 2 * octet, 2);
    return at + 2;
}

char* small(char* at, std::uint32_t number)
{
    if (number >= theSmallNumbers.size() / 4)
        return std::to_chars(at, at + JsonLeaves::theLongestNumber, number).ptr;
    const auto digits = loadWord<std::uint32_t>(theSmallNumbers.data() + 4 * number);
    std::memcpy(at, &digits, 4);
    return at + (digits >> 24);
}

char* escaped(char* at, std::uint32_t code)
{
    at = put(at, "\\u");
    at = digitsOf(at, static_cast<std::uint8_t>(code >> 8));
    return digitsOf(at, static_cast<std::uint8_t>(code));
}

char* unit(char* at, std::uint32_t code)
{
    const auto six = [](std::uint32_t bits) { return static_cast<char>(0x80 | (bits & 0x3F)); };
    if (code == '"' || code == '\\') *at++ = '\\';
    if (code < 0x20 || (code & 0xFFFFF800) == 0xD800) return escaped(at, code);
    if (code < 0x80)
        *at++ = static_cast<char>(code);
    else if (code < 0x800)
    {
        *at++ = static_cast<char>(0xC0 | code >> 6);
        *at++ = six(code);
    }
    else if (code < 0x10000)
    {
        *at++ = static_cast<char>(0xE0 | code >> 12);
        *at++ = six(code >> 6);
        *at++ = six(code);
    }
    else
    {
        *at++ = static_cast<char>(0xF0 | code >> 18);
        *at++ = six(code >> 12);
        *at++ = six(code >> 6);
        *at++ = six(code);
    }
    return at;
}

/// Copies octets, eight at a time; whether all stand for themselves in JSON and none is zero. False
/// for few.
bool copyPlain(char* at, const std::uint8_t* octets, std::size_t count)
{
    if (count < 8) return false;
    std::uint64_t special = 0;
    const auto eight = [&](std::size_t i)
    {
        const auto some = loadWord<std::uint64_t>(octets + i);
        std::memcpy(at + i, &some, sizeof some);
        special |= specialOctets(some);
    };
    for (std::size_t i = 0; i + 8 < count; i += 8) eight(i);
    eight(count - 8);
    return special == 0;
}

template <bool isLittleEndian>
std::uint32_t loadUnit(const std::uint8_t* octets)
{
    const auto bits = loadWord<std::uint16_t>(octets);
    return isLittleEndian ? bits : __builtin_bswap16(bits);
}

char* special(char* at, const Node& node, const std::uint8_t* octets, double number)
{
    if (std::isinf(number)) return number < 0 ? put(at, "\"-Infinity\"") : put(at, "\"Infinity\"");
    const std::uint64_t plain = node.size == 4 ? 0x7FC00000 : 0x7FF8000000000000;
    if (loadBits(node, octets) == plain) return put(at, "\"NaN\"");
    at = JsonLeaves::hexadecimal(put(at, "{\"nan\":\""), octets, node.size);
    return put(at, "\"}");
}

template <typename Number>
char* floating(char* at, const Node& node, const std::uint8_t* octets, Number number)
{
    if (!std::isfinite(number)) return special(at, node, octets, number);
    return writeShortest(at, number);
}

char* floating32(char* at, const Node& node, const std::uint8_t* octets)
{
    return floating(at, node, octets, std::bit_cast<float>(loadBig32(octets)));
}

char* floating64(char* at, const Node& node, const std::uint8_t* octets)
{
    return floating(at, node, octets, std::bit_cast<double>(loadBig64(octets)));
}

}  // namespace

char* JsonLeaves::integer(char* at, const Node& node, std::int64_t number) const
{
    constexpr std::uint64_t theExact = std::uint64_t{1} << 53;
    const bool isUnsigned = node.scalar == Scalar::unsignedInteger;
    const auto bits = static_cast<std::uint64_t>(number);
    const std::uint64_t size = isUnsigned || number >= 0 ? bits : ~bits + 1;
    const bool isText = myOptions.largeIntegersAsText && size > theExact;
    if (isText) *at++ = '"';
    at = isUnsigned ? std::to_chars(at, at + theLongestNumber, bits).ptr
                    : std::to_chars(at, at + theLongestNumber, number).ptr;
    if (isText) *at++ = '"';
    return at;
}

char* JsonLeaves::label(char* at, const ScriptStep& step, std::uint32_t number,
                        const std::uint8_t* octets) const
{
    const Label& label = myPlan.labels[step.labels.of(number)];
    if (label.number != number) return this->label(at, myPlan.nodes[step.node], octets);
    return JsonRoom::copy(at, myPlan.pool.data() + label.quoted.at, label.quoted.size);
}

char* JsonLeaves::label(char* at, const Node& node, const std::uint8_t* octets) const
{
    const std::int64_t number = loadInteger(node, octets);
    const Enumeration& table = myPlan.enumerations[node.table];
    const std::uint32_t entry = Plan::findEntry(table, number);
    if (entry == theNone || !table.entries[entry].isFirst)
        return unusualLabel(at, node, number, entry);
    const Name quoted = table.entries[entry].quoted;
    return JsonRoom::copy(at, myPlan.pool.data() + quoted.at, quoted.size);
}

// Of a number without a name, or with one that stands for another first.
char* JsonLeaves::unusualLabel(char* at, const Node& node, std::int64_t number,
                               std::uint32_t entry) const
{
    if (entry == theNone) return integer(at, node, number);
    const Name quoted = myPlan.enumerations[node.table].entries[entry].quoted;
    at = JsonRoom::copy(put(at, "{\"name\":"), myPlan.pool.data() + quoted.at, quoted.size);
    at = integer(put(at, ",\"value\":"), node, number);
    *at++ = '}';
    return at;
}

char* JsonLeaves::number(char* at, const Node& node, const std::uint8_t* octets) const
{
    if (node.scalar == Scalar::floating)
    {
        const double number = loadNumber(node, octets);
        return node.size == 4 ? floating(at, node, octets, static_cast<float>(number))
                              : floating(at, node, octets, number);
    }
    if (node.table != theNone) return label(at, node, octets);
    return integer(at, node, loadInteger(node, octets));
}

char* JsonLeaves::script(char* at, const Node& record, const std::uint8_t* octets) const
{
    for (const ScriptStep* step = myPlan.script.data() + record.script;; ++step)
    {
        std::memcpy(at, step->text, ScriptStep::theLongest);
        at += step->size;
        const std::uint8_t* const place = octets + step->offset;
        // Records often have several of them, one after the other.
        if (step->leaf == Leaf::octet)
        {
            at = small(at, *place);
            continue;
        }
        switch (step->leaf)
        {
            case Leaf::end:
                return at;
            case Leaf::none:
            case Leaf::octet:
                break;
            case Leaf::pair:
                at = small(at, loadBig16(place));
                break;
            case Leaf::four:
                at = small(at, loadBig32(place));
                break;
            case Leaf::label8:
                at = label(at, *step, *place, place);
                break;
            case Leaf::label32:
                at = label(at, *step, loadBig32(place), place);
                break;
            case Leaf::label:
                at = label(at, myPlan.nodes[step->node], place);
                break;
            case Leaf::float32:
                at = floating32(at, myPlan.nodes[step->node], place);
                break;
            case Leaf::float64:
                at = floating64(at, myPlan.nodes[step->node], place);
                break;
            case Leaf::number:
                at = number(at, myPlan.nodes[step->node], place);
                break;
            case Leaf::text:
                at = text(at, myPlan.nodes[step->node], place, myPlan.nodes[step->node].count);
                break;
        }
    }
}

bool JsonLeaves::isRestShown(const Node& array, const std::uint8_t* octets, std::size_t count,
                             std::size_t shown)
{
    if (shown == count) return false;
    const auto isZero = [](std::uint8_t octet) { return octet == 0; };
    return array.extent != Extent::fixed || !std::all_of(octets + shown, octets + count, isZero);
}

char* JsonLeaves::text(char* at, const Node& array, const std::uint8_t* octets,
                       std::size_t count) const
{
    if (array.look == Look::utf16)
    {
        *at = '"';
        at = utf16(at + 1, myPlan.nodes[array.element], octets, count);
        *at = '"';
        return at + 1;
    }
    const bool isLetters = array.look != Look::hexadecimal;
    if (isLetters && copyPlain(at + 1, octets, count))
    {
        *at = '"';
        at[count + 1] = '"';
        return at + count + 2;
    }
    const std::size_t shown = array.look == Look::text ? textSize(octets, count) : count;
    const bool hasRest = isRestShown(array, octets, count, shown);
    if (hasRest) at = put(at, "{\"text\":");
    *at++ = '"';
    at = isLetters ? latin1(at, octets, shown) : hexadecimal(at, octets, count);
    *at++ = '"';
    if (!hasRest) return at;
    at = hexadecimal(put(at, ",\"rest\":\""), octets + shown + 1, count - shown - 1);
    return put(at, "\"}");
}

char* JsonLeaves::latin1(char* at, const std::uint8_t* octets, std::size_t count)
{
    const std::uint8_t* const end = octets + count;
    while (octets != end)
    {
        if (end - octets >= 8)
        {
            const auto eight = loadWord<std::uint64_t>(octets);
            const std::uint64_t special = specialOctets(eight);
            std::memcpy(at, &eight, 8);
            const int plain = std::countr_zero(special) / 8;
            at += plain;
            octets += plain;
            if (special == 0) continue;
        }
        at = unit(at, *octets++);
    }
    return at;
}

char* JsonLeaves::utf16(char* at, const Node& element, const std::uint8_t* octets,
                        std::size_t count)
{
    return element.isLittleEndian ? utf16<true>(at, octets, count)
                                  : utf16<false>(at, octets, count);
}

template <bool isLittleEndian>
char* JsonLeaves::utf16(char* at, const std::uint8_t* octets, std::size_t count)
{
    constexpr std::size_t theBlock = 8;
    const std::uint8_t* const end = octets + 2 * count;
    const bool hasBlock = count >= theBlock;
    while (octets != end)
    {
        // The last block begins with units that were written already.
        const auto left = static_cast<std::size_t>(end - octets) / 2;
        const std::size_t done = theBlock - std::min(left, theBlock);
        if (hasBlock)
        {
            auto units = loadWord<Units>(octets - 2 * done);
            if (!isLittleEndian) units = units << 8 | units >> 8;
            if (!hasOdd(units))
            {
                at = isAscii(units) ? putAscii(at, units, done) : putUnits(at, units, done);
                octets += 2 * (theBlock - done);
                continue;
            }
        }
        const std::uint32_t first = loadUnit<isLittleEndian>(octets);
        octets += 2;
        const std::uint32_t second = octets != end ? loadUnit<isLittleEndian>(octets) : 0;
        const bool isPair = (first & 0xFC00) == 0xD800 && (second & 0xFC00) == 0xDC00;
        if (isPair) octets += 2;
        at = unit(at, isPair ? 0x10000 + ((first & 0x3FF) << 10) + (second & 0x3FF) : first);
    }
    return at;
}

char* JsonLeaves::hexadecimal(char* at, const std::uint8_t* octets, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) digitsOf(at + 2 * i, octets[i]);
    return at + 2 * count;
}

}  // namespace omt
