// SPDX-License-Identifier: Apache-2.0
#include "omtReader/numberDatatypeRep.h"

DtNumberDatatypeRep::DtNumberDatatypeRep(bool isAligned) : DtDatatypeRep(isAligned) {}
