// SPDX-License-Identifier: Apache-2.0
// RowReader reads the rows of a recording: lines of CSV with a header, or one JSON object each.
#pragma once

#include "omt/base/export.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// One row. All texts live until the next row is read.
struct Row
{
    std::string_view kind;
    std::string_view className;
    std::string_view member;
    std::string_view octets;
    /// The cells in the order of the columns; of a JSON object only where cells were asked for.
    std::vector<std::string_view> cells;
    /// The row as a JSON object without its closing brace.
    std::string_view json;
    /// Why it is no row of the recording; empty for one that is.
    std::string problem;
    /// Whether the line has no cells at all; the first of `cells` is then the line.
    bool isLine = false;
};

/// Reads one row after the other. A row is a line, whatever stands in it, so a bad one moves no
/// other. Copies read the same recording, each for a thread of its own.
class OMT_EXPORT RowReader
{
public:
    /// With cells, JSON objects are taken apart into them.
    explicit RowReader(bool needsCells);
    RowReader(const RowReader& other);
    ~RowReader();

    /// Reads how rows are written from the beginning of a recording, which has to hold a whole
    /// line, and removes the header. Gives why there is none.
    std::optional<std::string> begin(std::string_view& text);
    const std::vector<std::string>& columns() const { return myColumns; }

    /// Reads a line, without its end.
    void read(std::string_view line, Row& row);

private:
    /// The columns with a meaning, and their places among all.
    struct Places
    {
        std::optional<std::size_t> time, event, kind, className, member, octets;
    };
    class JsonParser;

    std::optional<std::string> beginCsv(std::string_view& text);
    std::optional<std::string> beginJson(std::string_view line);
    const char* splitCsv(std::string_view line, std::vector<std::string_view>& cells);
    std::string_view unquoted(std::string_view inner);
    void refuse(std::string_view line, std::string problem, Row& row);
    void readCsv(std::string_view line, Row& row);
    void readJson(std::string_view line, Row& row);
    void writeCells(const Row& row);
    std::optional<std::string> findPlaces();

    bool myNeedsCells;
    bool myIsJson = false;
    char myDelimiter = ',';
    std::vector<std::string> myColumns;
    /// Each column as a key of JSON, with quotes and colon.
    std::vector<std::string> myKeys;
    Places myPlaces;
    /// Texts of cells without their quotes, and the row as JSON.
    std::string myTexts;
    std::string myJson;
    std::unique_ptr<JsonParser> myParser;
};

}  // namespace omt
