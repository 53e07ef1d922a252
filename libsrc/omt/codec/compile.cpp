// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/compile.h"

#include "omt/codec/compileEndings.h"
#include "omt/codec/compileScripts.h"

#include <algorithm>
#include <numeric>

namespace omt
{

Plan Compiler::compile()
{
    const Tables& tables = myModel.tables();
    announce(tables.simpleData);
    announce(tables.referenceData);
    announce(tables.enumeratedData);
    announce(tables.arrayData);
    announce(tables.fixedRecords);
    announce(tables.variantRecords);
    announce(tables.complexRecords);
    announce(tables.basicData);
    announceStandard();
    gatherHints();
    // Basic representations and names first, as enumerations need them; enumerations before the
    // records that name their enumerators.
    const auto isOf = [this](std::size_t id, auto... kinds)
    { return mySources[id] && ((mySources[id].kind() == kinds) || ...); };
    const std::size_t size = mySources.size();
    for (std::size_t id = 0; id < size; ++id)
        if (isOf(id, Kind::basicData, Kind::simpleData, Kind::referenceData))
            build(static_cast<Id>(id), mySources[id]);
    for (std::size_t id = 0; id < size; ++id)
        if (isOf(id, Kind::enumeratedData)) build(static_cast<Id>(id), mySources[id]);
    for (std::size_t id = 0; id < size; ++id)
        if (isOf(id, Kind::arrayData)) build(static_cast<Id>(id), mySources[id]);
    for (std::size_t id = 0; id < size; ++id)
        if (isOf(id, Kind::fixedRecord, Kind::variantRecord, Kind::complexRecord))
            build(static_cast<Id>(id), mySources[id]);
    buildMembers();
    findOrder();
    findBoundaries();
    for (const Id id : myOrder) layOut(id);
    finishArrays();
    applyHints();
    findShapes();
    EndingCompiler(myPlan).run(myOrder);
    ScriptCompiler(myPlan).run(myOrder);
    myPlan.sortParts();
    return std::move(myPlan);
}

void Compiler::find(Severity severity, std::string_view name, const Definition& data,
                    const Text* property, std::string text)
{
    myFindings.push_back({severity, std::string(name), std::move(text),
                          property ? myModel.place(data, *property) : myModel.place(data),
                          std::nullopt, data.name.str()});
}

Compiler::Id Compiler::addNode(std::string_view name)
{
    const Id id = static_cast<Id>(myPlan.nodes.size());
    Node& node = myPlan.nodes.emplace_back();
    node.name = myPlan.add(name);
    mySources.emplace_back();
    myAliases.push_back(theNone);
    myLooks.push_back(name == "HLAASCIIchar"                    ? Look::latin1
                      : name == "HLAunicodeChar"                ? Look::utf16
                      : name == "HLAoctet" || name == "HLAbyte" ? Look::hexadecimal
                                                                : Look::elements);
    return id;
}

template <typename T>
void Compiler::announce(const std::vector<T>& table)
{
    for (const T& data : table)
    {
        const auto [place, isNew] = myPlan.names.try_emplace(data.name.str(), theNone);
        if (!isNew) continue;
        place->second = addNode(data.name);
        mySources.back() = Datatype(data);
    }
}

Compiler::Id Compiler::addNumber(std::string_view name, const Representation& what)
{
    const Id id = addNode(name);
    Node& node = myPlan.nodes[id];
    node.form = Form::number;
    node.scalar = what.scalar;
    node.isLittleEndian = what.isLittleEndian;
    node.size = what.octets;
    node.boundary = what.boundary;
    node.isFixed = true;
    return id;
}

// What the standard and HLA 1.3 have without a definition. A definition of the model counts first.
void Compiler::announceStandard()
{
    const auto isFree = [this](std::string_view name)
    { return myPlan.names.find(std::string(name)) == myPlan.names.end(); };
    for (const std::string_view name : theStandardNames)
        if (isFree(name))
            myPlan.names[std::string(name)] = addNumber(name, *standardRepresentation(name));
    const bool has13 = std::any_of(myModel.modules().begin(), myModel.modules().end(),
                                   [](const Module& one) { return one.edition == Edition::hla13; });
    if (!has13) return;
    for (const std::string_view name : theNamesOf13)
    {
        if (!isFree(name)) continue;
        const Id id = myPlan.names[std::string(name)] = addNumber(name, *representation13(name));
        if (name == "octet") myLooks[id] = Look::hexadecimal;
        if (name == "char") myLooks[id] = Look::latin1;
    }
    if (isFree("boolean"))
    {
        const Id id = myPlan.names["boolean"] = addNumber("boolean", {});
        Enumeration table;
        for (const std::string_view name : {"HLAfalse", "HLAtrue"})
        {
            Enumeration::Entry& entry = table.entries.emplace_back();
            entry.quoted = myPlan.addQuoted(name, "", entry.name);
            entry.number = name == "HLAtrue" ? 1 : 0;
        }
        sortEnumeration(table);
        myPlan.nodes[id].table = static_cast<std::uint32_t>(myPlan.enumerations.size());
        myPlan.enumerations.push_back(std::move(table));
    }
    if (isFree("string"))
    {
        const Id element = myPlan.names["char"];
        const Id id = myPlan.names["string"] = addNode("string");
        Node& node = myPlan.nodes[id];
        node.form = Form::array;
        node.extent = Extent::terminated;
        node.element = element;
    }
    if (isFree("any")) myPlan.names["any"] = addNode("any");
}

Compiler::Id Compiler::resolve(const Definition& data, const Text& name)
{
    const auto place = myPlan.names.find(name.str());
    if (place != myPlan.names.end()) return place->second;
    find(Severity::error, "unknown-datatype", data, &name,
         "\"" + cutText(data.name) + "\" is of the unknown datatype \"" + cutText(name) + "\"");
    const Id id = addNode(name);
    return id;
}

Compiler::Id Compiler::target(Id id) const
{
    constexpr int theLongestChain = 16;
    for (int i = 0; i < theLongestChain && myAliases[id] != theNone; ++i) id = myAliases[id];
    return id;
}

void Compiler::makeOctets(Id id)
{
    Node node;
    node.name = myPlan.nodes[id].name;
    node.units = myPlan.nodes[id].units;
    myPlan.nodes[id] = node;
    myAliases[id] = theNone;
}

void Compiler::build(Id id, Datatype type)
{
    if (const auto* basic = type.as<BasicData>()) build(id, *basic);
    if (const auto* simple = type.as<SimpleData>())
    {
        buildAlias(id, *simple, simple->representation);
        myPlan.nodes[id].units = myPlan.add(simple->units);
    }
    if (const auto* reference = type.as<ReferenceData>())
        buildAlias(id, *reference, reference->representation);
    if (const auto* enumerated = type.as<EnumeratedData>()) build(id, *enumerated);
    if (const auto* array = type.as<ArrayData>()) build(id, *array);
    if (const auto* record = type.as<FixedRecord>()) build(id, *record);
    if (const auto* variant = type.as<VariantRecord>()) build(id, *variant);
    if (const auto* complex = type.as<ComplexRecord>()) build(id, *complex);
}

void Compiler::build(Id id, const BasicData& data)
{
    std::string complaint;
    const std::optional<Representation> what = representation(data, complaint);
    if (!what)
    {
        find(Severity::error, "basic-representation", data, &data.size,
             "\"" + cutText(data.name) + "\" cannot be decoded: " + complaint);
        return;
    }
    Node& node = myPlan.nodes[id];
    node.form = Form::number;
    node.scalar = what->scalar;
    node.isLittleEndian = what->isLittleEndian;
    node.size = what->octets;
    node.boundary = what->boundary;
    node.isFixed = true;
}

void Compiler::buildAlias(Id id, const Definition& data, const Text& representation)
{
    const Id of = resolve(data, representation);
    myAliases[id] = of;
}

namespace
{

// HLA 1.3 does not say how long an enumerated value is; the RPR FOM has it in the name.
Representation enumeratedOf13(std::string_view name)
{
    for (const auto& [ending, octets] : {
             std::pair<std::string_view, std::uint8_t>{"8",  1},
              {"16", 2},
              {"32", 4},
              {"64", 8}
    })
        if (name.size() > ending.size() + 4 &&
            name.substr(name.size() - ending.size() - 4) == "Enum" + std::string(ending))
            return {Scalar::unsignedInteger, false, octets, 1};
    return {Scalar::unsignedInteger, false, 4, 1};
}

}  // namespace

void Compiler::build(Id id, const EnumeratedData& data)
{
    Node what;
    if (!data.representation.empty())
        what = myPlan.nodes[target(resolve(data, data.representation))];
    else
    {
        const Representation octets = enumeratedOf13(data.name);
        what.form = Form::number;
        what.size = octets.octets;
        what.isFixed = true;
    }
    if (what.form != Form::number || what.scalar == Scalar::floating)
    {
        if (myPlan.names.count(data.representation.str()) != 0)
            find(Severity::error, "enumerated-representation", data, &data.representation,
                 "\"" + cutText(data.name) + "\" cannot be decoded: \"" +
                     cutText(data.representation) + "\" is no integer");
        return;
    }
    what.name = myPlan.nodes[id].name;
    what.units = {};
    Enumeration table;
    addEnumerators(table, data);
    sortEnumeration(table);
    what.table = static_cast<std::uint32_t>(myPlan.enumerations.size());
    myPlan.enumerations.push_back(std::move(table));
    myPlan.nodes[id] = what;
}

void Compiler::addEnumerators(Enumeration& table, const EnumeratedData& data)
{
    std::int64_t next = wholeNumber(data.startValue).value_or(0);
    table.entries.reserve(data.enumerators.size());
    for (const Enumerator& enumerator : data.enumerators)
    {
        Enumeration::Entry entry;
        entry.quoted = myPlan.addQuoted(enumerator.name, "", entry.name);
        if (enumerator.values.empty() && data.autoSequence.isThere())
        {
            entry.number = next;
            table.entries.push_back(entry);
        }
        for (const Text& value : enumerator.values)
        {
            const std::optional<std::int64_t> number = wholeNumber(value);
            if (!number)
            {
                find(Severity::error, "enumerator-value", data, &value,
                     "the value \"" + cutText(value) + "\" of \"" + cutText(enumerator.name) +
                         "\" is no whole number");
                continue;
            }
            entry.number = *number;
            table.entries.push_back(entry);
            entry.isFirst = false;
        }
        if (!table.entries.empty())
            next = static_cast<std::int64_t>(
                static_cast<std::uint64_t>(table.entries.back().number) + 1);
    }
}

void Compiler::sortEnumeration(Enumeration& table) const
{
    const auto& entries = table.entries;
    std::vector<std::uint32_t> all(entries.size());
    std::iota(all.begin(), all.end(), 0U);
    table.byNumber = all;
    const auto byNumber = [&entries](std::uint32_t one, std::uint32_t two)
    { return entries[one].number < entries[two].number; };
    if (!std::is_sorted(all.begin(), all.end(), byNumber))
        std::stable_sort(table.byNumber.begin(), table.byNumber.end(), byNumber);
    const auto isSame = [&entries](std::uint32_t one, std::uint32_t two)
    { return entries[one].number == entries[two].number; };
    table.byNumber.erase(std::unique(table.byNumber.begin(), table.byNumber.end(), isSame),
                         table.byNumber.end());
    table.byName = std::move(all);
    const auto byName = [&](std::uint32_t one, std::uint32_t two)
    {
        const int order = myPlan.text(entries[one].name).compare(myPlan.text(entries[two].name));
        return order < 0 || (order == 0 && one < two);
    };
    std::sort(table.byName.begin(), table.byName.end(), byName);
    constexpr std::uint64_t theMostDense = 256;
    std::uint64_t size = 0;
    for (const std::uint32_t entry : table.byNumber)
        if (const auto number = static_cast<std::uint64_t>(entries[entry].number);
            number < theMostDense)
            size = std::max(size, number + 1);
    table.dense.assign(size, theNone);
    for (const std::uint32_t entry : table.byNumber)
        if (static_cast<std::uint64_t>(entries[entry].number) < size)
            table.dense[static_cast<std::size_t>(entries[entry].number)] = entry;
    myPlan.addSlots(table);
}

bool Compiler::setExtent(Node& node, Encoding how, const Cardinality& dimension) const
{
    node.form = Form::array;
    node.least = dimension.least;
    node.most = dimension.most;
    switch (how)
    {
        case Encoding::fixedArray:
            node.extent = Extent::fixed;
            node.count = dimension.least;
            return dimension.isNumber();
        case Encoding::variableArray:
            node.extent = Extent::counted;
            return true;
        case Encoding::lengthlessArray:
        case Encoding::unpaddedLengthlessArray:
            node.extent = Extent::lengthless;
            return true;
        case Encoding::terminatedArray:
            node.extent = Extent::terminated;
            return true;
        case Encoding::paddingTo16:
        case Encoding::paddingTo32:
        case Encoding::paddingTo64:
            node.extent = Extent::padding;
            node.count = how == Encoding::paddingTo16 ? 2 : how == Encoding::paddingTo32 ? 4 : 8;
            return true;
        default:
            return false;
    }
}

void Compiler::build(Id id, const ArrayData& data)
{
    const std::optional<std::vector<Cardinality>> dimensions = cardinality(data.cardinality);
    Encoding how = encoding(data.encoding);
    if (data.encoding.empty() && dimensions)
        how = dimensions->front().isNumber() ? Encoding::fixedArray : Encoding::variableArray;
    const auto refuse = [&](const Text& property, const std::string& why)
    {
        find(Severity::error, "array-encoding", data, &property,
             "the array \"" + cutText(data.name) + "\" cannot be decoded: " + why);
        makeOctets(id);
    };
    if (!dimensions)
        return refuse(data.cardinality, "its cardinality is \"" + cutText(data.cardinality) + "\"");
    Id element = resolve(data, data.dataType);
    for (std::size_t i = dimensions->size(); i-- > 0;)
    {
        Node node;
        if (!setExtent(node, how, (*dimensions)[i]))
            return how == Encoding::fixedArray
                       ? refuse(data.cardinality,
                                "a fixed array of \"" + cutText(data.cardinality) + "\" elements")
                       : refuse(data.encoding, "its encoding is unknown");
        node.element = element;
        // Its elements stand without padding: told by a boundary of 0 until it is laid out.
        node.boundary = how == Encoding::unpaddedLengthlessArray ? 0 : 1;
        if (i > 0) element = addNode(data.name);
        const Id at = i > 0 ? element : id;
        node.name = myPlan.nodes[at].name;
        myPlan.nodes[at] = node;
    }
}

void Compiler::build(Id id, const FixedRecord& data)
{
    if (!data.encoding.empty() && encoding(data.encoding) != Encoding::fixedRecord)
        return find(
            Severity::error, "record-encoding", data, &data.encoding,
            "the record \"" + cutText(data.name) + "\" cannot be decoded: its encoding is unknown");
    std::vector<Part> parts;
    std::vector<std::string_view> names;
    for (const RecordField& field : data.fields)
    {
        parts.emplace_back().node = resolve(field, field.dataType);
        names.push_back(field.name);
    }
    nameParts(data, parts, names);
    for (std::size_t i = 0; i < data.fields.size(); ++i) addCount(data, i, parts);
    splitHinted(data, parts);
    myPlan.nodes[id].form = Form::record;
    storeParts(id, parts);
}

std::string Compiler::repeatedName(std::string_view datatype, std::string_view cardinality)
{
    return std::string(datatype) + '\n' + std::string(cardinality);
}

// An attribute or parameter of HLA 1.3 may have several values.
void Compiler::buildMembers()
{
    const auto build = [this](const Member& member)
    {
        if (member.cardinality.empty() || member.cardinality == "1") return;
        const auto how = componentCardinality(member.cardinality);
        if (!how || (how->least == 1 && how->most == 1)) return;
        const auto [place, isNew] =
            myPlan.names.try_emplace(repeatedName(member.dataType, member.cardinality), theNone);
        if (!isNew) return;
        const Id element = resolve(member, member.dataType);
        const Id id = addRepeated(element, *how, false);
        myPlan.names[repeatedName(member.dataType, member.cardinality)] = id;
    };
    for (const ObjectClass& one : myModel.objectClasses())
        for (const Attribute& attribute : one.attributes) build(attribute);
    for (const InteractionClass& one : myModel.interactionClasses())
        for (const Parameter& parameter : one.parameters) build(parameter);
}

}  // namespace omt
