// SPDX-License-Identifier: Apache-2.0
#include "omtReader/parameterFedNode.h"

DtParameterFedNode::DtParameterFedNode() = default;
DtParameterFedNode::DtParameterFedNode(DtFedNode* parent) : DtDatatypeFedNode(parent) {}
DtParameterFedNode::DtParameterFedNode(const DtParameterFedNode& other) = default;
DtParameterFedNode& DtParameterFedNode::operator=(const DtParameterFedNode& other) = default;
DtParameterFedNode::~DtParameterFedNode() = default;
