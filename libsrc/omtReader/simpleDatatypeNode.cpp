// SPDX-License-Identifier: Apache-2.0
#include "omtReader/simpleDatatypeNode.h"

DtSimpleDatatypeNode::DtSimpleDatatypeNode() = default;
DtSimpleDatatypeNode::DtSimpleDatatypeNode(const DtSimpleDatatypeNode& other) = default;
DtSimpleDatatypeNode& DtSimpleDatatypeNode::operator=(const DtSimpleDatatypeNode& other) = default;
DtSimpleDatatypeNode::~DtSimpleDatatypeNode() = default;
