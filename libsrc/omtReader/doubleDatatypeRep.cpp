// SPDX-License-Identifier: Apache-2.0
#include "omtReader/doubleDatatypeRep.h"

#include "omtReader/values/numberRows.h"

static constexpr auto theRow = omtreader::theDoubleRow;
using Octets = decltype(theRow)::Octets;

int DtDoubleDatatypeRep::defaultFloatPrecision = 5;

DtDoubleDatatypeRep::DtDoubleDatatypeRep(bool isAligned) : DtNumberDatatypeRep(isAligned)
{
    nameOwnClass(this);
}

DtDoubleDatatypeRep::~DtDoubleDatatypeRep() = default;

const char* DtDoubleDatatypeRep::datatype() const
{
    return theRow.name;
}

DtString DtDoubleDatatypeRep::stringRep(const void* position, int* consumed) const
{
    return Octets::floatText(netValPtr(position, consumed), defaultFloatPrecision);
}

std::vector<char> DtDoubleDatatypeRep::valueFromStringRep(const DtString& text) const
{
    return Octets::write(Octets::parse(text));
}

unsigned int DtDoubleDatatypeRep::byteAlignment() const
{
    return Octets::theWidth;
}

double DtDoubleDatatypeRep::numberRep(const void* position, int* consumed) const
{
    return Octets::read(netValPtr(position, consumed));
}

double DtDoubleDatatypeRep::doubleVal(const void* position) const
{
    return Octets::read(netValPtr(position, nullptr));
}

const void* DtDoubleDatatypeRep::netValPtr(const void* position, int* consumed) const
{
    return readPosition(position, Octets::theWidth, Octets::theWidth, consumed);
}
