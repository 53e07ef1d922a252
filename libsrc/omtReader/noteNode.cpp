// SPDX-License-Identifier: Apache-2.0
#include "omtReader/noteNode.h"

DtNoteNode::DtNoteNode() = default;
DtNoteNode::DtNoteNode(const DtNoteNode& other) = default;
DtNoteNode& DtNoteNode::operator=(const DtNoteNode& other) = default;
DtNoteNode::~DtNoteNode() = default;
