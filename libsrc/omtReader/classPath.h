// SPDX-License-Identifier: Apache-2.0
// Following a path of class names down a hierarchy.
#pragma once

#include "util/dtString.h"

namespace omtreader
{

/// The class that a path leads to, starting with the name of `start`; null if none.
///
/// The character behind each name is taken for a separator without a look at it, on purpose.
/// `children` gives the child list of a class; `find` asks a child for the rest of the path.
template <typename Class, typename Children, typename Find>
Class* findClass(Class* start, const char* path, const Children& children, Find find)
{
    const std::string_view whole = path ? path : "";
    const std::string_view name = start->getName().view();
    if (whole.substr(0, name.size()) != name) return nullptr;
    if (whole.size() == name.size()) return start;

    const char* const rest = path + name.size() + 1;
    for (Class* child : children)
        if (Class* const found = find(child, rest)) return found;
    return nullptr;
}

}  // namespace omtreader
