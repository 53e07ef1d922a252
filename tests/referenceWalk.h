// SPDX-License-Identifier: Apache-2.0
// A slow and obvious decoder, to compare the fast one with.
#pragma once

#include "omtReader/datatypeManager.h"
#include "omtReader/stringTree.h"

#include <string>

/// What getStringRep() and createStringTreeRep() give.
struct Decoded
{
    std::string line;
    int lineConsumed;
    std::string tree;
    int treeConsumed;
};

/// Decodes step by step, with the representations and mappings of a manager and nothing else of it.
/// It knows neither complex nor defined datatypes and follows no cycles. Where there are more nodes
/// than the manager allows, the text is theTooMany.
Decoded decodeSlowly(DtDatatypeManager& manager, const DtString& datatype, const char* data,
                     int length, const DtString& wrapperOpen, const DtString& wrapperClose);
constexpr char theTooMany[] = "too many nodes";

/// All fields of all nodes.
std::string shown(const DtStringTree* tree);
