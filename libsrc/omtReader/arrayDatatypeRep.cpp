// SPDX-License-Identifier: Apache-2.0
#include "omtReader/arrayDatatypeRep.h"

#include "omtReader/values/scalarOctets.h"

DtArrayDatatypeRep::DtArrayDatatypeRep() : DtDatatypeRep(false)
{
    nameOwnClass(this);
}

DtArrayDatatypeRep::~DtArrayDatatypeRep() = default;

const char* DtArrayDatatypeRep::datatype() const
{
    return "string";
}

DtString DtArrayDatatypeRep::stringRep(const void*, int*) const
{
    return {};
}

unsigned int DtArrayDatatypeRep::byteAlignment() const
{
    return 1;
}

DtString DtArrayDatatypeRep::stringRep(const void* position, int count, int* consumed) const
{
    const bool isThere = position && count > 0;
    if (consumed) *consumed = isThere ? count : 1;
    std::string text;
    const auto* const octets = static_cast<const unsigned char*>(position);
    for (int i = 0; isThere && i < count; ++i)
    {
        omtreader::appendHexadecimal(text, octets[i]);
        text += ' ';
    }
    return text;
}
