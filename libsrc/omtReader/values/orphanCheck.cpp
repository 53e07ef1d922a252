// SPDX-License-Identifier: Apache-2.0
// Names of datatypes that a model refers to and does not define.
#include "omtReader/values/orphanCheck.h"

#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/attributeFedNode.h"
#include "omtReader/complexDatatypeNode.h"
#include "omtReader/fixedDatatypeNode.h"
#include "omtReader/interactionClassFedNode.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTree.h"
#include "omtReader/parameterFedNode.h"
#include "omtReader/variantDatatypeNode.h"

#include <vector>

namespace omtreader
{

using Manager = DtDatatypeManager;

void OrphanCheck::check(const DtString& datatype)
{
    Manager::DtDatatypeEnum& kind = mySettings.kinds[datatype];
    if (kind != Manager::DtDatatypeUnknown) return;
    kind = Manager::DtDatatypeSimple;
    mySettings.mappings[datatype] = "---";
}

void OrphanCheck::datatypes()
{
    // What is added on the way is simple and refers to nothing.
    for (const auto& [name, kind] : mySettings.kinds) checkComponents(name, kind);
}

void OrphanCheck::checkComponents(const DtString& datatype, Manager::DtDatatypeEnum kind)
{
    const auto checkAll = [this](auto* node)
    {
        if (!node) return;
        for (auto it = node->getComponentNodeList(); it != node->getComponentNodeEnd(); ++it)
            check((*it)->getDatatype());
    };
    DtOMTTree& tree = *mySettings.tree;
    if (kind == Manager::DtDatatypeComplex)
    {
        checkAll(tree.getComplexDatatypeNode(datatype));
    }
    else if (kind == Manager::DtDatatypeArray)
    {
        if (const auto* const node = tree.getArrayDatatypeNode(datatype))
            check(node->getDatatype());
    }
    else if (kind == Manager::DtDatatypeVariant)
    {
        const auto* const node = tree.getVariantDatatypeNode(datatype);
        if (node) check(node->getDatatype());
        checkAll(node);
    }
    else if (kind == Manager::DtDatatypeFixed)
    {
        checkAll(tree.getFixedDatatypeNode(datatype));
    }
}

template <typename Class, typename Members, typename Children>
bool OrphanCheck::classes(const Class& top, bool isWhole, Members members, Children children)
{
    if (mySeen.count(&top) != 0) return false;
    std::vector<const Class*> open = {&top};
    while (!open.empty())
    {
        const Class* const now = open.back();
        open.pop_back();
        if (!mySeen.insert(now).second) continue;
        for (const auto* member : (now->*members)()) check(member->getDatatype());
        if (!isWhole) continue;
        for (const Class* child : (now->*children)()) open.push_back(child);
    }
    return true;
}

bool OrphanCheck::objectClasses(const DtObjectClassFedNode& top, bool isWhole)
{
    return classes(top, isWhole, &DtObjectClassFedNode::getAttributes,
                   &DtObjectClassFedNode::getChildObjects);
}

bool OrphanCheck::interactionClasses(const DtInteractionClassFedNode& top, bool isWhole)
{
    return classes(top, isWhole, &DtInteractionClassFedNode::getParameters,
                   &DtInteractionClassFedNode::getChildInteractions);
}

}  // namespace omtreader
