// SPDX-License-Identifier: Apache-2.0
// The one way in which nodes are looked up: from the front, the first that fits.
#pragma once

#include "util/dtString.h"

namespace omtreader
{

/// The first node of a list for which the test holds, or null. Null entries are passed over.
template <typename List, typename Test>
typename List::value_type firstWhere(const List& nodes, Test test)
{
    for (auto* node : nodes)
        if (node && test(*node)) return node;
    return nullptr;
}

template <typename List>
typename List::value_type firstNamed(const List& nodes, const DtString& name)
{
    return firstWhere(nodes, [&](auto& node) { return node.getName() == name; });
}

}  // namespace omtreader
