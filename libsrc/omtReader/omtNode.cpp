// SPDX-License-Identifier: Apache-2.0
#include "omtReader/omtNode.h"

#include "omtReader/modelRevision.h"

DtOMTNode::DtOMTNode() = default;

DtOMTNode::DtOMTNode(const DtOMTNode& other) : myName(other.myName), myNote(other.myNote) {}

DtOMTNode& DtOMTNode::operator=(const DtOMTNode& other)
{
    myName = other.myName;
    myNote = other.myNote;
    omtreader::noteModelChange();
    return *this;
}

DtOMTNode::~DtOMTNode() = default;

void DtOMTNode::setName(const DtString& name)
{
    myName = name;
    omtreader::noteModelChange();
}
