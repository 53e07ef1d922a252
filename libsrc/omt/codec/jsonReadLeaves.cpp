// SPDX-License-Identifier: Apache-2.0
// JsonReader: numbers and texts. The usual ones quickly; the others, and what is wrong, by a way
// that can say why.
#include "omt/codec/jsonNumbers.h"
#include "omt/codec/jsonReader.h"
#include "omt/codec/jsonTexts.h"
#include "omt/codec/typeText.h"
#include "omt/codec/valueParts.h"
#include "omt/codec/writingRules.h"

#include <charconv>

namespace omt
{

void JsonReader::store(const Node& node, std::uint64_t bits)
{
    storeBits(node, bits, myOctets.need(node.size));
    myOctets.add(node.size);
}

// Numbers ----------------------------------------------------------------------------------------

// Null, with nothing stored, for what is not usual.
const char* JsonReader::quickNumber(const Node& node, const char* at, std::uint8_t* octets) const
{
    if (node.scalar == Scalar::floating) return readFloating(node, at, myText.end(), octets);
    if (node.table != theNone) return quickLabel(node, at, octets);
    return readInteger(node, at, myText.end(), octets);
}

const char* JsonReader::quickLabel(const Node& node, const char* at, std::uint8_t* octets) const
{
    if (at == myText.end() || *at != '"') return readInteger(node, at, myText.end(), octets);
    ++at;
    bool hasEscapes = false;
    const char* const last = JsonScanner::endOfText(at, myText.end(), hasEscapes);
    if (last == nullptr || hasEscapes) return nullptr;
    const Enumeration& table = myPlan.enumerations[node.table];
    const std::uint32_t entry = myPlan.findEntry(table, {at, static_cast<std::size_t>(last - at)});
    if (entry == theNone || !isInRange(node, table.entries[entry].number)) return nullptr;
    storeBits(node, static_cast<std::uint64_t>(table.entries[entry].number), octets);
    return last + 1;
}

bool JsonReader::number(const Node& node, std::uint32_t depth)
{
    myText.peek();
    const char* const last = quickNumber(node, myText.place(), myOctets.need(node.size));
    if (last != nullptr && myText.isEndOfWord(last))
    {
        myText.goTo(last);
        myOctets.add(node.size);
        return true;
    }
    return node.scalar == Scalar::floating ? floating(node, depth) : label(node, depth);
}

bool JsonReader::label(const Node& node, std::uint32_t depth)
{
    const char first = myText.peek();
    if (first == '{') return namedNumber(node, depth);
    if (first != '"') return integer(node, myText.word(), depth);
    RawText text;
    if (!myText.raw(text)) return fail("a text that does not end", depth);
    const std::string_view plain = unescaped(text);
    if (node.table == theNone) return integer(node, plain, depth);
    const Enumeration& table = myPlan.enumerations[node.table];
    const std::uint32_t entry = myPlan.findEntry(table, plain);
    if (entry == theNone) return fail(nameComplaint(myPlan, node, plain), depth);
    return ranged(node, table.entries[entry].number, depth);
}

// Of a name that has several numbers.
bool JsonReader::namedNumber(const Node& node, std::uint32_t depth)
{
    myText.takes('{');
    RawText name;
    std::string_view value;
    do
    {
        RawText key;
        if (!myText.raw(key) || !myText.takes(':')) return fail("no key", depth);
        if (key.letters == "name" && myText.raw(name)) continue;
        if (key.letters != "value") return fail("\"name\" and \"value\" are expected", depth);
        value = myText.word();
    } while (myText.takes(','));
    if (!myText.takes('}')) return failHere("a \"}\" is missing", depth);
    if (node.table == theNone) return fail("a number is expected", depth);
    const std::optional<std::int64_t> number = wholeNumber(value);
    const Enumeration& table = myPlan.enumerations[node.table];
    const std::string_view plain = unescaped(name);
    for (std::uint32_t i = myPlan.findEntry(table, plain); i < table.entries.size(); ++i)
    {
        if (myPlan.text(table.entries[i].name) != plain) break;
        if (number && table.entries[i].number == *number) return integer(node, value, depth);
    }
    return fail("\"" + std::string(plain) + "\" does not have this number", depth);
}

bool JsonReader::integer(const Node& node, std::string_view text, std::uint32_t depth)
{
    const char* const end = text.data() + text.size();
    std::uint64_t bits = 0;
    std::int64_t number = 0;
    const bool isUnsigned = node.scalar == Scalar::unsignedInteger;
    const auto [stop, error] = isUnsigned ? std::from_chars(text.data(), end, bits)
                                          : std::from_chars(text.data(), end, number);
    const std::size_t sign = !text.empty() && text.front() == '-' ? 1 : 0;
    const bool isPadded = text.size() > sign + 1 && text[sign] == '0';
    const bool isOutside = error == std::errc::result_out_of_range ||
                           (isUnsigned && sign == 1 && text.size() > 1 && digitOf(text[1]) <= 9);
    if (isOutside) return outside(node, text, depth);
    if (text.empty() || error != std::errc() || stop != end || isPadded)
        return fail("\"" + std::string(text) + "\" is no whole number", depth);
    return ranged(node, isUnsigned ? static_cast<std::int64_t>(bits) : number, depth);
}

bool JsonReader::outside(const Node& node, std::string_view text, std::uint32_t depth)
{
    return fail(std::string(text) + " is out of range of " + std::string(myPlan.text(node.name)),
                depth);
}

bool JsonReader::ranged(const Node& node, std::int64_t number, std::uint32_t depth)
{
    if (!isInRange(node, number))
        return fail(rangeComplaint(myPlan, node, number, node.scalar == Scalar::unsignedInteger),
                    depth);
    store(node, static_cast<std::uint64_t>(number));
    return true;
}

bool JsonReader::floating(const Node& node, std::uint32_t depth)
{
    const char first = myText.peek();
    if (first == '{') return nan(node, depth);
    if (first == '"') return specialFloating(node, depth);
    const std::string_view word = myText.word();
    if (isNumber(word)) return outside(node, word, depth);
    return fail("\"" + std::string(word) + "\" is no number", depth);
}

bool JsonReader::specialFloating(const Node& node, std::uint32_t depth)
{
    RawText text;
    if (!myText.raw(text)) return fail("a text that does not end", depth);
    const bool isLong = node.size == 8;
    const std::uint64_t infinity = isLong ? 0x7FF0000000000000 : 0x7F800000;
    const std::uint64_t sign = isLong ? 0x8000000000000000 : 0x80000000;
    if (text.letters == "NaN")
        store(node, isLong ? 0x7FF8000000000000 : 0x7FC00000);
    else if (text.letters == "Infinity")
        store(node, infinity);
    else if (text.letters == "-Infinity")
        store(node, infinity | sign);
    else
        return fail("\"" + std::string(text.letters) + "\" is no number", depth);
    return true;
}

bool JsonReader::nan(const Node& node, std::uint32_t depth)
{
    RawText key;
    myText.takes('{');
    if (!myText.raw(key) || key.letters != "nan" || !myText.takes(':'))
        return fail("a number is expected", depth);
    std::size_t count = 0;
    if (!hexadecimal(count, depth)) return false;
    if (count != node.size) return fail("these are not the octets of a number", depth);
    const double number = loadNumber(node, myOctets.data() + myOctets.size() - node.size);
    if (number == number) return fail("these are not the octets of a NaN", depth);
    return myText.takes('}') || failHere("a \"}\" is missing", depth);
}

// Texts ------------------------------------------------------------------------------------------

// An array of fixed size with as many letters as it has elements; null, and any octets in it, for
// any other.
const char* JsonReader::quickText(const Node& array, const char* at, std::uint8_t* octets) const
{
    if (at == myText.end() || *at != '"') return nullptr;
    ++at;
    bool hasEscapes = false;
    const char* const last = JsonScanner::endOfText(at, myText.end(), hasEscapes);
    if (last == nullptr || hasEscapes) return nullptr;
    const std::string_view letters(at, static_cast<std::size_t>(last - at));
    std::size_t count = letters.size() / 2;
    if (array.look == Look::hexadecimal)
        return count == array.count && readHexadecimal(letters, octets) ? last + 1 : nullptr;
    if (letters.size() > array.count) return nullptr;
    if (readCharacters(myPlan.nodes[array.element], letters, octets, count)) return nullptr;
    return count == array.count || array.look == Look::text ? last + 1 : nullptr;
}

std::string_view JsonReader::unescaped(const RawText& raw)
{
    if (!raw.hasEscapes) return raw.letters;
    myScratch.clear();
    std::uint32_t code = 0;
    for (JsonCharacters letters(raw.letters); !letters.isAtEnd() && letters.next(code);)
        appendUtf8(myScratch, code);
    return myScratch;
}

bool JsonReader::hexadecimal(std::size_t& count, std::uint32_t depth)
{
    RawText text;
    if (!myText.raw(text)) return fail("hexadecimal text is expected", depth);
    if (text.letters.size() % 2 != 0) return fail("half an octet", depth);
    count = text.letters.size() / 2;
    if (!readHexadecimal(text.letters, myOctets.need(count)))
        return fail("no hexadecimal digit", depth);
    myOctets.add(count);
    return true;
}

bool JsonReader::characters(const Node& array, std::size_t& count, std::uint32_t depth)
{
    RawText text;
    if (!myText.raw(text)) return fail("a text is expected", depth);
    const Node& element = myPlan.nodes[array.element];
    std::uint8_t* const octets = myOctets.need(text.letters.size() * element.size);
    if (const char* const wrong = readCharacters(element, text.letters, octets, count))
        return fail(wrong, depth);
    myOctets.add(count * element.size);
    return true;
}

// Text up to the first zero, and what stands after it if that is given; an array of a fixed size is
// filled with zeros.
bool JsonReader::hintedText(const Node& array, std::size_t& count, std::uint32_t depth)
{
    const std::size_t start = myOctets.size();
    const bool isRead =
        myText.peek() == '{' ? textAndRest(array, count, depth) : lettersOf(array, count, depth);
    if (!isRead) return false;
    if (array.extent != Extent::fixed) return true;
    if (count > array.count)
        return fail(
            std::to_string(count) + " octets, and there is room for " + std::to_string(array.count),
            depth);
    myOctets.growTo(start + array.count);
    count = array.count;
    return true;
}

bool JsonReader::lettersOf(const Node& array, std::size_t& count, std::uint32_t depth)
{
    const std::size_t start = myOctets.size();
    if (!characters(array, count, depth)) return false;
    return textSize(myOctets.data() + start, count) == count || fail("a zero ends a text", depth);
}

bool JsonReader::textAndRest(const Node& array, std::size_t& count, std::uint32_t depth)
{
    std::size_t rest = 0;
    bool hasText = false;
    bool hasRest = false;
    const std::size_t start = myOctets.size();
    myText.takes('{');
    do
    {
        RawText key;
        if (!myText.raw(key) || !myText.takes(':')) return fail("no key", depth);
        const bool isText = key.letters == "text";
        bool& isGiven = isText ? hasText : hasRest;
        if ((!isText && key.letters != "rest") || isGiven || (!isText && !hasText))
            return fail("\"text\" and then \"rest\" are expected", depth);
        isGiven = true;
        if (!isText) myOctets.growTo(myOctets.size() + 1);
        if (isText ? !lettersOf(array, count, depth) : !hexadecimal(rest, depth)) return false;
    } while (myText.takes(','));
    if (!myText.takes('}')) return failHere("a \"}\" is missing", depth);
    if (!hasText) return fail("\"text\" is missing", depth);
    count = myOctets.size() - start;
    return true;
}

}  // namespace omt
