// SPDX-License-Identifier: Apache-2.0
#include "omtReader/intDatatypeRep.h"

#include "omtReader/values/numberRows.h"

static constexpr auto theRow = omtreader::theIntRow;
using Octets = decltype(theRow)::Octets;

DtIntDatatypeRep::DtIntDatatypeRep(bool isAligned, bool isUnsigned)
    : DtDatatypeRep(isAligned), myIsUnsigned(isUnsigned)
{
    nameOwnClass(this);
}

DtIntDatatypeRep::~DtIntDatatypeRep() = default;

const char* DtIntDatatypeRep::datatype() const
{
    return myIsUnsigned ? theRow.unsignedName : theRow.name;
}

DtString DtIntDatatypeRep::stringRep(const void* position, int* consumed) const
{
    return Octets::integerText(netValPtr(position, consumed), myIsUnsigned);
}

std::vector<char> DtIntDatatypeRep::valueFromStringRep(const DtString& text) const
{
    return Octets::write(Octets::parse(text));
}

unsigned int DtIntDatatypeRep::byteAlignment() const
{
    return Octets::theWidth;
}

double DtIntDatatypeRep::numberRep(const void* position, int* consumed) const
{
    return Octets::integerNumber(netValPtr(position, consumed), myIsUnsigned);
}

std::int32_t DtIntDatatypeRep::intVal(const void* position)
{
    return Octets::read(netValPtr(position, nullptr));
}

std::uint32_t DtIntDatatypeRep::unsignedIntVal(const void* position) const
{
    return Octets::readUnsigned(netValPtr(position, nullptr));
}

const void* DtIntDatatypeRep::netValPtr(const void* position, int* consumed) const
{
    return readPosition(position, Octets::theWidth, Octets::theWidth, consumed);
}

std::int32_t DtIntDatatypeRep::intValFromBuffer(const void* position)
{
    return Octets::read(position);
}
