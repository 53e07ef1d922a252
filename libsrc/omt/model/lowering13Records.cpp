// SPDX-License-Identifier: Apache-2.0
// Lowering13: complex datatypes to fixed records, variant records and arrays.
#include "omt/base/nameHash.h"
#include "omt/model/lowering13.h"
#include "omt/model/rprNames.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace omt
{

namespace
{

bool isPaddingName(std::string_view name)
{
    constexpr std::string_view theWord = "padding";
    return name.size() >= theWord.size() &&
           std::equal(theWord.begin(), theWord.end(), name.begin(),
                      [](char a, unsigned char b)
                      { return a == static_cast<char>(std::tolower(b)); });
}

std::uint64_t aligned(std::uint64_t at, std::uint64_t boundary)
{
    return (at + boundary - 1) / boundary * boundary;
}

constexpr std::uint64_t theMostOctets = 0x7FFFFFFF;

}  // namespace

void Lowering13::Extent::add(const Extent& more)
{
    modulus = std::min(modulus, more.modulus);
    rest = (rest + more.rest) % modulus;
}

/// As many times as it likes.
void Lowering13::Extent::repeat(const Extent& element)
{
    modulus = element.modulus;
    while (element.rest % modulus != 0) modulus /= 2;
    rest = 0;
}

/// Components whose presence one component before them decides.
struct Lowering13::Run
{
    std::size_t decider = 0;
    /// Octets of padding between.
    std::uint64_t padding = 0;
    std::size_t first = 0;
    std::size_t end = 0;
};

/// Those that others hold before those others; without recursion, as they nest as deep as a
/// document says.
void Lowering13::lowerComplex()
{
    std::vector<ComplexRecord>& records = myBuilder.tables().complexRecords;
    NameMap<const ComplexRecord*> byName;
    for (const ComplexRecord& record : records) byName.try_emplace(record.name, &record);
    std::vector<std::pair<const ComplexRecord*, std::size_t>> open;
    for (const ComplexRecord& record : records)
    {
        if (byName[record.name] != &record || !myBusy.insert(record.name).second) continue;
        open.emplace_back(&record, 0);
        while (!open.empty())
        {
            auto& [top, next] = open.back();
            if (next == top->components.size())
            {
                lowerComplex(*top);
                open.pop_back();
                continue;
            }
            const auto inner = byName.find(top->components[next++].dataType);
            if (inner != byName.end() && myBusy.insert(inner->first).second)
                open.emplace_back(inner->second, 0);
        }
    }
    records.clear();
}

void Lowering13::lowerComplex(const ComplexRecord& record)
{
    Laid whole;
    whole.name = record.name.str();
    whole.size = 0;
    myFields.clear();
    myFieldNames.clear();
    myLastDecided.clear();
    for (std::size_t i = 0; i < record.components.size(); ++i)
        if (const auto how = occurrence(record.components[i].cardinality))
            if (!how->decider.empty()) myLastDecided[how->decider] = i;
    const std::optional<Run> run = findRun(record, 0);
    const bool isVariant =
        run && run->end == record.components.size() && placeVariant(record, *run, whole, true);
    if (!isVariant)
    {
        addFields(record, whole);
        FixedRecord made;
        static_cast<Definition&>(made) = record;
        made.asides = asidesFor(record, Kind::complexRecord, Kind::fixedRecord);
        made.encoding = myBuilder.text("HLAfixedRecord");
        made.semantics = record.semantics;
        made.fields = myBuilder.list(myFields);
        myBuilder.tables().fixedRecords.push_back(made);
    }
    myLaid[record.name.str()] = whole;
}

void Lowering13::addFields(const ComplexRecord& record, Laid& whole)
{
    const List<Component>& components = record.components;
    for (std::size_t i = 0; i < components.size(); ++i)
    {
        const std::optional<Run> run = findRun(record, i);
        if (run && placeVariant(record, *run, whole, false))
        {
            i = run->end - 1;
            continue;
        }
        const std::optional<Piece> piece = this->piece(record, i);
        const bool isLast = i + 1 == components.size();
        const bool isPlaced =
            piece && (!piece->isTail || isLast) && whole.extent.isMultipleOf(piece->boundary);
        if (isPlaced)
            place(components[i], *piece, whole);
        else if (piece && piece->size)
            placeOctets(record, i, 1, piece->size, whole);
        else
            return placeOctets(record, i, components.size() - i, std::nullopt, whole);
    }
}

void Lowering13::place(const Component& from, const Piece& piece, Laid& whole)
{
    RecordField field;
    static_cast<Definition&>(field) = from;
    field.asides = asidesFor(from, Kind::component, Kind::field);
    field.dataType = myBuilder.text(piece.type, from.dataType.line());
    field.semantics = from.semantics;
    if (!piece.count.empty())
    {
        Note note;
        note.module = from.module;
        note.line = from.line;
        note.name = myBuilder.text(myNames.free("CountOf" + from.name.str()));
        note.semantics = myBuilder.text("RPRlengthlessArrayLength=" + piece.count);
        myBuilder.tables().notes.push_back(note);
        Aside aside;
        aside.text = note.name;
        field.asides = myBuilder.appended(field.asides, aside);
    }
    myFields.push_back(field);
    myFieldNames.insert(from.name);
    if (piece.padding != 0)
        whole.extent = {piece.padding, 0};
    else
        whole.extent.add(piece.extent);
    whole.boundary = std::max(whole.boundary, piece.boundary);
    whole.isTail = whole.isTail || piece.isTail;
    if (whole.size && piece.size && *whole.size + *piece.size <= theMostOctets)
        whole.size = *whole.size + *piece.size;
    else
        whole.size = std::nullopt;
}

/// Components that 1516 would pad, or has no form for, as octets: as many as there always are, or
/// all up to the end of the value.
void Lowering13::placeOctets(const ComplexRecord& record, std::size_t first, std::size_t count,
                             std::optional<std::uint64_t> size, Laid& whole)
{
    const Component& from = record.components[first];
    Piece piece;
    piece.size = size;
    piece.isTail = !size;
    piece.type = size ? octets(*size) : tailOctets();
    if (size)
        piece.extent.rest = static_cast<std::uint32_t>(*size % 8);
    else
        piece.extent.modulus = 1;
    lose(from, from.dataType,
         "the datatype of `" + from.name.str() + "` of `" + record.name.str() + "`" +
             (count > 1 ? " and of what follows it" : "") +
             " is lost: 1516 has no form with these "
             "octets; they stay as octets");
    place(from, piece, whole);
}

// Components
// ---------------------------------------------------------------------------------

/// The datatype of a member by itself, with its units.
std::optional<Lowering13::Laid> Lowering13::element(const Member& member)
{
    const Laid* const known = laid(member.dataType);
    if (!known) return std::nullopt;
    Laid element = *known;
    if (isSimple(member.dataType))
        element.name = simpleName(member.dataType, &member);
    else
        loseUnits(member);
    return element;
}

std::optional<Lowering13::Piece> Lowering13::piece(const ComplexRecord& record, std::size_t index)
{
    const Component& from = record.components[index];
    std::optional<Occurrence> how = occurrence(from.cardinality);
    const std::optional<Laid> element = this->element(from);
    if (!how || !how->value.empty() || !element) return std::nullopt;
    const bool isOpen = how->most == Occurrence::theOpen && how->decider.empty();
    if (how->padding == 0 && isOpen && from.dataType == "octet")
        how->padding = paddingByName(from.name);
    Piece piece;
    if (how->padding != 0)
    {
        if (element->size != 1) return std::nullopt;
        const std::string name = "PaddingTo" + std::to_string(how->padding * 8) + "Array";
        piece.padding = how->padding;
        piece.type =
            arrayName(laid("octet")->name, name, "Dynamic", "RPR" + ("p" + name.substr(1)));
        return piece;
    }
    const bool isOne = how->most == 1 && (how->least == 1 || !how->decider.empty());
    if (!isOne)
    {
        std::optional<Piece> all = repeated(*element, *how);
        if (!all || all->size) return all;
        const std::string_view before =
            index > 0 ? record.components[index - 1].name.view() : std::string_view();
        if (!how->decider.empty())
            all->count = how->decider;
        else if (isCountByName(before))
            all->count = before;
        if (all->count.empty() || myFieldNames.count(all->count) != 0) return all;
        if (!how->decider.empty()) return std::nullopt;
        all->count.clear();
        return all;
    }
    piece.type = element->name;
    piece.extent = element->extent;
    piece.boundary = element->boundary;
    piece.size = element->size;
    piece.isTail = element->isTail;
    return piece;
}

/// An array, with the elements where HLA 1.3 has them; nothing where there is none.
std::optional<Lowering13::Piece> Lowering13::repeated(const Laid& element, const Occurrence& how)
{
    if (element.isTail) return std::nullopt;
    const bool isTight = element.extent.isMultipleOf(element.boundary);
    Piece piece;
    if (how.least == how.most)
    {
        const std::uint64_t size = element.size.value_or(0) * how.least;
        if ((!isTight && !element.size) || size > theMostOctets) return std::nullopt;
        const std::string count = std::to_string(how.least);
        piece.boundary = isTight ? element.boundary : 1;
        if (element.size) piece.size = size;
        piece.extent.modulus = element.extent.modulus;
        piece.extent.rest = static_cast<std::uint32_t>(std::uint64_t{element.extent.rest} *
                                                       how.least % piece.extent.modulus);
        piece.type = isTight ? arrayName(element.name, "Array" + count, count, "HLAfixedArray")
                             : octets(size);
        return piece;
    }
    const std::string most =
        std::to_string(how.most == Occurrence::theOpen ? theMostOctets : how.most);
    const bool isAny = how.most == Occurrence::theOpen && how.least == 0;
    piece.type = arrayName(element.name, "LengthlessArray",
                           isAny ? "Dynamic" : "[" + std::to_string(how.least) + ".." + most + "]",
                           isTight ? "RPRlengthlessArray" : "UnpaddedLengthlessVarArray");
    piece.boundary = isTight ? element.boundary : 1;
    piece.extent.repeat(element.extent);
    return piece;
}

// Conditions
// ---------------------------------------------------------------------------------

/// The components that a component decides on, next to it but for padding.
std::optional<Lowering13::Run> Lowering13::findRun(const ComplexRecord& record,
                                                   std::size_t decider) const
{
    const List<Component>& components = record.components;
    if (decider >= components.size()) return std::nullopt;
    const auto isDecided = [&](std::size_t i)
    {
        const auto how = occurrence(components[i].cardinality);
        return how && how->decider == components[decider].name;
    };
    Run run;
    run.decider = decider;
    run.first = decider + 1;
    for (; run.first < components.size() && isPaddingName(components[run.first].name); ++run.first)
    {
        const auto how = occurrence(components[run.first].cardinality);
        if (components[run.first].dataType != "octet" || !how || how->padding != 0 ||
            how->least != how->most)
            return std::nullopt;
        run.padding += how->least;
    }
    for (run.end = run.first; run.end < components.size() && isDecided(run.end); ++run.end)
    {
        const auto how = occurrence(components[run.end].cardinality);
        if (how->value.empty() || how->most != 1) return std::nullopt;
    }
    if (run.end == run.first) return std::nullopt;
    const auto last = myLastDecided.find(components[decider].name);
    return last->second < run.end ? std::optional(run) : std::nullopt;
}

/// A variant record, if its padding is what HLA 1.3 has between the deciding component and the
/// others.
bool Lowering13::placeVariant(const ComplexRecord& record, const Run& run, Laid& whole,
                              bool isWhole)
{
    const Component& decider = record.components[run.decider];
    const auto deciding = occurrence(decider.cardinality);
    const Laid* const discriminant = laid(decider.dataType);
    const bool isEnumerated =
        myModel.findDatatype(decider.dataType).as<EnumeratedData>() != nullptr;
    if (!discriminant || !discriminant->size || !isEnumerated || !deciding || deciding->most != 1 ||
        deciding->least != 1)
        return false;
    std::vector<Alternative> alternatives;
    Extent extent;
    std::uint32_t boundary = 1;
    bool isTail = false;
    NameSet values;
    for (std::size_t i = run.first; i < run.end; ++i)
    {
        const Component& from = record.components[i];
        const auto how = occurrence(from.cardinality);
        const std::optional<Laid> element = this->element(from);
        if (!element || !values.insert(how->value).second) return false;
        Alternative& alternative = alternatives.emplace_back();
        static_cast<Definition&>(alternative) = from;
        alternative.asides = asidesFor(from, Kind::component, Kind::alternative);
        alternative.enumerator = myBuilder.text(how->value, from.cardinality.line());
        alternative.dataType = myBuilder.text(element->name, from.dataType.line());
        alternative.semantics = from.semantics;
        boundary = std::max(boundary, element->boundary);
        isTail = isTail || element->isTail;
        // None of them may be there, so that only what divides its octets is known.
        Extent any;
        any.repeat(element->extent);
        extent.modulus = std::min(extent.modulus, any.modulus);
    }
    const std::uint32_t larger = std::max(boundary, discriminant->boundary);
    const std::uint64_t body = *discriminant->size + run.padding;
    if (aligned(*discriminant->size, boundary) != body || !whole.extent.isMultipleOf(larger) ||
        (isTail && run.end != record.components.size()))
        return false;
    Alternative& rest = alternatives.emplace_back();
    rest.module = record.module;
    rest.enumerator = myBuilder.text("HLAother");
    rest.name = myBuilder.text(run.padding == 0 ? "NA" : "Nothing");
    rest.dataType = myBuilder.text(run.padding == 0 ? std::string("NA") : emptyRecord());
    addVariant(record, run, alternatives, isWhole, whole);
    extent.rest = static_cast<std::uint32_t>(body % extent.modulus);
    whole.extent.add(extent);
    whole.boundary = std::max(whole.boundary, larger);
    whole.size = std::nullopt;
    whole.isTail = whole.isTail || isTail;
    return true;
}

void Lowering13::addVariant(const ComplexRecord& record, const Run& run,
                            const std::vector<Alternative>& alternatives, bool isWhole,
                            const Laid& whole)
{
    const Component& decider = record.components[run.decider];
    VariantRecord variant;
    static_cast<Definition&>(variant) = record;
    variant.asides = {};
    variant.discriminant = decider.name;
    variant.dataType = decider.dataType;
    variant.alternatives = myBuilder.list(alternatives);
    variant.encoding = myBuilder.text("HLAvariantRecord");
    if (isWhole)
    {
        variant.semantics = record.semantics;
        variant.asides = asidesFor(record, Kind::complexRecord, Kind::variantRecord);
    }
    else
    {
        variant.name = myBuilder.text(myNames.free(whole.name + decider.name.str() + "Variant"));
        RecordField field;
        static_cast<Definition&>(field) = decider;
        field.asides = asidesFor(decider, Kind::component, Kind::field);
        field.dataType = variant.name;
        field.semantics = decider.semantics;
        myFields.push_back(field);
    }
    myBuilder.tables().variantRecords.push_back(variant);
}

/// A record without octets, which stands for nothing but the padding before it.
std::string Lowering13::emptyRecord()
{
    std::string& name = myMade["empty"];
    if (!name.empty()) return name;
    name = myNames.free("Nothing");
    FixedRecord record;
    record.module = myModule;
    record.name = myBuilder.text(name);
    record.encoding = myBuilder.text("HLAfixedRecord");
    myBuilder.tables().fixedRecords.push_back(record);
    return name;
}

}  // namespace omt
