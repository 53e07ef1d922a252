// SPDX-License-Identifier: Apache-2.0
// All tables of a tree, and its two class hierarchies under common names, for tests and fuzz
// targets.
#pragma once

#include "omtReader/interactionClassFedNode.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTree.h"

/// Calls a function with the name, the begin and the end of each table.
template <typename Visit>
void forEachTable(DtOMTTree& t, Visit visit)
{
    visit("object", t.getObjectClassNodeBegin(), t.getObjectClassNodeEnd());
    visit("interaction", t.getInteractionClassNodeBegin(), t.getInteractionClassNodeEnd());
    visit("basic", t.getBasicDataRepresentationNodeList(), t.getBasicDataRepresentationEndNode());
    visit("simple", t.getSimpleDatatypeNodeList(), t.getSimpleDatatypeEndNode());
    visit("enumerated", t.getEnumeratedDatatypeNodeList(), t.getEnumeratedDatatypeEndNode());
    visit("array", t.getArrayDatatypeNodeList(), t.getArrayDatatypeEndNode());
    visit("fixed", t.getFixedDatatypeNodeList(), t.getFixedDatatypeEndNode());
    visit("variant", t.getVariantDatatypeNodeList(), t.getVariantDatatypeEndNode());
    visit("complex", t.getComplexDatatypeNodeList(), t.getComplexDatatypeEndNode());
    visit("note", t.getNoteNodeList(), t.getNoteEndNode());
    visit("switch", t.getSwitchNodeList(), t.getSwitchEndNode());
    visit("transportation", t.getTransportationNodeList(), t.getTransportationEndNode());
    visit("dimension", t.getDimensionNodeList(), t.getDimensionEndNode());
    visit("synchro", t.getSynchroNodeList(), t.getSynchroEndNode());
    visit("tag", t.getTagNodeList(), t.getTagEndNode());
    visit("updateRate", t.getUpdateRateNodeList(), t.getUpdateRateEndNode());
}

inline const auto& childrenOf(const DtObjectClassFedNode& node)
{
    return node.getChildObjects();
}
inline const auto& childrenOf(const DtInteractionClassFedNode& node)
{
    return node.getChildInteractions();
}
inline const auto& membersOf(const DtObjectClassFedNode& node)
{
    return node.getAttributes();
}
inline const auto& membersOf(const DtInteractionClassFedNode& node)
{
    return node.getParameters();
}
