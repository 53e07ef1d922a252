// SPDX-License-Identifier: Apache-2.0
#include "omtReader/charDatatypeRep.h"

#include "omtReader/values/scalarOctets.h"

DtCharDatatypeRep::DtCharDatatypeRep() : DtNumberDatatypeRep(false)
{
    nameOwnClass(this);
}

DtCharDatatypeRep::~DtCharDatatypeRep() = default;

const char* DtCharDatatypeRep::datatype() const
{
    return "char";
}

DtString DtCharDatatypeRep::stringRep(const void* position, int* consumed) const
{
    const auto* const octet = static_cast<const char*>(readPosition(position, 1, 1, consumed));
    return octet && *octet ? std::string_view(octet, 1) : std::string_view();
}

std::vector<char> DtCharDatatypeRep::valueFromStringRep(const DtString& text) const
{
    return {text.charAt(0)};
}

unsigned int DtCharDatatypeRep::byteAlignment() const
{
    return 1;
}

double DtCharDatatypeRep::numberRep(const void* position, int* consumed) const
{
    return omtreader::readOctet(readPosition(position, 1, 1, consumed));
}

unsigned char DtCharDatatypeRep::byteVal(const void* position) const
{
    return omtreader::readOctet(position);
}
