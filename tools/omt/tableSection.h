// SPDX-License-Identifier: Apache-2.0
// A table of a model, under its heading.
#pragma once

#include "textTable.h"

inline std::string withCount(const char* title, std::size_t count)
{
    return title + (" (" + std::to_string(count) + ')');
}

/// One table of the model under a heading, with a row of cells for each definition; nothing where
/// it has none.
template <typename Definitions, typename Cells>
std::string section(const char* title, std::vector<Column> columns, const Definitions& definitions,
                    Cells cells)
{
    TextTable table(std::move(columns));
    for (const auto& definition : definitions) table.add(cells(definition));
    if (table.isEmpty()) return "";
    return heading(withCount(title, table.size())) + table.text();
}
