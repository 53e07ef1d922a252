// SPDX-License-Identifier: Apache-2.0
#include "omtReader/definedDatatypeRep.h"

DtDefinedDatatypeRep::DtDefinedDatatypeRep(bool isAligned) : DtDatatypeRep(isAligned)
{
    nameOwnClass(this);
}

DtDefinedDatatypeRep::~DtDefinedDatatypeRep() = default;

const void* DtDefinedDatatypeRep::locationPtr(DtDatatypeManager&, DtObjectHistory*) const
{
    return nullptr;
}
