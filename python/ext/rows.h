// SPDX-License-Identifier: Apache-2.0
// Rows reads the lines of a recording into columns for Python.
#pragma once

#include "omt/recording/rowReader.h"

#include <nanobind/nanobind.h>

#include <string>
#include <string_view>
#include <vector>

namespace omtpy
{

/// A column that is being read, in the buffers that Arrow has for it.
struct RowColumn
{
    enum class Kind : char
    {
        number = 'd',
        integer = 'l',
        text = 'u',
        octets = 'z'
    };

    std::string name;
    Kind kind = Kind::text;
    std::string data;
    std::vector<std::int64_t> offsets{0};
    /// A bit for each row that is not null.
    std::string valid;
    std::size_t rows = 0;

    void add(bool isThere);
    void clear();
};

/// Reads blocks of whole lines. What cannot be read of a row is null, and "problem" says why.
class Rows
{
public:
    /// Takes the first line from the beginning of a recording. Throws ValueError where it is none.
    explicit Rows(nanobind::bytes start);

    /// The columns of the lines of a block, each as (name, kind, rows, valid, offsets, data); the
    /// header is passed over where the block is the first one.
    nanobind::list read(nanobind::bytes block, bool isFirst);

private:
    void addRow(std::string_view line);
    void addCell(RowColumn& column, std::string_view cell);
    void addProblem(std::string_view problem);
    void splitMember(std::string_view& className, std::string_view& member) const;

    omt::RowReader myReader;
    omt::Row myRow;
    std::vector<RowColumn> myColumns;
    /// The place of a class that the recording puts before its members.
    bool myHasClass = true;
    std::vector<std::uint8_t> myOctets;
    std::string myProblem;
};

}  // namespace omtpy
