// SPDX-License-Identifier: Apache-2.0
#include "omtReader/stringDatatypeRep.h"

DtStringDatatypeRep::DtStringDatatypeRep() : DtDatatypeRep(false)
{
    nameOwnClass(this);
}

DtStringDatatypeRep::~DtStringDatatypeRep() = default;

const char* DtStringDatatypeRep::datatype() const
{
    return "string";
}

DtString DtStringDatatypeRep::stringRep(const void* position, int* consumed) const
{
    const DtString text(static_cast<const char*>(position));
    if (consumed) *consumed = static_cast<int>(text.length()) + 1;
    return text;
}

std::vector<char> DtStringDatatypeRep::valueFromStringRep(const DtString& text) const
{
    return std::vector<char>(text.view().begin(), text.view().end());
}

unsigned int DtStringDatatypeRep::byteAlignment() const
{
    return 1;
}
