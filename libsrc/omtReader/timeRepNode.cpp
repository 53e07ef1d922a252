// SPDX-License-Identifier: Apache-2.0
#include "omtReader/timeRepNode.h"

DtTimeRepNode::DtTimeRepNode() = default;
DtTimeRepNode::DtTimeRepNode(const DtTimeRepNode& other) = default;
DtTimeRepNode& DtTimeRepNode::operator=(const DtTimeRepNode& other) = default;
DtTimeRepNode::~DtTimeRepNode() = default;
