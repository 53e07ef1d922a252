// SPDX-License-Identifier: Apache-2.0
// 32-bit integers, the least significant octet first.
#pragma once

#include "omtReader/intDatatypeRep.h"

// The two operations named intVal are meant to be two, whichever compiler warns of it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual"

/// "int-LE" and "unsigned-int-LE": as DtIntDatatypeRep, the least significant octet first.
class OMTREADER_EXPORT DtIntLEDatatypeRep : public DtIntDatatypeRep
{
public:
    DtIntLEDatatypeRep(bool isAligned, bool isUnsigned);

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    double numberRep(const void* position, int* consumed) const override;
    ~DtIntLEDatatypeRep() override;

    std::uint32_t unsignedIntVal(const void* position) const override;

    /// An operation of its own: the intVal of DtIntDatatypeRep is not const and stays
    /// what is called through that class, with the most significant octet first.
    virtual std::int32_t intVal(const void* position) const;
};

#pragma GCC diagnostic pop
