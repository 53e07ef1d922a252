// SPDX-License-Identifier: Apache-2.0
#include "omtReader/utf8DatatypeRep.h"

#include "omtReader/values/asciiConversion.h"

DtUtf8DatatypeRep::DtUtf8DatatypeRep() : DtDatatypeRep(false)
{
    nameOwnClass(this);
}

DtUtf8DatatypeRep::~DtUtf8DatatypeRep() = default;

const char* DtUtf8DatatypeRep::datatype() const
{
    return "utf8";
}

DtString DtUtf8DatatypeRep::stringRep(const void* position, int* consumed) const
{
    const auto isStop = [](char c) { return c == 0x00 || c == 0x03 || c == 0x04 || c == 0x13; };

    DtString text;
    if (const char* const start = static_cast<const char*>(position))
    {
        const char* stop = start;
        while (!isStop(*stop)) ++stop;
        text = omtreader::readAscii("UTF-8", {start, static_cast<std::size_t>(stop - start) + 1});
    }
    if (consumed) *consumed = static_cast<int>(text.length());
    return text;
}

std::vector<char> DtUtf8DatatypeRep::valueFromStringRep(const DtString& text) const
{
    return omtreader::writeAscii(text, "UTF-8", "");
}

unsigned int DtUtf8DatatypeRep::byteAlignment() const
{
    return 1;
}
