// SPDX-License-Identifier: Apache-2.0
// An update rate.
#pragma once

#include "omtReader/omtNode.h"

/// A named rate at which a federate may ask for updates. Owned by the tree it was added to.
class OMTREADER_EXPORT DtUpdateRateNode : public DtOMTNode
{
public:
    DtUpdateRateNode();
    DtUpdateRateNode(const DtUpdateRateNode& other);
    DtUpdateRateNode& operator=(const DtUpdateRateNode& other);
    ~DtUpdateRateNode() override;

    /// What the rate is for, in words.
    virtual void setSemantics(const DtString& semantics) { mySemantics = semantics; }
    virtual const DtString& semantics() const { return mySemantics; }

    /// In updates per second; 0 at first.
    virtual void setRate(double rate) { myRate = rate; }
    virtual double rate() const { return myRate; }

private:
    DtString mySemantics;
    double myRate = 0.0;
};
