// SPDX-License-Identifier: Apache-2.0
// Tables and lists of properties, aligned for a page of 100 columns.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What a column does with a text that is longer than there is room for.
enum class Fit
{
    whole,  ///< never cut: the rest of the row moves to the next line
    clip,   ///< cut off, with "..."
    wrap    ///< goes on below, in the same column
};

struct Column
{
    std::string heading;
    Fit fit;
    /// Whether blanks stay as they are.
    bool isExact = false;
    /// How wide it is at least where its texts wrap or are cut off.
    std::size_t narrowest = 16;
};

inline Column whole(const char* heading)
{
    return {heading, Fit::whole};
}
inline Column clip(const char* heading)
{
    return {heading, Fit::clip};
}
inline Column wrap(const char* heading)
{
    return {heading, Fit::wrap};
}
/// For texts whose blanks count: indented names, values.
inline Column exact(const char* heading)
{
    return {heading, Fit::whole, true};
}

/// Rows of cells below their headings. Every cell is made one visible line first, its blanks too
/// unless the column is exact; columns in which no row has anything are left out.
class TextTable
{
public:
    explicit TextTable(std::vector<Column> columns, std::size_t indent = 2)
        : myColumns(std::move(columns)), myIndent(indent)
    {
    }

    /// One cell for each column.
    void add(const std::vector<std::string>& cells);
    bool isEmpty() const { return myRows.empty(); }
    std::size_t size() const { return myRows.size(); }
    std::string text() const;

private:
    using Row = std::vector<std::string>;
    struct Place;

    std::size_t naturalWidth(std::size_t column) const;
    std::vector<Place> places() const;
    void shareRoom(std::vector<Place*>& texts, std::size_t room) const;
    std::vector<std::string> cellLines(const std::string& cell, const Place& place) const;
    std::string rowText(const Row& row, const std::vector<Place>& places) const;

    std::vector<Column> myColumns;
    std::vector<Row> myRows;
    std::size_t myIndent;
};

/// A list of names and their values, which wrap; a name without a value is left out.
class PropertyList
{
public:
    void add(const std::string& name, std::string_view value);
    std::string text() const { return myTable.text(); }

private:
    TextTable myTable{
        {whole(""), wrap("")}
    };
};

/// A heading, marked as bold, with a line of the given character below it and a blank line above
/// it.
std::string heading(std::string_view text, char line = '-');
