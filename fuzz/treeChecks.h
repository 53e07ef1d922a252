// SPDX-License-Identifier: Apache-2.0
// What holds for every tree that a reader gives, whatever it read.
#pragma once

#include "omtReader/interactionClassFedNode.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/xmlEvolvedFileWriter.h"

#include <libxml/parser.h>

#include <cstdio>
#include <cstdlib>
#include <unordered_set>

/// Ends the program, which is a finding, for a rule that does not hold.
inline void require(bool holds, const char* rule)
{
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", rule);
    std::abort();
}

inline const auto& childrenOf(const DtObjectClassFedNode& node)
{
    return node.getChildObjects();
}
inline const auto& childrenOf(const DtInteractionClassFedNode& node)
{
    return node.getChildInteractions();
}
inline const auto& membersOf(const DtObjectClassFedNode& node)
{
    return node.getAttributes();
}
inline const auto& membersOf(const DtInteractionClassFedNode& node)
{
    return node.getParameters();
}

/// The links of one hierarchy: downwards and upwards they say the same, and lead nowhere else.
template <typename Class, typename Place>
void checkHierarchy(Class* root, Place begin, Place end)
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

/// What is written of the tree is well-formed.
inline void checkWritten(DtOMTTree& tree)
{
    constexpr int theOptions = XML_PARSE_HUGE | XML_PARSE_NONET | XML_PARSE_NOERROR;
    const DtString text = DtXMLEvolvedFileWriter(&tree).writeString();
    xmlDoc* const document = xmlReadMemory(text.c_str(), static_cast<int>(text.length()), nullptr,
                                           nullptr, theOptions | XML_PARSE_NOWARNING);
    require(document, "what is written is well-formed");
    xmlFreeDoc(document);
}

inline void check(DtOMTTree& tree)
{
    checkHierarchy(tree.objectClassRoot(), tree.getObjectClassNodeBegin(),
                   tree.getObjectClassNodeEnd());
    checkHierarchy(tree.interactionClassRoot(), tree.getInteractionClassNodeBegin(),
                   tree.getInteractionClassNodeEnd());
    tree.prepareForSharing();
    checkWritten(tree);
}
