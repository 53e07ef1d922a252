// SPDX-License-Identifier: Apache-2.0
#include "omtReader/fieldComponentNode.h"

DtFieldComponentNode::DtFieldComponentNode() = default;
DtFieldComponentNode::DtFieldComponentNode(const DtFieldComponentNode& other) = default;
DtFieldComponentNode& DtFieldComponentNode::operator=(const DtFieldComponentNode& other) = default;
DtFieldComponentNode::~DtFieldComponentNode() = default;
