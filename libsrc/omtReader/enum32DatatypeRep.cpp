// SPDX-License-Identifier: Apache-2.0
#include "omtReader/enum32DatatypeRep.h"

#include "omtReader/values/scalarOctets.h"

using Octets = omtreader::ScalarOctets<std::uint32_t, std::endian::big>;
using EncodedOctets = omtreader::ScalarOctets<std::uint32_t, std::endian::little>;

DtEnum32DatatypeRep::DtEnum32DatatypeRep(bool isAligned) : DtEnumDatatypeRep(isAligned) {}
DtEnum32DatatypeRep::~DtEnum32DatatypeRep() = default;

const char* DtEnum32DatatypeRep::datatype() const
{
    return "enum32";
}

DtString DtEnum32DatatypeRep::stringRep(const void* position, int* consumed) const
{
    return Octets::integerText(netValPtr(position, consumed), true);
}

std::vector<char> DtEnum32DatatypeRep::valueFromStringRep(const DtString& text) const
{
    return EncodedOctets::write(static_cast<std::uint32_t>(text.toInt()));
}

unsigned int DtEnum32DatatypeRep::byteAlignment() const
{
    return Octets::theWidth;
}

double DtEnum32DatatypeRep::numberRep(const void* position, int* consumed) const
{
    return Octets::read(netValPtr(position, consumed));
}

unsigned int DtEnum32DatatypeRep::enumVal(const void* position, int* consumed) const
{
    return Octets::read(netValPtr(position, consumed));
}

const void* DtEnum32DatatypeRep::netValPtr(const void* position, int* consumed) const
{
    return readPosition(position, Octets::theWidth, Octets::theWidth, consumed);
}
