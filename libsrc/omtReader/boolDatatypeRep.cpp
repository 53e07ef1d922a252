// SPDX-License-Identifier: Apache-2.0
#include "omtReader/boolDatatypeRep.h"

#include "omtReader/values/scalarOctets.h"

DtBoolDatatypeRep::DtBoolDatatypeRep() : DtNumberDatatypeRep(false)
{
    nameOwnClass(this);
}

DtBoolDatatypeRep::~DtBoolDatatypeRep() = default;

const char* DtBoolDatatypeRep::datatype() const
{
    return "bool";
}

DtString DtBoolDatatypeRep::stringRep(const void* position, int* consumed) const
{
    const void* const octet = readPosition(position, 1, 1, consumed);
    if (!octet) return {};
    return boolVal(octet) ? "true" : "false";
}

std::vector<char> DtBoolDatatypeRep::valueFromStringRep(const DtString& text) const
{
    if (text == "true") return {0};
    if (text == "false") return {1};
    return {};
}

unsigned int DtBoolDatatypeRep::byteAlignment() const
{
    return 1;
}

double DtBoolDatatypeRep::numberRep(const void* position, int* consumed) const
{
    return omtreader::readOctet(readPosition(position, 1, 1, consumed));
}

bool DtBoolDatatypeRep::boolVal(const void* position) const
{
    return omtreader::readOctet(position) != 0;
}
