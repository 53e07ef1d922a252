// SPDX-License-Identifier: Apache-2.0
#include "omtReader/doubleLEDatatypeRep.h"

#include "omtReader/values/numberRows.h"

static constexpr auto theRow = omtreader::theDoubleLERow;
using Octets = decltype(theRow)::Octets;

int DtDoubleLEDatatypeRep::defaultFloatPrecision = 5;

DtDoubleLEDatatypeRep::DtDoubleLEDatatypeRep(bool isAligned) : DtDoubleDatatypeRep(isAligned) {}

DtDoubleLEDatatypeRep::~DtDoubleLEDatatypeRep() = default;

const char* DtDoubleLEDatatypeRep::datatype() const
{
    return theRow.name;
}

DtString DtDoubleLEDatatypeRep::stringRep(const void* position, int* consumed) const
{
    return Octets::floatText(netValPtr(position, consumed), defaultFloatPrecision);
}

std::vector<char> DtDoubleLEDatatypeRep::valueFromStringRep(const DtString& text) const
{
    return Octets::write(Octets::parse(text));
}

double DtDoubleLEDatatypeRep::numberRep(const void* position, int* consumed) const
{
    return Octets::read(netValPtr(position, consumed));
}

double DtDoubleLEDatatypeRep::doubleVal(const void* position) const
{
    return Octets::read(netValPtr(position, nullptr));
}
