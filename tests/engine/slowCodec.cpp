// SPDX-License-Identifier: Apache-2.0
#include "slowCodec.h"

#include "omt/codec/typeText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <set>
#include <utility>

using omt::Encoding;

namespace
{

std::size_t up(std::size_t at, std::size_t boundary)
{
    return (at + boundary - 1) / boundary * boundary;
}

std::string utf8(std::uint32_t code)
{
    char text[8];
    if (code == '"' || code == '\\') return std::string("\\") + static_cast<char>(code);
    if (code < 0x20 || (code >= 0xD800 && code < 0xE000))
    {
        std::snprintf(text, sizeof text, "\\u%04x", code);
        return text;
    }
    if (code < 0x80) return {static_cast<char>(code)};
    std::string out;
    const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    const unsigned heads[] = {0, 0xC0, 0xE0, 0xF0};
    out += static_cast<char>(heads[more] | code >> 6 * more);
    for (int i = more; i-- > 0;) out += static_cast<char>(0x80 | (code >> 6 * i & 0x3F));
    return out;
}

}  // namespace

std::string SlowCodec::target(const std::string& type) const
{
    const omt::Datatype data = myModel.findDatatype(type);
    if (const auto* simple = data.as<omt::SimpleData>())
        return target(simple->representation.str());
    if (const auto* reference = data.as<omt::ReferenceData>())
        return target(reference->representation.str());
    return type;
}

std::optional<SlowCodec::Number> SlowCodec::numberOf(const std::string& type) const
{
    const omt::Datatype data = myModel.findDatatype(target(type));
    if (const auto* names = data.as<omt::EnumeratedData>())
        return numberOf(names->representation.str());
    std::string why;
    std::optional<omt::Representation> what;
    if (const auto* basic = data.as<omt::BasicData>())
        what = omt::representation(*basic, why);
    else if (!data)
        what = omt::standardRepresentation(target(type));
    if (!what) return std::nullopt;
    return Number{what->octets, what->isLittleEndian, what->scalar == omt::Scalar::signedInteger,
                  what->scalar == omt::Scalar::floating};
}

std::size_t SlowCodec::boundary(const std::string& type)
{
    if (const auto known = myBoundaries.find(type); known != myBoundaries.end())
        return known->second;
    myBoundaries[type] = 1;
    std::size_t most = 1;
    const auto take = [&](const omt::Text& one) { most = std::max(most, boundary(one.str())); };
    const omt::Datatype data = myModel.findDatatype(target(type));
    if (const auto number = numberOf(type))
        for (most = 1; most < number->size;) most *= 2;
    if (const auto* record = data.as<omt::FixedRecord>())
        for (const omt::RecordField& field : record->fields) take(field.dataType);
    if (const auto* variant = data.as<omt::VariantRecord>())
    {
        take(variant->dataType);
        for (const omt::Alternative& one : variant->alternatives) take(one.dataType);
        const Encoding how = omt::encoding(variant->encoding);
        if (how == Encoding::extendedVariant) most = std::max<std::size_t>(most, 4);
        if (how == Encoding::extendableVariant) most = 8;
    }
    if (const auto* array = data.as<omt::ArrayData>())
    {
        const Encoding how = omt::encoding(array->encoding);
        if (how != Encoding::unknown && how != Encoding::unpaddedLengthlessArray)
            take(array->dataType);
        if (how == Encoding::variableArray) most = std::max<std::size_t>(most, 4);
    }
    return myBoundaries[type] = most;
}

std::optional<std::size_t> SlowCodec::fixedSize(const std::string& type)
{
    if (const auto number = numberOf(type)) return number->size;
    const omt::Datatype data = myModel.findDatatype(target(type));
    std::size_t at = 0;
    if (const auto* record = data.as<omt::FixedRecord>())
    {
        for (const omt::RecordField& field : record->fields)
        {
            const auto size = fixedSize(field.dataType.str());
            if (!size) return std::nullopt;
            at = up(at, boundary(field.dataType.str())) + *size;
        }
        return at;
    }
    const auto* array = data.as<omt::ArrayData>();
    if (!array || omt::encoding(array->encoding) != Encoding::fixedArray) return std::nullopt;
    const auto dimensions = omt::cardinality(array->cardinality);
    if (!dimensions || dimensions->size() != 1 || !dimensions->front().isNumber())
        return std::nullopt;
    const std::size_t count = dimensions->front().least;
    const auto size = count == 0 ? 0 : fixedSize(array->dataType.str());
    if (!size) return std::nullopt;
    return count == 0 ? 0 : up(*size, boundary(array->dataType.str())) * (count - 1) + *size;
}

std::size_t SlowCodec::leastSize(const std::string& type)
{
    if (const auto size = fixedSize(type)) return *size;
    const omt::Datatype data = myModel.findDatatype(target(type));
    if (const auto* record = data.as<omt::FixedRecord>())
    {
        std::size_t at = 0;
        for (const omt::RecordField& field : record->fields)
            at = up(at, boundary(field.dataType.str())) + leastSize(field.dataType.str());
        return at;
    }
    if (const auto* variant = data.as<omt::VariantRecord>())
    {
        const std::size_t size = leastSize(variant->dataType.str());
        const Encoding how = omt::encoding(variant->encoding);
        return how == Encoding::extendedVariant     ? size + 4
               : how == Encoding::extendableVariant ? up(size, 4) + 4
                                                    : size;
    }
    const auto* array = data.as<omt::ArrayData>();
    if (!array) return 0;
    const Encoding how = omt::encoding(array->encoding);
    if (how == Encoding::variableArray) return 4;
    if (how == Encoding::terminatedArray) return leastSize(array->dataType.str());
    return 0;
}

std::size_t SlowCodec::firstLeaf(const std::string& type)
{
    if (const auto number = numberOf(type)) return number->size;
    if (leastSize(type) == 0) return 0;
    const omt::Datatype data = myModel.findDatatype(target(type));
    if (const auto* record = data.as<omt::FixedRecord>())
        for (const omt::RecordField& field : record->fields)
            if (leastSize(field.dataType.str()) > 0) return firstLeaf(field.dataType.str());
    if (const auto* variant = data.as<omt::VariantRecord>())
        return firstLeaf(variant->dataType.str());
    const auto* array = data.as<omt::ArrayData>();
    if (!array) return 0;
    return omt::encoding(array->encoding) == Encoding::variableArray
               ? 4
               : firstLeaf(array->dataType.str());
}

/// "text", "wide", "octets" or nothing.
std::string SlowCodec::lookOf(const std::string& element) const
{
    if (element == "HLAASCIIchar") return "text";
    if (element == "HLAunicodeChar") return "wide";
    if (element == "HLAoctet" || element == "HLAbyte") return "octets";
    const omt::Datatype data = myModel.findDatatype(element);
    const auto* simple = data.as<omt::SimpleData>();
    return simple ? lookOf(simple->representation.str()) : "";
}

// Octets, read or made ----------------------------------------------------------------------------

void SlowCodec::need(std::size_t size, const Around& around)
{
    if (myRandom)
    {
        while (myOctets.size() < myAt + size)
            myOctets.push_back(static_cast<std::uint8_t>((*myRandom)()));
        return;
    }
    if (size > around.limit - myAt) throw Fault{myAt, size, around.limit - myAt};
}

void SlowCodec::zeros(std::size_t end, const Around&)
{
    if (myRandom) myOctets.resize(end);
    for (; myAt < end; ++myAt) myHasNotes = myHasNotes || myOctets[myAt] != 0;
}

void SlowCodec::pad(std::size_t start, std::size_t boundary, const std::string& next,
                    const Around& around)
{
    const std::size_t place = start + up(myAt - start, boundary);
    if (!myRandom && place > around.limit)
        throw Fault{myAt, place - myAt + firstLeaf(next), around.limit - myAt};
    zeros(place, around);
}

std::string SlowCodec::hexadecimal(std::size_t from, std::size_t to) const
{
    std::string text;
    char two[4];
    for (; from < to; ++from)
    {
        std::snprintf(two, sizeof two, "%02x", myOctets[from]);
        text += two;
    }
    return text;
}

std::int64_t SlowCodec::integer(const std::string& type, std::size_t at) const
{
    const Number number = *numberOf(type);
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < number.size; ++i)
        bits = bits * 256 + myOctets[number.isLittle ? at + number.size - 1 - i : at + i];
    if (number.isSigned && number.size < 8 && bits >> (8 * number.size - 1) != 0)
        bits -= std::uint64_t{1} << 8 * number.size;
    return static_cast<std::int64_t>(bits);
}

// Pieces
// --------------------------------------------------------------------------------------------

void SlowCodec::piece(const std::string& type, Tree& tree, Around around)
{
    tree.start = myAt;
    if (numberOf(type)) return number(type, tree, around);
    const omt::Datatype data = myModel.findDatatype(target(type));
    if (const auto* record = data.as<omt::FixedRecord>())
        return this->record(*record, tree, around);
    if (const auto* variant = data.as<omt::VariantRecord>())
        return this->variant(*variant, tree, around);
    const auto* array = data.as<omt::ArrayData>();
    if (array && omt::encoding(array->encoding) != Encoding::unknown)
        return this->array(*array, tree, around);
    tree.kind = Tree::Kind::leaf;
    const std::size_t end =
        myRandom ? myAt : std::max(myAt, around.limit - std::min(around.limit, around.reserve));
    tree.leaf = '"' + hexadecimal(myAt, end) + '"';
    myAt = end;
}

void SlowCodec::number(const std::string& type, Tree& tree, const Around& around)
{
    const Number number = *numberOf(type);
    need(number.size, around);
    const omt::Datatype data = myModel.findDatatype(target(type));
    const auto* names = data.as<omt::EnumeratedData>();
    if (myRandom && names && !names->enumerators.empty() && (*myRandom)() % 8 != 0)
    {
        const auto& one = names->enumerators[(*myRandom)() % names->enumerators.size()];
        const auto bits = static_cast<std::uint64_t>(
            *omt::wholeNumber(one.values[(*myRandom)() % one.values.size()]));
        for (std::size_t i = 0; i < number.size; ++i)
            myOctets[number.isLittle ? myAt + i : myAt + number.size - 1 - i] =
                static_cast<std::uint8_t>(bits >> 8 * i);
    }
    tree.kind = Tree::Kind::leaf;
    const std::int64_t value = integer(type, myAt);
    if (number.isFloat)
    {
        const float four = [&]
        {
            const auto bits = static_cast<std::uint32_t>(value);
            float f;
            std::memcpy(&f, &bits, 4);
            return f;
        }();
        double eight;
        std::memcpy(&eight, &value, 8);
        const double wide = number.size == 4 ? static_cast<double>(four) : eight;
        char text[64];
        if (std::isnan(wide))
            tree.leaf = value == (number.size == 4 ? 0x7FC00000 : 0x7FF8000000000000)
                            ? "\"NaN\""
                            : "{\"nan\":\"" + hexadecimal(myAt, myAt + number.size) + "\"}";
        else if (std::isinf(wide))
            tree.leaf = wide < 0 ? "\"-Infinity\"" : "\"Infinity\"";
        else
            tree.leaf.assign(text, number.size == 4 ? std::to_chars(text, text + 64, four).ptr
                                                    : std::to_chars(text, text + 64, eight).ptr);
    }
    else
        tree.leaf = number.isSigned ? std::to_string(value)
                                    : std::to_string(static_cast<std::uint64_t>(value));
    if (names)
        for (std::size_t i = names->enumerators.size(); i-- > 0;)
            for (std::size_t j = names->enumerators[i].values.size(); j-- > 0;)
            {
                const omt::Enumerator& one = names->enumerators[i];
                if (omt::wholeNumber(one.values[j]) != value) continue;
                const std::string plain = number.isSigned
                                              ? std::to_string(value)
                                              : std::to_string(static_cast<std::uint64_t>(value));
                tree.leaf = '"' + one.name.str() + '"';
                if (j > 0) tree.leaf = "{\"name\":" + tree.leaf + ",\"value\":" + plain + "}";
            }
    myAt += number.size;
}

std::optional<std::int64_t> SlowCodec::stated(
    const omt::RecordField& field, const std::map<std::string, std::int64_t>& numbers) const
{
    const std::string word = "RPRlengthlessArrayLength=";
    for (const std::string_view label : myModel.noteLabels(field))
    {
        const omt::Note* const note = myModel.findNote(label);
        if (!note || note->semantics.view().substr(0, word.size()) != word) continue;
        const std::string sum = note->semantics.str().substr(word.size());
        // The two sums of the RPR FOM.
        if (numbers.count(sum) != 0) return numbers.at(sum);
        if (sum == "Order*Order+2*Order+1")
        {
            const std::int64_t order = numbers.at("Order");
            return order > INT32_MAX ? -1 : order * order + 2 * order + 1;
        }
    }
    return std::nullopt;
}

void SlowCodec::record(const omt::FixedRecord& data, Tree& tree, const Around& around)
{
    tree.kind = Tree::Kind::record;
    const std::size_t start = myAt;
    std::map<std::string, std::int64_t> numbers;
    for (std::size_t i = 0; i < data.fields.size(); ++i)
    {
        const omt::RecordField& field = data.fields[i];
        const std::string type = field.dataType.str();
        myPath.push_back('.' + field.name.str());
        pad(start, boundary(type), type, around);
        Around inner{around.limit, around.reserve, stated(field, numbers)};
        std::size_t rest = 0;
        for (std::size_t j = i + 1; j < data.fields.size(); ++j)
            if (const auto size = fixedSize(data.fields[j].dataType.str()))
                rest = up(rest, boundary(data.fields[j].dataType.str())) + *size;
        inner.reserve += rest;
        const std::size_t place = myAt;
        tree.parts.emplace_back(field.name.str(), Tree());
        piece(type, tree.parts.back().second, inner);
        if (const auto number = numberOf(type); number && !number->isFloat)
        {
            // A small order, so that there are not too many coefficients.
            const bool isCount = field.name == "Order" || field.name == "NumberOfAppearanceRecords";
            if (myRandom && isCount)
            {
                const auto little = numberOf(type)->isLittle;
                for (std::size_t k = 0; k < number->size; ++k) myOctets[place + k] = 0;
                myOctets[little ? place : place + number->size - 1] = (*myRandom)() % 4;
            }
            numbers[field.name.str()] = integer(type, place);
        }
        myPath.pop_back();
    }
}

void SlowCodec::array(const omt::ArrayData& data, Tree& tree, const Around& around)
{
    const Encoding how = omt::encoding(data.encoding);
    const auto dimensions = omt::cardinality(data.cardinality);
    const std::string element = data.dataType.str();
    const std::size_t start = myAt;
    const std::size_t least = leastSize(element);
    const std::size_t stride = up(least, boundary(element));
    const bool isPadding = how == Encoding::paddingTo16 || how == Encoding::paddingTo32 ||
                           how == Encoding::paddingTo64;
    const bool isMarking = data.name == "MarkingArray11" || data.name == "MarkingArray31" ||
                           (!myPath.empty() && myPath.back() == ".MarkingData");
    const std::string look = isPadding ? "octets" : isMarking ? "marking" : lookOf(element);
    tree.kind = look.empty() ? Tree::Kind::array : Tree::Kind::leaf;
    tree.leaf = look;
    const auto note = [&](std::size_t count)
    {
        if (count < dimensions->front().least || count > dimensions->front().most)
            myHasNotes = true;
    };
    const auto check = [&](std::size_t count, std::size_t after)
    {
        const std::size_t padding =
            up(start + after - start, after == 0 ? 1 : boundary(element)) - after;
        const std::size_t needed = count == 0 ? 0 : padding + stride * (count - 1) + least;
        if (!myRandom && needed > around.limit - start - after)
            throw Fault{start, needed, around.limit - start - after};
        if (least == 0 && count > 1000000) throw Fault{start + after, 0, 0};
    };
    const std::size_t some = myRandom
                                 ? std::max<std::size_t>(dimensions->front().least,
                                                         myPath.size() > 8 ? 0 : (*myRandom)() % 4)
                                 : 0;
    if (how == Encoding::fixedArray)
        return loop(data, tree, around, start, dimensions->front().least);
    if (how == Encoding::variableArray)
    {
        need(4, around);
        if (myRandom)
            for (std::size_t i = 0; i < 4; ++i)
                myOctets[myAt + i] = static_cast<std::uint8_t>(some >> (24 - 8 * i));
        const std::int64_t count = static_cast<std::int32_t>(integer("HLAinteger32BE", myAt));
        if (count < 0) throw Fault{start, 4, around.limit - start - 4};
        check(static_cast<std::size_t>(count), 4);
        note(static_cast<std::size_t>(count));
        myAt += 4;
        if (count == 0)
        {
            myTailAt = myAt;
            myTailSize = up(4, boundary(element)) - 4;
        }
        else
            zeros(start + up(4, boundary(element)), around);
        return loop(data, tree, around, myAt, static_cast<std::size_t>(count));
    }
    if (how == Encoding::terminatedArray)
    {
        terminated(data, tree, around, some);
        return note(tree.parts.size());
    }
    if (look == "octets" && lookOf(element) == look && how != Encoding::lengthlessArray &&
        how != Encoding::unpaddedLengthlessArray)
    {
        const std::size_t size = how == Encoding::paddingTo16   ? 2
                                 : how == Encoding::paddingTo32 ? 4
                                                                : 8;
        const std::size_t count = up(myAt, size) - myAt;
        if (!myRandom && count > around.limit - myAt) throw Fault{myAt, count, around.limit - myAt};
        return loop(data, tree, around, start, count);
    }
    if (around.stated)
    {
        if (*around.stated < 0 || *around.stated > INT32_MAX)
            throw Fault{start, 0, around.limit - start};
        check(static_cast<std::size_t>(*around.stated), 0);
        note(static_cast<std::size_t>(*around.stated));
        return loop(data, tree, around, start, static_cast<std::size_t>(*around.stated));
    }
    if (myRandom) return loop(data, tree, around, start, some);
    loop(data, tree, {std::max(myAt, around.limit - std::min(around.limit, around.reserve)), 0},
         start, std::nullopt);
    note(tree.parts.size());
}

void SlowCodec::terminated(const omt::ArrayData& data, Tree& tree, const Around& around,
                           std::size_t some)
{
    const std::string element = data.dataType.str();
    const std::size_t start = myAt;
    const std::size_t least = leastSize(element);
    std::size_t count = 0;
    for (;; ++count)
    {
        myPath.push_back('[' + std::to_string(count) + ']');
        pad(start, boundary(element), element, around);
        const std::size_t place = myAt;
        Tree one;
        if (myRandom && count >= some)
        {
            myOctets.resize(myAt + least);
            myAt += least;
        }
        else
        {
            const std::size_t keep = myOctets.size();
            piece(element, one, {around.limit, 0});
            if (myRandom) myOctets[keep] |= 1;
            if (myRandom)
            {
                myAt = place;
                std::mt19937_64* const random = std::exchange(myRandom, nullptr);
                one = {};
                piece(element, one, {myOctets.size(), 0});
                myRandom = random;
            }
        }
        const bool isEnd = std::all_of(myOctets.begin() + static_cast<std::ptrdiff_t>(place),
                                       myOctets.begin() + static_cast<std::ptrdiff_t>(myAt),
                                       [](std::uint8_t octet) { return octet == 0; });
        myPath.pop_back();
        if (isEnd) break;
        tree.parts.emplace_back("", std::move(one));
        tree.parts.back().second.start = place;
    }
}

void SlowCodec::loop(const omt::ArrayData& data, Tree& tree, const Around& around,
                     std::size_t start, std::optional<std::size_t> count)
{
    const std::string element = data.dataType.str();
    const bool isPacked = omt::encoding(data.encoding) == Encoding::unpaddedLengthlessArray;
    const std::size_t step = isPacked ? 1 : boundary(element);
    for (std::size_t i = 0; !count || i < *count; ++i)
    {
        if (!count && start + up(myAt - start, step) >= around.limit) return;
        myPath.push_back('[' + std::to_string(i) + ']');
        if (i > 0) pad(start, step, element, around);
        tree.parts.emplace_back("", Tree());
        myDoubtEnd = 0;
        const std::size_t before = myAt;
        piece(element, tree.parts.back().second, {around.limit, around.reserve});
        if (!count && myAt == before) throw Fault{myAt, 0, around.limit - myAt};
        if (myDoubtEnd == myAt && myDoubtEnd != 0 && !myRandom && !myIsProbing &&
            (count ? i + 1 < *count : start + up(myAt - start, step) < around.limit))
        {
            const auto fits = [&](std::size_t at)
            {
                SlowCodec probe(*this);
                probe.myIsProbing = true;
                probe.myAt = at;
                Tree tree2;
                try
                {
                    probe.pad(start, step, element, around);
                    probe.piece(element, tree2, {around.limit, around.reserve});
                }
                catch (const Fault&)
                {
                    return false;
                }
                return true;
            };
            if (!fits(myDoubtEnd) && fits(myDoubtOwn)) myAt = myDoubtOwn;
        }
        myPath.pop_back();
    }
}

// Variant records
// -------------------------------------------------------------------------------------

const omt::Alternative* SlowCodec::alternativeOf(const omt::VariantRecord& data,
                                                 std::int64_t number, bool& isUnknown) const
{
    const omt::Datatype type = myModel.findDatatype(target(data.dataType.str()));
    const auto* names = type.as<omt::EnumeratedData>();
    std::set<std::string> ofNumber;
    isUnknown = true;
    std::map<std::string, std::size_t> order;
    for (std::size_t i = 0; names && i < names->enumerators.size(); ++i)
    {
        order.emplace(names->enumerators[i].name.str(), i);
        for (const omt::Text& value : names->enumerators[i].values)
            if (omt::wholeNumber(value) == number)
                ofNumber.insert(names->enumerators[i].name.str());
    }
    if (!ofNumber.empty()) isUnknown = false;
    const omt::Alternative* other = nullptr;
    for (const omt::Alternative& one : data.alternatives)
        for (const omt::EnumeratorRange& range : omt::enumeratorRanges(one.enumerator))
        {
            if (range.first == "HLAother")
                other = &one;
            else if (names)
                for (const std::string& name : ofNumber)
                {
                    const auto first = order.find(std::string(range.first));
                    const auto last = order.find(std::string(range.last));
                    if (first == order.end() || last == order.end()) continue;
                    if (order[name] >= first->second && order[name] <= last->second) return &one;
                }
        }
    if (other) isUnknown = false;
    return other;
}

void SlowCodec::variant(const omt::VariantRecord& data, Tree& tree, const Around& around)
{
    tree.kind = Tree::Kind::record;
    const std::size_t start = myAt;
    const std::string type = data.dataType.str();
    const Encoding how = omt::encoding(data.encoding);
    const bool isMeasured = how == Encoding::extendedVariant || how == Encoding::extendableVariant;
    myPath.push_back('.' + data.discriminant.str());
    bool isUnknown = false;
    const omt::Alternative* one = nullptr;
    Tree discriminant;
    for (int tries = 0; tries < 64; ++tries)
    {
        if (myRandom) myOctets.resize(start);
        myAt = start;
        discriminant = {};
        piece(type, discriminant, {around.limit, 0});
        one = alternativeOf(data, integer(type, start), isUnknown);
        if (!myRandom || (!isUnknown && (one || tries > 32))) break;
    }
    if (isUnknown && !isMeasured) throw Fault{start, myAt - start, around.limit - start};
    tree.parts.emplace_back(data.discriminant.str(), discriminant);
    myPath.pop_back();
    if (one &&
        (one->name.empty() || one->name == "NA" || one->dataType.empty() || one->dataType == "NA"))
        one = nullptr;
    if (isMeasured) return measured(data, tree, around, one, isUnknown, start);
    if (!one)
    {
        myTailAt = myAt;
        myTailSize = start + up(myAt - start, boundary(data.name.str())) - myAt;
        return;
    }
    std::size_t most = 1;
    for (const omt::Alternative& each : data.alternatives)
        if (each.dataType != "NA") most = std::max(most, boundary(each.dataType.str()));
    myPath.push_back('.' + one->name.str());
    pad(start, most, one->dataType.str(), around);
    tree.parts.emplace_back(one->name.str(), Tree());
    piece(one->dataType.str(), tree.parts.back().second, {around.limit, around.reserve});
    myPath.pop_back();
}

void SlowCodec::measured(const omt::VariantRecord& data, Tree& tree, const Around& around,
                         const omt::Alternative* alternative, bool isUnknown, std::size_t start)
{
    const bool isExtendable = omt::encoding(data.encoding) == Encoding::extendableVariant;
    const std::size_t place = isExtendable ? start + up(myAt - start, 4) : myAt;
    if (myRandom)
        zeros(place, around);
    else if (place + 4 > around.limit)
        throw Fault{myAt, place + 4 - myAt, around.limit - myAt};
    zeros(place, around);
    need(4, around);
    std::size_t length = static_cast<std::uint32_t>(integer("HLAinteger32BE", place));
    if (myRandom) length = alternative ? 1 : 0;
    if (myRandom)
        for (std::size_t i = 0; i < 4; ++i) myOctets[place + i] = 0;
    myAt += 4;
    if (length == 0 && (!alternative || isExtendable || isUnknown)) return;
    const std::size_t body = isExtendable ? start + up(myAt - start, 8) : myAt;
    if (!myRandom && body > around.limit) throw Fault{myAt, body - myAt, around.limit - myAt};
    zeros(body, around);
    if (!alternative)
    {
        if (length > around.limit - myAt)
            throw Fault{place, length + body - place - 4, around.limit - place - 4};
        tree.parts.emplace_back("octets", Tree());
        Tree& kept = tree.parts.back().second;
        kept.kind = Tree::Kind::leaf;
        kept.start = start;
        kept.leaf = '"' + hexadecimal(myAt, myAt + length) + '"';
        myAt += length;
        return;
    }
    myPath.push_back('.' + alternative->name.str());
    tree.parts.emplace_back(alternative->name.str(), Tree());
    Tree& inside = tree.parts.back().second;
    const std::string type = alternative->dataType.str();
    if (myRandom)
    {
        piece(type, inside, around);
        length = myAt - body;
        for (std::size_t i = 0; i < 4; ++i)
            myOctets[place + i] = static_cast<std::uint8_t>(length >> (24 - 8 * i));
        if (isExtendable && length == 0)
        {
            myAt = place + 4;
            myOctets.resize(myAt);
            tree.parts.pop_back();
        }
        myPath.pop_back();
        return;
    }
    const bool isPast = length > around.limit - myAt;
    const SlowCodec before(*this);
    bool isDone = false;
    if (!isPast) try
        {
            piece(type, inside, {myAt + length, 0});
            isDone = true;
            if (myAt != body + length)
            {
                myHasNotes = true;
                myDoubtOwn = myAt;
                myDoubtEnd = myAt = body + length;
            }
        }
        catch (const Fault&)
        {
            if (body + length == around.limit) throw;
        }
    if (!isDone)
    {
        myAt = body;
        myHasNotes = before.myHasNotes;
        myPath = before.myPath;
        inside = {};
        piece(type, inside, around);
        myHasNotes = true;
    }
    myPath.pop_back();
}

// From outside
// ------------------------------------------------------------------------------------------

// Characters up to the first zero; with what follows it, if that is more than zeros.
std::string SlowCodec::marking(const Tree& tree, std::size_t fault) const
{
    std::string letters = "\"";
    std::string rest;
    bool isAfter = false;
    for (const auto& [name, one] : tree.parts)
    {
        if (one.start >= fault) break;
        const std::uint8_t octet = myOctets[one.start];
        if (isAfter)
            rest += hexadecimal(one.start, one.start + 1);
        else if (octet != 0)
            letters += utf8(octet);
        isAfter = isAfter || octet == 0;
    }
    if (rest.find_first_not_of('0') == std::string::npos) return letters + '"';
    return "{\"text\":" + letters + "\",\"rest\":\"" + rest + "\"}";
}

std::string SlowCodec::text(const Tree& tree, std::size_t fault) const
{
    std::string out;
    std::vector<std::uint32_t> units;
    switch (tree.kind)
    {
        case Tree::Kind::none:
            break;
        case Tree::Kind::leaf:
            if (tree.leaf == "marking") return marking(tree, fault);
            if (tree.leaf != "text" && tree.leaf != "wide" && tree.leaf != "octets")
                return tree.leaf;
            out = "\"";
            for (const auto& [name, one] : tree.parts)
            {
                if (one.start >= fault) break;
                if (tree.leaf == "octets")
                    out += hexadecimal(one.start, one.start + 1);
                else
                    units.push_back(static_cast<std::uint32_t>(std::stoul(one.leaf)));
            }
            for (std::size_t i = 0; i < units.size(); ++i)
            {
                const bool isPair = i + 1 < units.size() && units[i] >= 0xD800 &&
                                    units[i] < 0xDC00 && units[i + 1] >= 0xDC00 &&
                                    units[i + 1] < 0xE000;
                out += utf8(isPair ? 0x10000 + (units[i] - 0xD800) * 1024 + units[i + 1] - 0xDC00
                                   : units[i]);
                i += isPair ? 1 : 0;
            }
            return out + "\"";
        case Tree::Kind::record:
        case Tree::Kind::array:
            for (const auto& [name, one] : tree.parts)
            {
                if (one.kind == Tree::Kind::none || one.start >= fault) continue;
                if (!out.empty()) out += ',';
                if (tree.kind == Tree::Kind::record) out += '"' + name + "\":";
                out += text(one, fault);
            }
            return tree.kind == Tree::Kind::record ? '{' + out + '}' : '[' + out + ']';
    }
    return out;
}

SlowValue SlowCodec::decode(const std::string& type, const Octets& octets)
{
    SlowValue value;
    Tree tree;
    myOctets = octets;
    myAt = myTailAt = myTailSize = myDoubtEnd = 0;
    myHasNotes = false;
    myRandom = nullptr;
    myPath.clear();
    std::size_t fault = SIZE_MAX;
    try
    {
        piece(type, tree, {octets.size(), 0});
        const bool isTail = myAt == myTailAt && octets.size() - myAt == myTailSize &&
                            myTailSize > 0 &&
                            std::all_of(octets.begin() + static_cast<std::ptrdiff_t>(myAt),
                                        octets.end(), [](std::uint8_t one) { return one == 0; });
        if (isTail) myAt = octets.size();
        value.hasNotes = myHasNotes || isTail;
        value.octets = myAt;
    }
    catch (const Fault& found)
    {
        value.isFaulty = true;
        value.octets = value.offset = fault = found.offset;
        value.needed = found.needed;
        value.left = found.left;
        for (const std::string& step : myPath) value.path += step;
        if (!value.path.empty() && value.path.front() == '.') value.path.erase(0, 1);
    }
    if (tree.start < fault) value.json = text(tree, fault);
    return value;
}

SlowCodec::Octets SlowCodec::make(const std::string& type, std::mt19937_64& random)
{
    Tree tree;
    myOctets.clear();
    myAt = 0;
    myPath.clear();
    myRandom = &random;
    piece(type, tree, {SIZE_MAX / 2, 0});
    myRandom = nullptr;
    myOctets.resize(myAt);
    return myOctets;
}
