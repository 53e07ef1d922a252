// SPDX-License-Identifier: Apache-2.0
#include "omtReader/derivedValues.h"

#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/complexDatatypeNode.h"
#include "omtReader/interactionClassFedNode.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTree.h"

namespace
{

// One getter is enough where all derived values of a node are worked out together.

template <typename Members>
void deriveMembers(const Members& members)
{
    for (const auto* member : members)
    {
        member->getFullName();
        member->getCardinalityType();
    }
}

}  // namespace

void omtreader::deriveAllValues(DtOMTTree& tree)
{
    for (auto node = tree.getObjectClassNodeBegin(); node != tree.getObjectClassNodeEnd(); ++node)
    {
        (*node)->getFullName();
        deriveMembers((*node)->getAttributes());
    }
    for (auto node = tree.getInteractionClassNodeBegin(); node != tree.getInteractionClassNodeEnd();
         ++node)
    {
        (*node)->getFullName();
        deriveMembers((*node)->getParameters());
    }
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
