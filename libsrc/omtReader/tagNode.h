// SPDX-License-Identifier: Apache-2.0
// A user-supplied tag.
#pragma once

#include "omtReader/omtDatatypeNode.h"

/// The datatype of the tag that goes with one kind of service call; the name is that of the kind,
/// such as "updateReflectTag".
class OMTREADER_EXPORT DtTagNode : public DtOMTDatatypeNode
{
public:
    DtTagNode();
    DtTagNode(const DtTagNode& other);
    DtTagNode& operator=(const DtTagNode& other);
    ~DtTagNode() override;

    /// What the tag means, in words.
    virtual void setDescription(const DtString& description) { myDescription = description; }
    virtual const DtString& getDescription() const { return myDescription; }

private:
    DtString myDescription;
};
