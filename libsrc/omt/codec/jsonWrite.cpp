// SPDX-License-Identifier: Apache-2.0
// Values to JSON, straight into the text.
#include "omt/codec/valueParts.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace omt
{

namespace
{

constexpr char theHexadecimal[] = "0123456789abcdef";

/// Room before the end of a text, written through a pointer and added to the text when it is full.
class Room
{
public:
    explicit Room(std::string& text) : myText(text) {}
    Room(const Room&) = delete;
    Room& operator=(const Room&) = delete;

    /// For at most theMost.
    void need(std::size_t size)
    {
        if (static_cast<std::size_t>(myRoom + theSize - myAt) < size) flush();
    }
    /// After need() only.
    char* at() const { return myAt; }
    void moveTo(char* at) { myAt = at; }
    void put(char letter) { *myAt++ = letter; }
    // In blocks that overlap: most are short, and a call or a string instruction takes longer.
    void put(const char* letters, std::size_t size)
    {
        if (size >= 16)
        {
            for (std::size_t i = 0; i + 16 < size; i += 16) std::memcpy(myAt + i, letters + i, 16);
            std::memcpy(myAt + size - 16, letters + size - 16, 16);
        }
        else if (size >= 8)
            putTwice<8>(letters, size);
        else if (size >= 4)
            putTwice<4>(letters, size);
        else
            for (std::size_t i = 0; i < size; ++i) myAt[i] = letters[i];
        myAt += size;
    }
    void add(std::string_view text)
    {
        for (; text.size() > theMost; text.remove_prefix(theMost))
        {
            need(theMost);
            put(text.data(), theMost);
        }
        need(text.size() + 1);
        put(text.data(), text.size());
    }
    char last() const { return myAt[-1]; }
    /// Turns a comma at the end into this letter, or adds it.
    void close(char letter)
    {
        need(2);
        if (last() == ',')
            myAt[-1] = letter;
        else
            put(letter);
        put(',');
    }
    void dropLast() { --myAt; }
    void finish() { myText.append(myRoom, static_cast<std::size_t>(myAt - myRoom)); }

private:
    template <std::size_t size>
    void putTwice(const char* letters, std::size_t whole)
    {
        std::memcpy(myAt, letters, size);
        std::memcpy(myAt + whole - size, letters + whole - size, size);
    }

    static constexpr std::size_t theMost = 1024;
    static constexpr std::size_t theSize = 4096;

    // The last letter stays, as it may be changed.
    void flush()
    {
        if (myAt == myRoom) return;
        myText.append(myRoom, static_cast<std::size_t>(myAt - myRoom) - 1);
        myRoom[0] = myAt[-1];
        myAt = myRoom + 1;
    }

    std::string& myText;
    char* myAt = myRoom;
    // Not set to zero.
    char myRoom[theSize];
};

/// Every value is followed by a comma, which the end of its record or array takes away.
class JsonSink
{
public:
    JsonSink(const Plan& plan, const JsonOptions& options, Room& room)
        : myPlan(plan), myOptions(options), myRoom(room)
    {
    }

    bool record(const Node& node, const std::uint8_t* octets)
    {
        if (node.scriptCount == 0) return false;
        const ScriptStep* step = myPlan.script.data() + node.script;
        for (;; ++step)
        {
            myRoom.add(myPlan.text(step->before));
            if (step->node == theNone) break;
            number(myPlan.nodes[step->node], octets + step->offset);
            myRoom.dropLast();
        }
        myRoom.put(',');
        return true;
    }

    void beginRecord(const Node&) { open('{'); }
    void endRecord() { myRoom.close('}'); }
    void beginArray(std::size_t) { open('['); }
    void endArray() { myRoom.close(']'); }
    void element() {}
    void field(const Part& part) { myRoom.add(myPlan.text(part.key)); }

    void number(const Node& node, const std::uint8_t* octets)
    {
        constexpr std::size_t theLongest = 64;
        myRoom.need(theLongest);
        if (node.scalar == Scalar::floating) return floating(node, octets);
        const std::int64_t number = loadInteger(node, octets);
        if (node.table != theNone) return enumerated(node, number);
        integer(node, number);
        myRoom.put(',');
    }

    void latin1(const std::uint8_t* octets, std::size_t count)
    {
        open('"');
        for (std::size_t i = 0; i < count; ++i)
        {
            if (i % theChunk == 0) myRoom.need(theChunk * theLongestUnit);
            unit(octets[i]);
        }
        endText();
    }

    void utf16(const Node& element, const std::uint8_t* octets, std::size_t count)
    {
        open('"');
        const auto load = [&](std::size_t i)
        { return static_cast<std::uint32_t>(loadInteger(element, octets + 2 * i) & 0xFFFF); };
        for (std::size_t i = 0; i < count; ++i)
        {
            myRoom.need(theLongestUnit);
            const std::uint32_t first = load(i);
            const std::uint32_t second = i + 1 < count ? load(i + 1) : 0;
            if ((first & 0xFC00) == 0xD800 && (second & 0xFC00) == 0xDC00)
            {
                unit(0x10000 + ((first & 0x3FF) << 10) + (second & 0x3FF));
                ++i;
            }
            else
                unit(first);
        }
        endText();
    }

    void hexadecimal(const std::uint8_t* octets, std::size_t count)
    {
        open('"');
        for (; count > theChunk; octets += theChunk, count -= theChunk)
        {
            myRoom.need(2 * theChunk);
            digits(octets, theChunk);
        }
        myRoom.need(2 * count);
        digits(octets, count);
        endText();
    }

    // What stands after the first zero is told, unless it is what encoding fills in.
    void text(const std::uint8_t* octets, std::size_t count, bool isFilled)
    {
        const std::size_t size = textSize(octets, count);
        const auto isZero = [](std::uint8_t octet) { return octet == 0; };
        if (size == count || (isFilled && std::all_of(octets + size, octets + count, isZero)))
            return latin1(octets, size);
        myRoom.add("{\"text\":");
        latin1(octets, size);
        myRoom.add("\"rest\":");
        hexadecimal(octets + size + 1, count - size - 1);
        myRoom.close('}');
    }

    void kept(const std::uint8_t* octets, std::size_t count)
    {
        myRoom.add("\"octets\":");
        hexadecimal(octets, count);
    }

private:
    /// Characters or octets for which there is room at once, and the most octets of a character.
    static constexpr std::size_t theChunk = 128;
    static constexpr std::size_t theLongestUnit = 6;

    void open(char letter)
    {
        myRoom.need(1);
        myRoom.put(letter);
    }

    void endText()
    {
        myRoom.need(2);
        myRoom.put("\",", 2);
    }

    void digits(const std::uint8_t* octets, std::size_t count)
    {
        char* at = myRoom.at();
        for (std::size_t i = 0; i < count; ++i)
        {
            *at++ = theHexadecimal[octets[i] >> 4];
            *at++ = theHexadecimal[octets[i] & 15];
        }
        myRoom.moveTo(at);
    }

    void integer(const Node& node, std::int64_t number)
    {
        constexpr std::uint64_t theExact = std::uint64_t{1} << 53;
        const bool isUnsigned = node.scalar == Scalar::unsignedInteger;
        const auto bits = static_cast<std::uint64_t>(number);
        const std::uint64_t size = isUnsigned || number >= 0 ? bits : ~bits + 1;
        const bool isText = myOptions.largeIntegersAsText && size > theExact;
        if (isText) myRoom.put('"');
        constexpr std::size_t theLongest = 24;
        char* const at = myRoom.at();
        myRoom.moveTo(isUnsigned ? std::to_chars(at, at + theLongest, bits).ptr
                                 : std::to_chars(at, at + theLongest, number).ptr);
        if (isText) myRoom.put('"');
    }

    void enumerated(const Node& node, std::int64_t number)
    {
        const Enumeration& table = myPlan.enumerations[node.table];
        const std::uint32_t entry = Plan::findEntry(table, number);
        if (entry == theNone)
        {
            integer(node, number);
            myRoom.put(',');
            return;
        }
        const Enumeration::Entry& found = table.entries[entry];
        const std::string_view quoted = myPlan.text(found.quoted);
        if (found.isFirst)
            myRoom.add(quoted);
        else
        {
            constexpr std::size_t theLongest = 64;
            myRoom.put("{\"name\":", 8);
            myRoom.add(quoted);
            myRoom.need(theLongest);
            myRoom.put(",\"value\":", 9);
            integer(node, number);
            myRoom.put('}');
        }
        myRoom.put(',');
    }

    void floating(const Node& node, const std::uint8_t* octets)
    {
        constexpr std::size_t theLongest = 40;
        char* const at = myRoom.at();
        const double number = loadNumber(node, octets);
        if (!std::isfinite(number)) return special(node, octets, number);
        myRoom.moveTo(node.size == 4
                          ? std::to_chars(at, at + theLongest, static_cast<float>(number)).ptr
                          : std::to_chars(at, at + theLongest, number).ptr);
        myRoom.put(',');
    }

    void special(const Node& node, const std::uint8_t* octets, double number)
    {
        if (std::isinf(number))
            return myRoom.put(number < 0 ? "\"-Infinity\"," : "\"Infinity\",",
                              number < 0 ? 12 : 11);
        const std::uint8_t thePlain[] = {
            0x7F, static_cast<std::uint8_t>(node.size == 4 ? 0xC0 : 0xF8), 0, 0, 0, 0, 0, 0};
        bool isPlain = true;
        for (std::uint32_t i = 0; i < node.size; ++i)
            isPlain = isPlain && octets[node.isLittleEndian ? node.size - 1 - i : i] == thePlain[i];
        if (isPlain) return myRoom.put("\"NaN\",", 6);
        myRoom.put("{\"nan\":\"", 8);
        digits(octets, node.size);
        myRoom.put("\"},", 3);
    }

    void escaped(std::uint32_t code)
    {
        myRoom.put("\\u", 2);
        for (unsigned shift = 16; shift > 0; shift -= 4)
            myRoom.put(theHexadecimal[code >> (shift - 4) & 15]);
    }

    // One character; room for six octets is there.
    void unit(std::uint32_t code)
    {
        const auto six = [](std::uint32_t bits) { return static_cast<char>(0x80 | (bits & 0x3F)); };
        if (code >= 0x20 && code < 0x80 && code != '"' && code != '\\')
            myRoom.put(static_cast<char>(code));
        else if (code == '"' || code == '\\')
        {
            myRoom.put('\\');
            myRoom.put(static_cast<char>(code));
        }
        else if (code < 0x20 || (code & 0xFFFFF800) == 0xD800)
            escaped(code);
        else if (code < 0x800)
        {
            myRoom.put(static_cast<char>(0xC0 | code >> 6));
            myRoom.put(six(code));
        }
        else if (code < 0x10000)
        {
            myRoom.put(static_cast<char>(0xE0 | code >> 12));
            myRoom.put(six(code >> 6));
            myRoom.put(six(code));
        }
        else
        {
            myRoom.put(static_cast<char>(0xF0 | code >> 18));
            myRoom.put(six(code >> 12));
            myRoom.put(six(code >> 6));
            myRoom.put(six(code));
        }
    }

    const Plan& myPlan;
    const JsonOptions& myOptions;
    Room& myRoom;
};

}  // namespace

void appendJsonOf(const Plan& plan, const std::uint8_t* octets, const Index& index,
                  const Spot& spot, std::string& text, const JsonOptions& options)
{
    if (!spot.isThere()) return;
    Room room(text);
    JsonSink sink(plan, options, room);
    Walk<JsonSink>(plan, octets, index, sink).piece(spot);
    room.dropLast();
    room.finish();
}

}  // namespace omt
