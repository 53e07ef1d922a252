// SPDX-License-Identifier: Apache-2.0
#include "omtReader/objectClassFedNode.h"

#include "omtReader/classPath.h"

DtObjectClassFedNode::DtObjectClassFedNode() = default;
DtObjectClassFedNode::DtObjectClassFedNode(DtFedNode* parent) : DtFedNode(parent) {}

DtObjectClassFedNode::DtObjectClassFedNode(const DtObjectClassFedNode& other)
    : DtFedNode(other),
      myAttributes(other.myAttributes),
      myDescriptor(other.myDescriptor),
      mySharing(other.mySharing),
      myIdentifier(other.myIdentifier),
      myParentIdentifier(other.myParentIdentifier)
{
    indexAttributes();
}

DtObjectClassFedNode& DtObjectClassFedNode::operator=(const DtObjectClassFedNode& other)
{
    if (this == &other) return *this;
    DtFedNode::operator=(other);
    myAttributes = other.myAttributes;
    indexAttributes();
    myChildren.clear();
    myDescriptor = other.myDescriptor;
    mySharing = other.mySharing;
    myIdentifier = other.myIdentifier;
    myParentIdentifier = other.myParentIdentifier;
    return *this;
}

DtObjectClassFedNode::~DtObjectClassFedNode() = default;

void DtObjectClassFedNode::addAttribute(DtAttributeFedNode* attribute)
{
    if (!attribute) return;
    attribute->setParentObject(this);
    DtAttributeFedNode*& named = myAttributesByName[attribute->getName()];
    myAttributes.add(attribute);  // and from here on nothing can fail
    named = attribute;
}

void DtObjectClassFedNode::associateAttribute(DtAttributeFedNode*) {}

void DtObjectClassFedNode::addChildObject(DtObjectClassFedNode* child)
{
    if (!child) return;
    child->setParentObject(this);
    myChildren.push_back(child);
}

DtObjectClassFedNode* DtObjectClassFedNode::findChildObject(const char* path)
{
    return omtreader::ClassPath<DtObjectClassFedNode>::find(this, path);
}

DtAttributeFedNode* DtObjectClassFedNode::findAttribute(const char* name) const
{
    const auto found = myAttributesByName.find(name);
    return found == myAttributesByName.end() ? nullptr : found->second;
}

void DtObjectClassFedNode::removeAttributes()
{
    myAttributesByName.clear();
    myAttributes.clear();
}

void DtObjectClassFedNode::indexAttributes()
{
    myAttributesByName.clear();
    for (DtAttributeFedNode* attribute : myAttributes.list())
        myAttributesByName[attribute->getName()] = attribute;
}
