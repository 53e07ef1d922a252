// SPDX-License-Identifier: Apache-2.0
#include "omtReader/dimensionNode.h"

DtDimensionNode::DtDimensionNode() = default;
DtDimensionNode::DtDimensionNode(const DtDimensionNode& other) = default;
DtDimensionNode& DtDimensionNode::operator=(const DtDimensionNode& other) = default;
DtDimensionNode::~DtDimensionNode() = default;
