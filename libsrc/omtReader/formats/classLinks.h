// SPDX-License-Identifier: Apache-2.0
// Which class is below which, where a model says so by identifiers: any identifiers, also ones that
// lead in a ring.
#pragma once

#include "omtReader/hierarchy.h"
#include "util/dtMessages.h"

#include <cstddef>
#include <typeinfo>
#include <unordered_map>
#include <vector>

namespace omtreader
{

/// The classes of one hierarchy in list order, each with the place of its parent.
///
/// Time and memory grow with the number of classes, however they refer to each other.
template <typename Class>
class ClassLinks
{
public:
    using H = Hierarchy<Class>;

    /// Takes the classes of the tree but for `root`, which stands above all that have no parent.
    ClassLinks(DtOMTTree& tree, Class* root) : myRoot(root)
    {
        for (auto node = H::begin(tree); node != H::end(tree); ++node)
            if (*node != root) myClasses.push_back(*node);
        findParents(tree);
        openRings();
    }

    const std::vector<Class*>& classes() const { return myClasses; }

    Class* parentOf(std::size_t place) const
    {
        return myParents[place] == theRoot ? myRoot : myClasses[myParents[place]];
    }

private:
    static constexpr std::size_t theRoot = static_cast<std::size_t>(-1);

    /// The first class of an identifier is meant, as when the tree is asked; a tree that derives
    /// from the plain one is asked.
    void findParents(DtOMTTree& tree)
    {
        const bool isPlain = typeid(tree) == typeid(DtOMTTree);
        std::unordered_map<const Class*, std::size_t> places;
        std::unordered_map<int, std::size_t> firstOfIdentifier;
        for (std::size_t place = 0; place < myClasses.size(); ++place)
        {
            places.emplace(myClasses[place], place);
            firstOfIdentifier.emplace(myClasses[place]->getIdentifier(), place);
        }
        for (Class* const node : myClasses)
        {
            const int identifier = node->getParentIdentifier();
            if (identifier == 0)
                myParents.push_back(theRoot);
            else if (isPlain)
                myParents.push_back(placeIn(firstOfIdentifier, identifier));
            else
                myParents.push_back(placeIn(places, H::findByIdentifier(tree, identifier)));
        }
    }

    template <typename Places, typename Key>
    static std::size_t placeIn(const Places& places, Key key)
    {
        const auto found = places.find(key);
        return found == places.end() ? theRoot : found->second;
    }

    /// Adds the links in list order; one that would close a ring is not made.
    void openRings()
    {
        std::vector<std::size_t> above(myClasses.size());  // some ancestor by the links so far
        for (std::size_t place = 0; place < above.size(); ++place) above[place] = place;
        const auto topOf = [&above](std::size_t place)
        {
            while (above[place] != place) place = above[place] = above[above[place]];
            return place;
        };
        for (std::size_t place = 0; place < above.size(); ++place)
        {
            if (myParents[place] == theRoot) continue;
            if (topOf(myParents[place]) == place)
                moveToRoot(place);
            else
                above[place] = myParents[place];
        }
    }

    void moveToRoot(std::size_t place)
    {
        DtWarn << "Warning: class \"" << myClasses[place]->getName() << "\" with identifier "
               << myClasses[place]->getIdentifier()
               << " would be its own ancestor; it was put under \"" << myRoot->getName() << "\"\n";
        myParents[place] = theRoot;
    }

    Class* myRoot;
    std::vector<Class*> myClasses;
    std::vector<std::size_t> myParents;  // places in myClasses
};

/// Makes every class of the tree, but for the root, a child of its parent, and calls `visit` for
/// each after that.
template <typename Class, typename Visit>
void linkClasses(DtOMTTree& tree, Class* root, Visit visit)
{
    const ClassLinks<Class> links(tree, root);
    for (std::size_t place = 0; place < links.classes().size(); ++place)
    {
        Class* const node = links.classes()[place];
        Hierarchy<Class>::addChild(*links.parentOf(place), node);
        visit(node);
    }
}

}  // namespace omtreader
