// SPDX-License-Identifier: Apache-2.0
#include "omtReader/entityReader.h"

DtEntityReader::DtEntityReader(const char* fileName) : DtCSVReader(fileName) {}
DtEntityReader::~DtEntityReader() = default;

int DtEntityReader::intVar(int column, bool* whole) const
{
    const DtString code = stringVar(column, column);
    return code.empty() ? -1 : code.toInt(whole);
}
