// SPDX-License-Identifier: Apache-2.0
#include "datatypeUses.h"

#include "datatypeReport.h"
#include "modelWords.h"
#include "omt/model/datatypeReferences.h"

#include <functional>
#include <map>

namespace
{

/// Calls a function with each datatype of the model, table by table.
template <typename Visit>
void forEachDatatype(const omt::Tables& tables, Visit visit)
{
    const auto visitTable = [&](const auto& table)
    {
        for (const auto& definition : table) visit(omt::Datatype(definition));
    };
    visitTable(tables.simpleData);
    visitTable(tables.referenceData);
    visitTable(tables.enumeratedData);
    visitTable(tables.arrayData);
    visitTable(tables.fixedRecords);
    visitTable(tables.variantRecords);
    visitTable(tables.complexRecords);
}

std::string placeIn(const omt::Datatype& owner, const omt::Definition& part, omt::Kind kind)
{
    switch (kind)
    {
        case omt::Kind::arrayData:
            return "element";
        case omt::Kind::field:
            return "field " + part.name.str();
        case omt::Kind::alternative:
            return "alternative " + part.name.str();
        case omt::Kind::component:
            return "component " + part.name.str();
        case omt::Kind::variantRecord:
            return "discriminant " + owner.as<omt::VariantRecord>()->discriminant.str();
        default:
            return "representation";
    }
}

/// Gets what kind of thing names a datatype, its name, and the datatype.
using Visit = std::function<void(const char*, const std::string&, const omt::Text&)>;

template <typename Class>
void visitMembers(const omt::Model& model, const std::vector<Class>& table, const Visit& visit)
{
    for (const Class& node : table)
        for (const auto& member : membersOf(node))
            if (!member.dataType.empty())
                visit(memberWord(node), fullNameText(model, node) + '.' + member.name.str(),
                      member.dataType);
}

template <typename Definitions>
void visitTable(const char* word, const Definitions& table, const Visit& visit)
{
    for (const auto& one : table) visit(word, one.name.str(), one.dataType);
}

/// Everything that is no datatype and names one.
void forEachHolder(const omt::Model& model, const Visit& visit)
{
    const omt::Tables& tables = model.tables();
    visitMembers(model, tables.objectClasses, visit);
    visitMembers(model, tables.interactionClasses, visit);
    for (const omt::Dimension& one : tables.dimensions)
        for (const omt::Text& name : one.dataTypes) visit("dimension", one.name.str(), name);
    visitTable("synchronization point", tables.synchronizationPoints, visit);
    visitTable("tag", tables.tags, visit);
    visitTable("time", tables.times, visit);
}

/// For each datatype that holds values of one, the next on the way down to that.
using NextDown = std::map<std::string_view, std::string_view>;

NextDown holdersOf(const omt::Model& model, std::string_view name)
{
    std::multimap<std::string_view, std::string_view> users;
    forEachDatatype(model.tables(),
                    [&](const omt::Datatype& datatype)
                    {
                        omt::forEachReference(
                            datatype, [&](const omt::Text& used, const omt::Definition&, omt::Kind)
                            { users.emplace(used, datatype.definition().name); });
                    });
    NextDown next = {
        {name, {}}
    };
    std::vector<std::string_view> pending = {name};
    for (std::size_t i = 0; i < pending.size(); ++i)
    {
        const auto [first, last] = users.equal_range(pending[i]);
        for (auto user = first; user != last; ++user)
            if (next.emplace(user->second, pending[i]).second) pending.push_back(user->second);
    }
    return next;
}

/// The datatypes from the one that a member has down to the one that was sought, without it.
std::string wayDown(const NextDown& next, std::string_view from)
{
    constexpr std::size_t theMostSteps = 20;
    std::string text;
    std::size_t steps = 0;
    for (auto at = next.find(from); !at->second.empty(); at = next.find(at->second))
    {
        if (!text.empty()) text += " > ";
        if (++steps > theMostSteps) return text + "...";
        text += at->first;
    }
    return text;
}

}  // namespace

TextTable directUses(const omt::Model& model, const std::string& name)
{
    TextTable table({whole(""), whole(""), wrap("")});
    forEachHolder(model,
                  [&](const char* word, const std::string& holder, const omt::Text& used)
                  {
                      if (used == name) table.add({word, holder, ""});
                  });
    forEachDatatype(model.tables(),
                    [&](const omt::Datatype& datatype)
                    {
                        omt::forEachReference(
                            datatype,
                            [&](const omt::Text& used, const omt::Definition& part, omt::Kind kind)
                            {
                                if (used == name)
                                    table.add({std::string(omt::wordOf(datatype)),
                                               datatype.definition().name.str(),
                                               placeIn(datatype, part, kind)});
                            });
                    });
    return table;
}

std::string usesReport(const omt::Model& model, const std::string& name)
{
    const NextDown next = holdersOf(model, name);
    TextTable table({whole(""), whole(""), wrap("through")});
    forEachHolder(model,
                  [&](const char* word, const std::string& holder, const omt::Text& used)
                  {
                      if (next.count(used) != 0) table.add({word, holder, wayDown(next, used)});
                  });
    if (table.isEmpty() && next.size() == 1 && !isBaseDatatype(model, name))
        findDatatype(model, name);
    std::string text = heading("Uses of " + name, '=').substr(1);
    text += table.isEmpty() ? "  No attribute or parameter holds it.\n" : table.text();
    const TextTable direct = directUses(model, name);
    return direct.isEmpty() ? text : text + heading("Named by") + direct.text();
}
