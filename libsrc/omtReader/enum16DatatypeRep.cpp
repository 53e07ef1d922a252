// SPDX-License-Identifier: Apache-2.0
#include "omtReader/enum16DatatypeRep.h"

#include "omtReader/values/scalarOctets.h"

using Octets = omtreader::ScalarOctets<std::uint16_t, std::endian::big>;
using EncodedOctets = omtreader::ScalarOctets<std::uint16_t, std::endian::little>;

DtEnum16DatatypeRep::DtEnum16DatatypeRep(bool isAligned) : DtEnumDatatypeRep(isAligned) {}
DtEnum16DatatypeRep::~DtEnum16DatatypeRep() = default;

const char* DtEnum16DatatypeRep::datatype() const
{
    return "enum16";
}

DtString DtEnum16DatatypeRep::stringRep(const void* position, int* consumed) const
{
    return Octets::integerText(netValPtr(position, consumed), true);
}

std::vector<char> DtEnum16DatatypeRep::valueFromStringRep(const DtString& text) const
{
    return EncodedOctets::write(static_cast<std::uint16_t>(text.toInt()));
}

unsigned int DtEnum16DatatypeRep::byteAlignment() const
{
    return Octets::theWidth;
}

double DtEnum16DatatypeRep::numberRep(const void* position, int* consumed) const
{
    return Octets::read(netValPtr(position, consumed));
}

unsigned int DtEnum16DatatypeRep::enumVal(const void* position, int* consumed) const
{
    return Octets::read(netValPtr(position, consumed));
}

const void* DtEnum16DatatypeRep::netValPtr(const void* position, int* consumed) const
{
    return readPosition(position, Octets::theWidth, Octets::theWidth, consumed);
}
