// SPDX-License-Identifier: Apache-2.0
#include "omtReader/alternativeComponentNode.h"

DtAlternativeComponentNode::DtAlternativeComponentNode() = default;
DtAlternativeComponentNode::DtAlternativeComponentNode(const DtAlternativeComponentNode& other) =
    default;
DtAlternativeComponentNode& DtAlternativeComponentNode::operator=(
    const DtAlternativeComponentNode& other) = default;
DtAlternativeComponentNode::~DtAlternativeComponentNode() = default;
