// SPDX-License-Identifier: Apache-2.0
#include "omtReader/longLEDatatypeRep.h"

#include "omtReader/values/scalarOctets.h"

using Octets = omtreader::ScalarOctets<std::int64_t, std::endian::little>;

DtLongLEDatatypeRep::DtLongLEDatatypeRep(bool isAligned, bool isUnsigned)
    : DtLongDatatypeRep(isAligned, isUnsigned)
{
}

DtLongLEDatatypeRep::~DtLongLEDatatypeRep() = default;

const char* DtLongLEDatatypeRep::datatype() const
{
    return isUnsigned() ? "unsigned-long-LE" : "long-LE";
}

DtString DtLongLEDatatypeRep::stringRep(const void* position, int* consumed) const
{
    return Octets::integerText(netValPtr(position, consumed), isUnsigned());
}

std::vector<char> DtLongLEDatatypeRep::valueFromStringRep(const DtString& text) const
{
    return Octets::write(text.toInt());
}

double DtLongLEDatatypeRep::numberRep(const void* position, int* consumed) const
{
    return Octets::integerNumber(netValPtr(position, consumed), isUnsigned());
}

std::int64_t DtLongLEDatatypeRep::longVal(const void* position) const
{
    return Octets::read(netValPtr(position, nullptr));
}

std::uint64_t DtLongLEDatatypeRep::unsignedLongVal(const void* position) const
{
    return Octets::readUnsigned(netValPtr(position, nullptr));
}
