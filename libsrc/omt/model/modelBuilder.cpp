// SPDX-License-Identifier: Apache-2.0
#include "omt/model/modelBuilder.h"

#include "omt/model/modelIndex.h"
#include "omt/model/parts.h"
#include "omt/model/rows.h"

#include <algorithm>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace omt
{

ModelBuilder::ModelBuilder()
    : myTables(std::make_shared<Tables>()), myArena(std::make_shared<Arena>())
{
}

ModelBuilder::ModelBuilder(const Model& model)
    : myTables(std::make_shared<Tables>(model.tables())), myArena(std::make_shared<Arena>())
{
    share(model);
}

std::uint32_t ModelBuilder::addModule(std::string_view file, Edition edition)
{
    Module module;
    module.file = text(file);
    module.edition = edition;
    module.identification.module = static_cast<std::uint32_t>(myTables->modules.size());
    myTables->modules.push_back(module);
    return module.identification.module;
}

void ModelBuilder::share(const Model& model)
{
    for (const std::shared_ptr<const void>& memory : model.myMemory)
        if (std::find(myMemory.begin(), myMemory.end(), memory) == myMemory.end())
            myMemory.push_back(memory);
    myOctetsShared += model.myOctetsHeld;
}

namespace
{

/// Gives every class the list of its children, in linear time.
template <typename Class>
void linkClasses(std::vector<Class>& table, Arena& arena)
{
    std::vector<std::uint32_t> starts(table.size() + 1, 0);
    for (std::size_t i = 0; i < table.size(); ++i)
    {
        const std::uint32_t parent = table[i].parent;
        if (parent == ClassDefinition::theNone) continue;
        if (parent >= i) throw std::invalid_argument("a class stands before its parent");
        ++starts[parent + 1];
    }
    for (std::size_t i = 1; i < starts.size(); ++i) starts[i] += starts[i - 1];
    List<std::uint32_t> all =
        arena.list(std::vector<std::uint32_t>(starts.empty() ? 0 : starts.back()));
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i].children = {all.begin() + starts[i], starts[i + 1] - starts[i]};
    std::vector<std::uint32_t> filled(starts.begin(), starts.end());
    for (std::size_t i = 0; i < table.size(); ++i)
        if (table[i].parent != ClassDefinition::theNone)
            all[filled[table[i].parent]++] = static_cast<std::uint32_t>(i);
}

template <typename T>
std::size_t octetsOf(std::vector<T>& table)
{
    table.shrink_to_fit();
    return table.capacity() * sizeof(T);
}

std::size_t shrinkTables(Tables& tables)
{
    return octetsOf(tables.modules) + octetsOf(tables.services) + octetsOf(tables.objectClasses) +
           octetsOf(tables.interactionClasses) + octetsOf(tables.dimensions) +
           octetsOf(tables.times) + octetsOf(tables.tags) + octetsOf(tables.synchronizationPoints) +
           octetsOf(tables.transportations) + octetsOf(tables.switches) +
           octetsOf(tables.updateRates) + octetsOf(tables.basicData) + octetsOf(tables.simpleData) +
           octetsOf(tables.referenceData) + octetsOf(tables.enumeratedData) +
           octetsOf(tables.arrayData) + octetsOf(tables.fixedRecords) +
           octetsOf(tables.variantRecords) + octetsOf(tables.complexRecords) +
           octetsOf(tables.routingSpaces) + octetsOf(tables.notes);
}

}  // namespace

namespace
{

/// Whether texts of a row name datatypes.
bool namesDatatype(const Row& row)
{
    return row.value == ValueForm::reference &&
           (row.key == "dataType" || row.key == "representation");
}

/// How many names in a definition itself, without its parts, are changed.
template <typename T>
std::size_t rename(ModelBuilder& builder, T& definition, std::string_view from, const Text& to)
{
    std::size_t count = 0;
    const auto replace = [&](Text& text)
    {
        if (!text.isThere() || text != from) return;
        text = Text(to, text.line());
        ++count;
    };
    if constexpr (isDatatype(T::theKind)) replace(definition.name);
    for (const Row& row : rowsOf(T::theKind))
    {
        if (!namesDatatype(row)) continue;
        if (row.oneText) replace(definition.*row.oneText);
        if (!row.someTexts || (definition.*row.someTexts).empty()) continue;
        definition.*row.someTexts = builder.copy(definition.*row.someTexts);
        for (Text& text : definition.*row.someTexts) replace(text);
    }
    return count;
}

}  // namespace

std::size_t ModelBuilder::renameDatatype(std::string_view from, std::string_view to)
{
    const Text name = text(to);
    std::size_t count = 0;
    const auto renameParts = [&](auto& definition)
    {
        forEachPartList<std::decay_t<decltype(definition)>>(
            [&](auto list)
            {
                using Part = std::decay_t<decltype(*(definition.*list).begin())>;
                if constexpr (!std::is_same_v<Part, Text>)
                {
                    List<Part> parts = copy(definition.*list);
                    std::size_t changed = 0;
                    for (Part& part : parts) changed += rename(*this, part, from, name);
                    if (changed > 0) definition.*list = parts;
                    count += changed;
                }
            });
    };
    forEachNamedTable(
        [&](auto table)
        {
            for (auto& definition : tables().*table)
            {
                count += rename(*this, definition, from, name);
                renameParts(definition);
            }
        });
    return count;
}

Model ModelBuilder::build()
{
    Tables& tables = *myTables;
    linkClasses(tables.objectClasses, *myArena);
    linkClasses(tables.interactionClasses, *myArena);

    Model model{Model::Empty()};
    const std::size_t held = shrinkTables(tables);
    model.myIndex = std::make_shared<Model::Index>(tables);
    model.myOctetsHeld = held + myArena->octetsHeld() + myOctetsShared;
    model.myTables = std::move(myTables);
    model.myMemory = std::move(myMemory);
    model.myMemory.push_back(std::move(myArena));
    *this = ModelBuilder();
    return model;
}

}  // namespace omt
