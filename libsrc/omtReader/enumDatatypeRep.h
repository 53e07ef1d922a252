// SPDX-License-Identifier: Apache-2.0
// The base of representations of enumerators.
#pragma once

#include "omtReader/numberDatatypeRep.h"

/// A representation whose values are the numbers of enumerators: unsigned, and decimal as text.
///
/// The names of the enumerators are in the object model, and the manager puts them in.
class OMTREADER_EXPORT DtEnumDatatypeRep : public DtNumberDatatypeRep
{
public:
    virtual ~DtEnumDatatypeRep();

    /// The number of the enumerator at this position, consumed like its text.
    virtual unsigned int enumVal(const void* position, int* consumed) const = 0;

protected:
    explicit DtEnumDatatypeRep(bool isAligned);
};
