// SPDX-License-Identifier: Apache-2.0
#include "omt/check/diffItems.h"

#include "omt/base/nameHash.h"
#include "omt/model/compare.h"
#include "omt/model/parts.h"
#include "omt/model/schemaValues.h"

#include <functional>
#include <optional>
#include <type_traits>

namespace omt
{

namespace
{

/// The one list of parts that an item of a kind has and that are no items themselves.
template <typename T>
PartView partsOf(const T& definition)
{
    PartView view;
    forEachPartList<T>(
        [&](auto list)
        {
            using Part = std::decay_t<decltype(*(definition.*list).begin())>;
            if constexpr (!std::is_same_v<Part, Text> && !std::is_base_of_v<Member, Part>)
                view = PartView(definition.*list);
            else if constexpr (std::is_same_v<Part, Component>)
                view = PartView(definition.*list);
        });
    return view;
}

}  // namespace

DiffItems::DiffItems(const Model& model) : myModel(model)
{
    const Tables& tables = model.tables();
    addClasses(tables.objectClasses, &ObjectClass::attributes);
    addClasses(tables.interactionClasses, &InteractionClass::parameters);
    const auto addTables = [&](bool areDatatypes)
    {
        forEachNamedTable(
            [&](auto table)
            {
                using T = typename std::decay_t<decltype(tables.*table)>::value_type;
                if constexpr (!std::is_base_of_v<ClassDefinition, T>)
                    if (isDatatype(T::theKind) == areDatatypes) addTable(tables.*table);
            });
    };
    addTables(true);
    for (std::uint32_t item = 0; item < size(); ++item)
        if (isDatatype(myItems[item].kind) &&
            &model.findDatatype(myItems[item].name()).definition() == myItems[item].definition)
            myDatatypes.try_emplace(myItems[item].name(), item);
    addTables(false);
}

template <typename T>
void DiffItems::addTable(const std::vector<T>& table)
{
    for (const T& one : table)
        myItems.push_back({T::theKind, &one, theNoItem, nullptr, partsOf(one)});
}

template <typename Class, typename Part>
void DiffItems::addClasses(const std::vector<Class>& table, List<Part> Class::*members)
{
    std::vector<std::uint32_t> places;
    for (const Class& one : table)
    {
        const std::uint32_t place = size();
        const std::uint32_t owner =
            one.parent == ClassDefinition::theNone ? theNoItem : places[one.parent];
        places.push_back(place);
        myItems.push_back({Class::theKind, &one, owner, nullptr, partsOf(one)});
        for (const Part& member : one.*members)
            myItems.push_back({Part::theKind, &member, place, &member, {}});
    }
}

bool DiffItems::isRoot(std::uint32_t item) const
{
    const DiffItem& one = myItems[item];
    if (one.owner != theNoItem) return false;
    if (one.kind == Kind::objectClass)
        return one.name() == "HLAobjectRoot" || one.name() == "ObjectRoot";
    return one.kind == Kind::interactionClass &&
           (one.name() == "HLAinteractionRoot" || one.name() == "InteractionRoot");
}

std::uint32_t DiffItems::ownerBelowRoot(std::uint32_t item) const
{
    const std::uint32_t owner = myItems[item].owner;
    return owner == theNoItem || (!myItems[item].member && isRoot(owner)) ? theNoItem : owner;
}

std::string DiffItems::fullName(std::uint32_t item) const
{
    constexpr std::size_t theLongest = 400;
    std::vector<std::string_view> names;
    std::size_t length = 0;
    std::uint32_t at = item;
    while (at != theNoItem && length < theLongest)
    {
        names.push_back(myItems[at].name());
        length += names.back().size() + 1;
        at = ownerBelowRoot(at);
    }
    std::string text = at == theNoItem ? "" : "...";
    for (auto name = names.rbegin(); name != names.rend(); ++name)
    {
        if (!text.empty() && text != "...") text += '.';
        text += cutText(*name);
    }
    return text;
}

std::uint32_t DiffItems::findDatatype(std::string_view name) const
{
    const auto found = myDatatypes.find(name);
    return found == myDatatypes.end() ? theNoItem : found->second;
}

Edition DiffItems::edition(std::uint32_t item) const
{
    const std::uint32_t module = myItems[item].definition->module;
    return module < myModel.modules().size() ? myModel.modules()[module].edition
                                             : Edition::ieee2010;
}

// What definitions say
// -----------------------------------------------------------------------------

namespace
{

void mix(std::uint64_t& content, std::string_view text)
{
    content = (content ^ NameHash()(text)) * 0x9E3779B97F4A7C15;
    content ^= content >> 29;
}

/// Whether anything was said.
bool mixRows(std::uint64_t& content, const Definition& definition, Kind kind, bool withName)
{
    bool says = false;
    for (const Row& row : rowsOf(kind))
    {
        if (row.bearing != Bearing::behaviour || row.form == Row::Form::parts) continue;
        if (row.oneText == &Definition::name && !withName) continue;
        const auto add = [&](std::string_view text)
        {
            if (!saysSomething(text)) return;
            says = true;
            mix(content, row.key);
            mix(content, comparable(text, row));
        };
        if (row.oneText) add(definition.*row.oneText);
        if (row.someTexts)
            for (const Text& text : definition.*row.someTexts) add(text);
    }
    return says;
}

}  // namespace

std::uint64_t contentOf(const DiffItem& item)
{
    std::uint64_t content = static_cast<std::uint64_t>(item.kind) + 1;
    bool says = mixRows(content, *item.definition, item.kind, false);
    for (std::size_t i = 0; i < item.parts.size(); ++i)
        says = mixRows(content, item.parts[i], item.parts.kind(), true) || says;
    return says ? content : 0;
}

std::vector<Text> referredBy(const Datatype& datatype)
{
    std::vector<Text> names;
    if (const auto* const simple = datatype.as<SimpleData>()) names = {simple->representation};
    if (const auto* const one = datatype.as<ReferenceData>()) names = {one->representation};
    if (const auto* const one = datatype.as<EnumeratedData>()) names = {one->representation};
    if (const auto* const array = datatype.as<ArrayData>()) names = {array->dataType};
    if (const auto* const record = datatype.as<FixedRecord>())
        for (const RecordField& field : record->fields) names.push_back(field.dataType);
    if (const auto* const complex = datatype.as<ComplexRecord>())
        for (const Component& component : complex->components) names.push_back(component.dataType);
    if (const auto* const variant = datatype.as<VariantRecord>())
    {
        names.push_back(variant->dataType);
        for (const Alternative& one : variant->alternatives) names.push_back(one.dataType);
    }
    return names;
}

std::string comparable(std::string_view text, const Row& row)
{
    if (row.key == "transportation")
    {
        if (text == "best_effort") return "HLAbestEffort";
        if (text == "reliable") return "HLAreliable";
    }
    std::optional<std::string> word;
    if (row.value >= ValueForm::sharing) word = accepted(text, row.value, Edition::ieee2025);
    return word ? *word : std::string(text);
}

}  // namespace omt
