// SPDX-License-Identifier: Apache-2.0
#include "classTree.h"

#include "modelWords.h"
#include "paint.h"
#include "plainText.h"
#include "textTable.h"

#include <algorithm>

namespace
{

constexpr std::size_t theWidestMember = 40;  // names after which datatypes are aligned
constexpr std::size_t theDeepest = 60;       // levels that are drawn

/// One class in the tree, with its members and their datatypes below it.
template <typename Class>
std::string classLines(const Class& node, const std::string& head, const std::string& indent)
{
    std::string text = head + bold(oneLine(node.name)) + '\n';
    std::size_t width = 0;
    for (const auto& member : membersOf(node))
        width = std::max(width, columnsOf(oneLine(member.name)));
    width = std::min(width, theWidestMember);
    for (const auto& member : membersOf(node))
    {
        const std::string name = oneLine(member.name);
        const std::size_t used = columnsOf(name);
        text += indent + name;
        const std::string datatype = oneLine(member.dataType);
        if (!datatype.empty())
            text.append(used < width ? width - used : 0, ' ') += "  " + dim(datatype);
        text += '\n';
    }
    return text;
}

/// A class that is still to be written, with what stands to the left of it.
struct Pending
{
    std::uint32_t index;
    std::size_t level;
    std::string indent;
    bool isLast;
};

/// What stands to the left of a class: below a certain level its number takes the place of lines,
/// as a chain of classes may be longer than any page is wide.
std::string headOf(const Pending& next)
{
    if (next.level == 0) return next.indent;
    if (next.level <= theDeepest) return next.indent + "+-- ";
    return next.indent + "[level " + std::to_string(next.level) + "] ";
}

std::string indentBelow(const Pending& next)
{
    if (next.level == 0 || next.level > theDeepest) return next.indent;
    return next.indent + (next.isLast ? "    " : "|   ");
}

/// The classes of a table. Without recursion, as a file may nest them deeply.
template <typename Class>
std::string treesOf(const std::vector<Class>& table, const char* title)
{
    if (table.empty()) return "";
    std::string text = heading(title);
    std::vector<Pending> pending;
    for (std::size_t i = table.size(); i-- > 0;)
        if (table[i].parent == omt::ClassDefinition::theNone)
            pending.push_back({static_cast<std::uint32_t>(i), 0, "  ", true});
    while (!pending.empty())
    {
        const Pending next = std::move(pending.back());
        pending.pop_back();
        const Class& node = table[next.index];
        const std::string below = indentBelow(next);
        text += classLines(node, headOf(next), below + (node.children.empty() ? "    " : "|   "));
        for (std::size_t i = node.children.size(); i-- > 0;)
            pending.push_back(
                {node.children[i], next.level + 1, below, i + 1 == node.children.size()});
    }
    return text;
}

}  // namespace

std::string classTrees(const omt::Model& model)
{
    return treesOf(model.objectClasses(), "Object classes and their attributes") +
           treesOf(model.interactionClasses(), "Interaction classes and their parameters");
}
