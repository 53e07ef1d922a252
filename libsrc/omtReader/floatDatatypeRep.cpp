// SPDX-License-Identifier: Apache-2.0
#include "omtReader/floatDatatypeRep.h"

#include "omtReader/values/numberRows.h"

static constexpr auto theRow = omtreader::theFloatRow;
using Octets = decltype(theRow)::Octets;

int DtFloatDatatypeRep::defaultFloatPrecision = 5;

DtFloatDatatypeRep::DtFloatDatatypeRep(bool isAligned) : DtNumberDatatypeRep(isAligned)
{
    nameOwnClass(this);
}

DtFloatDatatypeRep::~DtFloatDatatypeRep() = default;

const char* DtFloatDatatypeRep::datatype() const
{
    return theRow.name;
}

DtString DtFloatDatatypeRep::stringRep(const void* position, int* consumed) const
{
    return Octets::floatText(netValPtr(position, consumed), defaultFloatPrecision);
}

std::vector<char> DtFloatDatatypeRep::valueFromStringRep(const DtString& text) const
{
    return Octets::write(Octets::parse(text));
}

unsigned int DtFloatDatatypeRep::byteAlignment() const
{
    return Octets::theWidth;
}

double DtFloatDatatypeRep::numberRep(const void* position, int* consumed) const
{
    return Octets::read(netValPtr(position, consumed));
}

float DtFloatDatatypeRep::floatVal(const void* position) const
{
    return Octets::read(netValPtr(position, nullptr));
}

const void* DtFloatDatatypeRep::netValPtr(const void* position, int* consumed) const
{
    return readPosition(position, Octets::theWidth, Octets::theWidth, consumed);
}
