// SPDX-License-Identifier: Apache-2.0
#include "omtReader/attributeFedNode.h"

DtAttributeFedNode::DtAttributeFedNode() = default;
DtAttributeFedNode::DtAttributeFedNode(DtFedNode* parent) : DtDatatypeFedNode(parent) {}
DtAttributeFedNode::DtAttributeFedNode(const DtAttributeFedNode& other) = default;
DtAttributeFedNode& DtAttributeFedNode::operator=(const DtAttributeFedNode& other) = default;
DtAttributeFedNode::~DtAttributeFedNode() = default;
