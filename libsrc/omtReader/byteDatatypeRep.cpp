// SPDX-License-Identifier: Apache-2.0
#include "omtReader/byteDatatypeRep.h"

#include "omtReader/values/scalarOctets.h"

DtByteDatatypeRep::DtByteDatatypeRep() : DtNumberDatatypeRep(false)
{
    nameOwnClass(this);
}

DtByteDatatypeRep::~DtByteDatatypeRep() = default;

const char* DtByteDatatypeRep::datatype() const
{
    return "byte";
}

DtString DtByteDatatypeRep::stringRep(const void* position, int* consumed) const
{
    const void* const octet = readPosition(position, 1, 1, consumed);
    if (!octet) return {};
    return DtConversionString(omtreader::readOctet(octet));
}

std::vector<char> DtByteDatatypeRep::valueFromStringRep(const DtString& text) const
{
    return omtreader::writeOctet(text.toInt64());
}

unsigned int DtByteDatatypeRep::byteAlignment() const
{
    return 1;
}

double DtByteDatatypeRep::numberRep(const void* position, int* consumed) const
{
    return omtreader::readOctet(readPosition(position, 1, 1, consumed));
}

unsigned char DtByteDatatypeRep::byteVal(const void* position) const
{
    return omtreader::readOctet(position);
}
