// SPDX-License-Identifier: Apache-2.0
#include "omtReader/descriptionNode.h"

DtDescriptionNode::DtDescriptionNode() = default;
DtDescriptionNode::DtDescriptionNode(const DtDescriptionNode& other) = default;
DtDescriptionNode& DtDescriptionNode::operator=(const DtDescriptionNode& other) = default;
DtDescriptionNode::~DtDescriptionNode() = default;
