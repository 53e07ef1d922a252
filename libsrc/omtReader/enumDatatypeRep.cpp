// SPDX-License-Identifier: Apache-2.0
#include "omtReader/enumDatatypeRep.h"

DtEnumDatatypeRep::DtEnumDatatypeRep(bool isAligned) : DtNumberDatatypeRep(isAligned)
{
    nameOwnClass(this);
}

DtEnumDatatypeRep::~DtEnumDatatypeRep() = default;
