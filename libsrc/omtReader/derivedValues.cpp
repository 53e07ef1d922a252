// SPDX-License-Identifier: Apache-2.0
#include "omtReader/derivedValues.h"

#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/complexDatatypeNode.h"
#include "omtReader/fullNames.h"
#include "omtReader/interactionClassFedNode.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTree.h"

namespace
{

// One getter is enough where all derived values of a node are worked out together.

void deriveFullName(const DtFedNode& node)
{
    if (!omtreader::FullNames::isLong(node)) node.getFullName();
}

template <typename Members>
void deriveMembers(const Members& members)
{
    for (const auto* member : members)
    {
        deriveFullName(*member);
        member->getCardinalityType();
    }
}

}  // namespace

void omtreader::deriveAllValues(DtOMTTree& tree)
{
    for (auto node = tree.getObjectClassNodeBegin(); node != tree.getObjectClassNodeEnd(); ++node)
    {
        deriveFullName(**node);
        deriveMembers((*node)->getAttributes());
    }
    for (auto node = tree.getInteractionClassNodeBegin(); node != tree.getInteractionClassNodeEnd();
         ++node)
    {
        deriveFullName(**node);
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
