// SPDX-License-Identifier: Apache-2.0
#include "omtReader/synchroNode.h"

DtSynchroNode::DtSynchroNode() = default;
DtSynchroNode::DtSynchroNode(const DtSynchroNode& other) = default;
DtSynchroNode& DtSynchroNode::operator=(const DtSynchroNode& other) = default;
DtSynchroNode::~DtSynchroNode() = default;
