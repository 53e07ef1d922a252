// SPDX-License-Identifier: Apache-2.0
// A basic data representation.
#pragma once

#include "omtReader/omtNode.h"

/// How a number or an octet lies in memory: the ground on which all other datatypes stand.
///
/// Every text is as written in the model. Owned by the tree it was added to.
class OMTREADER_EXPORT DtBasicDataRepresentationNode : public DtOMTNode
{
public:
    DtBasicDataRepresentationNode();
    DtBasicDataRepresentationNode(const DtBasicDataRepresentationNode& other);
    DtBasicDataRepresentationNode& operator=(const DtBasicDataRepresentationNode& other);
    ~DtBasicDataRepresentationNode() override;

    /// The size in bits, as text.
    virtual void setSize(const DtString& size) { mySize = size; }
    virtual const DtString& getSize() const { return mySize; }

    /// "Big" or "Little".
    virtual void setEndian(const DtString& endian) { myEndian = endian; }
    virtual const DtString& getEndian() const { return myEndian; }

    /// The encoding, in words.
    virtual void setEncoding(const DtString& encoding) { myEncoding = encoding; }
    virtual const DtString& getEncoding() const { return myEncoding; }

    /// What the bits mean, in words.
    virtual void setInterpretation(const DtString& interpretation)
    {
        myInterpretation = interpretation;
    }
    virtual const DtString& getInterpretation() const { return myInterpretation; }

private:
    DtString mySize;
    DtString myEndian;
    DtString myEncoding;
    DtString myInterpretation;
};
