// SPDX-License-Identifier: Apache-2.0
#include "omtReader/complexDatatypeNode.h"

#include "omtReader/modelRevision.h"
#include "omtReader/nodeLookup.h"

DtComplexDatatypeNode::DtComplexDatatypeNode() = default;
DtComplexDatatypeNode::DtComplexDatatypeNode(const DtComplexDatatypeNode& other) = default;
DtComplexDatatypeNode& DtComplexDatatypeNode::operator=(const DtComplexDatatypeNode& other) =
    default;
DtComplexDatatypeNode::~DtComplexDatatypeNode() = default;

void DtComplexDatatypeNode::addComponentNode(DtComplexComponentNode* component)
{
    myComponents.add(component);
    omtreader::noteModelChange();
}

DtComplexComponentNode* DtComplexDatatypeNode::getComponentNode(const DtString& name) const
{
    return omtreader::firstNamed(myComponents.list(), name);
}

DtComplexDatatypeNode::ComponentList::iterator DtComplexDatatypeNode::getComponentNodeList()
{
    return myComponents.list().begin();
}

DtComplexDatatypeNode::ComponentList::iterator DtComplexDatatypeNode::getComponentNodeEnd()
{
    return myComponents.list().end();
}
