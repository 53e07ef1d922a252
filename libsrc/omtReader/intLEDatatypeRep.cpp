// SPDX-License-Identifier: Apache-2.0
#include "omtReader/intLEDatatypeRep.h"

#include "omtReader/values/numberRows.h"

static constexpr auto theRow = omtreader::theIntLERow;
using Octets = decltype(theRow)::Octets;

DtIntLEDatatypeRep::DtIntLEDatatypeRep(bool isAligned, bool isUnsigned)
    : DtIntDatatypeRep(isAligned, isUnsigned)
{
}

DtIntLEDatatypeRep::~DtIntLEDatatypeRep() = default;

const char* DtIntLEDatatypeRep::datatype() const
{
    return isUnsigned() ? theRow.unsignedName : theRow.name;
}

DtString DtIntLEDatatypeRep::stringRep(const void* position, int* consumed) const
{
    return Octets::integerText(netValPtr(position, consumed), isUnsigned());
}

std::vector<char> DtIntLEDatatypeRep::valueFromStringRep(const DtString& text) const
{
    return Octets::write(Octets::parse(text));
}

double DtIntLEDatatypeRep::numberRep(const void* position, int* consumed) const
{
    return Octets::integerNumber(netValPtr(position, consumed), isUnsigned());
}

std::int32_t DtIntLEDatatypeRep::intVal(const void* position) const
{
    return Octets::read(netValPtr(position, nullptr));
}

std::uint32_t DtIntLEDatatypeRep::unsignedIntVal(const void* position) const
{
    return Octets::readUnsigned(netValPtr(position, nullptr));
}
