// SPDX-License-Identifier: Apache-2.0
// ColumnPlan is the tree of columns that a datatype comes to, compiled once from the codec's plan.
#pragma once

#include "omt/codec/plan.h"
#include "omt/columns/columns.h"

#include <string>
#include <vector>

namespace omt
{

/// What a column holds.
enum class Shape : std::uint8_t
{
    number,
    /// Places in a table of labels.
    label,
    /// The labels themselves.
    labelText,
    /// Characters of 8 and of 16 bits.
    latin1,
    utf16,
    /// Characters up to the first zero.
    hinted,
    octets,
    list,
    record,
    variant,
    /// A record without fields.
    present,
    json,
    /// The octets of an alternative that is not known.
    kept
};

/// A piece of a value, and the row of a column that it becomes.
struct Piece
{
    const std::uint8_t* place;
    std::uint32_t row;
    /// Of the block's index; theNone for a piece of fixed size.
    std::uint32_t entry;
};

/// Writes a number of each piece, which stands `offset` octets from its place, into the rows.
using WriteNumbers = void (*)(const Node& node, const Piece* pieces, std::size_t count,
                              std::size_t offset, void* rows);

struct Column
{
    Shape shape = Shape::octets;
    /// Whether rows of it may be null while what holds it is there.
    bool isNullable = false;
    /// Whether it has a row for each row of the batch, not for elements of a list.
    bool isOfRows = true;
    /// Octets of a row of a number or a label.
    std::uint8_t width = 0;
    std::uint32_t node = theNone;
    /// Of a variant record that shares the entry of a record, and of what is kept of it: where it
    /// stands in this record.
    std::uint32_t inEntry = 0;
    /// The columns in it: all fields of a record; the discriminant, all alternatives and what is
    /// kept of a variant record; the element of a list.
    std::uint32_t first = 0;
    std::uint32_t count = 0;
    /// Of Arrow.
    const char* format = "";
    std::string name;
    WriteNumbers write = nullptr;
    /// Of a column of labels: its LabelTable.
    std::uint32_t labels = theNone;
};

/// The different names of an enumeration.
struct LabelTable
{
    std::vector<std::string> labels;
    /// Of the plan.
    const Enumeration* names = nullptr;
    /// The label of each number from 0 on as far as Enumeration::dense goes, and of each entry.
    std::vector<std::int32_t> dense;
    std::vector<std::int32_t> ofEntries;

    /// -1 for a number without a name.
    std::int32_t find(std::int64_t number) const;
};

struct ColumnPlan
{
    ColumnPlan(std::shared_ptr<const Plan> plan, std::uint32_t node, const ColumnOptions& options);

    std::shared_ptr<const Plan> plan;
    ColumnOptions options;
    /// The first one is that of the value.
    std::vector<Column> columns;
    std::vector<LabelTable> tables;
};

/// Whether a node has parts that get columns of their own.
bool isNested(const Node& node);
/// How a number is written; of the width that Arrow has for it.
WriteNumbers numberWriter(const Node& node, std::uint8_t width);

inline std::int32_t LabelTable::find(std::int64_t number) const
{
    if (static_cast<std::uint64_t>(number) < dense.size())
        return dense[static_cast<std::size_t>(number)];
    const std::uint32_t entry = Plan::findSparse(*names, number);
    return entry == theNone ? -1 : ofEntries[entry];
}

}  // namespace omt
