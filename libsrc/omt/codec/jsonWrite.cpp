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

/// Room at the end of a text, written through a pointer.
class Room
{
public:
    explicit Room(std::string& text) : myText(text), mySize(text.size())
    {
        constexpr std::size_t theFirst = 1024;
        myText.resize(std::max(mySize + theFirst, std::min(myText.capacity(), 2 * mySize)));
        set();
    }
    ~Room() { myText.resize(static_cast<std::size_t>(myAt - myText.data())); }
    Room(const Room&) = delete;
    Room& operator=(const Room&) = delete;

    void need(std::size_t size)
    {
        if (static_cast<std::size_t>(myEnd - myAt) >= size) return;
        mySize = static_cast<std::size_t>(myAt - myText.data());
        myText.resize(mySize * 2 + size);
        set();
    }
    /// After need() only.
    char* at() const { return myAt; }
    void moveTo(char* at) { myAt = at; }
    void put(char letter) { *myAt++ = letter; }
    void put(const char* letters, std::size_t size)
    {
        std::memcpy(myAt, letters, size);
        myAt += size;
    }
    void add(std::string_view text)
    {
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

private:
    void set()
    {
        myAt = myText.data() + mySize;
        myEnd = myText.data() + myText.size();
    }
    std::string& myText;
    std::size_t mySize;
    char* myAt = nullptr;
    char* myEnd = nullptr;
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
        constexpr std::size_t theLongest = 6;
        myRoom.need(count * theLongest + 3);
        myRoom.put('"');
        for (std::size_t i = 0; i < count; ++i) unit(octets[i]);
        myRoom.put("\",", 2);
    }

    void utf16(const Node& element, const std::uint8_t* octets, std::size_t count)
    {
        constexpr std::size_t theLongest = 6;
        myRoom.need(count * theLongest + 3);
        myRoom.put('"');
        const auto load = [&](std::size_t i)
        { return static_cast<std::uint32_t>(loadInteger(element, octets + 2 * i) & 0xFFFF); };
        for (std::size_t i = 0; i < count; ++i)
        {
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
        myRoom.put("\",", 2);
    }

    void hexadecimal(const std::uint8_t* octets, std::size_t count)
    {
        myRoom.need(2 * count + 3);
        myRoom.put('"');
        digits(octets, count);
        myRoom.put("\",", 2);
    }

    void kept(const std::uint8_t* octets, std::size_t count)
    {
        myRoom.add("\"octets\":");
        hexadecimal(octets, count);
    }

private:
    void open(char letter)
    {
        myRoom.need(1);
        myRoom.put(letter);
    }

    void digits(const std::uint8_t* octets, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i)
        {
            myRoom.put(theHexadecimal[octets[i] >> 4]);
            myRoom.put(theHexadecimal[octets[i] & 15]);
        }
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
        myRoom.need(quoted.size() + 64);
        if (found.isFirst)
            myRoom.put(quoted.data(), quoted.size());
        else
        {
            myRoom.put("{\"name\":", 8);
            myRoom.put(quoted.data(), quoted.size());
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
}

}  // namespace omt
