// SPDX-License-Identifier: Apache-2.0
// A dimension for data distribution management.
#pragma once

#include "omtReader/omtDatatypeNode.h"

/// One axis along which regions limit what is sent to whom.
///
/// The datatype is that of a coordinate before it is normalised. Every text is as written in the
/// model.
class OMTREADER_EXPORT DtDimensionNode : public DtOMTDatatypeNode
{
public:
    DtDimensionNode();
    DtDimensionNode(const DtDimensionNode& other);
    DtDimensionNode& operator=(const DtDimensionNode& other);
    ~DtDimensionNode() override;

    /// How a coordinate becomes a number below the upper bound, in words.
    virtual void setNormalization(const DtString& normalization)
    {
        myNormalization = normalization;
    }
    virtual const DtString& getNormalization() const { return myNormalization; }

    /// What holds while nobody gives a region: a range, or "Excluded".
    virtual void setValue(const DtString& value) { myValue = value; }
    virtual const DtString& getValue() const { return myValue; }

    /// The first number beyond the dimension, as text.
    virtual void setUpperBound(const DtString& upperBound) { myUpperBound = upperBound; }
    virtual const DtString& getUpperBound() const { return myUpperBound; }

private:
    DtString myNormalization;
    DtString myValue;
    DtString myUpperBound;
};
