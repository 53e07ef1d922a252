// SPDX-License-Identifier: Apache-2.0
#include "omtReader/hexDatatypeRep.h"

#include "omtReader/values/scalarOctets.h"

#include <locale>
#include <sstream>

DtHexDatatypeRep::DtHexDatatypeRep() : DtDatatypeRep(false)
{
    nameOwnClass(this);
}

DtHexDatatypeRep::~DtHexDatatypeRep() = default;

const char* DtHexDatatypeRep::datatype() const
{
    return "hex";
}

DtString DtHexDatatypeRep::stringRep(const void* position, int* consumed) const
{
    const void* const octet = readPosition(position, 1, 1, consumed);
    std::string text;
    if (octet) omtreader::appendHexadecimal(text, omtreader::readOctet(octet));
    return text;
}

// As a text stream reads it: after blanks, with a sign or a "0x", up to what does not fit.
std::vector<char> DtHexDatatypeRep::valueFromStringRep(const DtString& text) const
{
    std::istringstream stream(text.str());
    stream.imbue(std::locale::classic());
    std::uint32_t number = 0;
    stream >> std::hex >> number;
    return omtreader::ScalarOctets<std::uint32_t, std::endian::native>::write(number);
}

unsigned int DtHexDatatypeRep::byteAlignment() const
{
    return 1;
}

std::int32_t DtHexDatatypeRep::intVal(const void* position) const
{
    return omtreader::readOctet(position);
}

double DtHexDatatypeRep::numberRep(const void* position, int* consumed) const
{
    return omtreader::readOctet(readPosition(position, 1, 1, consumed));
}
