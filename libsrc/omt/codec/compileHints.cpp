// SPDX-License-Identifier: Apache-2.0
// Compiler: hints that fit the model become looks and roles of nodes; others of the user are
// findings.
#include "omt/codec/compile.h"

#include <algorithm>

namespace omt
{

void Compiler::gatherHints()
{
    if (myOptions.hasBuiltInHints)
    {
        myBuiltIn = readHints(builtInHints(), "built-in hints").hints;
        addHints(myBuiltIn, true);
    }
    addHints(myOptions.hints, false);
}

void Compiler::addHints(const Hints& hints, bool isBuiltIn)
{
    for (const Hint& hint : hints.hints)
    {
        const std::string_view name = hint.name;
        const auto place = myPlan.names.find(hint.name);
        const bool isThere = place != myPlan.names.end();
        myHinted.push_back({&hint, &hints, isBuiltIn, {}});
        if (isThere) myHinted.back().nodes.push_back(place->second);
        if (const std::size_t period = name.rfind('.'); !isThere && period != name.npos)
            myFieldHints[name.substr(0, period)].push_back(myHinted.size() - 1);
    }
}

// A field about which there is a hint gets a node of its own: others may have the same datatype.
void Compiler::splitHinted(const Definition& record, std::vector<Part>& parts)
{
    if (myFieldHints.empty()) return;
    const auto place = myFieldHints.find(record.name.view());
    if (place == myFieldHints.end()) return;
    for (const std::size_t i : place->second)
    {
        Hinted& one = myHinted[i];
        const std::string_view field =
            std::string_view(one.hint->name).substr(record.name.size() + 1);
        for (Part& part : parts)
        {
            if (myPlan.text(part.name) != field) continue;
            if (myAliases[part.node] == theNone || mySources[part.node])
            {
                const Id own = addNode(std::string(myPlan.text(myPlan.nodes[part.node].name)));
                myAliases[own] = part.node;
                part.node = own;
            }
            one.nodes.push_back(part.node);
        }
    }
}

void Compiler::applyHints()
{
    for (std::size_t i = 0; i < myHinted.size(); ++i)
    {
        const Hinted& one = myHinted[i];
        if (one.nodes.empty())
            complain(i, "the model has no such datatype and no such field of a record");
        for (const Id id : one.nodes)
            if (one.hint->what == Hint::What::text)
                applyText(id, i);
            else
                setRole(id, i);
    }
    if (!myPlan.meanings.empty()) spreadRoles();
}

void Compiler::applyText(Id id, std::size_t hint)
{
    // One of a fixed size is filled up, so that it is bounded.
    constexpr std::uint32_t theLongest = 65536;
    Node& node = myPlan.nodes[id];
    const bool isArray = node.form == Form::array && node.extent != Extent::padding &&
                         (node.extent != Extent::fixed || node.count <= theLongest);
    const Node* const element = isArray ? &myPlan.nodes[node.element] : nullptr;
    if (!element || element->form != Form::number || element->size != 1 ||
        element->table != theNone)
        return complain(hint, "it is no array of octets, or one of more than 65536");
    node.look = Look::text;
}

bool Compiler::isEntityType(const Node& node) const
{
    constexpr std::uint32_t theSizes[] = {1, 1, 2, 1, 1, 1, 1};
    if (node.form != Form::record || !node.isFixed || node.parts != std::size(theSizes))
        return false;
    for (std::uint32_t i = 0; i < node.parts; ++i)
    {
        const Node& field = myPlan.nodes[myPlan.parts[node.first + i].node];
        if (field.form != Form::number || field.scalar == Scalar::floating ||
            field.size != theSizes[i])
            return false;
    }
    return true;
}

bool Compiler::isPosition(const Node& node) const
{
    if (node.form != Form::record || !node.isFixed || node.parts != 3) return false;
    for (std::uint32_t i = 0; i < node.parts; ++i)
    {
        const Node& field = myPlan.nodes[myPlan.parts[node.first + i].node];
        if (field.form != Form::number || field.scalar != Scalar::floating) return false;
    }
    return true;
}

void Compiler::setRole(Id id, std::size_t hint)
{
    const Hinted& one = myHinted[hint];
    const Node& node = myPlan.nodes[id];
    Meaning meaning;
    switch (one.hint->what)
    {
        case Hint::What::entityType:
            if (!isEntityType(node))
                return complain(hint,
                                "it is no record of seven integers of 1, 1, 2, 1, 1, 1, 1 octets");
            meaning.role = Role::entityType;
            break;
        case Hint::What::position:
            if (!isPosition(node))
                return complain(hint, "it is no record of three floating point numbers");
            meaning.role = Role::position;
            break;
        case Hint::What::table:
        case Hint::What::text:
            if (node.form != Form::number || node.scalar == Scalar::floating)
                return complain(hint, "it is no integer");
            meaning.role = Role::table;
            meaning.table = addTable(*one.from, one.hint->table);
            if (meaning.table == theNone)
                return complain(hint, "there is no table \"" + one.hint->table + "\"");
            break;
    }
    myPlan.meanings.resize(myPlan.nodes.size());
    myPlan.meanings[id] = meaning;
}

std::uint32_t Compiler::addTable(const Hints& hints, const std::string& name)
{
    const auto isIt = [&name](const NumberTable& one) { return one.name == name; };
    const auto found = std::find_if(hints.tables.begin(), hints.tables.end(), isIt);
    if (found == hints.tables.end()) return theNone;
    const auto [place, isNew] = myTables.try_emplace(&*found, theNone);
    if (!isNew) return place->second;
    Enumeration table;
    for (const auto& [number, text] : found->rows)
    {
        Enumeration::Entry& entry = table.entries.emplace_back();
        entry.quoted = myPlan.addQuoted(text, "", entry.name);
        entry.number = number;
    }
    sortEnumeration(table);
    place->second = static_cast<std::uint32_t>(myPlan.enumerations.size());
    myPlan.enumerations.push_back(std::move(table));
    return place->second;
}

// Marks the nodes that hold one with a role, however deep, so that others need no look.
void Compiler::spreadRoles()
{
    const std::size_t size = myPlan.nodes.size();
    std::vector<std::pair<Id, Id>> users;
    std::vector<Id> marked;
    for (Id id = 0; id < size; ++id)
    {
        const Node& node = myPlan.nodes[id];
        if (node.form == Form::array) users.emplace_back(node.element, id);
        if (node.form == Form::record || node.form == Form::variant)
            for (std::uint32_t i = 0; i < node.parts; ++i)
                users.emplace_back(myPlan.parts[node.first + i].node, id);
        if (myPlan.meanings[id].role == Role::none) continue;
        myPlan.meanings[id].isInside = true;
        marked.push_back(id);
    }
    std::sort(users.begin(), users.end());
    while (!marked.empty())
    {
        const Id id = marked.back();
        marked.pop_back();
        for (auto user = std::lower_bound(users.begin(), users.end(), std::pair<Id, Id>{id, 0});
             user != users.end() && user->first == id; ++user)
        {
            if (myPlan.meanings[user->second].isInside) continue;
            myPlan.meanings[user->second].isInside = true;
            marked.push_back(user->second);
        }
    }
}

void Compiler::complain(std::size_t hint, const std::string& why)
{
    const Hinted& one = myHinted[hint];
    if (one.isBuiltIn) return;
    myFindings.push_back({
        Severity::warning,
        "hint",
        "the hint about \"" + one.hint->name + "\" does not fit: " + why,
        {one.from->file, one.hint->line}
    });
}

}  // namespace omt
