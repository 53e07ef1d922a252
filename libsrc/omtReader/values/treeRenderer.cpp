// SPDX-License-Identifier: Apache-2.0
// A tree of texts as one line.
#include "omtReader/values/treeRenderer.h"

#include "omtReader/stringTree.h"
#include "omtReader/values/conversionBounds.h"

#include <string>
#include <string_view>
#include <vector>

namespace omtreader
{
namespace
{

/// What is still to be written: a node with the text before it and the delimiter that serves
/// it, or, without a node, a number of closing brackets.
struct Pending
{
    const DtStringTree* node;
    const DtString* delimiter;
    std::string_view before;
    std::size_t brackets;
};

/// Brackets that close together take one place, as a chain has as many as elements.
void addBracket(std::vector<Pending>& pending)
{
    if (pending.empty() || pending.back().node) pending.push_back({nullptr, nullptr, {}, 0});
    ++pending.back().brackets;
}

}  // namespace

const DtString& TreeRenderer::ownDelimiterOf(const ResolvedDatatype& datatype)
{
    const DtString& delimiter = myManager.getDelimiterMap(datatype.name, nullptr);
    return mySettings.hasHost ? *myCopies.insert(delimiter).first : delimiter;
}

DtString TreeRenderer::line(const DtStringTree& tree, const DtString& delimiter)
{
    constexpr std::size_t theUsualLength = 256;
    constexpr std::size_t theUsualDepth = 16;
    std::string text;
    text.reserve(theUsualLength);
    std::vector<Pending> pending;
    pending.reserve(theUsualDepth);
    pending.push_back({&tree, &delimiter, {}, 0});
    while (!pending.empty())
    {
        Pending& top = pending.back();
        text += top.before;
        text.append(top.brackets, ']');
        const DtStringTree* node = top.node;
        const DtString* serving = top.delimiter;
        pending.pop_back();
        // Most nodes have a sibling and nothing else, and need not wait.
        while (node)
        {
            text += node->value().view();
            const DtStringTree* const sibling = node->nextSibling();
            const DtStringTree* const element = node->nextElement();
            const DtStringTree* const child = node->firstChild();
            if (sibling && (element || child))
                pending.push_back(
                    {sibling, &delimiterOf(sibling->datatype(), *serving), serving->view(), 0});
            if (element)
            {
                addBracket(pending);
                pending.push_back({element, &delimiterOf(element->datatype(), *serving), "[", 0});
            }
            node = child;
            if (element || child || !sibling) continue;
            text += serving->view();
            serving = &delimiterOf(sibling->datatype(), *serving);
            node = sibling;
        }
    }
    return DtString(std::move(text));
}

DtString TreeRenderer::lineByParts(const DtStringTree& tree, const DtString& delimiter)
{
    constexpr int theDeepest = 1000;
    if (myDepth >= theDeepest) return line(tree, delimiter);
    const auto part = [&](DtStringTree* node, DtString itsDelimiter)
    { return myManager.convertStringTreeToString(node, itsDelimiter); };
    const Descent descent(myDepth);
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
    return text;
}

}  // namespace omtreader
