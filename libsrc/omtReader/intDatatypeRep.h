// SPDX-License-Identifier: Apache-2.0
// 32-bit integers, the most significant octet first.
#pragma once

#include "omtReader/datatypeRep.h"

#include <cstdint>

// The two operations named intVal are meant to be two, whichever compiler warns of it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual"

/// "int" and "unsigned-int": a 32-bit integer, the most significant octet first.
///
/// A text is read as a signed 32-bit number, whatever the sign of the values. That it gives numbers
/// without being a DtNumberDatatypeRep is intended.
class OMTREADER_EXPORT DtIntDatatypeRep : public DtDatatypeRep
{
public:
    DtIntDatatypeRep(bool isAligned, bool isUnsigned);

    const char* datatype() const override;
    DtString stringRep(const void* position, int* consumed) const override;
    std::vector<char> valueFromStringRep(const DtString& text) const override;
    unsigned int byteAlignment() const override;
    virtual ~DtIntDatatypeRep();

    /// Not const: the operation of the same name that DtIntLEDatatypeRep adds is
    /// another one.
    virtual std::int32_t intVal(const void* position);
    virtual std::uint32_t unsignedIntVal(const void* position) const;
    virtual double numberRep(const void* position, int* consumed) const;

    /// Unsigned values have another name and another text; the octets are the same.
    virtual void setUnsigned(bool isUnsigned) { myIsUnsigned = isUnsigned; }

    /// Where the value is read, see DtDatatypeRep::readPosition.
    const void* netValPtr(const void* position, int* consumed) const;

    /// The integer at exactly this position, the most significant octet first; 0 for null.
    static std::int32_t intValFromBuffer(const void* position);

protected:
    bool isUnsigned() const { return myIsUnsigned; }

private:
    bool myIsUnsigned;
};

#pragma GCC diagnostic pop
