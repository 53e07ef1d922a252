// SPDX-License-Identifier: Apache-2.0
// The two ways in which a tree takes entries over from another: table by table, class by class.
#pragma once

#include "omtReader/classFinder.h"
#include "util/dtMessages.h"

#include <algorithm>
#include <memory>
#include <string>
#include <typeinfo>
#include <unordered_set>
#include <utility>
#include <vector>

namespace omtreader
{

/// The merge of one hierarchy into a tree, and its undoing: what it has added so far goes again
/// with it, unless keep() was called.
///
/// The classes of a host's tree go through its own merge operation, down to a depth that leaves the
/// stack to the host. Those of a plain tree, and those below that depth, are walked flat. A class
/// that stands below itself is passed over there.
template <typename Class>
class ClassMerge
{
public:
    explicit ClassMerge(DtOMTTree& tree)
        : myTree(tree), myIsPlain(typeid(tree) == typeid(DtOMTTree)), myFinder(tree)
    {
    }
    ~ClassMerge()
    {
        if (!myIsKept) undo();
    }
    ClassMerge(const ClassMerge&) = delete;
    ClassMerge& operator=(const ClassMerge&) = delete;

    void keep() { myIsKept = true; }

    /// Merges a class and all below it; gives the class if it is new in the tree, else null.
    Class* merge(const Class& top)
    {
        Walk walk{*this};
        Class* made = nullptr;
        for (walk.enter(top); !walk.levels.empty();)
        {
            Level& level = walk.levels.back();
            if (level.next == H::children(*level.source).end())
            {
                made = walk.leave();
                continue;
            }
            const Class& child = **level.next++;
            if (!myIsPlain && myDepth < theMostCalls)
                link(level, H::merge(myTree, child));
            else
                walk.enter(child);
        }
        return made;
    }

private:
    using H = Hierarchy<Class>;
    using Finder = ClassFinder<Class>;

    /// A class of the source whose children are being merged.
    struct Level
    {
        const Class* source;
        typename std::list<Class*>::const_iterator next;
        Class* target = nullptr;
        std::unique_ptr<Class> made = nullptr;  // the target, if that is new
        typename Finder::Matches matches = {};
        std::string nameAbove = {};
        bool isNameAboveKept = false;
    };

    /// One way down from a class, with the full name of the class reached.
    struct Walk
    {
        explicit Walk(ClassMerge& owner) : merge(owner) { ++merge.myDepth; }
        Walk(const Walk&) = delete;
        Walk& operator=(const Walk&) = delete;
        ~Walk() { --merge.myDepth; }

        void enter(const Class& source);
        bool addName(const Class& source);
        Class* leave();

        ClassMerge& merge;
        std::vector<Level> levels;
        std::unordered_set<const Class*> sources;  // those of the levels
        std::string name;
    };

    bool isFinderUsed() const { return myIsPlain && myFinder.isSure(); }
    void addMembers(Class& target, const Class& source);
    void link(const Level& parent, Class* child);
    void undo() noexcept;

    static constexpr int theMostCalls = 100;

    DtOMTTree& myTree;
    const bool myIsPlain;
    bool myIsKept = false;
    int myDepth = 0;
    Finder myFinder;

    // What was done, for the undoing.
    std::vector<Class*> myAdded;                     // in the list of the tree, or about to be
    std::vector<std::pair<Class*, Class*>> myLinks;  // of a class that was there to a new one
    std::vector<Class*> myFilled;                    // classes that were given members
};

template <typename Class>
void ClassMerge<Class>::Walk::enter(const Class& source)
{
    if (!sources.insert(&source).second)
    {
        DtWarn << "Warning: class \"" << source.getName()
               << "\" stands below itself; it was not merged again there\n";
        return;
    }
    levels.push_back({&source, H::children(source).begin()});
    Level& level = levels.back();
    const std::size_t aboveLength = name.size();
    const bool isStep = addName(source);
    if (merge.isFinderUsed())
        level.matches = isStep ? merge.myFinder.goOn(levels.end()[-2].matches,
                                                     std::string_view(name).substr(aboveLength))
                               : merge.myFinder.start(name);
    level.target = merge.isFinderUsed() ? merge.myFinder.found(name, level.matches)
                                        : H::find(merge.myTree, name);
    if (!level.target)
    {
        level.made = std::make_unique<Class>(source);
        level.target = level.made.get();
        for (auto* member : H::members(*level.made)) member->setParentObject(level.target);
    }
    else if (H::members(*level.target).empty())
        merge.addMembers(*level.target, source);
}

/// Makes the name that of a class in the last level. Whether that took no more than adding to it:
/// a class may have been asked for its full name when it or one above had another name.
template <typename Class>
bool ClassMerge<Class>::Walk::addName(const Class& source)
{
    const std::size_t aboveLength = name.size();
    if (aboveLength > 0 && source.getParentObject() == levels.end()[-2].source &&
        !FullNames::isHosts(source))
    {
        name += '.';
        name += source.getName().view();
        const DtString* const known = FullNames::known(source);
        if (!known || known->view() == name) return true;
        name.resize(aboveLength);
    }
    levels.back().nameAbove = std::exchange(name, source.getFullName().str());
    levels.back().isNameAboveKept = true;
    return false;
}

/// Gives the class if it is new.
template <typename Class>
Class* ClassMerge<Class>::Walk::leave()
{
    Level& last = levels.back();
    if (last.made) merge.myAdded.push_back(last.made.get());
    Class* const made = last.made.release();
    Level level = std::move(last);
    levels.pop_back();
    sources.erase(level.source);
    if (made) H::add(merge.myTree, made);  // after its children, as readers do
    if (levels.empty()) return made;
    merge.link(levels.back(), made);
    if (level.isNameAboveKept)
        name = std::move(level.nameAbove);
    else
        name.resize(name.size() - level.source->getName().length() - 1);
    return made;
}

template <typename Class>
void ClassMerge<Class>::addMembers(Class& target, const Class& source)
{
    if (H::members(source).empty()) return;
    myFilled.push_back(&target);
    for (const auto* member : H::members(source))
    {
        auto copy = std::make_unique<typename H::Member>(*member);
        H::addMember(target, copy.get());
        copy.release();
    }
}

template <typename Class>
void ClassMerge<Class>::link(const Level& parent, Class* child)
{
    if (!child) return;
    if (!parent.made) myLinks.emplace_back(parent.target, child);
    H::addChild(*parent.target, child);
}

/// Takes the new classes out of the tree and deletes them. What a host's tree keeps elsewhere stays
/// there and loses its parent.
template <typename Class>
void ClassMerge<Class>::undo() noexcept
{
    for (auto link = myLinks.rbegin(); link != myLinks.rend(); ++link)
    {
        auto& children = H::childList(*link->first);
        if (!children.empty() && children.back() == link->second)
            children.pop_back();
        else
            children.remove(link->second);
    }
    for (Class* const filled : myFilled) H::removeMembers(*filled);
    std::sort(myAdded.begin(), myAdded.end());
    if (!myIsPlain)
        for (Class* const made : myAdded) made->setParentObject(nullptr);
    H::list(myTree).remove_if(
        [this](Class* node)
        {
            const bool isAdded = std::binary_search(myAdded.begin(), myAdded.end(), node);
            if (isAdded && !myIsPlain) delete node;
            return isAdded;
        });
    if (myIsPlain)
        for (Class* const made : myAdded) delete made;
}

/// Merges a class into a tree, as a part of `current` if that is under way.
template <typename Class>
Class* mergeClass(DtOMTTree& tree, const Class& source, ClassMerge<Class>* current)
{
    if (current) return current->merge(source);
    ClassMerge<Class> merge(tree);
    Class* const made = merge.merge(source);
    merge.keep();
    return made;
}

/// Merges the hierarchy of another tree into one whose pointer to a merge that is under way is
/// `current`.
template <typename Class>
void mergeHierarchy(DtOMTTree& tree, DtOMTTree& source, ClassMerge<Class>*& current)
{
    using H = Hierarchy<Class>;
    const Class* const sourceRoot = H::root(source);
    if (!sourceRoot) return;
    ClassMerge<Class> merge(tree);
    struct Current
    {
        ClassMerge<Class>*& pointer;
        ClassMerge<Class>* before;
        ~Current() { pointer = before; }
    } const restored{current, std::exchange(current, &merge)};
    Class* const newRoot = H::merge(tree, *sourceRoot);
    merge.keep();
    if (newRoot) H::setRoot(tree, newRoot);
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
        const auto isOfKey = [&](std::size_t index) { return myKeyOf(*myNodes[index]) == key; };
        return myIndices.find(std::hash<DtString>()(key), isOfKey) != IndexTable::theNone;
    }

    void add(const Node* node)
    {
        if (!myIsPlain || !node) return;
        myIndices.add(std::hash<DtString>()(myKeyOf(*node)), myNodes.size());
        myNodes.push_back(node);
    }

private:
    DtOMTTree& myTree;
    KeyOf myKeyOf;
    Find myFind;
    bool myIsPlain;
    std::vector<const Node*> myNodes;
    IndexTable myIndices;
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
        auto copy = std::make_unique<Node>(**node);
        (tree.*table.add)(copy.get());
        keys.add(copy.release());
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
