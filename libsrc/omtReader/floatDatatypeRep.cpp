// SPDX-License-Identifier: Apache-2.0
#include "omtReader/floatDatatypeRep.h"

#include "omtReader/values/scalarOctets.h"

using Octets = omtreader::ScalarOctets<float, std::endian::big>;

int DtFloatDatatypeRep::defaultFloatPrecision = 5;

DtFloatDatatypeRep::DtFloatDatatypeRep(bool isAligned) : DtNumberDatatypeRep(isAligned)
{
    nameOwnClass(this);
}

DtFloatDatatypeRep::~DtFloatDatatypeRep() = default;

const char* DtFloatDatatypeRep::datatype() const
{
    return "float";
}

DtString DtFloatDatatypeRep::stringRep(const void* position, int* consumed) const
{
    return Octets::floatText(netValPtr(position, consumed), defaultFloatPrecision);
}

std::vector<char> DtFloatDatatypeRep::valueFromStringRep(const DtString& text) const
{
    return Octets::write(omtreader::readFloat(text));
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
