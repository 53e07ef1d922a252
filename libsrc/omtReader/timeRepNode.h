// SPDX-License-Identifier: Apache-2.0
// The time representation.
#pragma once

#include "util/dtString.h"

/// The datatypes in which a federation's time stamps and lookahead are given.
///
/// One per tree, which owns it. All texts are empty until set.
class OMTREADER_EXPORT DtTimeRepNode
{
public:
    DtTimeRepNode();
    DtTimeRepNode(const DtTimeRepNode& other);
    DtTimeRepNode& operator=(const DtTimeRepNode& other);
    virtual ~DtTimeRepNode();

    /// The datatype of a time stamp.
    virtual void setFedTimeDatatype(const DtString& datatype) { myFedTimeDatatype = datatype; }
    virtual const DtString& getFedTimeDatatype() const { return myFedTimeDatatype; }

    /// What a time stamp means, in words.
    virtual void setFedTimeSemantics(const DtString& semantics) { myFedTimeSemantics = semantics; }
    virtual const DtString& getFedTimeSemantics() const { return myFedTimeSemantics; }

    /// The datatype of a lookahead.
    virtual void setLookaheadDatatype(const DtString& datatype) { myLookaheadDatatype = datatype; }
    virtual const DtString& getLookaheadDatatype() const { return myLookaheadDatatype; }

    /// What a lookahead means, in words.
    virtual void setLookaheadSemantics(const DtString& semantics)
    {
        myLookaheadSemantics = semantics;
    }
    virtual const DtString& getLookaheadSemantics() const { return myLookaheadSemantics; }

private:
    DtString myFedTimeDatatype;
    DtString myFedTimeSemantics;
    DtString myLookaheadDatatype;
    DtString myLookaheadSemantics;
};
