// SPDX-License-Identifier: Apache-2.0
// 16-bit integers, the most significant octet first.
#pragma once

#include "omtReader/numberDatatypeRep.h"

#include <cstdint>

/// "short" and "unsigned-short": a 16-bit integer, the most significant octet first.
///
/// A text is read as a signed 32-bit number, whatever the sign of the values; its low 16 bits are
/// kept.
class OMTREADER_EXPORT DtShortDatatypeRep : public DtNumberDatatypeRep
{
public:
    DtShortDatatypeRep(bool isAligned, bool isUnsigned);

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    unsigned int byteAlignment() const override;
    double numberRep(const void* position, int* consumed) const override;
    virtual ~DtShortDatatypeRep();

    virtual std::int16_t shortVal(const void* position) const;
    virtual std::uint16_t unsignedShortVal(const void* position) const;

    /// Unsigned values have another name and another text; the octets are the same.
    virtual void setUnsigned(bool isUnsigned) { myIsUnsigned = isUnsigned; }

    /// Where the value is read, see DtDatatypeRep::readPosition.
    const void* netValPtr(const void* position, int* consumed) const;

protected:
    bool isUnsigned() const { return myIsUnsigned; }

private:
    bool myIsUnsigned;
};
