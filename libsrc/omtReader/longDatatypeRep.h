// SPDX-License-Identifier: Apache-2.0
// 64-bit integers, the most significant octet first.
#pragma once

#include "omtReader/numberDatatypeRep.h"

#include <cstdint>

/// "long" and "unsigned-long": a 64-bit integer, the most significant octet first.
///
/// A text is read as a signed 32-bit number and widened with its sign, whatever the sign of the
/// values: what 32 bits do not hold can be decoded and not encoded. This is intended.
class OMTREADER_EXPORT DtLongDatatypeRep : public DtNumberDatatypeRep
{
public:
    DtLongDatatypeRep(bool isAligned, bool isUnsigned);

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    unsigned int byteAlignment() const override;
    double numberRep(const void* position, int* consumed) const override;
    virtual ~DtLongDatatypeRep();

    virtual std::int64_t longVal(const void* position) const;
    virtual std::uint64_t unsignedLongVal(const void* position) const;

    /// Unsigned values have another name and another text; the octets are the same.
    virtual void setUnsigned(bool isUnsigned) { myIsUnsigned = isUnsigned; }

    /// Where the value is read, see DtDatatypeRep::readPosition.
    const void* netValPtr(const void* position, int* consumed) const;

protected:
    bool isUnsigned() const { return myIsUnsigned; }

private:
    bool myIsUnsigned;
};
