// SPDX-License-Identifier: Apache-2.0
// The two ways in which a tree takes entries over from another: table by table, class by class.
#pragma once

#include "omtReader/classFinder.h"

#include <memory>
#include <typeinfo>
#include <vector>

namespace omtreader
{

/// Merges a class and all below it into the tree; gives the class if it is new there, else null.
///
/// The classes below go through the tree's own merge operation, which a host may have overridden.
/// `finder` stands in for the tree's look-up, where there is one.
template <typename Class>
Class* mergeClass(DtOMTTree& tree, const Class& source, ClassFinder<Class>* finder)
{
    using H = Hierarchy<Class>;
    const DtString& name = source.getFullName();
    Class* const present = finder ? finder->find(name) : H::find(tree, name);
    std::unique_ptr<Class> made;
    if (!present)
    {
        made = std::make_unique<Class>(source);
        for (auto* member : H::members(*made)) member->setParentObject(made.get());
    }
    else if (H::members(*present).empty())
    {
        for (const auto* member : H::members(source))
            H::addMember(*present, new typename H::Member(*member));
    }

    Class& target = present ? *present : *made;
    for (const Class* child : H::children(source))
        if (Class* const madeChild = H::merge(tree, *child)) H::addChild(target, madeChild);
    if (made) H::add(tree, made.get());  // behind its children, as readers do
    return made.release();
}

/// One table of a tree: its two ends, its look-up and what adds to it.
template <typename Node>
struct Table
{
    using Iterator = typename std::list<Node*>::iterator;
    Iterator (DtOMTTree::*begin)();
    Iterator (DtOMTTree::*end)();
    Node* (DtOMTTree::*find)(const DtString&);
    void (DtOMTTree::*add)(Node*);
};

/// Whether a table has an entry under a key, asked for every entry of another table.
///
/// In a plain tree the keys are collected once. A tree that derives from it may look up in its own
/// way, and is asked each time.
template <typename Node, typename KeyOf, typename Find>
class KeySet
{
public:
    KeySet(DtOMTTree& tree, const Table<Node>& table, KeyOf keyOf, Find find)
        : myTree(tree), myKeyOf(keyOf), myFind(find), myIsPlain(typeid(tree) == typeid(DtOMTTree))
    {
        if (!myIsPlain) return;
        for (auto node = (tree.*table.begin)(); node != (tree.*table.end)(); ++node) add(*node);
    }

    bool holds(const DtString& key) const
    {
        if (!myIsPlain) return myFind(myTree, key) != nullptr;
        const auto isOfKey = [&](std::size_t place) { return myKeyOf(*myNodes[place]) == key; };
        return myPlaces.find(std::hash<DtString>()(key), isOfKey) != PlaceTable::theNone;
    }

    void add(const Node* node)
    {
        if (!myIsPlain || !node) return;
        myPlaces.add(std::hash<DtString>()(myKeyOf(*node)), myNodes.size());
        myNodes.push_back(node);
    }

private:
    DtOMTTree& myTree;
    KeyOf myKeyOf;
    Find myFind;
    bool myIsPlain;
    std::vector<const Node*> myNodes;
    PlaceTable myPlaces;
};

/// Adds a copy of every entry whose key the tree's table does not have yet.
template <typename Node, typename KeyOf, typename Find>
void mergeTable(DtOMTTree& tree, DtOMTTree& source, const Table<Node>& table, KeyOf keyOf,
                Find find)
{
    if (&tree == &source) return;
    KeySet<Node, KeyOf, Find> keys(tree, table, keyOf, find);
    for (auto node = (source.*table.begin)(); node != (source.*table.end)(); ++node)
    {
        if (!*node || keys.holds(keyOf(**node))) continue;
        Node* const copy = new Node(**node);
        (tree.*table.add)(copy);
        keys.add(copy);
    }
}

/// As above for a table whose key is the name.
template <typename Node>
void mergeTable(DtOMTTree& tree, DtOMTTree& source, const Table<Node>& table)
{
    mergeTable(
        tree, source, table, [](const Node& node) -> const DtString& { return node.getName(); },
        [&table](DtOMTTree& where, const DtString& name) { return (where.*table.find)(name); });
}

}  // namespace omtreader
