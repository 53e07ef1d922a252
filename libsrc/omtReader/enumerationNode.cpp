// SPDX-License-Identifier: Apache-2.0
#include "omtReader/enumerationNode.h"

#include "omtReader/enumeratedDatatypeNode.h"
#include "omtReader/modelRevision.h"

DtEnumerationNode::DtEnumerationNode() = default;

DtEnumerationNode::DtEnumerationNode(const DtEnumerationNode& other)
    : myEnum(other.myEnum), myNumber(other.myNumber)
{
}

DtEnumerationNode& DtEnumerationNode::operator=(const DtEnumerationNode& other)
{
    reportChange();
    myEnum = other.myEnum;
    myNumber = other.myNumber;
    return *this;
}

DtEnumerationNode::~DtEnumerationNode() = default;

void DtEnumerationNode::setEnum(const DtString& name)
{
    reportChange();
    myEnum = name;
}

void DtEnumerationNode::setNumber(int number)
{
    reportChange();
    myNumber = number;
}

void DtEnumerationNode::reportChange()
{
    if (myOwner) myOwner->forgetClashIndex();
    omtreader::noteModelChange();
}
