// SPDX-License-Identifier: Apache-2.0
#include "omtReader/updateRateNode.h"

DtUpdateRateNode::DtUpdateRateNode() = default;
DtUpdateRateNode::DtUpdateRateNode(const DtUpdateRateNode& other) = default;
DtUpdateRateNode& DtUpdateRateNode::operator=(const DtUpdateRateNode& other) = default;
DtUpdateRateNode::~DtUpdateRateNode() = default;
