// SPDX-License-Identifier: Apache-2.0
// The base of representations of numbers.
#pragma once

#include "omtReader/datatypeRep.h"

/// A representation whose values are numbers.
///
/// Its destructor is no more virtual than that of DtDatatypeRep, so a class directly below it names
/// itself as described there.
class OMTREADER_EXPORT DtNumberDatatypeRep : public DtDatatypeRep
{
public:
    /// The value at this position as a number, consumed like its text.
    virtual double numberRep(const void* position, int* consumed) const = 0;

protected:
    explicit DtNumberDatatypeRep(bool isAligned);
    DtNumberDatatypeRep(const DtNumberDatatypeRep& other) = default;
    DtNumberDatatypeRep& operator=(const DtNumberDatatypeRep& other) = default;
    ~DtNumberDatatypeRep() = default;
};
