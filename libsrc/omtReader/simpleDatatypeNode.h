// SPDX-License-Identifier: Apache-2.0
// A simple datatype.
#pragma once

#include "omtReader/omtNode.h"

/// A number with a meaning: a basic data representation with units, resolution and accuracy.
///
/// Every text is as written in the model. Owned by the tree it was added to.
class OMTREADER_EXPORT DtSimpleDatatypeNode : public DtOMTNode
{
public:
    DtSimpleDatatypeNode();
    DtSimpleDatatypeNode(const DtSimpleDatatypeNode& other);
    DtSimpleDatatypeNode& operator=(const DtSimpleDatatypeNode& other);
    ~DtSimpleDatatypeNode() override;

    /// The unit of measure, "NA" for none.
    virtual void setUnits(const DtString& units) { myUnits = units; }
    virtual const DtString& getUnits() const { return myUnits; }

    /// The name of a basic data representation.
    virtual void setRepresentation(const DtString& representation)
    {
        myRepresentation = representation;
    }
    virtual const DtString& getRepresentation() const { return myRepresentation; }

    /// How far a value may be off.
    virtual void setAccuracy(const DtString& accuracy) { myAccuracy = accuracy; }
    virtual const DtString& getAccuracy() const { return myAccuracy; }

    /// The smallest difference between two values.
    virtual void setResolution(const DtString& resolution) { myResolution = resolution; }
    virtual const DtString& getResolution() const { return myResolution; }

    /// What a value means, in words.
    virtual void setDescription(const DtString& description) { myDescription = description; }
    virtual const DtString& getDescription() const { return myDescription; }

private:
    DtString myUnits;
    DtString myRepresentation;
    DtString myAccuracy;
    DtString myResolution;
    DtString myDescription;
};
