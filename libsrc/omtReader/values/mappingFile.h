// SPDX-License-Identifier: Apache-2.0
// The datatype mapping file: its text to edits of a manager, and back.
#pragma once

#include "omtReader/values/conversionSettings.h"
#include "sexp/dtcList.h"

namespace omtreader
{

/// Reads the one list that a mapping file holds. False if there is nothing in it, or if it is
/// malformed, which is told to DtWarn with the file's name and the line.
bool readMappingList(DtlInputStream& stream, const DtString& fileName, DtlObjPtr& list);

/// Makes the edits of a list, in its order; anything that is no mapping is skipped.
void applyMappings(DtDatatypeManager& manager, DtlObjPtr list);

/// The text of a mapping file with all mappings of datatypes, delimiters and brackets.
DtString mappingText(const ConversionSettings& settings);

}  // namespace omtreader
