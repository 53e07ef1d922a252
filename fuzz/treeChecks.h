// SPDX-License-Identifier: Apache-2.0
// What holds for every tree that a reader gives, whatever it read.
#pragma once

#include "../tests/treeTables.h"
#include "checks.h"

#include <iterator>
#include <unordered_set>

/// The links of one hierarchy: downwards and upwards they say the same, and lead nowhere else.
template <typename Class, typename Iterator>
void checkHierarchy(Class* root, Iterator begin, Iterator end)
{
    const std::unordered_set<const DtFedNode*> classes(begin, end);
    require(classes.size() == static_cast<std::size_t>(std::distance(begin, end)),
            "a class is in the list once");
    require(!root || classes.count(root), "the root is in the list");

    std::size_t linkedAsChild = 0;
    std::size_t withParent = 0;
    for (; begin != end; ++begin)
    {
        const Class& node = **begin;
        require(node.getFullName().endsWith(node.getName().view()), "a full name ends in the name");
        if (node.getParentObject())
        {
            ++withParent;
            require(classes.count(node.getParentObject()), "a parent is in the list");
        }
        for (const Class* child : childrenOf(node))
        {
            ++linkedAsChild;
            require(classes.count(child), "a child is in the list");
            require(child->getParentObject() == &node, "a child's parent is the class it is in");
        }
        for (const auto* member : membersOf(node))
            require(member->getParentObject() == &node, "a member's parent is its class");
    }
    // With every child's parent right, equal counts mean that every parent lists its child, once.
    require(linkedAsChild == withParent, "a parent lists each child once");
}

/// How many nodes the lists of a tree and its classes have.
inline std::size_t countNodes(DtOMTTree& tree)
{
    std::ptrdiff_t count = std::distance(tree.getPOCList(), tree.getPOCEndNode());
    forEachTable(tree,
                 [&count](const char*, auto begin, auto end)
                 {
                     count += std::distance(begin, end);
                     for (; begin != end; ++begin)
                         if constexpr (requires { membersOf(**begin); })
                             count += std::ssize(membersOf(**begin));
                 });
    return static_cast<std::size_t>(count);
}

/// As large as a document of this length may make it. The shortest node takes four octets.
inline void checkSize(DtOMTTree& tree, std::size_t before, std::size_t length)
{
    require(countNodes(tree) <= 8 + length / 4, "no more nodes than the document can hold");
    requireMemory(before + 65536 + 512 * length);
}

inline void check(DtOMTTree& tree)
{
    checkHierarchy(tree.objectClassRoot(), tree.getObjectClassNodeBegin(),
                   tree.getObjectClassNodeEnd());
    checkHierarchy(tree.interactionClassRoot(), tree.getInteractionClassNodeBegin(),
                   tree.getInteractionClassNodeEnd());
    tree.prepareForSharing();
}
