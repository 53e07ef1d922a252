// SPDX-License-Identifier: Apache-2.0
#include "omtReader/omtDatatypeNode.h"

DtOMTDatatypeNode::DtOMTDatatypeNode() = default;
DtOMTDatatypeNode::DtOMTDatatypeNode(const DtOMTDatatypeNode& other) = default;
DtOMTDatatypeNode& DtOMTDatatypeNode::operator=(const DtOMTDatatypeNode& other) = default;
DtOMTDatatypeNode::~DtOMTDatatypeNode() = default;
