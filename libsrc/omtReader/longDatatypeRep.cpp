// SPDX-License-Identifier: Apache-2.0
#include "omtReader/longDatatypeRep.h"

#include "omtReader/values/numberRows.h"

static constexpr auto theRow = omtreader::theLongRow;
using Octets = decltype(theRow)::Octets;

DtLongDatatypeRep::DtLongDatatypeRep(bool isAligned, bool isUnsigned)
    : DtNumberDatatypeRep(isAligned), myIsUnsigned(isUnsigned)
{
    nameOwnClass(this);
}

DtLongDatatypeRep::~DtLongDatatypeRep() = default;

const char* DtLongDatatypeRep::datatype() const
{
    return myIsUnsigned ? theRow.unsignedName : theRow.name;
}

DtString DtLongDatatypeRep::stringRep(const void* position, int* consumed) const
{
    return Octets::integerText(netValPtr(position, consumed), myIsUnsigned);
}

std::vector<char> DtLongDatatypeRep::valueFromStringRep(const DtString& text) const
{
    return Octets::write(Octets::parse(text));
}

unsigned int DtLongDatatypeRep::byteAlignment() const
{
    return Octets::theWidth;
}

double DtLongDatatypeRep::numberRep(const void* position, int* consumed) const
{
    return Octets::integerNumber(netValPtr(position, consumed), myIsUnsigned);
}

std::int64_t DtLongDatatypeRep::longVal(const void* position) const
{
    return Octets::read(netValPtr(position, nullptr));
}

std::uint64_t DtLongDatatypeRep::unsignedLongVal(const void* position) const
{
    return Octets::readUnsigned(netValPtr(position, nullptr));
}

const void* DtLongDatatypeRep::netValPtr(const void* position, int* consumed) const
{
    return readPosition(position, Octets::theWidth, Octets::theWidth, consumed);
}
