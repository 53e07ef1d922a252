// SPDX-License-Identifier: Apache-2.0
// A fixed record datatype.
#pragma once

#include "omtReader/fieldComponentNode.h"
#include "omtReader/ownedNodes.h"

#include <list>

/// Fields one after the other. Owns its fields; owned by the tree it was added to.
class OMTREADER_EXPORT DtFixedDatatypeNode : public DtOMTNode
{
public:
    using ComponentList = std::list<DtFieldComponentNode*>;

    DtFixedDatatypeNode();
    DtFixedDatatypeNode(const DtFixedDatatypeNode& other);
    DtFixedDatatypeNode& operator=(const DtFixedDatatypeNode& other);
    ~DtFixedDatatypeNode() override;

    /// What the record means, in words.
    virtual void setDescription(const DtString& description) { myDescription = description; }
    virtual const DtString& getDescription() const { return myDescription; }

    /// How the fields are laid out, such as "HLAfixedRecord".
    virtual void setEncoding(const DtString& encoding) { myEncoding = encoding; }
    virtual const DtString& getEncoding() const { return myEncoding; }

    /// Takes a field over; null is ignored, a repeated name is not noticed.
    virtual void addComponentNode(DtFieldComponentNode* field);
    /// The first field of this name, or null.
    virtual DtFieldComponentNode* getComponentNode(const DtString& name) const;
    virtual ComponentList::const_iterator getComponentNodeList() const;
    virtual ComponentList::const_iterator getComponentNodeEnd() const;

private:
    DtString myDescription;
    DtString myEncoding;
    DtOwnedNodes<DtFieldComponentNode> myFields;
};
