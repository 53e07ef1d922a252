// SPDX-License-Identifier: Apache-2.0
// One octet as a number.
#pragma once

#include "omtReader/numberDatatypeRep.h"

/// "byte": one octet as a number from 0 to 255. Of a text's number the low 8 bits are kept.
class OMTREADER_EXPORT DtByteDatatypeRep : public DtNumberDatatypeRep
{
public:
    DtByteDatatypeRep();

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    unsigned int byteAlignment() const override;
    double numberRep(const void* position, int* consumed) const override;
    virtual ~DtByteDatatypeRep();

    virtual unsigned char byteVal(const void* position) const;
};
