// SPDX-License-Identifier: Apache-2.0
// The base of the nodes of the two class hierarchies.
#pragma once

#include "omtReader/omtNode.h"

#include <atomic>

namespace omtreader
{
struct FullNames;
}

/// A node with a place in a class hierarchy: a class, or an attribute or parameter of one.
///
/// The parent is not owned. The full name is worked out when first asked for and deliberately never
/// again: later changes of a name or a parent do not show in it, so both are set before anyone
/// asks.
class OMTREADER_EXPORT DtFedNode : public DtOMTNode
{
public:
    DtFedNode();
    /// Remembers the parent only; the parent does not learn of this node.
    explicit DtFedNode(DtFedNode* parent);
    /// Keeps the parent of the original and starts without a full name.
    DtFedNode(const DtFedNode& other);
    DtFedNode& operator=(const DtFedNode& other);
    ~DtFedNode() override;

    /// Null for a root. A node is never its own parent: that stops the program.
    virtual void setParentObject(DtFedNode* parent);
    virtual DtFedNode* getParentObject() const { return myParentObject; }

    /// The names from the root down to this node with "." between them.
    ///
    /// The result lives as long as this node, or, without a parent or below a nameless one, as long
    /// as its name.
    ///
    /// Kept from the first call on, and along with it those of the nodes above as far as they have
    /// at most 1,024 octets: a small model from strangers may nest its classes so deeply that all
    /// full names together fit into no memory. Any number of threads may ask at once.
    ///
    /// A node whose ancestors form a ring has its own name for a full name.
    virtual const DtString& getFullName() const;

    /// Whether the names are equal; parents are not looked at.
    bool operator==(const DtFedNode& other) const { return getName() == other.getName(); }

private:
    friend struct omtreader::FullNames;

    DtFedNode* myParentObject = nullptr;
    mutable std::atomic<const DtString*> myFullName = nullptr;  // owned
};
