// SPDX-License-Identifier: Apache-2.0
#include "omtReader/utf16DatatypeRep.h"

#include "omtReader/values/asciiConversion.h"

static constexpr unsigned int theWidth = 2;

DtUtf16DatatypeRep::DtUtf16DatatypeRep(bool isAligned) : DtDatatypeRep(isAligned)
{
    nameOwnClass(this);
}

DtUtf16DatatypeRep::~DtUtf16DatatypeRep() = default;

const char* DtUtf16DatatypeRep::datatype() const
{
    return "utf16";
}

DtString DtUtf16DatatypeRep::stringRep(const void* position, int* consumed) const
{
    const void* const unit = readPosition(position, 1, theWidth, consumed);
    if (!unit) return {};
    return omtreader::readAscii("UTF-16BE", {static_cast<const char*>(unit), theWidth});
}

std::vector<char> DtUtf16DatatypeRep::valueFromStringRep(const DtString& text) const
{
    return omtreader::writeAscii(text, "UTF-16BE", " ");
}

unsigned int DtUtf16DatatypeRep::byteAlignment() const
{
    return theWidth;
}
