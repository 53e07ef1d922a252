// SPDX-License-Identifier: Apache-2.0
// How a reader gives a node that it has filled to the owner.
#pragma once

#include "omtReader/attributeFedNode.h"
#include "omtReader/enumeratedDatatypeNode.h"
#include "omtReader/objectClassFedNode.h"

#include <iterator>
#include <memory>

namespace omtreader
{

/// Gives a surviving node to its owner.
template <typename Owner, typename Node>
Node* handOver(Owner* owner, void (Owner::*add)(Node*), std::unique_ptr<Node> node)
{
    if (!node) return nullptr;
    (owner->*add)(node.get());
    return node.release();
}

/// Adds an attribute to its class, or deletes it where memory is too short for that.
inline void addRead(DtObjectClassFedNode& owner, DtAttributeFedNode* attribute)
{
    std::unique_ptr<DtAttributeFedNode> kept(attribute);
    owner.addAttribute(attribute);
    kept.release();
}

/// Adds an enumerator to its datatype, which may refuse it.
inline void addEnumerator(DtEnumeratedDatatypeNode& datatype, DtEnumerationNode* enumerator)
{
    std::unique_ptr<DtEnumerationNode> offered(enumerator);
    datatype.addEnumerationNode(enumerator);
    const auto end = datatype.getEnumerationNodeEnd();
    const bool isAccepted =
        datatype.getEnumerationNodeList() != end && *std::prev(end) == enumerator;
    if (isAccepted) offered.release();
}

}  // namespace omtreader
