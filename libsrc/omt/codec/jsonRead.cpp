// SPDX-License-Identifier: Apache-2.0
// Values from JSON: one pass over the text writes octets; only fields that stand out of order are
// passed over first and read when their turn comes.
#include "omt/codec/typeText.h"
#include "omt/codec/valueParts.h"

#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <limits>

namespace omt
{

namespace
{

using Buffer = std::vector<std::uint8_t>;

int digitOf(char letter)
{
    if (letter >= '0' && letter <= '9') return letter - '0';
    if (letter >= 'a' && letter <= 'f') return letter - 'a' + 10;
    if (letter >= 'A' && letter <= 'F') return letter - 'A' + 10;
    return -1;
}

/// The parts of JSON: blanks, words, texts, and passing over a value.
class JsonText
{
public:
    explicit JsonText(std::string_view text)
        : myStart(text.data()), myAt(text.data()), myEnd(text.data() + text.size())
    {
    }

    const char* place() const { return myAt; }
    void goTo(const char* place) { myAt = place; }
    const char* end() const { return myEnd; }
    /// Whether a number or word may end before this letter.
    bool isEndOfWord(const char* at) const
    {
        return at == myEnd || *at == ',' || *at == '}' || *at == ']' || *at == ' ' || *at == '\n' ||
               *at == '\r' || *at == '\t' || *at == ':';
    }

    /// The next letter that is no blank; 0 at the end.
    char peek()
    {
        while (myAt != myEnd && (*myAt == ' ' || *myAt == '\n' || *myAt == '\t' || *myAt == '\r'))
            ++myAt;
        return myAt == myEnd ? '\0' : *myAt;
    }
    bool takes(char letter)
    {
        if (peek() != letter || myAt == myEnd) return false;
        ++myAt;
        return true;
    }
    /// Exactly this, without blanks before it.
    bool takes(std::string_view text)
    {
        if (static_cast<std::size_t>(myEnd - myAt) < text.size() ||
            std::memcmp(myAt, text.data(), text.size()) != 0)
            return false;
        myAt += text.size();
        return true;
    }
    bool isAtEnd() { return peek() == '\0' && myAt == myEnd; }

    /// A text without its quotes, escapes as they stand.
    bool raw(std::string_view& text, bool& hasEscapes)
    {
        hasEscapes = false;
        if (!takes('"')) return false;
        const char* const first = myAt;
        for (; myAt != myEnd && *myAt != '"'; ++myAt)
        {
            if (static_cast<unsigned char>(*myAt) < 0x20) return false;
            if (*myAt != '\\') continue;
            hasEscapes = true;
            if (++myAt == myEnd) return false;
        }
        if (myAt == myEnd) return false;
        text = {first, static_cast<std::size_t>(myAt++ - first)};
        return true;
    }

    /// A number or word, up to what cannot belong to it.
    std::string_view word()
    {
        peek();
        const char* const first = myAt;
        while (!isEndOfWord(myAt)) ++myAt;
        return {first, static_cast<std::size_t>(myAt - first)};
    }

    /// Passes over a value; what it holds is checked when it is read.
    bool skip()
    {
        std::size_t depth = 0;
        do
        {
            const char letter = peek();
            std::string_view text;
            bool hasEscapes = false;
            if (letter == '{' || letter == '[')
            {
                ++myAt;
                ++depth;
            }
            else if (letter == '}' || letter == ']')
            {
                if (depth == 0) return false;
                ++myAt;
                --depth;
            }
            else if (letter == '"')
            {
                if (!raw(text, hasEscapes)) return false;
            }
            else if (letter == ',' || letter == ':')
            {
                if (depth == 0) return false;
                ++myAt;
                continue;
            }
            else if (word().empty())
                return false;
        } while (depth > 0);
        return true;
    }

    std::pair<std::size_t, std::size_t> lineAndColumn() const
    {
        std::size_t line = 1;
        const char* start = myStart;
        for (const char* at = myStart; at != myAt; ++at)
            if (*at == '\n')
            {
                ++line;
                start = at + 1;
            }
        return {line, static_cast<std::size_t>(myAt - start) + 1};
    }

private:
    const char* myStart;
    const char* myAt;
    const char* myEnd;
};

/// The characters of a text of JSON, one code point after the other.
class Letters
{
public:
    explicit Letters(std::string_view raw) : myText(raw) {}
    bool isAtEnd() const { return myText.empty(); }

    /// False where there is no UTF-8, or an escape that JSON does not have. Halves of a pair of
    /// surrogates come one by one where they were escaped.
    bool next(std::uint32_t& code)
    {
        const auto first = static_cast<unsigned char>(myText.front());
        if (first == '\\') return escape(code);
        if (first < 0x80)
        {
            code = first;
            myText.remove_prefix(1);
            return true;
        }
        const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
        if (first < 0xC2 || first > 0xF4 || myText.size() < size) return false;
        code = first & (0x7FU >> size);
        for (std::size_t i = 1; i < size; ++i)
        {
            const auto letter = static_cast<unsigned char>(myText[i]);
            if ((letter & 0xC0) != 0x80) return false;
            code = code << 6 | (letter & 0x3FU);
        }
        myText.remove_prefix(size);
        constexpr std::uint32_t theLeast[] = {0, 0, 0x80, 0x800, 0x10000};
        return code >= theLeast[size] && code <= 0x10FFFF && (code & 0xFFFFF800) != 0xD800;
    }

private:
    bool escape(std::uint32_t& code)
    {
        constexpr std::string_view theLetters = "\"\\/bfnrt";
        constexpr std::string_view theMeanings = "\"\\/\b\f\n\r\t";
        if (myText.size() < 2) return false;
        const char letter = myText[1];
        myText.remove_prefix(2);
        if (const std::size_t place = theLetters.find(letter); place != std::string_view::npos)
        {
            code = static_cast<unsigned char>(theMeanings[place]);
            return true;
        }
        if (letter != 'u' || myText.size() < 4) return false;
        code = 0;
        for (std::size_t i = 0; i < 4; ++i)
        {
            const int digit = digitOf(myText[i]);
            if (digit < 0) return false;
            code = code << 4 | static_cast<std::uint32_t>(digit);
        }
        myText.remove_prefix(4);
        return true;
    }

    std::string_view myText;
};

void appendUtf8(std::string& text, std::uint32_t code)
{
    const auto add = [&text](std::uint32_t bits) { text += static_cast<char>(bits); };
    if (code < 0x80) return add(code);
    if (code < 0x800)
        add(0xC0 | code >> 6);
    else if (code < 0x10000)
    {
        add(0xE0 | code >> 12);
        add(0x80 | (code >> 6 & 0x3F));
    }
    else
    {
        add(0xF0 | code >> 18);
        add(0x80 | (code >> 12 & 0x3F));
        add(0x80 | (code >> 6 & 0x3F));
    }
    add(0x80 | (code & 0x3F));
}

/// Reads the value of a node and writes its octets.
class JsonReader
{
public:
    JsonReader(const Plan& plan, std::string_view json, Buffer& octets)
        : myPlan(plan), myText(json), myOctets(octets), myBase(octets.size())
    {
    }

    std::optional<ValueError> run(std::uint32_t node)
    {
        if (piece(node, 0) && !myText.isAtEnd()) failHere("something follows the value", 0);
        return std::move(myError);
    }

private:
    struct Frame
    {
        std::uint32_t node;
        std::uint32_t index;
    };

    bool fail(const std::string& what, std::uint32_t depth)
    {
        if (myError) return false;
        std::string path;
        for (std::uint32_t i = 0; i < depth; ++i)
        {
            const Node& node = myPlan.nodes[myFrames[i].node];
            if (node.form == Form::array)
                path += '[' + std::to_string(myFrames[i].index) + ']';
            else
            {
                if (!path.empty()) path += '.';
                path += myPlan.text(myPlan.parts[node.first + myFrames[i].index].name);
            }
        }
        if (myToken) myText.goTo(myToken);
        const auto [line, column] = myText.lineAndColumn();
        myError = ValueError{what, path, line, column};
        return false;
    }

    // The same at the letter that is reached, and not where the value or key begins.
    bool failHere(const std::string& what, std::uint32_t depth)
    {
        myToken = nullptr;
        return fail(what, depth);
    }

    void pad(std::size_t start, std::uint32_t boundary)
    {
        myOctets.resize(start + aligned(myOctets.size() - start, boundary));
    }

    std::uint8_t* grow(std::size_t size)
    {
        myOctets.resize(myOctets.size() + size);
        return myOctets.data() + myOctets.size() - size;
    }

    static void store(std::uint8_t* place, std::uint64_t bits, std::uint32_t size, bool isLittle)
    {
        for (std::uint32_t i = 0; i < size; ++i)
            place[isLittle ? i : size - 1 - i] = static_cast<std::uint8_t>(bits >> 8 * i);
    }
    void store(const Node& node, std::uint64_t bits)
    {
        if (node.size == 8 && !node.isLittleEndian)
        {
            const std::uint64_t swapped = __builtin_bswap64(bits);
            std::memcpy(grow(8), &swapped, 8);
        }
        else
            store(grow(node.size), bits, node.size, node.isLittleEndian);
    }

    bool piece(std::uint32_t id, std::uint32_t depth)
    {
        myText.peek();
        myToken = myText.place();
        if (depth >= theDeepest) return fail("values are nested deeper than 200", depth);
        const Node& node = myPlan.nodes[id];
        switch (node.form)
        {
            case Form::number:
                return number(node, depth);
            case Form::record:
                return record(id, depth);
            case Form::array:
                return array(id, depth);
            case Form::variant:
                return variant(id, depth);
            case Form::octets:
            {
                std::size_t count = 0;
                return hexadecimal(count, depth);
            }
        }
        return false;
    }

    // Numbers ----------------------------------------------------------------------------------

    bool number(const Node& node, std::uint32_t depth)
    {
        if (node.scalar == Scalar::floating) return floating(node, depth);
        const char first = myText.peek();
        if (first == '{') return namedNumber(node, depth);
        if (first != '"') return plainInteger(node, depth);
        std::string_view text;
        bool hasEscapes = false;
        if (!myText.raw(text, hasEscapes)) return fail("a text that does not end", depth);
        const std::string_view plain = unescaped(text, hasEscapes);
        if (node.table == theNone) return integer(node, plain, depth);
        const Enumeration& table = myPlan.enumerations[node.table];
        const std::uint32_t entry = myPlan.findEntry(table, plain);
        if (entry == theNone)
            return fail("\"" + std::string(plain) + "\" is no enumerator of " +
                            std::string(myPlan.text(node.name)),
                        depth);
        return ranged(node, table.entries[entry].number, depth);
    }

    // Of a name that has several numbers.
    bool namedNumber(const Node& node, std::uint32_t depth)
    {
        myText.takes('{');
        std::string_view name;
        std::string_view value;
        do
        {
            std::string_view key;
            bool hasEscapes = false;
            if (!myText.raw(key, hasEscapes) || !myText.takes(':')) return fail("no key", depth);
            if (key == "name" && myText.raw(name, hasEscapes)) continue;
            if (key != "value") return fail("\"name\" and \"value\" are expected", depth);
            value = myText.word();
        } while (myText.takes(','));
        if (!myText.takes('}')) return failHere("a \"}\" is missing", depth);
        if (node.table == theNone) return fail("a number is expected", depth);
        const std::optional<std::int64_t> number = wholeNumber(value);
        const Enumeration& table = myPlan.enumerations[node.table];
        for (std::uint32_t i = myPlan.findEntry(table, name); i < table.entries.size(); ++i)
        {
            if (myPlan.text(table.entries[i].name) != name) break;
            if (number && table.entries[i].number == *number) return integer(node, value, depth);
        }
        return fail("\"" + std::string(name) + "\" does not have this number", depth);
    }

    // The usual short number; anything else the slow way, which says what is wrong.
    bool plainInteger(const Node& node, std::uint32_t depth)
    {
        std::int64_t number = 0;
        const char* const first = myText.place();
        const auto [stop, error] = std::from_chars(first, myText.end(), number);
        const bool isShort = error == std::errc() && myText.isEndOfWord(stop) && *first != '-' &&
                             (*first != '0' || stop == first + 1);
        if (!isShort) return integer(node, myText.word(), depth);
        myText.goTo(stop);
        return ranged(node, number, depth);
    }

    bool integer(const Node& node, std::string_view text, std::uint32_t depth)
    {
        const char* const end = text.data() + text.size();
        std::uint64_t bits = 0;
        std::int64_t number = 0;
        const bool isUnsigned = node.scalar == Scalar::unsignedInteger;
        const auto [stop, error] = isUnsigned ? std::from_chars(text.data(), end, bits)
                                              : std::from_chars(text.data(), end, number);
        const std::size_t sign = !text.empty() && text.front() == '-' ? 1 : 0;
        const bool isPadded = text.size() > sign + 1 && text[sign] == '0';
        const bool isOutside =
            error == std::errc::result_out_of_range ||
            (isUnsigned && sign == 1 && text.size() > 1 && digitOf(text[1]) >= 0);
        if (isOutside) return outside(node, text, depth);
        if (text.empty() || error != std::errc() || stop != end || isPadded)
            return fail("\"" + std::string(text) + "\" is no whole number", depth);
        return ranged(node, isUnsigned ? static_cast<std::int64_t>(bits) : number, depth);
    }

    bool outside(const Node& node, std::string_view text, std::uint32_t depth)
    {
        return fail(
            std::string(text) + " is out of range of " + std::string(myPlan.text(node.name)),
            depth);
    }

    bool ranged(const Node& node, std::int64_t number, std::uint32_t depth)
    {
        const unsigned bits = 8 * node.size;
        const bool isUnsigned = node.scalar == Scalar::unsignedInteger;
        const bool isIn =
            bits == 64 || (isUnsigned ? static_cast<std::uint64_t>(number) >> bits == 0
                                      : number >> (bits - 1) == 0 || number >> (bits - 1) == -1);
        if (!isIn)
            return outside(node,
                           isUnsigned ? std::to_string(static_cast<std::uint64_t>(number))
                                      : std::to_string(number),
                           depth);
        store(node, static_cast<std::uint64_t>(number));
        return true;
    }

    template <typename T, typename Bits>
    bool finite(const Node& node, std::uint32_t depth)
    {
        T value = 0;
        const char* const first = myText.place();
        const auto [stop, error] = std::from_chars(first, myText.end(), value);
        // No "inf" or ".5", which from_chars() takes.
        const char* const digit = first != myText.end() && *first == '-' ? first + 1 : first;
        const bool isNumber = digit != myText.end() && *digit >= '0' && *digit <= '9';
        if (!isNumber || error == std::errc::invalid_argument || !myText.isEndOfWord(stop))
            return fail("\"" + std::string(myText.word()) + "\" is no number", depth);
        if (error != std::errc()) return outside(node, myText.word(), depth);
        myText.goTo(stop);
        store(node, std::bit_cast<Bits>(value));
        return true;
    }

    bool floating(const Node& node, std::uint32_t depth)
    {
        const char first = myText.peek();
        if (first == '{') return nan(node, depth);
        if (first != '"')
            return node.size == 4 ? finite<float, std::uint32_t>(node, depth)
                                  : finite<double, std::uint64_t>(node, depth);
        std::string_view text;
        bool hasEscapes = false;
        if (!myText.raw(text, hasEscapes)) return fail("a text that does not end", depth);
        const bool isLong = node.size == 8;
        const std::uint64_t infinity = isLong ? 0x7FF0000000000000 : 0x7F800000;
        const std::uint64_t sign = isLong ? 0x8000000000000000 : 0x80000000;
        if (text == "NaN")
            store(node, isLong ? 0x7FF8000000000000 : 0x7FC00000);
        else if (text == "Infinity")
            store(node, infinity);
        else if (text == "-Infinity")
            store(node, infinity | sign);
        else
            return fail("\"" + std::string(text) + "\" is no number", depth);
        return true;
    }

    bool nan(const Node& node, std::uint32_t depth)
    {
        std::string_view key;
        bool hasEscapes = false;
        myText.takes('{');
        if (!myText.raw(key, hasEscapes) || key != "nan" || !myText.takes(':'))
            return fail("a number is expected", depth);
        std::size_t count = 0;
        if (!hexadecimal(count, depth)) return false;
        if (count != node.size) return fail("these are not the octets of a number", depth);
        const double number = loadNumber(node, myOctets.data() + myOctets.size() - node.size);
        if (number == number) return fail("these are not the octets of a NaN", depth);
        return myText.takes('}') || failHere("a \"}\" is missing", depth);
    }

    // Texts --------------------------------------------------------------------------------------

    std::string_view unescaped(std::string_view raw, bool hasEscapes)
    {
        if (!hasEscapes) return raw;
        myScratch.clear();
        std::uint32_t code = 0;
        for (Letters letters(raw); !letters.isAtEnd() && letters.next(code);)
            appendUtf8(myScratch, code);
        return myScratch;
    }

    bool hexadecimal(std::size_t& count, std::uint32_t depth)
    {
        std::string_view text;
        bool hasEscapes = false;
        if (!myText.raw(text, hasEscapes)) return fail("hexadecimal text is expected", depth);
        if (text.size() % 2 != 0) return fail("half an octet", depth);
        count = text.size() / 2;
        std::uint8_t* const place = grow(count);
        for (std::size_t i = 0; i < count; ++i)
        {
            const int high = digitOf(text[2 * i]);
            const int low = digitOf(text[2 * i + 1]);
            if (high < 0 || low < 0) return fail("no hexadecimal digit", depth);
            place[i] = static_cast<std::uint8_t>(high << 4 | low);
        }
        return true;
    }

    bool characters(const Node& node, std::size_t& count, std::uint32_t depth)
    {
        std::string_view text;
        bool hasEscapes = false;
        if (!myText.raw(text, hasEscapes)) return fail("a text is expected", depth);
        const Node& element = myPlan.nodes[node.element];
        std::uint32_t code = 0;
        for (Letters letters(text); !letters.isAtEnd(); ++count)
        {
            if (!letters.next(code)) return fail("a text that is no UTF-8", depth);
            if (node.look != Look::utf16 && code > 0xFF)
                return fail("a character that no octet holds", depth);
            if (code < 0x10000)
            {
                store(element, code);
                continue;
            }
            store(element, 0xD800 + ((code - 0x10000) >> 10));
            store(element, 0xDC00 + (code & 0x3FF));
            ++count;
        }
        return true;
    }

    // Text up to the first zero, and what stands after it if that is given; an array of a fixed
    // size is filled with zeros.
    bool hintedText(const Node& node, std::size_t& count, std::uint32_t depth)
    {
        const std::size_t start = myOctets.size();
        if (myText.peek() != '{')
        {
            if (!lettersOf(node, count, depth)) return false;
        }
        else if (!textAndRest(node, count, depth))
            return false;
        if (node.extent != Extent::fixed) return true;
        if (count > node.count)
            return fail(std::to_string(count) + " octets, and there is room for " +
                            std::to_string(node.count),
                        depth);
        myOctets.resize(start + node.count);
        count = node.count;
        return true;
    }

    bool lettersOf(const Node& node, std::size_t& count, std::uint32_t depth)
    {
        const std::size_t start = myOctets.size();
        if (!characters(node, count, depth)) return false;
        return textSize(myOctets.data() + start, count) == count ||
               fail("a zero ends a text", depth);
    }

    bool textAndRest(const Node& node, std::size_t& count, std::uint32_t depth)
    {
        std::size_t rest = 0;
        bool hasText = false;
        bool hasRest = false;
        const std::size_t start = myOctets.size();
        myText.takes('{');
        do
        {
            std::string_view key;
            bool hasEscapes = false;
            myText.peek();
            if (!myText.raw(key, hasEscapes) || !myText.takes(':')) return fail("no key", depth);
            myText.peek();
            const bool isText = key == "text";
            bool& isGiven = isText ? hasText : hasRest;
            if ((!isText && key != "rest") || isGiven || (!isText && !hasText))
                return fail("\"text\" and then \"rest\" are expected", depth);
            isGiven = true;
            if (isText ? !lettersOf(node, count, depth) : (grow(1), !hexadecimal(rest, depth)))
                return false;
        } while (myText.takes(','));
        if (!myText.takes('}')) return failHere("a \"}\" is missing", depth);
        if (!hasText) return fail("\"text\" is missing", depth);
        count = myOctets.size() - start;
        return true;
    }

    // Records
    // --------------------------------------------------------------------------------------

    bool key(std::string_view& name, std::uint32_t depth)
    {
        bool hasEscapes = false;
        myText.peek();
        myToken = myText.place();
        if (!myText.raw(name, hasEscapes)) return fail("the name of a field is expected", depth);
        name = unescaped(name, hasEscapes);
        return myText.takes(':') || failHere("a \":\" is missing", depth);
    }

    /// The fields of one record while it is read.
    struct Fields
    {
        const Node& node;
        std::size_t start;
        std::size_t slots;
        std::uint32_t next = 0;
    };

    // Reads a record as it is written, letter for letter; else nothing happens.
    bool script(const Node& node, std::uint32_t depth)
    {
        if (node.scriptCount == 0 || !node.isFixed || depth + node.height > theDeepest)
            return false;
        const char* const place = myText.place();
        const std::size_t start = myOctets.size();
        const ScriptStep* step = myPlan.script.data() + node.script;
        for (; myText.takes(myPlan.text(step->before)); ++step)
        {
            if (step->leaf == Leaf::end) return true;
            myOctets.resize(start + step->offset);
            if (step->leaf == Leaf::text || !number(myPlan.nodes[step->node], depth)) break;
        }
        myError.reset();
        myText.goTo(place);
        myOctets.resize(start);
        return false;
    }

    bool record(std::uint32_t id, std::uint32_t depth)
    {
        const Node& node = myPlan.nodes[id];
        if (script(node, depth)) return true;
        Fields fields{node, myOctets.size(), mySlots.size()};
        mySlots.resize(fields.slots + node.parts);
        myLooked.resize(fields.slots);
        if (node.isLooking) myLooked.resize(fields.slots + node.parts);
        myFrames[depth].node = id;
        if (!myText.takes('{')) return fail("a record is expected", depth);
        bool isWhole = myText.takes('}');
        while (!isWhole)
        {
            std::string_view name;
            if (!key(name, depth)) return false;
            std::uint32_t i = fields.next;
            if (i >= node.parts || myPlan.text(myPlan.parts[node.first + i].name) != name)
                i = myPlan.findPart(node, name);
            if (i == theNone)
                return fail("no field is called \"" + std::string(name) + "\"", depth);
            if (mySlots[fields.slots + i] != nullptr)
                return fail("\"" + std::string(name) + "\" stands twice", depth);
            mySlots[fields.slots + i] = myText.place();
            if (i == fields.next)
            {
                if (!field(fields, depth) || !passAbsent(fields, depth)) return false;
            }
            else if (!myText.skip())
                return failHere("no value", depth);
            isWhole = !myText.takes(',');
            if (isWhole && !myText.takes('}'))
                return failHere("a \",\" or \"}\" is missing", depth);
        }
        if (!finish(fields, depth)) return false;
        mySlots.resize(fields.slots);
        return true;
    }

    bool isAbsent(const Fields& fields, const Part& part) const
    {
        if (part.decider == theNone) return false;
        const Looked& decider = myLooked[fields.slots + part.decider];
        return !decider.isThere || decider.number != part.decidingNumber;
    }

    // Goes past fields that other ones say are not there.
    bool passAbsent(Fields& fields, std::uint32_t depth)
    {
        for (; fields.next < fields.node.parts; ++fields.next)
        {
            const Part& part = myPlan.parts[fields.node.first + fields.next];
            if (!isAbsent(fields, part)) return true;
            if (mySlots[fields.slots + fields.next] != nullptr)
                return fail("\"" + std::string(myPlan.text(part.name)) +
                                "\" does not go with the fields before it",
                            depth);
        }
        return true;
    }

    // Reads the next field, which begins here.
    bool field(Fields& fields, std::uint32_t depth)
    {
        const std::uint32_t i = fields.next++;
        const Part& part = myPlan.parts[fields.node.first + i];
        if (isAbsent(fields, part))
            return fail("\"" + std::string(myPlan.text(part.name)) +
                            "\" does not go with the fields before it",
                        depth);
        pad(fields.start - fields.node.phase, part.boundary);
        myFrames[depth].index = i;
        const std::size_t start = myOctets.size();
        if (!piece(part.node, depth + 1)) return false;
        const Node& node = myPlan.nodes[part.node];
        if (part.isLookedAt && node.form == Form::number)
            myLooked[fields.slots + i] = {loadInteger(node, myOctets.data() + start), true};
        if (part.stepCount == 0 || node.form != Form::array) return true;
        const std::optional<std::int64_t> count =
            evaluate(myPlan, part, myLooked.data() + fields.slots);
        if (count && static_cast<std::uint64_t>(*count) == myCount) return true;
        return fail(std::to_string(myCount) + " elements, and other fields state " +
                        (count ? std::to_string(*count) : std::string("too many")),
                    depth + 1);
    }

    // Reads the fields that stood out of order.
    bool finish(Fields& fields, std::uint32_t depth)
    {
        const char* const end = myText.place();
        while (passAbsent(fields, depth) && fields.next < fields.node.parts)
        {
            const Part& part = myPlan.parts[fields.node.first + fields.next];
            const Node& node = myPlan.nodes[part.node];
            const char* const place = mySlots[fields.slots + fields.next];
            if (place != nullptr)
            {
                myText.goTo(place);
                if (!field(fields, depth)) return false;
                myText.goTo(end);
                continue;
            }
            if (node.form != Form::array || node.extent != Extent::padding)
                return failHere("\"" + std::string(myPlan.text(part.name)) + "\" is missing",
                                depth);
            ++fields.next;
            pad(fields.start - fields.node.phase, part.boundary);
            pad(myBase, node.count);
        }
        return !myError;
    }

    // Variant records ----------------------------------------------------------------------------

    bool variant(std::uint32_t id, std::uint32_t depth)
    {
        const Node& node = myPlan.nodes[id];
        const std::size_t start = myOctets.size();
        myFrames[depth] = {id, 0};
        if (!myText.takes('{')) return fail("a variant record is expected", depth);
        // Where the discriminant and the alternative stand, and which alternative it is.
        const char* discriminant = nullptr;
        const char* contents = nullptr;
        std::uint32_t given = theNothing;
        bool isWritten = false;
        for (bool isMore = !myText.takes('}'); isMore;)
        {
            std::string_view name;
            if (!key(name, depth)) return false;
            const std::uint32_t i = myPlan.findPart(node, name);
            if (i == theNone && name != "octets")
                return fail("no alternative is called \"" + std::string(name) + "\"", depth);
            const char*& place = i == 0 ? discriminant : contents;
            if (place != nullptr)
                return fail("\"" + std::string(name) + "\" is one too many", depth);
            place = myText.place();
            if (i != 0) given = i == theNone ? theUnknown : i;
            // In order, both are read at once.
            if (i == 0 && contents == nullptr)
            {
                if (!piece(node.element, depth + 1)) return false;
            }
            else if (i != 0 && discriminant != nullptr)
            {
                if (!body(node, start, given, depth)) return false;
                isWritten = true;
            }
            else if (!myText.skip())
                return failHere("no value", depth);
            isMore = myText.takes(',');
            if (!isMore && !myText.takes('}'))
                return failHere("a \",\" or \"}\" is missing", depth);
        }
        if (isWritten) return true;
        const char* const end = myText.place();
        if (discriminant == nullptr)
            return fail(
                "\"" + std::string(myPlan.text(myPlan.parts[node.first].name)) + "\" is missing",
                depth);
        if (contents != nullptr)
        {
            myText.goTo(discriminant);
            if (!piece(node.element, depth + 1)) return false;
            myText.goTo(contents);
            myToken = contents;
        }
        if (!body(node, start, given, depth)) return false;
        myText.goTo(end);
        return true;
    }

    // What follows the discriminant: the alternative begins here, if one is given.
    bool body(const Node& node, std::size_t start, std::uint32_t given, std::uint32_t depth)
    {
        const Node& discriminant = myPlan.nodes[node.element];
        const std::int64_t number = loadInteger(discriminant, myOctets.data() + start);
        const std::uint32_t wanted = myPlan.findAlternative(node, number);
        const bool isMeasured = node.length != Length::none;
        if (wanted == theUnknown && !isMeasured)
            return fail("no alternative for the number " + std::to_string(number), depth);
        const bool isKept = given == theUnknown && isMeasured && wanted >= theUnknown;
        const bool isLeftOut =
            given == theNothing && (wanted >= theUnknown || node.length == Length::extendable);
        if (given != wanted && !isKept && !isLeftOut)
            return fail(given == theNothing
                            ? "\"" + name(node, wanted) + "\" is missing"
                            : "another alternative goes with the discriminant" +
                                  (wanted < theUnknown ? ": \"" + name(node, wanted) + "\""
                                                       : std::string()),
                        depth);
        if (isMeasured) myOctets.resize(start + node.lengthOffset + 4);
        if (given == theNothing) return true;
        myOctets.resize(start + node.body);
        if (given < theUnknown)
        {
            myFrames[depth].index = given;
            if (!piece(myPlan.parts[node.first + given].node, depth + 1)) return false;
        }
        else if (std::size_t count = 0; !hexadecimal(count, depth))
            return false;
        const std::size_t size = myOctets.size() - start - node.body;
        if (isMeasured) store(myOctets.data() + start + node.lengthOffset, size, 4, false);
        if (node.length == Length::extendable && size == 0)
            myOctets.resize(start + node.lengthOffset + 4);
        return true;
    }

    std::string name(const Node& node, std::uint32_t part) const
    {
        return std::string(myPlan.text(myPlan.parts[node.first + part].name));
    }

    // Arrays
    // ---------------------------------------------------------------------------------------

    bool array(std::uint32_t id, std::uint32_t depth)
    {
        const Node& node = myPlan.nodes[id];
        const std::size_t start = myOctets.size();
        if (node.extent == Extent::counted) grow(4);
        myFrames[depth].node = id;
        std::size_t count = 0;
        const bool isWhole = node.look == Look::elements      ? elements(node, start, count, depth)
                             : node.look == Look::text        ? hintedText(node, count, depth)
                             : node.look == Look::hexadecimal ? hexadecimal(count, depth)
                                                              : characters(node, count, depth);
        if (!isWhole) return false;
        if (node.look != Look::elements && node.extent == Extent::terminated)
        {
            const Node& element = myPlan.nodes[node.element];
            for (std::size_t i = 0; i < count; ++i)
                if (isZero(start + i * element.size, element.size))
                    return fail("a zero ends the array", depth);
        }
        if (!checkCount(node, start, count, depth)) return false;
        if (node.extent == Extent::counted) store(myOctets.data() + start, count, 4, false);
        if (node.extent == Extent::terminated)
        {
            myOctets.resize(start + count * node.stride + myPlan.nodes[node.element].size);
        }
        myCount = count;
        return true;
    }

    bool isZero(std::size_t start, std::size_t size) const
    {
        for (std::size_t i = 0; i < size; ++i)
            if (myOctets[start + i] != 0) return false;
        return true;
    }

    bool elements(const Node& node, std::size_t start, std::size_t& count, std::uint32_t depth)
    {
        if (!myText.takes('[')) return fail("an array is expected", depth);
        const Node& element = myPlan.nodes[node.element];
        const std::uint32_t boundary = node.boundary == 1 ? 1 : element.boundary;
        for (bool isMore = !myText.takes(']'); isMore; ++count)
        {
            if (count > theLargestSize) return fail("too many elements", depth);
            myFrames[depth].index = static_cast<std::uint32_t>(count);
            pad(start, boundary);
            const std::size_t place = myOctets.size();
            if (!piece(node.element, depth + 1)) return false;
            if (node.extent == Extent::terminated && isZero(place, element.size))
                return fail("a zero ends the array", depth + 1);
            isMore = myText.takes(',');
            if (!isMore && !myText.takes(']'))
                return failHere("a \",\" or \"]\" is missing", depth);
        }
        return true;
    }

    bool checkCount(const Node& node, std::size_t start, std::size_t count, std::uint32_t depth)
    {
        const std::string given = std::to_string(count) + " elements, ";
        if (node.extent == Extent::padding)
        {
            const std::size_t needed = aligned(start - myBase, node.count) - (start - myBase);
            return count == needed ||
                   fail(given + std::to_string(needed) + " octets of padding are needed", depth);
        }
        if (node.extent == Extent::fixed)
            return count == node.count ||
                   fail(given + std::to_string(node.count) + " are needed", depth);
        return (count >= node.least && count <= node.most) ||
               fail(given + "which is outside the cardinality", depth);
    }

    const Plan& myPlan;
    JsonText myText;
    Buffer& myOctets;
    std::size_t myBase;
    std::optional<ValueError> myError;
    /// Where the value or key begins that is read.
    const char* myToken = nullptr;
    /// For the fields of the records that are open: where they stand, and what others look at.
    std::vector<const char*> mySlots;
    std::vector<Looked> myLooked;
    std::size_t myCount = 0;
    std::string myScratch;
    Frame myFrames[theDeepest + 2];
};

}  // namespace

std::optional<ValueError> readJson(const Plan& plan, std::uint32_t node, std::string_view json,
                                   std::vector<std::uint8_t>& octets)
{
    const std::size_t start = octets.size();
    std::optional<ValueError> error = JsonReader(plan, json, octets).run(node);
    if (error) octets.resize(start);
    return error;
}

}  // namespace omt
