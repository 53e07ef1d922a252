// SPDX-License-Identifier: Apache-2.0
// 64-bit integers, the least significant octet first.
#pragma once

#include "omtReader/longDatatypeRep.h"

/// "long-LE" and "unsigned-long-LE": as DtLongDatatypeRep, the least significant octet first.
class OMTREADER_EXPORT DtLongLEDatatypeRep : public DtLongDatatypeRep
{
public:
    DtLongLEDatatypeRep(bool isAligned, bool isUnsigned);

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    double numberRep(const void* position, int* consumed) const override;
    ~DtLongLEDatatypeRep() override;

    std::int64_t longVal(const void* position) const override;
    std::uint64_t unsignedLongVal(const void* position) const override;
};
