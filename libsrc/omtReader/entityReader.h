// SPDX-License-Identifier: Apache-2.0
// Tables of entity types.
#pragma once

#include "omtReader/csvReader.h"

/// A table in which an empty column of a code stands for any code.
class OMTREADER_EXPORT DtEntityReader : public DtCSVReader
{
public:
    explicit DtEntityReader(const char* fileName);
    ~DtEntityReader() override;

    /// As the base's, but -1 for an empty column.
    int intVar(int column, bool* whole) const override;
};
