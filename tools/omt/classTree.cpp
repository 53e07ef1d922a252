// SPDX-License-Identifier: Apache-2.0
#include "classTree.h"

#include "modelLists.h"
#include "plainText.h"
#include "textTable.h"

#include <algorithm>

namespace
{

constexpr std::size_t theWidestIndent = 400;  // deeper classes stand no further to the right
constexpr std::size_t theWidestMember = 40;   // names behind which datatypes are aligned

/// One class in the tree, with its members and their datatypes below it.
template <typename Class>
std::string classLines(const Class& node, const std::string& head, const std::string& indent)
{
    std::string text = head + oneLine(node.getName().view()) + '\n';
    std::size_t width = 0;
    for (const auto* member : ClassKind<Class>::members(node))
        width = std::max(width, columnsOf(oneLine(member->getName().view())));
    width = std::min(width, theWidestMember);
    for (const auto* member : ClassKind<Class>::members(node))
    {
        const std::string name = oneLine(member->getName().view());
        const std::size_t used = columnsOf(name);
        text += indent + name;
        const std::string datatype = oneLine(member->getDatatype().view());
        if (!datatype.empty()) text.append(used < width ? width - used : 0, ' ') += "  " + datatype;
        text += '\n';
    }
    return text;
}

/// A class that is still to be written, with what stands to the left of it.
template <typename Class>
struct Pending
{
    const Class* node;
    std::string indent;
    bool isTop;
    bool isLast;
};

/// The classes from one at the top downwards. Without recursion, as a file may nest them deeply.
template <typename Class>
std::string hierarchy(const Class* top)
{
    std::string text;
    std::vector<Pending<Class>> pending = {
        {top, "  ", true, true}
    };
    while (!pending.empty())
    {
        const Pending<Class> next = pending.back();
        pending.pop_back();
        const auto& children = ClassKind<Class>::children(*next.node);
        const bool isDeeper = !next.isTop && next.indent.size() < theWidestIndent;
        const std::string below =
            isDeeper ? next.indent + (next.isLast ? "    " : "|   ") : next.indent;
        text += classLines(*next.node, next.isTop ? next.indent : next.indent + "+-- ",
                           below + (children.empty() ? "    " : "|   "));
        for (auto child = children.rbegin(); child != children.rend(); ++child)
            pending.push_back({*child, below, false, child == children.rbegin()});
    }
    return text;
}

/// The tree of the root, then whatever hangs in the air: classes of a model without a root, and
/// those inside a class that was dropped.
template <typename Class>
std::string treesOf(DtOMTTree& tree, const char* title)
{
    const auto all = ClassKind<Class>::all(tree);
    if (all.size() == 0) return "";
    const Class* const root = ClassKind<Class>::root(tree);
    std::string text = heading(title);
    if (root) text += hierarchy(root);
    for (const Class* node : all)
        if (node != root && !node->getParentObject()) text += hierarchy(node);
    return text;
}

}  // namespace

std::string classTrees(DtOMTTree& tree)
{
    return treesOf<DtObjectClassFedNode>(tree, "Object classes and their attributes") +
           treesOf<DtInteractionClassFedNode>(tree, "Interaction classes and their parameters");
}
