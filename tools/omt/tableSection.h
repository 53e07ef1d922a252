// SPDX-License-Identifier: Apache-2.0
// A table of a model, under its heading.
#pragma once

#include "textTable.h"

inline std::string withCount(const char* title, std::size_t count)
{
    return title + (" (" + std::to_string(count) + ')');
}

/// One table of the tree under a heading; nothing when it has no entries.
template <typename Nodes, typename Cells>
std::string section(const char* title, std::vector<Column> columns, const Nodes& nodes, Cells cells)
{
    TextTable table(std::move(columns));
    for (auto* node : nodes) table.add(cells(*node));
    if (table.isEmpty()) return "";
    return heading(withCount(title, table.size())) + table.text();
}
