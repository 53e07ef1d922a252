// SPDX-License-Identifier: Apache-2.0
// Finding classes by full name while a merge looks up every class of a model.
#pragma once

#include "omtReader/hierarchy.h"
#include "omtReader/placeTable.h"

#include <algorithm>
#include <iterator>
#include <list>
#include <set>
#include <typeinfo>
#include <unordered_map>
#include <vector>

namespace omtreader
{

/// Gives for every name just the class that the tree's own look-up gives, in a time that does not
/// grow with the number of classes. It lives as long as one merge of one hierarchy and follows the
/// classes that are added meanwhile.
///
/// For plain trees only: one that overrides its look-up is asked itself, class for class.
template <typename Class>
class ClassFinder
{
public:
    /// Null for a tree of a class that derives from DtOMTTree.
    static std::unique_ptr<ClassFinder> forTree(DtOMTTree& tree)
    {
        const bool isPlain = typeid(tree) == typeid(DtOMTTree);
        return isPlain ? std::unique_ptr<ClassFinder>(new ClassFinder(tree)) : nullptr;
    }

    Class* find(const DtString& name)
    {
        Class* const root = Hierarchy<Class>::root(myTree);
        if (name.empty()) return root;
        return root ? findBelow(root, name.c_str()) : findInList(name);
    }

private:
    /// The children of one class: which of them have a name, in order, and how long names are.
    struct Children
    {
        std::size_t known = 0;
        typename std::list<Class*>::const_iterator last;
        std::unordered_map<std::string_view, std::vector<std::pair<std::size_t, Class*>>> byName;
        std::set<std::size_t> lengths;
    };

    explicit ClassFinder(DtOMTTree& tree) : myTree(tree) {}

    Class* findInList(const DtString& name)
    {
        for (auto place = myClasses.empty() ? Hierarchy<Class>::begin(myTree) : std::next(myLast);
             place != Hierarchy<Class>::end(myTree); ++place)
        {
            myLast = place;
            myPlaces.add(std::hash<DtString>()((*place)->getFullName()), myClasses.size());
            myClasses.push_back(*place);
        }
        const std::size_t found =
            myPlaces.find(std::hash<DtString>()(name), [&](std::size_t place)
                          { return myClasses[place]->getFullName() == name; });
        return found == PlaceTable::theNone ? nullptr : myClasses[found];
    }

    Class* findBelow(Class* start, const char* path)
    {
        // A class that derives from the plain one may look up in its own way.
        if (typeid(*start) != typeid(Class)) return Hierarchy<Class>::findChild(*start, path);

        const std::string_view whole = path;
        const std::string_view name = start->getName().view();
        if (whole.substr(0, name.size()) != name) return nullptr;
        if (whole.size() == name.size()) return start;

        // Any child whose name the rest begins with may lead on, and the first that does counts.
        const char* const rest = path + name.size() + 1;
        const auto& children = Hierarchy<Class>::children(*start);
        if (children.size() < theSizeWorthAnIndex) return firstBelow(children, rest);
        return firstBelow(childrenAtHeadOf(rest, childrenOf(start, children)), rest);
    }

    template <typename Candidates>
    Class* firstBelow(const Candidates& candidates, const char* path)
    {
        for (Class* candidate : candidates)
            if (Class* const found = findBelow(candidate, path)) return found;
        return nullptr;
    }

    static std::vector<Class*> childrenAtHeadOf(std::string_view path, const Children& children)
    {
        std::vector<std::pair<std::size_t, Class*>> places;
        for (const std::size_t length : children.lengths)
        {
            if (length > path.size()) break;
            const auto found = children.byName.find(path.substr(0, length));
            if (found == children.byName.end()) continue;
            places.insert(places.end(), found->second.begin(), found->second.end());
        }
        std::sort(places.begin(), places.end());
        std::vector<Class*> candidates;
        for (const auto& [place, child] : places) candidates.push_back(child);
        return candidates;
    }

    const Children& childrenOf(const Class* parent, const std::list<Class*>& list)
    {
        Children& children = myChildren[parent];
        for (auto child = children.known ? std::next(children.last) : list.begin();
             child != list.end(); ++child)
        {
            const std::string_view name = (*child)->getName().view();
            children.byName[name].emplace_back(children.known++, *child);
            children.lengths.insert(name.size());
            children.last = child;
        }
        return children;
    }

    static constexpr std::size_t theSizeWorthAnIndex = 32;

    DtOMTTree& myTree;
    std::vector<Class*> myClasses;  // those of the tree's list that are in the table, in order
    typename std::list<Class*>::iterator myLast;
    PlaceTable myPlaces;
    std::unordered_map<const Class*, Children> myChildren;
};

}  // namespace omtreader
