// SPDX-License-Identifier: Apache-2.0
// What attributes and parameters share: the datatype of a value and how often the value occurs.
#pragma once

#include "omtReader/cardinalityForms.h"
#include "omtReader/fedNode.h"

#include <cstdint>

/// A node of a class hierarchy that stands for a value.
class OMTREADER_EXPORT DtDatatypeFedNode : public DtFedNode
{
public:
    DtDatatypeFedNode();
    explicit DtDatatypeFedNode(DtFedNode* parent);
    DtDatatypeFedNode(const DtDatatypeFedNode& other);
    DtDatatypeFedNode& operator=(const DtDatatypeFedNode& other);
    ~DtDatatypeFedNode() override;

    /// The name of the value's datatype.
    virtual void setDatatype(const DtString& datatype) { myDatatype = datatype; }
    virtual const DtString& getDatatype() const { return myDatatype; }

    /// How many values there are, as written in the model: "3", "2-5" or "1+"; "1" at first.
    virtual void setCardinality(const DtString& cardinality);
    virtual const DtString& getCardinality() const { return myCardinality; }

    virtual void setAccuracy(const DtString& accuracy) { myAccuracy = accuracy; }
    virtual const DtString& getAccuracy() const { return myAccuracy; }

    virtual void setAccuracyCondition(const DtString& condition)
    {
        myAccuracyCondition = condition;
    }
    virtual const DtString& getAccuracyCondition() const { return myAccuracyCondition; }

    /// What the value means, in words.
    virtual void setDescription(const DtString& description) { myDescription = description; }
    virtual const DtString& getDescription() const { return myDescription; }

    /// The form of the cardinality, one of DtMemberForm.
    virtual std::int32_t getCardinalityType() const;
    virtual std::int32_t getCardinalityMinimum() const;
    /// Never below the minimum, but 0 where there is no maximum.
    virtual std::int32_t getCardinalityMaximum() const;

    /// Reads the three values above out of the cardinality text; a getter calls it after a change.
    virtual void setDerivedValues() const;

private:
    void refresh() const;

    DtString myDatatype;
    DtString myCardinality = "1";
    DtString myAccuracy;
    DtString myAccuracyCondition;
    DtString myDescription;
    mutable std::int32_t myCardinalityType = 0;
    mutable std::int32_t myCardinalityMinimum = 1;
    mutable std::int32_t myCardinalityMaximum = 1;
    mutable bool myDerivedValuesAreStale = false;
};
