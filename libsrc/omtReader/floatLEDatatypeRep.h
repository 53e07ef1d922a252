// SPDX-License-Identifier: Apache-2.0
// 32-bit floating-point numbers, the least significant octet first.
#pragma once

#include "omtReader/floatDatatypeRep.h"

/// "float-LE": as DtFloatDatatypeRep, the least significant octet first.
class OMTREADER_EXPORT DtFloatLEDatatypeRep : public DtFloatDatatypeRep
{
public:
    explicit DtFloatLEDatatypeRep(bool isAligned);

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    double numberRep(const void* position, int* consumed) const override;
    ~DtFloatLEDatatypeRep() override;

    float floatVal(const void* position) const override;

    /// As that of DtFloatDatatypeRep, and independent of it.
    static int defaultFloatPrecision;
};
