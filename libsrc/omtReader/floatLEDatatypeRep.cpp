// SPDX-License-Identifier: Apache-2.0
#include "omtReader/floatLEDatatypeRep.h"

#include "omtReader/values/scalarOctets.h"

using Octets = omtreader::ScalarOctets<float, std::endian::little>;

int DtFloatLEDatatypeRep::defaultFloatPrecision = 5;

DtFloatLEDatatypeRep::DtFloatLEDatatypeRep(bool isAligned) : DtFloatDatatypeRep(isAligned) {}

DtFloatLEDatatypeRep::~DtFloatLEDatatypeRep() = default;

const char* DtFloatLEDatatypeRep::datatype() const
{
    return "float-LE";
}

DtString DtFloatLEDatatypeRep::stringRep(const void* position, int* consumed) const
{
    return Octets::floatText(netValPtr(position, consumed), defaultFloatPrecision);
}

std::vector<char> DtFloatLEDatatypeRep::valueFromStringRep(const DtString& text) const
{
    return Octets::write(omtreader::readFloat(text));
}

double DtFloatLEDatatypeRep::numberRep(const void* position, int* consumed) const
{
    return Octets::read(netValPtr(position, consumed));
}

float DtFloatLEDatatypeRep::floatVal(const void* position) const
{
    return Octets::read(netValPtr(position, nullptr));
}
