// SPDX-License-Identifier: Apache-2.0
// Fits the hierarchies: one root, no name twice below a class, dimensions where the edition has
// them.
#include "omt/base/nameHash.h"
#include "omt/model/compare.h"
#include "omt/model/fitting.h"

#include <algorithm>
#include <map>
#include <type_traits>
#include <unordered_map>
#include <utility>

namespace omt
{

namespace
{

template <typename T>
constexpr auto membersOf = &T::attributes;
template <>
constexpr auto membersOf<InteractionClass> = &InteractionClass::parameters;

}  // namespace

void Fitting::fitClasses()
{
    for (ObjectClass& node : tables().objectClasses)
    {
        moveDimensions(node);
        if (!isNew())
            for (const DirectedInteraction& each : node.directedInteractions)
                lose(each, each.name, describe(each, Kind::directedInteraction));
        if (!isNew()) node.directedInteractions = {};
        dropTwins(node, &ObjectClass::attributes);
    }
    for (InteractionClass& node : tables().interactionClasses)
        dropTwins(node, &InteractionClass::parameters);
    joinSiblings(tables().objectClasses);
    joinSiblings(tables().interactionClasses);
    joinRoots(tables().objectClasses, "HLAobjectRoot");
    joinRoots(tables().interactionClasses, "HLAinteractionRoot");
}

/// The schema has room for one root; the other classes without one above stand below it.
template <typename T>
void Fitting::joinRoots(std::vector<T>& table, std::string_view rootName)
{
    std::size_t count = 0;
    std::uint32_t root = T::theNone;
    bool isPlain = true;
    for (std::uint32_t i = 0; i < table.size(); ++i)
    {
        if (table[i].parent != T::theNone) continue;
        ++count;
        isPlain = isPlain && editionOf(table[i]) != Edition::hla13;
        if (root == T::theNone && table[i].name == rootName) root = i;
    }
    if (count == 0 || (count == 1 && (isPlain || root != T::theNone))) return;
    if (root == T::theNone)
    {
        root = static_cast<std::uint32_t>(table.size());
        T& added = table.emplace_back();
        added.name = myBuilder.text(rootName);
        added.module = table.front().module;
    }
    for (std::uint32_t i = 0; i < table.size(); ++i)
    {
        if (i == root || table[i].parent != T::theNone) continue;
        table[i].parent = root;
        // In HLA 1.3 the root is there without being written.
        if (editionOf(table[i]) != Edition::hla13)
            change(table[i], table[i].name,
                   describe(table[i], T::theKind) + " is written below `" + std::string(rootName) +
                       "`, as there is one root");
    }
}

template <typename T, typename Part>
void Fitting::dropTwins(T& node, List<Part> T::*list)
{
    const List<Part>& all = node.*list;
    // Nearly no list has twins.
    mySeen.start(all.size());
    if (std::all_of(all.begin(), all.end(),
                    [this](const Part& part) { return mySeen.add(part.name); }))
        return;
    NameSet names;
    std::vector<Part> parts;
    for (const Part& part : std::as_const(all))
    {
        if (names.insert(part.name).second)
            parts.push_back(part);
        else
            myFindings.push_back({Severity::warning, "lost",
                                  describe(part, Part::theKind) + " of " +
                                      describe(node, T::theKind) +
                                      " is lost: the name is there twice",
                                  myModel.place(part, part.name)});
    }
    if (parts.size() != all.size()) node.*list = myBuilder.list(parts);
}

/// Classes of one name below the same class become one, with the classes and members of all.
template <typename T>
void Fitting::joinSiblings(std::vector<T>& table)
{
    mySeen.start(table.size());
    if (std::all_of(table.begin(), table.end(),
                    [this](const T& node) { return mySeen.add(node.name, node.parent); }))
        return;
    struct Hash
    {
        std::size_t operator()(const std::pair<std::uint32_t, std::string_view>& key) const
        {
            return NameHash()(key.second) ^ key.first * 0x9E3779B97F4A7C15U;
        }
    };
    std::unordered_map<std::pair<std::uint32_t, std::string_view>, std::uint32_t, Hash> firsts;
    using Part = std::decay_t<decltype(*(std::declval<T&>().*membersOf<T>).begin())>;
    std::map<std::uint32_t, std::vector<Part>> more;
    std::vector<std::uint32_t> places(table.size());
    std::vector<T> kept;
    kept.reserve(table.size());
    for (std::size_t i = 0; i < table.size(); ++i)
    {
        T node = table[i];
        if (node.parent != T::theNone) node.parent = places[node.parent];
        const auto [first, isFirst] =
            firsts.try_emplace({node.parent, node.name}, static_cast<std::uint32_t>(kept.size()));
        places[i] = first->second;
        if (isFirst)
        {
            kept.push_back(node);
            continue;
        }
        change(node, node.name,
               describe(node, T::theKind) + " is there twice; what it holds goes to the first");
        const auto& members = node.*membersOf<T>;
        std::vector<Part>& all = more[first->second];
        all.insert(all.end(), members.begin(), members.end());
    }
    for (const auto& [index, members] : more)
    {
        const auto& own = kept[index].*membersOf<T>;
        std::vector<Part> all(own.begin(), own.end());
        all.insert(all.end(), members.begin(), members.end());
        kept[index].*membersOf<T> = myBuilder.list(all);
        dropTwins(kept[index], membersOf<T>);
    }
    table = std::move(kept);
}

/// 1516-2010 has dimensions at attributes, 1516-2025 at their class.
void Fitting::moveDimensions(ObjectClass& node)
{
    const auto says = [](const List<Text>& dimensions)
    { return !dimensions.empty() && saysSomething(dimensions[0].view()); };
    const List<Attribute>& own = node.attributes;
    const bool isStaying =
        isNew() ? std::none_of(own.begin(), own.end(),
                               [](const Attribute& each) { return each.dimensions.isThere(); })
                : !node.dimensions.isThere();
    if (isStaying) return;
    std::vector<Attribute> attributes(node.attributes.begin(), node.attributes.end());
    std::vector<Text> all(node.dimensions.begin(), node.dimensions.end());
    NameSet known(all.begin(), all.end());
    // A document may give any number of dimensions to any number of attributes.
    constexpr std::size_t theMostMoved = 1000000;
    bool isMoved = false;
    for (Attribute& attribute : attributes)
    {
        const bool isFrom = isNew() && attribute.dimensions.isThere();
        const bool isTo = !isNew() && says(node.dimensions) && !says(attribute.dimensions);
        if (!isFrom && !isTo) continue;
        isMoved = true;
        if (isTo)
        {
            if ((myMovedDimensions += node.dimensions.size()) <= theMostMoved)
                attribute.dimensions = node.dimensions;
            else
                lose(attribute, node.dimensions[0],
                     "one of too many uses of dimensions, at " +
                         describe(attribute, Kind::attribute) + ",");
            continue;
        }
        for (const Text& dimension : std::as_const(attribute.dimensions))
        {
            const bool isWanted = all.empty() || saysSomething(dimension.view());
            if (isWanted && known.insert(dimension).second) all.push_back(dimension);
        }
        if (says(attribute.dimensions))
            change(attribute, attribute.dimensions[0],
                   "the dimensions of " + describe(attribute, Kind::attribute) +
                       " stand at its object class");
        attribute.dimensions = {};
    }
    if (!isNew() && node.dimensions.isThere())
    {
        if (says(node.dimensions))
            change(node, node.dimensions[0],
                   "the dimensions of " + describe(node, Kind::objectClass) +
                       " stand at its attributes");
        node.dimensions = {};
    }
    if (!isMoved) return;
    node.attributes = myBuilder.list(attributes);
    if (isNew()) node.dimensions = myBuilder.list(all);
}

}  // namespace omt
