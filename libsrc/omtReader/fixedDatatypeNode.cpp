// SPDX-License-Identifier: Apache-2.0
#include "omtReader/fixedDatatypeNode.h"

#include "omtReader/modelRevision.h"
#include "omtReader/nodeLookup.h"

DtFixedDatatypeNode::DtFixedDatatypeNode() = default;
DtFixedDatatypeNode::DtFixedDatatypeNode(const DtFixedDatatypeNode& other) = default;
DtFixedDatatypeNode& DtFixedDatatypeNode::operator=(const DtFixedDatatypeNode& other) = default;
DtFixedDatatypeNode::~DtFixedDatatypeNode() = default;

void DtFixedDatatypeNode::addComponentNode(DtFieldComponentNode* field)
{
    myFields.add(field);
    omtreader::noteModelChange();
}

DtFieldComponentNode* DtFixedDatatypeNode::getComponentNode(const DtString& name) const
{
    return omtreader::firstNamed(myFields.list(), name);
}

DtFixedDatatypeNode::ComponentList::const_iterator DtFixedDatatypeNode::getComponentNodeList() const
{
    return myFields.list().begin();
}

DtFixedDatatypeNode::ComponentList::const_iterator DtFixedDatatypeNode::getComponentNodeEnd() const
{
    return myFields.list().end();
}
