// SPDX-License-Identifier: Apache-2.0
#include "omtReader/variantDatatypeNode.h"

#include "omtReader/modelRevision.h"
#include "omtReader/nodeLookup.h"

DtVariantDatatypeNode::DtVariantDatatypeNode() = default;
DtVariantDatatypeNode::DtVariantDatatypeNode(const DtVariantDatatypeNode& other) = default;
DtVariantDatatypeNode& DtVariantDatatypeNode::operator=(const DtVariantDatatypeNode& other) =
    default;
DtVariantDatatypeNode::~DtVariantDatatypeNode() = default;

void DtVariantDatatypeNode::addComponentNode(DtAlternativeComponentNode* alternative)
{
    myAlternatives.add(alternative);
    omtreader::noteModelChange();
}

DtAlternativeComponentNode* DtVariantDatatypeNode::getComponentNode(const DtString& name) const
{
    return omtreader::firstNamed(myAlternatives.list(), name);
}

DtVariantDatatypeNode::ComponentList::const_iterator DtVariantDatatypeNode::getComponentNodeList()
    const
{
    return myAlternatives.list().begin();
}

DtVariantDatatypeNode::ComponentList::const_iterator DtVariantDatatypeNode::getComponentNodeEnd()
    const
{
    return myAlternatives.list().end();
}
