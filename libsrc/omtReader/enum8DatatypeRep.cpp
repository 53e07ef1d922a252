// SPDX-License-Identifier: Apache-2.0
#include "omtReader/enum8DatatypeRep.h"

#include "omtReader/values/scalarOctets.h"

DtEnum8DatatypeRep::DtEnum8DatatypeRep() : DtEnumDatatypeRep(false) {}
DtEnum8DatatypeRep::~DtEnum8DatatypeRep() = default;

const char* DtEnum8DatatypeRep::datatype() const
{
    return "enum8";
}

DtString DtEnum8DatatypeRep::stringRep(const void* position, int* consumed) const
{
    if (!position) return {};
    return DtString(enumVal(position, consumed));
}

std::vector<char> DtEnum8DatatypeRep::valueFromStringRep(const DtString& text) const
{
    return omtreader::writeOctet(text.toInt());
}

unsigned int DtEnum8DatatypeRep::byteAlignment() const
{
    return 1;
}

double DtEnum8DatatypeRep::numberRep(const void* position, int* consumed) const
{
    return enumVal(position, consumed);
}

unsigned int DtEnum8DatatypeRep::enumVal(const void* position, int* consumed) const
{
    if (position && consumed) *consumed = 1;
    return omtreader::readOctet(position);
}
