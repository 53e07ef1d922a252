// SPDX-License-Identifier: Apache-2.0
#include "omt/model/model.h"

#include "omt/model/modelBuilder.h"
#include "omt/model/modelIndex.h"

#include <algorithm>

namespace omt
{

Model::Index::Index(const Tables& tables)
    : objectClasses(tables.objectClasses), interactionClasses(tables.interactionClasses)
{
    datatypes.reserve(tables.simpleData.size() + tables.referenceData.size() +
                      tables.enumeratedData.size() + tables.arrayData.size() +
                      tables.fixedRecords.size() + tables.variantRecords.size() +
                      tables.complexRecords.size() + tables.basicData.size());
    addDatatypes(tables.simpleData);
    addDatatypes(tables.referenceData);
    addDatatypes(tables.enumeratedData);
    addDatatypes(tables.arrayData);
    addDatatypes(tables.fixedRecords);
    addDatatypes(tables.variantRecords);
    addDatatypes(tables.complexRecords);
    addDatatypes(tables.basicData);
    addNames(notes, tables.notes);
    notesOfModule.resize(tables.modules.size() > 1 ? tables.modules.size() : 0);
    for (std::uint32_t i = 0; i < tables.notes.size(); ++i)
        if (tables.notes[i].module < notesOfModule.size())
            notesOfModule[tables.notes[i].module].try_emplace(tables.notes[i].name, i);
    addNames(dimensions, tables.dimensions);
    addNames(transportations, tables.transportations);
}

namespace
{

template <typename Map, typename Table>
auto findIn(const Map& names, const Table& table, std::string_view name) -> const
    typename Table::value_type*
{
    const auto found = names.find(name);
    return found == names.end() ? nullptr : &table[found->second];
}

template <typename Class>
const Class* parentIn(const std::vector<Class>& table, const Class& node)
{
    return node.parent == ClassDefinition::theNone ? nullptr : &table[node.parent];
}

template <typename Class>
std::string fullNameIn(const std::vector<Class>& table, const Class& node)
{
    std::vector<std::string_view> names;
    for (const Class* at = &node; at; at = parentIn(table, *at)) names.push_back(at->name);
    std::string text;
    for (auto name = names.rbegin(); name != names.rend(); ++name)
    {
        if (!text.empty()) text += '.';
        text += *name;
    }
    return text;
}

enum class Match
{
    none,
    suffix,
    whole
};

/// Whether the full name of a class is `path` or ends in it. Names may hold periods themselves.
template <typename Class>
Match matches(const std::vector<Class>& table, const Class& node, std::string_view path)
{
    for (const Class* at = &node;;)
    {
        const std::string_view name = at->name;
        if (path.size() < name.size() || path.substr(path.size() - name.size()) != name)
            return Match::none;
        path.remove_suffix(name.size());
        at = parentIn(table, *at);
        if (path.empty()) return at ? Match::suffix : Match::whole;
        if (!at || path.back() != '.') return Match::none;
        path.remove_suffix(1);
    }
}

template <typename Class, typename Classes>
std::vector<const Class*> findClasses(const std::vector<Class>& table, const Classes& classes,
                                      std::string_view path)
{
    std::vector<const Class*> found;
    // The own name is what follows a period of the path, mostly the last.
    for (std::size_t period = path.rfind('.');; period = path.rfind('.', period - 1))
    {
        const bool isWhole = period == std::string_view::npos;
        const auto first = classes.first.find(isWhole ? path : path.substr(period + 1));
        for (std::uint32_t i = first == classes.first.end() ? ClassDefinition::theNone
                                                            : first->second;
             i != ClassDefinition::theNone; i = classes.next[i])
        {
            const Match match = matches(table, table[i], path);
            if (match == Match::whole) return {&table[i]};
            if (match == Match::suffix) found.push_back(&table[i]);
        }
        if (isWhole || period == 0) return found;
    }
}

template <typename T>
T only(const std::vector<T>& found)
{
    return found.size() == 1 ? found.front() : T{};
}

/// The classes from the root down to this one.
template <typename Class>
std::vector<const Class*> lineage(const std::vector<Class>& table, const Class& node)
{
    std::vector<const Class*> classes;
    for (const Class* at = &node; at; at = parentIn(table, *at)) classes.push_back(at);
    std::reverse(classes.begin(), classes.end());
    return classes;
}

const List<Attribute>& membersOf(const ObjectClass& node)
{
    return node.attributes;
}
const List<Parameter>& membersOf(const InteractionClass& node)
{
    return node.parameters;
}

void setUse(MemberUse& use, const ObjectClass& node, const Attribute& attribute)
{
    use.objectClass = &node;
    use.attribute = &attribute;
}

void setUse(MemberUse& use, const InteractionClass& node, const Parameter& parameter)
{
    use.interactionClass = &node;
    use.parameter = &parameter;
}

/// Adds the member of this name that each class has, the nearest declaration counting.
template <typename Class>
void addMember(const std::vector<Class>& table, const std::vector<const Class*>& classes,
               std::string_view name, std::vector<MemberUse>& uses)
{
    for (const Class* node : classes)
    {
        const std::size_t before = uses.size();
        for (const Class* at = node; at && uses.size() == before; at = parentIn(table, *at))
            for (const auto& member : membersOf(*at))
            {
                if (member.name != name) continue;
                uses.emplace_back();
                uses.back().owner = at;
                setUse(uses.back(), *node, member);
                break;
            }
    }
}

}  // namespace

Model::Model()
{
    *this = ModelBuilder().build();
}

Edition Model::edition() const
{
    if (modules().empty()) return Edition::ieee2010;
    return std::max_element(modules().begin(), modules().end(),
                            [](const Module& a, const Module& b) { return a.edition < b.edition; })
        ->edition;
}

Datatype Model::findDatatype(std::string_view name) const
{
    const auto found = myIndex->datatypes.find(name);
    return found == myIndex->datatypes.end() ? Datatype() : found->second;
}

const Note* Model::findNote(std::string_view label) const
{
    return findIn(myIndex->notes, myTables->notes, label);
}

const Note* Model::findNote(std::string_view label, const Definition& user) const
{
    if (user.module < myIndex->notesOfModule.size())
        if (const Note* own = findIn(myIndex->notesOfModule[user.module], myTables->notes, label))
            return own;
    return findNote(label);
}

const Dimension* Model::findDimension(std::string_view name) const
{
    return findIn(myIndex->dimensions, myTables->dimensions, name);
}

const Transportation* Model::findTransportation(std::string_view name) const
{
    return findIn(myIndex->transportations, myTables->transportations, name);
}

std::vector<const ObjectClass*> Model::findObjectClasses(std::string_view path) const
{
    return findClasses(objectClasses(), myIndex->objectClasses, path);
}

std::vector<const InteractionClass*> Model::findInteractionClasses(std::string_view path) const
{
    return findClasses(interactionClasses(), myIndex->interactionClasses, path);
}

const ObjectClass* Model::findObjectClass(std::string_view path) const
{
    return only(findObjectClasses(path));
}

const InteractionClass* Model::findInteractionClass(std::string_view path) const
{
    return only(findInteractionClasses(path));
}

std::vector<MemberUse> Model::findMembers(std::string_view path) const
{
    std::vector<MemberUse> uses;
    const std::size_t period = path.rfind('.');
    if (period == std::string_view::npos) return uses;
    const std::string_view owner = path.substr(0, period);
    const std::string_view name = path.substr(period + 1);
    addMember(objectClasses(), findObjectClasses(owner), name, uses);
    addMember(interactionClasses(), findInteractionClasses(owner), name, uses);
    return uses;
}

const ObjectClass* Model::parent(const ObjectClass& node) const
{
    return parentIn(objectClasses(), node);
}

const InteractionClass* Model::parent(const InteractionClass& node) const
{
    return parentIn(interactionClasses(), node);
}

std::string Model::fullName(const ObjectClass& node) const
{
    return fullNameIn(objectClasses(), node);
}

std::string Model::fullName(const InteractionClass& node) const
{
    return fullNameIn(interactionClasses(), node);
}

void Model::forEachAttribute(
    const ObjectClass& node,
    const std::function<void(const ObjectClass&, const Attribute&)>& visit) const
{
    for (const ObjectClass* owner : lineage(objectClasses(), node))
        for (const Attribute& attribute : owner->attributes) visit(*owner, attribute);
}

void Model::forEachParameter(
    const InteractionClass& node,
    const std::function<void(const InteractionClass&, const Parameter&)>& visit) const
{
    for (const InteractionClass* owner : lineage(interactionClasses(), node))
        for (const Parameter& parameter : owner->parameters) visit(*owner, parameter);
}

Place Model::place(const Definition& definition) const
{
    if (definition.module >= modules().size()) return {};
    return {modules()[definition.module].file.str(), definition.line};
}

Place Model::place(const Definition& definition, const Text& property) const
{
    Place place = this->place(definition);
    if (property.line() != 0) place.line = property.line();
    return place;
}

std::vector<std::string_view> Model::noteLabels(const Definition& definition,
                                                std::uint8_t property) const
{
    constexpr std::string_view theBlanks = " \t\r\n";
    std::vector<std::string_view> labels;
    for (const Aside& aside : definition.asides)
    {
        if (aside.what != Aside::What::notes || aside.property != property) continue;
        std::string_view rest = aside.text;
        for (std::size_t at = 0;
             (at = rest.find_first_not_of(theBlanks)) != std::string_view::npos;)
        {
            const std::size_t end = std::min(rest.find_first_of(theBlanks, at), rest.size());
            labels.push_back(rest.substr(at, end - at));
            rest.remove_prefix(end);
        }
    }
    return labels;
}

std::size_t Model::octetsHeld() const
{
    return myOctetsHeld;
}

}  // namespace omt
