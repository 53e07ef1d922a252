// SPDX-License-Identifier: Apache-2.0
// One octet as a character.
#pragma once

#include "omtReader/numberDatatypeRep.h"

/// "char": one octet as a text of that one character, and the first character of a text.
///
/// The octet 0 is the empty text, and the empty text the octet 0.
class OMTREADER_EXPORT DtCharDatatypeRep : public DtNumberDatatypeRep
{
public:
    DtCharDatatypeRep();

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    unsigned int byteAlignment() const override;
    double numberRep(const void* position, int* consumed) const override;
    virtual ~DtCharDatatypeRep();

    virtual unsigned char byteVal(const void* position) const;
};
