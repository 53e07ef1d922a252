// SPDX-License-Identifier: Apache-2.0
// A component of an HLA 1.3 complex datatype.
#pragma once

#include "omtReader/cardinalityForms.h"
#include "omtReader/omtDatatypeNode.h"

#include <cstdint>

/// One component of a complex datatype, which owns it; the name is that of the field, the datatype
/// that of the component.
class OMTREADER_EXPORT DtComplexComponentNode : public DtOMTDatatypeNode
{
public:
    DtComplexComponentNode();
    DtComplexComponentNode(const DtComplexComponentNode& other);
    DtComplexComponentNode& operator=(const DtComplexComponentNode& other);
    ~DtComplexComponentNode() override;

    /// How often the component occurs, and when, as written: "1", "1-5", "0+", "%8" or
    /// "0-1 (Kind = 2)".
    virtual void setCardinality(const DtString& cardinality);
    virtual const DtString& getCardinality() const { return myCardinality; }

    virtual void setAccuracy(const DtString& accuracy) { myAccuracy = accuracy; }
    virtual const DtString& getAccuracy() const { return myAccuracy; }

    virtual void setAccuracyCondition(const DtString& condition)
    {
        myAccuracyCondition = condition;
    }
    virtual const DtString& getAccuracyCondition() const { return myAccuracyCondition; }

    virtual std::int32_t getCardinalityMinimum() const;
    /// -1 where nothing is known or nothing limits it.
    virtual std::int32_t getCardinalityMaximum() const;
    /// The component whose value decides, and the value that it needs to have; to be looked at when
    /// the form is a condition. A text without a condition leaves both as they were.
    virtual const DtString& getConditionalComponent() const;
    virtual const DtString& getConditionalValue() const;
    /// The form of the cardinality, one of DtComponentForm.
    virtual std::int32_t getCardinalityType() const;

    /// Reads the values above out of the cardinality text; a getter calls it after a change.
    virtual void setDerivedValues() const;

private:
    void refresh() const;

    DtString myCardinality;
    DtString myAccuracy;
    DtString myAccuracyCondition;
    mutable std::int32_t myCardinalityType = 0;
    mutable std::int32_t myCardinalityMinimum = -1;
    mutable std::int32_t myCardinalityMaximum = -1;
    mutable DtString myConditionalComponent;
    mutable DtString myConditionalValue;
    mutable bool myDerivedValuesAreStale = false;
};
