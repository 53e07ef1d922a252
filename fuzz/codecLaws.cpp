// SPDX-License-Identifier: Apache-2.0
#include "codecLaws.h"

#include "omt/columns/columns.h"
#include "writerLaws.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstring>
#include <sstream>

namespace
{

constexpr std::size_t theLongestJson = 65536;

std::string hexadecimal(omt::Octets octets)
{
    constexpr char theDigits[] = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t one : octets)
    {
        text += theDigits[one >> 4];
        text += theDigits[one & 15];
    }
    return text;
}

/// A text of JSON; three octets that are a lone surrogate become an escape.
std::string inQuotes(std::string_view text)
{
    std::string out = "\"";
    char escape[8];
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        const auto letter = static_cast<unsigned char>(text[i]);
        const auto second =
            i + 2 < text.size() ? static_cast<unsigned char>(text[i + 1]) : std::uint8_t{0};
        if (letter == 0xED && second >= 0xA0)
        {
            const unsigned code = 0xD000U | (second & 0x3FU) << 6 | (text[i + 2] & 0x3F);
            out.append(escape, static_cast<std::size_t>(
                                   std::snprintf(escape, sizeof escape, "\\u%04x", code)));
            i += 2;
        }
        else if (letter < 0x20)
            out.append(escape, static_cast<std::size_t>(std::snprintf(
                                   escape, sizeof escape, "\\u%04x", unsigned{letter})));
        else
        {
            if (letter == '"' || letter == '\\') out += '\\';
            out += text[i];
        }
    }
    return out + '"';
}

/// What a visitor is told, in one text.
struct Events : omt::Visitor
{
    explicit Events(std::string& into) : all(into) {}
    void beginRecord(std::string_view type) override { add("{", type); }
    void field(std::string_view name) override { add(".", name); }
    void endRecord() override { all += '}'; }
    void beginArray(std::size_t count) override { add("[", std::to_string(count)); }
    void element() override { all += ','; }
    void endArray() override { all += ']'; }
    void integer(std::int64_t number, bool) override { add("i", std::to_string(number)); }
    void number(double number) override
    {
        add("d", {reinterpret_cast<const char*>(&number), sizeof number});
    }
    void label(std::string_view name, std::int64_t number) override
    {
        add("l", name);
        add("=", std::to_string(number));
    }
    void text(std::string_view text) override { add("t", text); }
    void octets(omt::Octets octets) override { add("o", hexadecimal(octets)); }
    void add(std::string_view what, std::string_view more)
    {
        all += what;
        all += more;
    }
    std::string& all;
};

/// A schema or an array, which is released in the end.
template <typename Struct>
struct Held : Struct
{
    Held() : Struct{} {}
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held()
    {
        if (this->release) this->release(this);
    }
};

/// Rows made of a value: whole, cut, with an octet more, and null. Some are equal, as those that
/// are written together often are.
struct Rows
{
    static constexpr std::int64_t theCount = 24;
    explicit Rows(omt::Octets octets)
    {
        const auto size = static_cast<std::int64_t>(octets.size());
        for (std::int64_t row = 0; row < theCount; ++row)
        {
            const std::int64_t part = row % 6 == 4 ? size * row / theCount : size;
            data.insert(data.end(), octets.begin(), octets.begin() + part);
            if (row % 6 == 5) data.push_back(0);
            ends.push_back(static_cast<std::int32_t>(data.size()));
        }
        data.push_back(0);
        schema.format = "z";
        schema.release = [](ArrowSchema*) {};
        array.length = theCount;
        array.n_buffers = 3;
        array.buffers = buffers;
        array.release = [](ArrowArray*) {};
        buffers[1] = ends.data();
        buffers[2] = data.data();
    }
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;
    bool isNull(std::size_t row) const { return (valid[row / 8] >> row % 8 & 1) == 0; }
    omt::Octets operator[](std::size_t row) const
    {
        return {data.data() + ends[row], static_cast<std::size_t>(ends[row + 1] - ends[row])};
    }

    std::vector<std::uint8_t> data;
    std::vector<std::int32_t> ends{0};
    std::uint8_t valid[3] = {0xF7, 0xFF, 0xEF};
    const void* buffers[3] = {valid, nullptr, nullptr};
    ArrowSchema schema{};
    ArrowArray array{};
};

bool isThere(const ArrowArray& array, std::size_t row)
{
    const auto* const valid = static_cast<const std::uint8_t*>(array.buffers[0]);
    return !valid || (valid[row / 8] >> row % 8 & 1) != 0;
}

std::optional<std::string_view> textIn(const ArrowArray& array, std::size_t row)
{
    if (!isThere(array, row)) return std::nullopt;
    const auto* const ends = static_cast<const std::int32_t*>(array.buffers[1]);
    return std::string_view(static_cast<const char*>(array.buffers[2]) + ends[row],
                            static_cast<std::size_t>(ends[row + 1] - ends[row]));
}

}  // namespace

void CodecLaws::require(bool holds, const char* law)
{
    if (!holds && myBroken.empty()) myBroken = law;
}

bool CodecLaws::takes(std::string_view text)
{
    if (myRest.substr(0, text.size()) != text) return false;
    myRest.remove_prefix(text.size());
    return true;
}

void CodecLaws::expect(std::string_view text)
{
    require(takes(text), "JSON says what items say");
}

std::string CodecLaws::check(const omt::Type& type, omt::Octets octets)
{
    myBroken.clear();
    myType = &type;
    myAll = octets;
    myLeaves = 0;
    type.decodeInPlace(octets, myValue);
    checkFault(octets);
    myJson.clear();
    myValue.appendJson(myJson);
    // Elements by index take time by the index where they are of open size.
    if (myJson.size() <= theLongestJson) compare();
    require(omt::overlays(myValue).size() <= 4 * (octets.size() + 1), "overlays are bounded");
    // The second time nothing of the first is left, and a copy of the octets is the same.
    type.decode(octets, myOther);
    require(myOther.json() == myJson, "a copy has the same JSON");
    myIsPlain = myValue.isWhole() && myValue.notes().empty();
    if (myIsPlain) roundTrip(type, octets);
    return myBroken;
}

void CodecLaws::compare()
{
    myRest = myJson;
    myEvents.clear();
    if (myValue.root()) walk(myValue.root(), "");
    require(myRest.empty(), "JSON says no more than items");
    std::string told;
    Events events(told);
    myValue.visit(events);
    require(told == myEvents, "a visitor is told what items say");
}

void CodecLaws::checkFault(omt::Octets octets)
{
    const std::size_t decoded = myValue.octets().size();
    require(decoded + myValue.left() == octets.size(), "octets are decoded or left");
    require(myValue.notes().size() <= 101, "notes are bounded");
    for (const omt::ValueNote& note : myValue.notes())
        require(note.offset <= octets.size(), "a note is within the octets");
    if (!myValue.fault()) return;
    const omt::Fault& fault = *myValue.fault();
    require(fault.offset == decoded, "what stands before a fault is decoded");
    require(fault.left <= octets.size() - fault.offset, "no more is left than there is");
    require(!fault.what.empty(), "a fault says what it is");
}

// Compares with the JSON, and writes what a visitor should be told.
void CodecLaws::walk(const omt::Item& item, const std::string& path)
{
    if (!myBroken.empty()) return;
    Events events(myEvents);
    switch (item.kind())
    {
        case omt::ValueKind::number:
            number(item);
            break;
        case omt::ValueKind::enumerated:
            enumerated(item);
            break;
        case omt::ValueKind::text:
            text(item);
            break;
        case omt::ValueKind::octets:
            octets(item);
            break;
        case omt::ValueKind::record:
        case omt::ValueKind::variant:
            return fields(item, path);
        case omt::ValueKind::array:
            expect("[");
            events.beginArray(item.size());
            for (std::size_t i = 0; i < item.size() && myBroken.empty(); ++i)
            {
                if (i > 0) expect(",");
                events.element();
                walk(item[i], path + '[' + std::to_string(i) + ']');
            }
            events.endArray();
            return expect("]");
    }
    leaf(item, path);
}

void CodecLaws::fields(const omt::Item& item, const std::string& path)
{
    Events events(myEvents);
    expect("{");
    events.beginRecord(item.type().name());
    for (std::size_t i = 0; i < item.size() && myBroken.empty(); ++i)
    {
        const std::string name(item.name(i));
        if (i > 0) expect(",");
        expect(inQuotes(name) + ':');
        events.field(name);
        const bool isStep = name.find_first_of(".[") == std::string::npos && path != "?";
        walk(item[i], !isStep ? "?" : path.empty() ? name : path + '.' + name);
    }
    if (item.kind() == omt::ValueKind::variant && item.size() == 1 && takes(",\"octets\":"))
    {
        expect('"' + hexadecimal(item.octets()) + '"');
        events.field("octets");
        events.octets(item.octets());
    }
    events.endRecord();
    expect("}");
}

void CodecLaws::number(const omt::Item& item)
{
    if (!item.integer()) return floating(item, item.number().value_or(0));
    const std::int64_t number = *item.integer();
    Events(myEvents).integer(number, false);
    if (!takes(std::to_string(number))) expect(std::to_string(static_cast<std::uint64_t>(number)));
}

void CodecLaws::enumerated(const omt::Item& item)
{
    if (!item.label()) return number(item);
    const std::int64_t number = item.integer().value_or(0);
    Events(myEvents).label(*item.label(), number);
    const std::string name = inQuotes(*item.label());
    if (takes(name)) return;
    expect("{\"name\":" + name + ",\"value\":");
    if (!takes(std::to_string(number))) expect(std::to_string(static_cast<std::uint64_t>(number)));
    expect("}");
}

void CodecLaws::floating(const omt::Item& item, double number)
{
    Events(myEvents).number(number);
    char text[40];
    const bool isShort = item.octets().size() == 4;
    const char* const end =
        isShort ? std::to_chars(text, text + sizeof text, static_cast<float>(number)).ptr
                : std::to_chars(text, text + sizeof text, number).ptr;
    if (std::isfinite(number)) return expect({text, static_cast<std::size_t>(end - text)});
    if (std::isinf(number)) return expect(number < 0 ? "\"-Infinity\"" : "\"Infinity\"");
    if (!takes("\"NaN\"")) expect("{\"nan\":\"" + hexadecimal(item.octets()) + "\"}");
}

void CodecLaws::text(const omt::Item& item)
{
    const std::string text = item.text().value_or("");
    Events(myEvents).text(text);
    if (!takes("{\"text\":")) return expect(inQuotes(text));
    expect(inQuotes(text) + ",\"rest\":\"");
    const std::string all = hexadecimal(item.octets());
    const std::size_t end = std::min(myRest.find('"'), myRest.size());
    require(end <= all.size() && all.substr(all.size() - end) == myRest.substr(0, end),
            "what follows a text are its last octets");
    myRest.remove_prefix(end);
    expect("\"}");
}

// A count before the octets is not shown.
void CodecLaws::octets(const omt::Item& item)
{
    const std::string all = hexadecimal(item.octets());
    expect("\"");
    const std::size_t end = std::min(myRest.find('"'), myRest.size());
    const std::string_view shown = myRest.substr(0, end);
    // After the octets there may be the zero that ends them.
    const std::size_t place = all.rfind(shown);
    require(place != std::string::npos, "hexadecimal text is that of the octets");
    myEvents += 'o';
    myEvents += shown;
    myRest.remove_prefix(end);
    expect("\"");
}

// A Field gives what the item gives, or nothing where a fault follows.
void CodecLaws::leaf(const omt::Item& item, const std::string& path)
{
    constexpr std::size_t theMostLeaves = 40;
    if (path == "?" || ++myLeaves > theMostLeaves || !myBroken.empty()) return;
    const std::optional<omt::Field> field = myType->findField(path);
    require(field.has_value(), "every leaf has a field");
    if (!field) return;
    const omt::Item same = myValue[path];
    require(same && same.octets().data() == item.octets().data(), "paths lead where indices lead");
    const std::optional<omt::Octets> found = field->octets(myAll);
    require(found.has_value() || myValue.fault(), "a field finds what is there");
    if (!found) return;
    require(found->data() == item.octets().data(), "a field finds the place of the item");
    if (item.integer()) require(field->integer(myAll) == item.integer(), "fields give integers");
    if (item.label()) require(field->label(myAll) == item.label(), "fields give labels");
    if (!myValue.fault()) require(field->text(myAll) == item.text(), "fields give texts");
}

void CodecLaws::roundTrip(const omt::Type& type, omt::Octets octets)
{
    const auto isSame = [&](omt::Octets one)
    { return std::equal(one.begin(), one.end(), octets.begin(), octets.end()); };
    require(isSame(myValue.octets()), "a value encodes by its octets");
    myOctets = {1, 2, 3};
    const auto error = type.encode(myJson, myOctets);
    require(!error, "JSON of a value is a value");
    require(isSame({myOctets.data() + 3, myOctets.size() - 3}), "JSON encodes to the same octets");
    require(!type.read(myJson, myOther) && isSame(myOther.octets()), "JSON is read as the octets");
    const std::string written = checkWriting(type, myValue, myJson);
    require(written.empty(), written.c_str());
    const omt::Item root = myOther.root();
    constexpr std::size_t theMostOctets = 512;
    if (!root || octets.size() > theMostOctets) return;
    for (std::size_t i = 0; i < std::min<std::size_t>(root.size(), 3) && myBroken.empty(); ++i)
    {
        // Items point into the value, which is set anew each time.
        const omt::Item item = myOther.root()[i];
        const std::string name(myOther.root().name(i));
        if (name.find_first_of(".[") == std::string::npos)
            setBack(name.empty() ? '[' + std::to_string(i) + ']' : name, item);
        require(isSame(myOther.octets()), "a part set to itself changes nothing");
    }
}

void CodecLaws::setBack(const std::string& path, const omt::Item& item)
{
    if (myOther.root().kind() == omt::ValueKind::text ||
        myOther.root().kind() == omt::ValueKind::octets)
        return;
    std::string json;
    item.appendJson(json);
    require(!myOther.set(path, std::string_view(json)), "a part can be set to itself");
}

std::string CodecLaws::checkCuts(const omt::Type& type, omt::Octets octets, bool isStrict)
{
    constexpr std::size_t theMostCuts = 64;
    // A value of a few octets may have a million elements without any.
    if (myJson.size() > theLongestJson) return "";
    const std::size_t step = octets.size() / theMostCuts + 1;
    // So may what is left of it after a cut, at each of them.
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + std::chrono::seconds(2);
    for (std::size_t size = 0; size < octets.size() && Clock::now() < end; size += step)
    {
        myBroken.clear();
        type.decodeInPlace({octets.data(), size}, myValue);
        checkFault({octets.data(), size});
        if (isStrict && myValue.fault())
            require(myValue.fault()->needed > myValue.fault()->left, "at a cut more is needed");
        if (!myBroken.empty()) return myBroken + ", cut at " + std::to_string(size);
    }
    return "";
}

std::string CodecLaws::checkColumns(const omt::Type& type, omt::Octets octets)
{
    if (myJson.size() > theLongestJson) return "";
    myBroken.clear();
    const Rows rows(octets);
    omt::ColumnOptions options;
    options.labels = static_cast<omt::Labels>(octets.size() % 3);
    options.widensUnsigned = octets.size() % 2 != 0;
    const omt::Columns columns(type, options);
    Held<ArrowSchema> schema;
    columns.writeSchema(schema);
    Held<ArrowArray> batch;
    std::size_t first = 0;
    require(!columns.decode(rows.schema, rows.array, first, batch), "columns are decoded");
    require(first == Rows::theCount, "few rows stand in one batch");
    if (!myBroken.empty()) return myBroken;
    Held<ArrowArray> again;
    first = 0;
    require(!columns.encode(*schema.children[0], *batch.children[0], first, again),
            "columns are encoded");
    require(first == Rows::theCount, "few values stand in one batch");
    for (std::size_t row = 0; row < std::size_t{Rows::theCount} && myBroken.empty(); ++row)
        if (rows.isNull(row))
            require(!isThere(*batch.children[0], row) && !isThere(*batch.children[1], row),
                    "what is null is null");
        else
            compareRow(type, rows[row], isThere(*batch.children[0], row),
                       textIn(*batch.children[1], row), textIn(*again.children[0], row));
    return myBroken;
}

// Half of a surrogate pair has no place in UTF-8, the second number of a name no label, and what
// follows a zero no text.
void CodecLaws::compareRow(const omt::Type& type, omt::Octets octets, bool isThere,
                           std::optional<std::string_view> fault,
                           std::optional<std::string_view> encoded)
{
    type.decodeInPlace(octets, myValue);
    std::ostringstream text;
    if (myValue.fault())
        text << *myValue.fault();
    else if (myValue.left() > 0)
        text << myValue.left() << " octets are left over";
    require(isThere == !myValue.fault(), "a column has the rows that are values");
    require(fault.value_or("") == text.str(), "a column has the faults of values");
    if (!isThere) return;
    const std::string json = myValue.json();
    const auto has = [&json](const char* part) { return json.find(part) != std::string::npos; };
    if (has("\\ud") || has("{\"name\":") || has("\"rest\":")) return;
    myOctets.clear();
    const bool isEncoded = !type.encode(json, myOctets);
    require(isEncoded == encoded.has_value(), "a column encodes where its values do");
    if (!isEncoded || !encoded) return;
    const omt::Octets again(*encoded);
    require(std::equal(again.begin(), again.end(), myOctets.begin(), myOctets.end()),
            "a column encodes to what its values encode to");
}

std::string CodecLaws::checkText(const omt::Type& type, std::string_view json)
{
    myBroken.clear();
    myOctets.clear();
    const auto error = type.encode(json, myOctets);
    require(!error || myOctets.empty(), "what is refused leaves no octets");
    if (error)
    {
        require(!error->what.empty() && error->line > 0 && error->column > 0,
                "an error says what and where");
        return myBroken;
    }
    // Padding, texts and the numbers of hexadecimal digits grow with the text; a text in an array
    // of fixed size is filled up.
    require(myOctets.size() <= 131072 * (json.size() + 1), "octets grow with the text");
    const std::vector<std::uint8_t> octets = myOctets;
    type.decode(octets, myValue);
    if (!myValue.isWhole() || !myValue.notes().empty()) return myBroken;
    myOctets.clear();
    require(!type.encode(myValue.json(), myOctets) && myOctets == octets,
            "what was read from text goes to text and back");
    return myBroken;
}
