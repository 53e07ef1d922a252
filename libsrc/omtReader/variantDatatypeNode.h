// SPDX-License-Identifier: Apache-2.0
// A variant record datatype.
#pragma once

#include "omtReader/alternativeComponentNode.h"
#include "omtReader/ownedNodes.h"

#include <list>

/// A discriminant and, after it, the alternative that its value selects.
///
/// getDatatype() names the datatype of the discriminant. Owns its alternatives; owned by the tree
/// it was added to.
class OMTREADER_EXPORT DtVariantDatatypeNode : public DtOMTDatatypeNode
{
public:
    using ComponentList = std::list<DtAlternativeComponentNode*>;

    DtVariantDatatypeNode();
    DtVariantDatatypeNode(const DtVariantDatatypeNode& other);
    DtVariantDatatypeNode& operator=(const DtVariantDatatypeNode& other);
    ~DtVariantDatatypeNode() override;

    /// What the record means, in words.
    virtual void setDescription(const DtString& description) { myDescription = description; }
    virtual const DtString& getDescription() const { return myDescription; }

    /// The name of the discriminant.
    virtual void setDiscriminant(const DtString& name) { myDiscriminant = name; }
    virtual const DtString& getDiscriminant() const { return myDiscriminant; }

    /// How discriminant and alternative are laid out, such as "HLAvariantRecord".
    virtual void setEncoding(const DtString& encoding) { myEncoding = encoding; }
    virtual const DtString& getEncoding() const { return myEncoding; }

    /// Takes an alternative over; null is ignored, a repeated name is not noticed.
    virtual void addComponentNode(DtAlternativeComponentNode* alternative);
    /// The first alternative of this name, or null.
    virtual DtAlternativeComponentNode* getComponentNode(const DtString& name) const;
    virtual ComponentList::const_iterator getComponentNodeList() const;
    virtual ComponentList::const_iterator getComponentNodeEnd() const;

private:
    DtString myDescription;
    DtString myDiscriminant;
    DtString myEncoding;
    DtOwnedNodes<DtAlternativeComponentNode> myAlternatives;
};
