// SPDX-License-Identifier: Apache-2.0
// A synchronization point.
#pragma once

#include "omtReader/omtDatatypeNode.h"

/// A point that federates agree to reach together; the name is its label, the datatype that of its
/// tag.
class OMTREADER_EXPORT DtSynchroNode : public DtOMTDatatypeNode
{
public:
    DtSynchroNode();
    DtSynchroNode(const DtSynchroNode& other);
    DtSynchroNode& operator=(const DtSynchroNode& other);
    ~DtSynchroNode() override;

    /// "Register", "Achieve", "RegisterAchieve" or "NoSynch".
    virtual void setCapability(const DtString& capability) { myCapability = capability; }
    virtual const DtString& getCapability() const { return myCapability; }

    /// What the point means, in words.
    virtual void setDescription(const DtString& description) { myDescription = description; }
    virtual const DtString& getDescription() const { return myDescription; }

private:
    DtString myCapability;
    DtString myDescription;
};
