// SPDX-License-Identifier: Apache-2.0
// The base of entries that refer to a datatype.
#pragma once

#include "omtReader/omtNode.h"

/// A named entry with the name of a datatype; what the datatype is for, each class says.
class OMTREADER_EXPORT DtOMTDatatypeNode : public DtOMTNode
{
public:
    DtOMTDatatypeNode();
    DtOMTDatatypeNode(const DtOMTDatatypeNode& other);
    DtOMTDatatypeNode& operator=(const DtOMTDatatypeNode& other);
    ~DtOMTDatatypeNode() override;

    virtual void setDatatype(const DtString& datatype);
    virtual const DtString& getDatatype() const { return myDatatype; }

private:
    DtString myDatatype;
};
