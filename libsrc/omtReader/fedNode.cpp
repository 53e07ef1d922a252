// SPDX-License-Identifier: Apache-2.0
#include "omtReader/fedNode.h"

#include "util/dtAssert.h"

namespace
{
constexpr const char* theAssertionFile = "libsrc/omtReader/fedNode";
}

DtFedNode::DtFedNode() = default;

DtFedNode::DtFedNode(DtFedNode* parent) : myParentObject(parent)
{
    DtAssert(myParentObject != this, "myParentObject != this", theAssertionFile, 29);
}

DtFedNode::DtFedNode(const DtFedNode& other)
    : DtOMTNode(other), myParentObject(other.myParentObject)
{
}

DtFedNode& DtFedNode::operator=(const DtFedNode& other)
{
    DtOMTNode::operator=(other);
    myParentObject = other.myParentObject;
    myFullName.reset();
    return *this;
}

DtFedNode::~DtFedNode() = default;

void DtFedNode::setParentObject(DtFedNode* parent)
{
    DtAssert(this != parent, "this != f", theAssertionFile, 64);
    myParentObject = parent;
}

const DtString& DtFedNode::getFullName() const
{
    if (!myParentObject) return getName();
    if (myFullName) return *myFullName;

    const DtString& parentName = myParentObject->getFullName();
    if (parentName == DtString::nullString()) return getName();
    myFullName = std::make_unique<DtString>(parentName + "." + getName());
    return *myFullName;
}
