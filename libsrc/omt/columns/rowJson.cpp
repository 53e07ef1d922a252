// SPDX-License-Identifier: Apache-2.0
#include "omt/columns/rowJson.h"

#include "omt/columns/columnPlan.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace omt
{

namespace
{

constexpr char theHexadecimal[] = "0123456789abcdef";

void appendHexadecimal(Octets octets, std::string& json)
{
    json += '"';
    for (const std::uint8_t octet : octets)
    {
        json += theHexadecimal[octet >> 4];
        json += theHexadecimal[octet & 15];
    }
    json += '"';
}

void appendQuoted(std::string_view text, std::string& json)
{
    json += '"';
    for (const char letter : text)
    {
        const auto code = static_cast<unsigned char>(letter);
        if (letter == '"' || letter == '\\') json += '\\';
        if (code >= 0x20)
        {
            json += letter;
            continue;
        }
        json += "\\u00";
        json += theHexadecimal[code >> 4];
        json += theHexadecimal[code & 15];
    }
    json += '"';
}

std::string_view viewOf(Octets octets)
{
    return {reinterpret_cast<const char*>(octets.data()), octets.size()};
}

/// Whether a text is at most one value, so that it cannot end what it is put into.
bool isInOnePiece(std::string_view json)
{
    std::size_t depth = 0;
    bool isQuoted = false;
    for (std::size_t i = 0; i < json.size(); ++i)
    {
        const char letter = json[i];
        if (isQuoted && letter == '\\')
            ++i;
        else if (letter == '"')
            isQuoted = !isQuoted;
        else if (isQuoted)
            continue;
        else if (letter == '{' || letter == '[')
            ++depth;
        else if ((letter == '}' || letter == ']') && depth-- == 0)
            return false;
        else if ((letter == ',' || letter == ':') && depth == 0)
            return false;
    }
    return depth == 0 && !isQuoted;
}

/// "#17", by which a number stands that has no label.
bool isStranger(std::string_view label)
{
    if (label.substr(0, 1) != "#") return false;
    label.remove_prefix(1);
    if (label.substr(0, 1) == "-") label.remove_prefix(1);
    return !label.empty() && std::all_of(label.begin(), label.end(),
                                         [](char one) { return one >= '0' && one <= '9'; });
}

}  // namespace

// Columns ----------------------------------------------------------------------------------------

std::optional<std::string> RowJson::open(const ArrowSchema& schema, const ArrowArray& array,
                                         std::uint32_t node)
{
    mySources.assign(1, Source());
    mySources[0].node = node;
    mySources[0].name = "value";
    const bool isPossible = array.release && array.length >= 0;
    return fill(0, schema, array, isPossible ? static_cast<std::size_t>(array.length) : 0, 0);
}

bool RowJson::setForm(std::string_view format, Source& source)
{
    struct Row
    {
        std::string_view format;
        Cell form;
        std::size_t width;
    };
    static constexpr Row theForms[] = {
        {"n",  Cell::nothing,         0},
        {"b",  Cell::boolean,         0},
        {"c",  Cell::integer,         1},
        {"s",  Cell::integer,         2},
        {"i",  Cell::integer,         4},
        {"l",  Cell::integer,         8},
        {"C",  Cell::unsignedInteger, 1},
        {"S",  Cell::unsignedInteger, 2},
        {"I",  Cell::unsignedInteger, 4},
        {"L",  Cell::unsignedInteger, 8},
        {"f",  Cell::single,          4},
        {"g",  Cell::real,            8},
        {"u",  Cell::text,            0},
        {"U",  Cell::text,            0},
        {"vu", Cell::text,            0},
        {"z",  Cell::octets,          0},
        {"Z",  Cell::octets,          0},
        {"vz", Cell::octets,          0},
        {"+l", Cell::list,            4},
        {"+L", Cell::list,            8},
        {"+s", Cell::record,          0},
    };
    const auto* const row = std::find_if(std::begin(theForms), std::end(theForms),
                                         [&](const Row& one) { return one.format == format; });
    if (row != std::end(theForms))
    {
        source.form = row->form;
        source.width = row->width;
        return true;
    }
    const bool isDecimal = format.substr(0, 2) == "d:" && format.size() > 4 &&
                           format.substr(format.size() - 2) == ",0";
    if (isDecimal) source.width = 16;
    source.form = isDecimal                      ? Cell::decimal
                  : format.substr(0, 2) == "w:"  ? Cell::octets
                  : format.substr(0, 3) == "+w:" ? Cell::fixedList
                                                 : Cell::nothing;
    const char* const end = format.data() + format.size();
    if (source.form == Cell::fixedList)
        return std::from_chars(format.data() + 3, end, source.width).ptr == end &&
               source.width <= theLargestSize;
    return source.form != Cell::nothing;
}

// Whether a column of this form can say what values of its node are.
bool RowJson::fits(const Source& source) const
{
    if (source.form == Cell::nothing) return true;
    if (source.node == theNone) return source.form == Cell::octets;
    const Node& node = myPlan.nodes[source.node];
    const bool isElements = node.form == Form::array && node.look == Look::elements;
    switch (source.form)
    {
        case Cell::boolean:
            return node.form == Form::record && node.parts == 0;
        case Cell::list:
        case Cell::fixedList:
            return isElements;
        case Cell::record:
            return node.form == Form::variant || node.form == Form::record;
        case Cell::text:
            return true;
        case Cell::octets:
            return node.form == Form::octets ||
                   (node.form == Form::array && node.look == Look::hexadecimal);
        default:
            return node.form == Form::number;
    }
}

std::optional<std::string> RowJson::fill(std::uint32_t at, const ArrowSchema& schema,
                                         const ArrowArray& array, std::size_t rows,
                                         std::size_t depth)
{
    constexpr std::size_t theDeepestColumn = 128;
    if (!schema.release || !schema.format) return "the schema was released";
    Source& source = mySources[at];
    source.array = &array;
    const auto about = [name = source.name](const std::string& text)
    { return "column \"" + name + "\": " + text; };
    if (depth > theDeepestColumn) return about("columns are nested deeper than 128");
    const bool isLabel = schema.dictionary != nullptr;
    if (!setForm(schema.format, source) ||
        (isLabel && source.form != Cell::integer && source.form != Cell::unsignedInteger) ||
        (!isLabel && !fits(source)))
        return about("the format \"" + std::string(schema.format) + "\" does not fit");
    constexpr std::int64_t theBuffers[] = {0, 2, 2, 2, 2, 2, 2, 3, 2, 2, 1, 1};
    const auto fault = findArrayFault(array, theBuffers[static_cast<std::size_t>(source.form)]);
    if (fault) return about(*fault);
    if (static_cast<std::size_t>(array.length) < rows) return about("there are too few rows");
    if (source.form == Cell::text || source.form == Cell::octets)
    {
        const auto wrong = source.cells.open(schema, array, source.form == Cell::text);
        return wrong ? std::optional(about(*wrong)) : std::nullopt;
    }
    if (source.form != Cell::nothing && source.form != Cell::record &&
        source.form != Cell::fixedList && rows > 0 && !array.buffers[1])
        return about("the array has rows and no buffer of them");
    if (!isLabel) return fillChildren(at, schema, array, depth);
    if (!array.dictionary) return about("there are no labels");
    const auto dictionary = static_cast<std::uint32_t>(mySources.size());
    source.dictionary = dictionary;
    mySources.push_back({});
    mySources[dictionary].node = mySources[at].node;
    mySources[dictionary].name = mySources[at].name;
    return fill(dictionary, *schema.dictionary, *array.dictionary, 0, depth + 1);
}

std::optional<std::uint32_t> RowJson::partOf(std::uint32_t node, std::string_view name) const
{
    const Node& owner = myPlan.nodes[node];
    const std::uint32_t part = myPlan.findPart(owner, name);
    if (part != theNone) return myPlan.parts[owner.first + part].node;
    const bool isKept = owner.form == Form::variant && owner.length != Length::none;
    if (isKept && name == "octets") return theNone;
    return std::nullopt;
}

std::optional<std::string> RowJson::fillChildren(std::uint32_t at, const ArrowSchema& schema,
                                                 const ArrowArray& array, std::size_t depth)
{
    constexpr std::size_t theMostElements = std::size_t{1} << 48;
    const Cell form = mySources[at].form;
    const bool isRecord = form == Cell::record;
    const bool isList = form == Cell::list || form == Cell::fixedList;
    const std::string name = mySources[at].name;
    if (!isRecord && !isList) return std::nullopt;
    const std::int64_t count = schema.n_children;
    if (count < 0 || count != array.n_children || (isList && count != 1) ||
        (count > 0 && (!schema.children || !array.children)))
        return "column \"" + name + "\": the children do not fit";
    const auto first = static_cast<std::uint32_t>(mySources.size());
    mySources[at].first = first;
    mySources[at].count = static_cast<std::uint32_t>(count);
    mySources.resize(first + static_cast<std::size_t>(count));
    const auto end = static_cast<std::size_t>(array.offset + array.length);
    if (form == Cell::fixedList && end > 0 && mySources[at].width > theMostElements / end)
        return "column \"" + name + "\": there are too many elements";
    const std::size_t rows = isRecord ? end : form == Cell::list ? 0 : end * mySources[at].width;
    const std::uint32_t node = mySources[at].node;
    for (std::uint32_t i = 0; i < mySources[at].count; ++i)
    {
        Source& child = mySources[first + i];
        const ArrowSchema& its = *schema.children[i];
        child.name = isList ? name + "[]" : its.name ? its.name : "";
        const std::optional<std::uint32_t> part =
            isList ? myPlan.nodes[node].element : partOf(node, child.name);
        if (!part)
            return "column \"" + name + "\" has \"" + child.name + "\", which the datatype has not";
        child.node = *part;
        if (auto wrong = fill(first + i, its, *array.children[i], rows, depth + 1)) return wrong;
    }
    return std::nullopt;
}

// Rows -------------------------------------------------------------------------------------------

RowJson::Result RowJson::cell(const Source& source, std::size_t row, std::string& json) const
{
    const ArrowArray& array = *source.array;
    const std::size_t place = static_cast<std::size_t>(array.offset) + row;
    if (source.form == Cell::nothing) return Result::null;
    const auto* const valid = static_cast<const std::uint8_t*>(array.buffers[0]);
    if (valid && !isBitSet(valid, place)) return Result::null;
    if (source.dictionary != theNone) return label(source, place, json);
    switch (source.form)
    {
        case Cell::boolean:
            if (!isBitSet(static_cast<const std::uint8_t*>(array.buffers[1]), place))
                return Result::null;
            json += "{}";
            return Result::written;
        case Cell::text:
            return text(source, row, json);
        case Cell::list:
        case Cell::fixedList:
            return list(source, place, json);
        case Cell::record:
            return record(source, place, json);
        case Cell::octets:
        {
            const std::optional<Octets> octets = source.cells[row];
            if (octets) appendHexadecimal(*octets, json);
            return octets ? Result::written : Result::wrong;
        }
        default:
            break;
    }
    return number(source, static_cast<const std::uint8_t*>(array.buffers[1]) + place * source.width,
                  json);
}

// What is null is left out.
RowJson::Result RowJson::record(const Source& source, std::size_t row, std::string& json) const
{
    json += '{';
    bool isFirst = true;
    for (std::uint32_t i = 0; i < source.count; ++i)
    {
        const Source& child = mySources[source.first + i];
        const std::size_t before = json.size();
        if (!isFirst) json += ',';
        appendQuoted(child.name, json);
        json += ':';
        const Result result = cell(child, row, json);
        if (result == Result::wrong) return result;
        if (result == Result::null)
            json.resize(before);
        else
            isFirst = false;
    }
    json += '}';
    return Result::written;
}

RowJson::Result RowJson::list(const Source& source, std::size_t row, std::string& json) const
{
    const Source& element = mySources[source.first];
    std::int64_t ends[2] = {static_cast<std::int64_t>(row * source.width),
                            static_cast<std::int64_t>((row + 1) * source.width)};
    if (source.form == Cell::list)
    {
        const auto* const offsets = static_cast<const std::uint8_t*>(source.array->buffers[1]);
        for (std::size_t i = 0; i < 2; ++i)
        {
            std::int32_t narrow = 0;
            if (source.width == 8)
                std::memcpy(&ends[i], offsets + (row + i) * 8, 8);
            else
            {
                std::memcpy(&narrow, offsets + (row + i) * 4, 4);
                ends[i] = narrow;
            }
        }
    }
    if (ends[0] < 0 || ends[1] < ends[0] || ends[1] > element.array->length) return Result::wrong;
    json += '[';
    for (std::int64_t i = ends[0]; i < ends[1]; ++i)
    {
        if (i > ends[0]) json += ',';
        const Result result = cell(element, static_cast<std::size_t>(i), json);
        if (result == Result::wrong) return result;
        if (result == Result::null) json += "null";
    }
    json += ']';
    return Result::written;
}

RowJson::Result RowJson::label(const Source& source, std::size_t row, std::string& json) const
{
    std::uint64_t bits = 0;
    std::memcpy(&bits,
                static_cast<const std::uint8_t*>(source.array->buffers[1]) + row * source.width,
                source.width);
    const Source& labels = mySources[source.dictionary];
    if (bits >= static_cast<std::uint64_t>(labels.array->length)) return Result::wrong;
    return cell(labels, static_cast<std::size_t>(bits), json);
}

RowJson::Result RowJson::text(const Source& source, std::size_t row, std::string& json) const
{
    const std::optional<Octets> octets = source.cells[row];
    if (!octets) return Result::wrong;
    const std::string_view text = viewOf(*octets);
    const Node& node = myPlan.nodes[source.node];
    const bool isNumber = node.form == Form::number && isStranger(text);
    const bool isKnown = isNumber && node.table != theNone &&
                         myPlan.findEntry(myPlan.enumerations[node.table], text) != theNone;
    if (isNumber && !isKnown)
        json += text.substr(1);
    else if (!isNested(node) && !(node.form == Form::record))
        appendQuoted(text, json);
    else if (isInOnePiece(text) && !text.empty())
        json += text;
    else
        json += '!';
    return Result::written;
}

RowJson::Result RowJson::number(const Source& source, const std::uint8_t* place,
                                std::string& json) const
{
    constexpr std::size_t theLongest = 24;
    char room[theLongest];
    std::uint64_t bits = 0;
    if (source.form == Cell::single || source.form == Cell::real)
    {
        real(source, place, json);
        return Result::written;
    }
    const bool isSigned = source.form == Cell::integer;
    const std::size_t width = std::min<std::size_t>(source.width, 8);
    std::memcpy(&bits, place, width);
    const unsigned shift = 64 - 8 * static_cast<unsigned>(width);
    if (source.form == Cell::decimal)
    {
        std::uint64_t high = 0;
        std::memcpy(&high, place + 8, 8);
        // Neither these nor those below 0 fit into any integer of ours.
        if (high != 0) json += '-';
    }
    const char* const end = isSigned
                                ? std::to_chars(room, room + theLongest,
                                                static_cast<std::int64_t>(bits << shift) >> shift)
                                      .ptr
                                : std::to_chars(room, room + theLongest, bits).ptr;
    json.append(room, static_cast<std::size_t>(end - room));
    return Result::written;
}

// The octets of a NaN of the width of the datatype stay.
void RowJson::real(const Source& source, const std::uint8_t* place, std::string& json) const
{
    constexpr std::size_t theLongest = 40;
    char room[theLongest];
    float single = 0;
    double real = 0;
    const bool isSingle = source.form == Cell::single;
    std::memcpy(isSingle ? static_cast<void*>(&single) : &real, place, source.width);
    if (isSingle) real = static_cast<double>(single);
    const Node& node = myPlan.nodes[source.node];
    if (std::isfinite(real))
    {
        const char* const end = isSingle ? std::to_chars(room, room + theLongest, single).ptr
                                         : std::to_chars(room, room + theLongest, real).ptr;
        json.append(room, static_cast<std::size_t>(end - room));
    }
    else if (std::isinf(real))
        json += real < 0 ? "\"-Infinity\"" : "\"Infinity\"";
    else if (node.size != source.width)
        json += "\"NaN\"";
    else
    {
        std::uint8_t octets[8];
        std::memcpy(octets, place, source.width);
        if (!node.isLittleEndian) std::reverse(octets, octets + source.width);
        json += "{\"nan\":";
        appendHexadecimal({octets, source.width}, json);
        json += '}';
    }
}

}  // namespace omt
