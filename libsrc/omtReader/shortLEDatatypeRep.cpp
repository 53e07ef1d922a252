// SPDX-License-Identifier: Apache-2.0
#include "omtReader/shortLEDatatypeRep.h"

#include "omtReader/values/numberRows.h"

static constexpr auto theRow = omtreader::theShortLERow;
using Octets = decltype(theRow)::Octets;

DtShortLEDatatypeRep::DtShortLEDatatypeRep(bool isAligned, bool isUnsigned)
    : DtShortDatatypeRep(isAligned, isUnsigned)
{
}

DtShortLEDatatypeRep::~DtShortLEDatatypeRep() = default;

const char* DtShortLEDatatypeRep::datatype() const
{
    return isUnsigned() ? theRow.unsignedName : theRow.name;
}

DtString DtShortLEDatatypeRep::stringRep(const void* position, int* consumed) const
{
    return Octets::integerText(netValPtr(position, consumed), isUnsigned());
}

std::vector<char> DtShortLEDatatypeRep::valueFromStringRep(const DtString& text) const
{
    return Octets::write(Octets::parse(text));
}

double DtShortLEDatatypeRep::numberRep(const void* position, int* consumed) const
{
    return Octets::integerNumber(netValPtr(position, consumed), isUnsigned());
}

std::int16_t DtShortLEDatatypeRep::shortVal(const void* position) const
{
    return Octets::read(netValPtr(position, nullptr));
}

std::uint16_t DtShortLEDatatypeRep::unsignedShortVal(const void* position) const
{
    return Octets::readUnsigned(netValPtr(position, nullptr));
}
