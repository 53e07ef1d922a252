// SPDX-License-Identifier: Apache-2.0
// 16-bit integers, the least significant octet first.
#pragma once

#include "omtReader/shortDatatypeRep.h"

/// "short-LE" and "unsigned-short-LE": as DtShortDatatypeRep, the least significant octet first.
class OMTREADER_EXPORT DtShortLEDatatypeRep : public DtShortDatatypeRep
{
public:
    DtShortLEDatatypeRep(bool isAligned, bool isUnsigned);

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    double numberRep(const void* position, int* consumed) const override;
    ~DtShortLEDatatypeRep() override;

    std::int16_t shortVal(const void* position) const override;
    std::uint16_t unsignedShortVal(const void* position) const override;
};
