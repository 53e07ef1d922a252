// SPDX-License-Identifier: Apache-2.0
#include "omtReader/floatLEDatatypeRep.h"

#include "omtReader/values/numberRows.h"

static constexpr auto theRow = omtreader::theFloatLERow;
using Octets = decltype(theRow)::Octets;

int DtFloatLEDatatypeRep::defaultFloatPrecision = 5;

DtFloatLEDatatypeRep::DtFloatLEDatatypeRep(bool isAligned) : DtFloatDatatypeRep(isAligned) {}

DtFloatLEDatatypeRep::~DtFloatLEDatatypeRep() = default;

const char* DtFloatLEDatatypeRep::datatype() const
{
    return theRow.name;
}

DtString DtFloatLEDatatypeRep::stringRep(const void* position, int* consumed) const
{
    return Octets::floatText(netValPtr(position, consumed), defaultFloatPrecision);
}

std::vector<char> DtFloatLEDatatypeRep::valueFromStringRep(const DtString& text) const
{
    return Octets::write(Octets::parse(text));
}

double DtFloatLEDatatypeRep::numberRep(const void* position, int* consumed) const
{
    return Octets::read(netValPtr(position, consumed));
}

float DtFloatLEDatatypeRep::floatVal(const void* position) const
{
    return Octets::read(netValPtr(position, nullptr));
}
