// SPDX-License-Identifier: Apache-2.0
// FlatColumns lays the values of a datatype out as cells of one row.
#pragma once

#include "omt/codec/value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// A column for each number, name and text of a datatype, named by its path; arrays are one column
/// each, of JSON. Alternatives that a value has not leave their cells empty.
class FlatColumns
{
public:
    /// The most columns that a datatype may come to.
    static constexpr std::size_t theMost = 10000;

    /// Nothing for a datatype of more columns.
    static std::optional<FlatColumns> of(const Type& type);

    /// In the order of the cells. That of a datatype without parts is "value".
    const std::vector<std::string>& names() const { return myNames; }
    /// Appends all cells, each with `delimiter` before it. Of a piece that is not there they are
    /// empty.
    void append(const Item& root, char delimiter, std::string& out) const;

private:
    /// A piece of the datatype, before its parts.
    struct Node
    {
        ValueKind kind;
        std::uint32_t parts = 0;
        /// Cells in it.
        std::uint32_t cells = 0;
        /// Nodes in it, itself included.
        std::uint32_t nodes = 1;
        std::string name;
    };

    bool add(const Type& type, const std::string& path, std::string_view name);
    void append(std::size_t node, const Item& item, char delimiter, std::string& out) const;

    std::vector<std::string> myNames;
    std::vector<Node> myNodes;
};

/// Appends a cell of CSV, in quotes where it has to be.
void appendCell(std::string_view text, char delimiter, std::string& out);

}  // namespace omt
