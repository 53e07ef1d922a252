// SPDX-License-Identifier: Apache-2.0
// 32-bit floating-point numbers, the most significant octet first.
#pragma once

#include "omtReader/numberDatatypeRep.h"

/// "float": an IEEE 754 number of 32 bits, the most significant octet first.
class OMTREADER_EXPORT DtFloatDatatypeRep : public DtNumberDatatypeRep
{
public:
    explicit DtFloatDatatypeRep(bool isAligned);

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    unsigned int byteAlignment() const override;
    double numberRep(const void* position, int* consumed) const override;
    virtual ~DtFloatDatatypeRep();

    virtual float floatVal(const void* position) const;

    /// Where the value is read, see DtDatatypeRep::readPosition.
    const void* netValPtr(const void* position, int* consumed) const;

    /// The number of significant digits of a text, see DtConversionString; 5 at first. One setting
    /// for the process, made before values are decoded.
    static int defaultFloatPrecision;
};
