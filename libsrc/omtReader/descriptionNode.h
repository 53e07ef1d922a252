// SPDX-License-Identifier: Apache-2.0
// A transportation type.
#pragma once

#include "omtReader/omtNode.h"

/// One way in which updates and interactions travel, such as "HLAbestEffort".
class OMTREADER_EXPORT DtDescriptionNode : public DtOMTNode
{
public:
    DtDescriptionNode();
    DtDescriptionNode(const DtDescriptionNode& other);
    DtDescriptionNode& operator=(const DtDescriptionNode& other);
    ~DtDescriptionNode() override;

    /// What the transportation type offers, in words.
    virtual void setDescription(const DtString& description) { myDescription = description; }
    virtual const DtString& getDescription() const { return myDescription; }

    /// Whether nothing is lost on the way, as written: "Yes" or "No".
    virtual void setReliable(const DtString& reliable) { myReliable = reliable; }
    virtual const DtString& getReliable() const { return myReliable; }

private:
    DtString myDescription;
    DtString myReliable;
};
