// SPDX-License-Identifier: Apache-2.0
// An array datatype.
#pragma once

#include "omtReader/cardinalityForms.h"
#include "omtReader/omtDatatypeNode.h"

#include <cstdint>
#include <vector>

/// Values of one datatype in a row; getDatatype() names that of an element.
///
/// Owned by the tree it was added to.
class OMTREADER_EXPORT DtArrayDatatypeNode : public DtOMTDatatypeNode
{
public:
    DtArrayDatatypeNode();
    DtArrayDatatypeNode(const DtArrayDatatypeNode& other);
    DtArrayDatatypeNode& operator=(const DtArrayDatatypeNode& other);
    ~DtArrayDatatypeNode() override;

    /// How many elements there are, as written: "3", "2,3", "[1..10]" or "Dynamic".
    virtual void setCardinality(const DtString& cardinality);
    virtual const DtString& getCardinality() const { return myCardinality; }

    /// How the elements and their number are laid out, such as "HLAvariableArray".
    virtual void setEncoding(const DtString& encoding);
    virtual const DtString& getEncoding() const { return myEncoding; }

    /// What the array means, in words.
    virtual void setDescription(const DtString& description) { myDescription = description; }
    virtual const DtString& getDescription() const { return myDescription; }

    /// How the array ends: one of DtArrayForm, or 0.
    virtual std::int32_t getCardinalityType() const;
    /// The bounds on the number of elements; of padding the maximum is the boundary in octets. -1
    /// where nothing is known.
    virtual std::int32_t getCardinalityMinimum() const;
    virtual std::int32_t getCardinalityMaximum() const;
    /// The size of each dimension of an array of type 9, else empty.
    virtual const std::vector<std::int32_t>& getMultiDimCardinality() const;

    /// Reads the values above out of cardinality and encoding; a getter calls it after a change.
    virtual void setDerivedValues() const;
    /// The first run of decimal digits in a text as a number; 0 without one.
    virtual std::int32_t extractInteger(const DtString& text) const;

private:
    void refresh() const;
    void deriveFixed() const;

    DtString myCardinality;
    DtString myEncoding;
    DtString myDescription;
    mutable std::int32_t myCardinalityType = 0;
    mutable std::int32_t myCardinalityMinimum = -1;
    mutable std::int32_t myCardinalityMaximum = -1;
    mutable std::vector<std::int32_t> myMultiDimCardinality;
    mutable bool myDerivedValuesAreStale = false;
};
