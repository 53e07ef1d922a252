// SPDX-License-Identifier: Apache-2.0
#include "omtReader/derivedValues.h"

#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/complexDatatypeNode.h"
#include "omtReader/fullNames.h"
#include "omtReader/hierarchy.h"

namespace
{

// One getter is enough where all derived values of a node are worked out together.

void deriveFullName(const DtFedNode& node)
{
    if (!omtreader::FullNames::isLong(node)) node.getFullName();
}

template <typename Class>
void deriveHierarchy(DtOMTTree& tree)
{
    using H = omtreader::Hierarchy<Class>;
    for (auto node = H::begin(tree); node != H::end(tree); ++node)
    {
        deriveFullName(**node);
        for (const auto* member : H::members(**node))
        {
            deriveFullName(*member);
            member->getCardinalityType();
        }
    }
}

}  // namespace

void omtreader::deriveAllValues(DtOMTTree& tree)
{
    deriveHierarchy<DtObjectClassFedNode>(tree);
    deriveHierarchy<DtInteractionClassFedNode>(tree);
    for (auto node = tree.getArrayDatatypeNodeList(); node != tree.getArrayDatatypeEndNode();
         ++node)
        (*node)->getCardinalityType();
    for (auto node = tree.getComplexDatatypeNodeList(); node != tree.getComplexDatatypeEndNode();
         ++node)
        for (auto component = (*node)->getComponentNodeList();
             component != (*node)->getComponentNodeEnd(); ++component)
            (*component)->getCardinalityType();
    tree.getTimeRepNode();
}
