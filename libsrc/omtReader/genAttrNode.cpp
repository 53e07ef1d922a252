// SPDX-License-Identifier: Apache-2.0
#include "omtReader/genAttrNode.h"

DtGenAttrNode::DtGenAttrNode() = default;
DtGenAttrNode::DtGenAttrNode(const DtGenAttrNode& other) = default;
DtGenAttrNode& DtGenAttrNode::operator=(const DtGenAttrNode& other) = default;
DtGenAttrNode::~DtGenAttrNode() = default;
