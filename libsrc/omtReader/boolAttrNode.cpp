// SPDX-License-Identifier: Apache-2.0
#include "omtReader/boolAttrNode.h"

DtBoolAttrNode::DtBoolAttrNode() = default;
DtBoolAttrNode::DtBoolAttrNode(const DtBoolAttrNode& other) = default;
DtBoolAttrNode& DtBoolAttrNode::operator=(const DtBoolAttrNode& other) = default;
DtBoolAttrNode::~DtBoolAttrNode() = default;
