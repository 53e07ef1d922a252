// SPDX-License-Identifier: Apache-2.0
// The base of the nodes of the two class hierarchies.
#pragma once

#include "omtReader/omtNode.h"

#include <memory>

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
    /// Kept from the first call on, so that many classes below one of a very long name take that
    /// length each: a model from strangers may be small and its full names not.
    virtual const DtString& getFullName() const;

    /// Whether the names are equal; parents are not looked at.
    bool operator==(const DtFedNode& other) const { return getName() == other.getName(); }

private:
    DtFedNode* myParentObject = nullptr;
    mutable std::unique_ptr<DtString> myFullName;
};
