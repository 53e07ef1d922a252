// SPDX-License-Identifier: Apache-2.0
#include "omtReader/tagNode.h"

DtTagNode::DtTagNode() = default;
DtTagNode::DtTagNode(const DtTagNode& other) = default;
DtTagNode& DtTagNode::operator=(const DtTagNode& other) = default;
DtTagNode::~DtTagNode() = default;
