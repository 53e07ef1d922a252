// SPDX-License-Identifier: Apache-2.0
// A field of a fixed record.
#pragma once

#include "omtReader/omtDatatypeNode.h"

/// One field of a fixed record datatype, which owns it; the datatype is that of the field.
class OMTREADER_EXPORT DtFieldComponentNode : public DtOMTDatatypeNode
{
public:
    DtFieldComponentNode();
    DtFieldComponentNode(const DtFieldComponentNode& other);
    DtFieldComponentNode& operator=(const DtFieldComponentNode& other);
    ~DtFieldComponentNode() override;

    /// What the field means, in words.
    virtual void setDescription(const DtString& description) { myDescription = description; }
    virtual const DtString& getDescription() const { return myDescription; }

private:
    DtString myDescription;
};
