// SPDX-License-Identifier: Apache-2.0
// An enumerated datatype.
#pragma once

#include "omtReader/enumerationNode.h"
#include "omtReader/omtNode.h"
#include "omtReader/ownedNodes.h"

#include <cstdint>
#include <list>
#include <memory>

/// A datatype whose values have names. Owns its enumerators; owned by the tree it was added to.
class OMTREADER_EXPORT DtEnumeratedDatatypeNode : public DtOMTNode
{
public:
    using EnumerationList = std::list<DtEnumerationNode*>;

    /// The size in octets of an enumeration that nothing else tells the size of; 2 at first. One
    /// setting for the process, made before values are decoded.
    static std::int32_t defaultEnumerationSize;

    DtEnumeratedDatatypeNode();
    DtEnumeratedDatatypeNode(const DtEnumeratedDatatypeNode& other);
    DtEnumeratedDatatypeNode& operator=(const DtEnumeratedDatatypeNode& other);
    ~DtEnumeratedDatatypeNode() override;

    /// What a value means, in words.
    virtual void setDescription(const DtString& description) { myDescription = description; }
    virtual const DtString& getDescription() const { return myDescription; }

    /// The name of a basic data representation, or a number of bits.
    virtual void setRepresentation(const DtString& name) { myRepresentation = name; }
    virtual const DtString& getRepresentation() const { return myRepresentation; }

    /// Takes an enumerator over, unless null or unless one of its name or number is there already:
    /// then a warning is written, and the enumerator stays the caller's.
    virtual void addEnumerationNode(DtEnumerationNode* enumerator);
    /// The first enumerator of this name, or null.
    virtual DtEnumerationNode* getEnumerationNode(const DtString& name) const;
    /// The first enumerator of this number, or null.
    virtual DtEnumerationNode* getEnumerationNode(int number) const;
    virtual EnumerationList::const_iterator getEnumerationNodeList() const;
    virtual EnumerationList::const_iterator getEnumerationNodeEnd() const;

    /// The size of a value in octets, told from the representation, else from the last characters
    /// of the datatype's name, else defaultEnumerationSize.
    virtual std::int32_t getExpectedEnumerationSize() const;

private:
    class ClashIndex;
    friend class DtEnumerationNode;

    const DtEnumerationNode* firstClash(const DtEnumerationNode& enumerator);
    void forgetClashIndex();

    DtString myDescription;
    DtString myRepresentation;
    DtOwnedNodes<DtEnumerationNode> myEnumerators;
    std::unique_ptr<ClashIndex> myClashIndex;  // only while there are many
};
