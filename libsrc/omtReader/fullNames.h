// SPDX-License-Identifier: Apache-2.0
// The full names of nodes at any depth, in a memory that does not grow with the square of it.
#pragma once

#include "omtReader/fedNode.h"

#include <string_view>
#include <vector>

namespace omtreader
{

/// What the library itself does with full names.
///
/// A full name is put together where a node is asked for it. Most questions can be answered without
/// that, and where the names are long they are.
struct FullNames
{
    /// In octets; what is longer is only kept by the node that was asked for it.
    static constexpr std::size_t theLongestKept = 1024;

    /// Whether a node is of a host's class, which may give full names of its own.
    static bool isHosts(const DtFedNode& node);

    /// The full name that a node has already been asked for, or null.
    static const DtString* known(const DtFedNode& node);

    /// Whether it would take more than theLongestKept octets to keep the full name.
    static bool isLong(const DtFedNode& node);

    static bool isEmpty(const DtFedNode& node);

    /// Whether the full name is this one; a long one is compared in place.
    static bool isEqual(const DtFedNode& node, std::string_view name);

    /// The nodes from one upwards, the first whose full name needs none above it left out. Empty,
    /// with that node, in a ring.
    struct WayUp
    {
        std::vector<const DtFedNode*> nodes;
        const DtFedNode* end;
    };
    /// `isEnd` says of a node with a parent that it needs none of those above it.
    template <typename IsEnd>
    static WayUp wayUp(const DtFedNode& node, IsEnd isEnd);

    /// Keeps a full name, unless another thread was faster.
    static void keep(const DtFedNode& node, std::string_view name);
    static void forget(DtFedNode& node);
};

template <typename IsEnd>
FullNames::WayUp FullNames::wayUp(const DtFedNode& node, IsEnd isEnd)
{
    WayUp way{{}, &node};
    // Brent's way of finding a ring: the mark moves up at each power of two.
    const DtFedNode* mark = nullptr;
    for (std::size_t nextMark = 1; way.end->myParentObject && !isEnd(*way.end);)
    {
        way.nodes.push_back(way.end);
        if (way.nodes.size() == nextMark)
        {
            mark = way.end;
            nextMark *= 2;
        }
        way.end = way.end->myParentObject;
        if (way.end == mark) return {{}, &node};
    }
    return way;
}

}  // namespace omtreader
