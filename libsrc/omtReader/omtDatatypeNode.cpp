// SPDX-License-Identifier: Apache-2.0
#include "omtReader/omtDatatypeNode.h"

#include "omtReader/modelRevision.h"

DtOMTDatatypeNode::DtOMTDatatypeNode() = default;
DtOMTDatatypeNode::DtOMTDatatypeNode(const DtOMTDatatypeNode& other) = default;
DtOMTDatatypeNode& DtOMTDatatypeNode::operator=(const DtOMTDatatypeNode& other) = default;
DtOMTDatatypeNode::~DtOMTDatatypeNode() = default;

void DtOMTDatatypeNode::setDatatype(const DtString& datatype)
{
    myDatatype = datatype;
    omtreader::noteModelChange();
}
