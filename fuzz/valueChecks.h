// SPDX-License-Identifier: Apache-2.0
// What holds for every value that is decoded or encoded, whatever its octets and its datatype.
#pragma once

#include "checks.h"
#include "omtReader/datatypeManager.h"
#include "omtReader/stringTree.h"

#include <memory>
#include <unordered_set>
#include <vector>

/// A value under test, with a manager that decodes it.
struct Value
{
    DtDatatypeManager& manager;
    const DtString& datatype;
    const void* data;
    int length;

    DtString line(int& consumed) const
    {
        return manager.getStringRep(datatype, data, length, consumed);
    }
    std::unique_ptr<DtStringTree> tree(int& consumed) const
    {
        return std::unique_ptr<DtStringTree>(manager.createStringTreeRep(
            datatype, data, length, consumed, nullptr, 0, nullptr, nullptr));
    }
    /// The nodes that are counted when a value is decoded or encoded.
    std::size_t nodesAllowed() const
    {
        return static_cast<std::size_t>(manager.nodeLimit()) + static_cast<std::size_t>(length);
    }
    /// The longest line: what the octets shown and the names of enumerators may come to, and the
    /// delimiters.
    std::size_t textAllowed() const
    {
        constexpr std::size_t theMostOfANode = 160;
        constexpr std::size_t theMostAlways = 8192;
        return theMostAlways + theMostOfANode * nodesAllowed();
    }
};

/// Every node is linked once, so that there are neither rings nor nodes with two owners.
inline void checkNodes(const DtStringTree* root, std::size_t allowed)
{
    std::unordered_set<const DtStringTree*> nodes;
    std::vector<const DtStringTree*> open{root};
    while (!open.empty())
    {
        const DtStringTree* const node = open.back();
        open.pop_back();
        if (!node) continue;
        require(nodes.insert(node).second, "a node is linked once");
        open.insert(open.end(), {node->firstChild(), node->nextElement(), node->nextSibling()});
    }
    require(nodes.size() <= allowed, "no more nodes than allowed");
}

/// A value cut short may take more octets than it has: zeros follow it. A variant adds the -1 of
/// its discriminant and of its alternative, so that there may be more than one below each other.
inline void checkConsumed(int consumed, const Value& value)
{
    constexpr int theDeepest = 200;
    constexpr std::int64_t theMostOfANode = 32;  // count, paddings and octets
    const auto most = theMostOfANode * static_cast<std::int64_t>(value.nodesAllowed());
    require(consumed >= -1 - theDeepest, "a count of octets, or one -1 for each level");
    require(consumed <= most, "no more is taken than nodes can take");
}

/// Decodes into a line and a tree, which have to say the same where nothing stopped them.
inline void checkDecoding(const Value& value)
{
    isStopped = false;
    const std::size_t before = heldMemory();
    int ofLine = 0;
    int ofTree = 0;
    const DtString line = value.line(ofLine);
    require(line.length() <= value.textAllowed(), "text grows with the octets and no faster");
    const std::unique_ptr<DtStringTree> tree = value.tree(ofTree);
    requireMemory(before + 65536 + 1024 * value.nodesAllowed());
    checkNodes(tree.get(), value.nodesAllowed());
    checkConsumed(ofLine, value);
    checkConsumed(ofTree, value);

    const auto kind = value.manager.getDatatypeEnum(value.datatype);
    if (isStopped) return;
    if (kind == DtDatatypeManager::DtDatatypeSimple) return;   // other rules for what is missing
    if (kind == DtDatatypeManager::DtDatatypeDefined) return;  // a text of its own
    const DtString& delimiter = value.manager.getDelimiterMap(value.datatype, nullptr);
    require(ofLine == ofTree, "line and tree take the same octets");
    require(value.manager.convertStringTreeToString(tree.get(), delimiter) == line,
            "the line is that of the tree");
}
