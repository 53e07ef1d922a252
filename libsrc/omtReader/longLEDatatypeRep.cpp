// SPDX-License-Identifier: Apache-2.0
#include "omtReader/longLEDatatypeRep.h"

#include "omtReader/values/numberRows.h"

static constexpr auto theRow = omtreader::theLongLERow;
using Octets = decltype(theRow)::Octets;

DtLongLEDatatypeRep::DtLongLEDatatypeRep(bool isAligned, bool isUnsigned)
    : DtLongDatatypeRep(isAligned, isUnsigned)
{
}

DtLongLEDatatypeRep::~DtLongLEDatatypeRep() = default;

const char* DtLongLEDatatypeRep::datatype() const
{
    return isUnsigned() ? theRow.unsignedName : theRow.name;
}

DtString DtLongLEDatatypeRep::stringRep(const void* position, int* consumed) const
{
    return Octets::integerText(netValPtr(position, consumed), isUnsigned());
}

std::vector<char> DtLongLEDatatypeRep::valueFromStringRep(const DtString& text) const
{
    return Octets::write(Octets::parse(text));
}

double DtLongLEDatatypeRep::numberRep(const void* position, int* consumed) const
{
    return Octets::integerNumber(netValPtr(position, consumed), isUnsigned());
}

std::int64_t DtLongLEDatatypeRep::longVal(const void* position) const
{
    return Octets::read(netValPtr(position, nullptr));
}

std::uint64_t DtLongLEDatatypeRep::unsignedLongVal(const void* position) const
{
    return Octets::readUnsigned(netValPtr(position, nullptr));
}
