// SPDX-License-Identifier: Apache-2.0
// One octet as two hexadecimal digits.
#pragma once

#include "omtReader/datatypeRep.h"

#include <cstdint>

/// "hex": one octet as two upper-case hexadecimal digits.
///
/// Encoding does not mirror decoding, kept for compatibility: a text is read as a hexadecimal
/// number of 32 bits and becomes four octets, in the order of this host's memory. That it gives
/// numbers without being a DtNumberDatatypeRep is intended too.
class OMTREADER_EXPORT DtHexDatatypeRep : public DtDatatypeRep
{
public:
    DtHexDatatypeRep();

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    unsigned int byteAlignment() const override;
    virtual ~DtHexDatatypeRep();

    virtual std::int32_t intVal(const void* position) const;
    virtual double numberRep(const void* position, int* consumed) const;
};
