// SPDX-License-Identifier: Apache-2.0
#include "omtReader/csvReader.h"

#include <algorithm>
#include <string>
#include <utility>

DtCSVReader::DtCSVReader(const DtFilename& fileName)
    : myFileName(fileName), myStream(fileName.c_str(), std::ios::binary), myIsGood(myStream.good())
{
}

DtCSVReader::~DtCSVReader() = default;

bool DtCSVReader::readLine()
{
    // A folder opens like a file, and fails at the first read.
    if (!myIsGood || myStream.eof() || myStream.bad()) return false;
    std::string line;
    std::getline(myStream, line);
    myLine = std::move(line);
    myColumnEnds.clear();
    return true;
}

/// Where the columns end, each at its separator and the last one at the end of the line.
const std::vector<std::size_t>& DtCSVReader::columnEnds() const
{
    if (!myColumnEnds.empty()) return myColumnEnds;
    const std::string_view line = myLine.view();
    for (std::size_t end = line.find(mySeparator); end != line.npos;
         end = line.find(mySeparator, end + 1))
        myColumnEnds.push_back(end);
    myColumnEnds.push_back(line.size());
    return myColumnEnds;
}

DtString DtCSVReader::stringVar(int first, int last) const
{
    if (!myIsGood || first < 0 || last < first) return {};
    const std::vector<std::size_t>& ends = columnEnds();
    const auto column = static_cast<std::size_t>(first);
    if (column >= ends.size()) return {};
    const std::size_t start = first == 0 ? 0 : ends[column - 1] + 1;
    const std::size_t end = ends[std::min(static_cast<std::size_t>(last), ends.size() - 1)];
    return myLine.view().substr(start, end - start);
}

int DtCSVReader::intVar(int column, bool* whole) const
{
    return myIsGood ? stringVar(column, column).toInt(whole) : -1;
}

void DtCSVReader::setSeparator(char separator)
{
    mySeparator = separator;
    myColumnEnds.clear();
}

int DtCSVReader::numColumns() const
{
    return static_cast<int>(columnEnds().size());
}
