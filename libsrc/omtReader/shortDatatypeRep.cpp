// SPDX-License-Identifier: Apache-2.0
#include "omtReader/shortDatatypeRep.h"

#include "omtReader/values/numberRows.h"

static constexpr auto theRow = omtreader::theShortRow;
using Octets = decltype(theRow)::Octets;

DtShortDatatypeRep::DtShortDatatypeRep(bool isAligned, bool isUnsigned)
    : DtNumberDatatypeRep(isAligned), myIsUnsigned(isUnsigned)
{
    nameOwnClass(this);
}

DtShortDatatypeRep::~DtShortDatatypeRep() = default;

const char* DtShortDatatypeRep::datatype() const
{
    return myIsUnsigned ? theRow.unsignedName : theRow.name;
}

DtString DtShortDatatypeRep::stringRep(const void* position, int* consumed) const
{
    return Octets::integerText(netValPtr(position, consumed), myIsUnsigned);
}

std::vector<char> DtShortDatatypeRep::valueFromStringRep(const DtString& text) const
{
    return Octets::write(Octets::parse(text));
}

unsigned int DtShortDatatypeRep::byteAlignment() const
{
    return Octets::theWidth;
}

double DtShortDatatypeRep::numberRep(const void* position, int* consumed) const
{
    return Octets::integerNumber(netValPtr(position, consumed), myIsUnsigned);
}

std::int16_t DtShortDatatypeRep::shortVal(const void* position) const
{
    return Octets::read(netValPtr(position, nullptr));
}

std::uint16_t DtShortDatatypeRep::unsignedShortVal(const void* position) const
{
    return Octets::readUnsigned(netValPtr(position, nullptr));
}

const void* DtShortDatatypeRep::netValPtr(const void* position, int* consumed) const
{
    return readPosition(position, Octets::theWidth, Octets::theWidth, consumed);
}
