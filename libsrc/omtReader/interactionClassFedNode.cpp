// SPDX-License-Identifier: Apache-2.0
#include "omtReader/interactionClassFedNode.h"

#include "omtReader/classPath.h"
#include "omtReader/nodeLookup.h"

DtInteractionClassFedNode::DtInteractionClassFedNode() = default;
DtInteractionClassFedNode::DtInteractionClassFedNode(DtFedNode* parent) : DtFedNode(parent) {}

DtInteractionClassFedNode::DtInteractionClassFedNode(const DtInteractionClassFedNode& other)
    : DtFedNode(other),
      myParameters(other.myParameters),
      myDescriptor(other.myDescriptor),
      mySharing(other.mySharing),
      myTransportation(other.myTransportation),
      myOrder(other.myOrder),
      myDimensions(other.myDimensions),
      myIdentifier(other.myIdentifier),
      myParentIdentifier(other.myParentIdentifier)
{
}

DtInteractionClassFedNode& DtInteractionClassFedNode::operator=(
    const DtInteractionClassFedNode& other)
{
    if (this == &other) return *this;
    DtFedNode::operator=(other);
    myParameters = other.myParameters;
    myChildren.clear();
    myDescriptor = other.myDescriptor;
    mySharing = other.mySharing;
    myTransportation = other.myTransportation;
    myOrder = other.myOrder;
    myDimensions = other.myDimensions;
    myIdentifier = other.myIdentifier;
    myParentIdentifier = other.myParentIdentifier;
    return *this;
}

DtInteractionClassFedNode::~DtInteractionClassFedNode() = default;

void DtInteractionClassFedNode::addParameter(DtParameterFedNode* parameter)
{
    if (!parameter) return;
    parameter->setParentObject(this);
    myParameters.add(parameter);
}

void DtInteractionClassFedNode::addChildInteraction(DtInteractionClassFedNode* child)
{
    if (!child) return;
    child->setParentObject(this);
    myChildren.push_back(child);
}

DtInteractionClassFedNode* DtInteractionClassFedNode::findChildInteraction(const char* path)
{
    return omtreader::ClassPath<DtInteractionClassFedNode>::find(this, path);
}

DtParameterFedNode* DtInteractionClassFedNode::findParameter(const char* name) const
{
    return omtreader::firstWhere(
        myParameters.list(), [=](const auto& parameter) { return parameter.getName() == name; });
}

void DtInteractionClassFedNode::removeParameters()
{
    myParameters.clear();
}
