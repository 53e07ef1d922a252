// SPDX-License-Identifier: Apache-2.0
#include "omtReader/basicDataRepresentationNode.h"

DtBasicDataRepresentationNode::DtBasicDataRepresentationNode() = default;
DtBasicDataRepresentationNode::DtBasicDataRepresentationNode(
    const DtBasicDataRepresentationNode& other) = default;
DtBasicDataRepresentationNode& DtBasicDataRepresentationNode::operator=(
    const DtBasicDataRepresentationNode& other) = default;
DtBasicDataRepresentationNode::~DtBasicDataRepresentationNode() = default;
