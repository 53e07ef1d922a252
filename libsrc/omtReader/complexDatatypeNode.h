// SPDX-License-Identifier: Apache-2.0
// A complex datatype of HLA 1.3.
#pragma once

#include "omtReader/complexComponentNode.h"
#include "omtReader/ownedNodes.h"

#include <list>

/// Components one after the other, each once, often or on a condition.
///
/// Owns its components; owned by the tree it was added to.
class OMTREADER_EXPORT DtComplexDatatypeNode : public DtOMTNode
{
public:
    using ComponentList = std::list<DtComplexComponentNode*>;

    DtComplexDatatypeNode();
    DtComplexDatatypeNode(const DtComplexDatatypeNode& other);
    DtComplexDatatypeNode& operator=(const DtComplexDatatypeNode& other);
    ~DtComplexDatatypeNode() override;

    /// Takes a component over; null is ignored, a repeated name is not noticed.
    virtual void addComponentNode(DtComplexComponentNode* component);
    /// The first component of this name, or null.
    virtual DtComplexComponentNode* getComponentNode(const DtString& name) const;
    virtual ComponentList::iterator getComponentNodeList();
    virtual ComponentList::iterator getComponentNodeEnd();

private:
    DtOwnedNodes<DtComplexComponentNode> myComponents;
};
