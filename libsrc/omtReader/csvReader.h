// SPDX-License-Identifier: Apache-2.0
// Tables as lines of separated columns.
#pragma once

#include "util/dtFilename.h"

#include <cstddef>
#include <fstream>
#include <vector>

/// Reads a file line by line and gives the columns of the current line.
///
/// Nothing is quoted or escaped: a separator inside a name splits the name, and a carriage return
/// belongs to the last column. Nothing fails: what is not there is an empty text or -1.
class OMTREADER_EXPORT DtCSVReader
{
public:
    /// Opens the file. One that cannot be opened has no lines.
    explicit DtCSVReader(const DtFilename& fileName);
    DtCSVReader(const DtCSVReader&) = delete;
    DtCSVReader& operator=(const DtCSVReader&) = delete;
    virtual ~DtCSVReader();

    /// Goes to the next line; false when the last read met the end of the file. Kept for
    /// compatibility: a file that ends with a line break has one last, empty line.
    virtual bool readLine();
    /// The columns `first` to `last` of the line, counted from 0, with the separators between them.
    virtual DtString stringVar(int first, int last) const;
    /// A column as a number, see DtString::toInt(), where `whole` may be null.
    virtual int intVar(int column, bool* whole) const;

    /// What stands between columns; "," at first.
    virtual void setSeparator(char separator);
    virtual char separator() { return mySeparator; }
    /// How many columns the line has: one more than separators.
    virtual int numColumns() const;

private:
    const std::vector<std::size_t>& columnEnds() const;

    char mySeparator = ',';
    DtFilename myFileName;
    std::ifstream myStream;
    bool myIsGood;  // as it was after opening
    DtString myLine;
    mutable std::vector<std::size_t> myColumnEnds;  // of this line; empty until asked for
};
