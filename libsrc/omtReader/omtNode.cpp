// SPDX-License-Identifier: Apache-2.0
#include "omtReader/omtNode.h"

DtOMTNode::DtOMTNode() = default;

DtOMTNode::DtOMTNode(const DtOMTNode& other) : myName(other.myName), myNote(other.myNote) {}

DtOMTNode& DtOMTNode::operator=(const DtOMTNode& other)
{
    myName = other.myName;
    myNote = other.myNote;
    return *this;
}

DtOMTNode::~DtOMTNode() = default;
