// SPDX-License-Identifier: Apache-2.0
#include "omtReader/doubleLEDatatypeRep.h"

#include "omtReader/values/scalarOctets.h"

using Octets = omtreader::ScalarOctets<double, std::endian::little>;

int DtDoubleLEDatatypeRep::defaultFloatPrecision = 5;

DtDoubleLEDatatypeRep::DtDoubleLEDatatypeRep(bool isAligned) : DtDoubleDatatypeRep(isAligned) {}

DtDoubleLEDatatypeRep::~DtDoubleLEDatatypeRep() = default;

const char* DtDoubleLEDatatypeRep::datatype() const
{
    return "double-LE";
}

DtString DtDoubleLEDatatypeRep::stringRep(const void* position, int* consumed) const
{
    return Octets::floatText(netValPtr(position, consumed), defaultFloatPrecision);
}

std::vector<char> DtDoubleLEDatatypeRep::valueFromStringRep(const DtString& text) const
{
    return Octets::write(text.toDouble());
}

double DtDoubleLEDatatypeRep::numberRep(const void* position, int* consumed) const
{
    return Octets::read(netValPtr(position, consumed));
}

double DtDoubleLEDatatypeRep::doubleVal(const void* position) const
{
    return Octets::read(netValPtr(position, nullptr));
}
