// SPDX-License-Identifier: Apache-2.0
// 64-bit floating-point numbers, the least significant octet first.
#pragma once

#include "omtReader/doubleDatatypeRep.h"

/// "double-LE": as DtDoubleDatatypeRep, the least significant octet first.
class OMTREADER_EXPORT DtDoubleLEDatatypeRep : public DtDoubleDatatypeRep
{
public:
    explicit DtDoubleLEDatatypeRep(bool isAligned);

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    double numberRep(const void* position, int* consumed) const override;
    ~DtDoubleLEDatatypeRep() override;

    double doubleVal(const void* position) const override;

    /// As that of DtDoubleDatatypeRep, and independent of it.
    static int defaultFloatPrecision;
};
