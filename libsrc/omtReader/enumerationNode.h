// SPDX-License-Identifier: Apache-2.0
// An enumerator: a name for a number.
#pragma once

#include "util/dtString.h"

#include <cstdint>

class DtEnumeratedDatatypeNode;

/// One enumerator of an enumerated datatype, which owns it once it has accepted it.
class OMTREADER_EXPORT DtEnumerationNode
{
public:
    DtEnumerationNode();
    /// Copies name and number; the copy belongs to no datatype yet.
    DtEnumerationNode(const DtEnumerationNode& other);
    DtEnumerationNode& operator=(const DtEnumerationNode& other);
    virtual ~DtEnumerationNode();

    virtual void setEnum(const DtString& name);
    virtual const DtString& getEnum() const { return myEnum; }

    /// 0 at first.
    virtual void setNumber(int number);
    virtual int getNumber() const { return myNumber; }

private:
    friend class DtEnumeratedDatatypeNode;
    void reportChange();

    DtString myEnum;
    std::int32_t myNumber = 0;
    DtEnumeratedDatatypeNode* myOwner = nullptr;  // learns of changes; not part of the value
};
