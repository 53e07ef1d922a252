// SPDX-License-Identifier: Apache-2.0
// A tree of texts as one line.
#include "omtReader/treeRenderer.h"

#include "omtReader/stringTree.h"

#include <string>
#include <string_view>
#include <vector>

namespace omt
{
namespace
{

/// What is still to be written: a node with the delimiter that serves it and the text in front of
/// it, or only a text.
struct Pending
{
    const DtStringTree* node;
    const DtString* delimiter;
    std::string_view before;
};

}  // namespace

const DtString& TreeRenderer::delimiterOf(const DtString& datatype, const DtString& neighbours)
{
    ResolvedDatatype& resolved = myResolver.find(datatype);
    switch (myManager.getDatatypeEnum(resolved.name))
    {
        case DtDatatypeManager::DtDatatypeSimple:
        case DtDatatypeManager::DtDatatypeEnumerated:
        case DtDatatypeManager::DtDatatypeVariant:
            return neighbours;
        default:
            break;
    }
    const DtString& delimiter = myManager.getDelimiterMap(resolved.name, nullptr);
    return hasHostsDelimiters ? myCopies.emplace_back(delimiter) : delimiter;
}

DtString TreeRenderer::line(const DtStringTree& tree, const DtString& delimiter)
{
    const std::size_t copiesBefore = myCopies.size();
    std::string text;
    std::vector<Pending> pending = {
        {&tree, &delimiter, {}}
    };
    while (!pending.empty())
    {
        const Pending now = pending.back();
        pending.pop_back();
        text += now.before;
        if (!now.node) continue;
        text += now.node->value().view();
        // In reverse, as the last one pushed is the first one written.
        if (const DtStringTree* const sibling = now.node->nextSibling())
            pending.push_back({sibling, &delimiterOf(sibling->datatype(), *now.delimiter),
                               now.delimiter->view()});
        if (const DtStringTree* const element = now.node->nextElement())
        {
            pending.push_back({nullptr, nullptr, "]"});
            pending.push_back({element, &delimiterOf(element->datatype(), *now.delimiter), "["});
        }
        if (const DtStringTree* const child = now.node->firstChild())
            pending.push_back({child, now.delimiter, {}});
    }
    myCopies.resize(copiesBefore);
    return DtString(std::move(text));
}

DtString TreeRenderer::lineByParts(const DtStringTree& tree, const DtString& delimiter)
{
    constexpr int theDeepest = 1000;
    if (myDepth >= theDeepest) return line(tree, delimiter);
    const auto part = [&](DtStringTree* node, DtString itsDelimiter)
    { return myManager.convertStringTreeToString(node, itsDelimiter); };
    ++myDepth;
    DtString text = tree.value();
    if (tree.firstChild()) text += part(tree.firstChild(), delimiter);
    if (DtStringTree* const element = tree.nextElement())
    {
        text += '[';
        text += part(element, delimiterOf(element->datatype(), delimiter));
        text += ']';
    }
    if (DtStringTree* const sibling = tree.nextSibling())
    {
        text += delimiter;
        text += part(sibling, delimiterOf(sibling->datatype(), delimiter));
    }
    if (--myDepth == 0) myCopies.clear();
    return text;
}

}  // namespace omt
