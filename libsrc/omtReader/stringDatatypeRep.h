// SPDX-License-Identifier: Apache-2.0
// Text that ends with a zero octet.
#pragma once

#include "omtReader/datatypeRep.h"

/// "string": the octets up to a zero octet, which is consumed with them.
///
/// There is no other bound: the caller sees to it that a zero octet follows. A null position is an
/// empty text of 1 octet. An encoded text has no zero octet after it, so that it is one octet
/// shorter than what was decoded; this is intended.
class OMTREADER_EXPORT DtStringDatatypeRep : public DtDatatypeRep
{
public:
    DtStringDatatypeRep();

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    unsigned int byteAlignment() const override;
    virtual ~DtStringDatatypeRep();
};
