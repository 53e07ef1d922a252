// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/compileEndings.h"

#include <algorithm>

namespace omt
{

// Elements of arrays may come after them in this order, so it is gone through until nothing
// changes, which is soon, or not at all.
void EndingCompiler::run(const std::vector<std::uint32_t>& order)
{
    constexpr int theMostRounds = 8;
    bool isChanging = true;
    for (int round = 0; isChanging && round < theMostRounds; ++round)
    {
        isChanging = false;
        for (const std::uint32_t id : order)
        {
            Node& node = myPlan.nodes[id];
            const Ending ending = endingOf(node);
            isChanging = isChanging || ending != node.ending;
            node.ending = ending;
        }
    }
    if (!isChanging) return;
    for (Node& node : myPlan.nodes) node.ending = Ending::unsure;
}

Ending EndingCompiler::endingOf(const Node& node) const
{
    // How many elements and fields without octets there may be is counted over all of a value.
    if (node.isFixed) return node.size == 0 || node.empties > 0 ? Ending::unsure : Ending::inside;
    switch (node.form)
    {
        case Form::record:
            return endingOfRecord(node);
        case Form::variant:
            return endingOfVariant(node);
        case Form::array:
            return endingOfArray(node);
        default:
            return Ending::outside;
    }
}

Ending EndingCompiler::endingOfRecord(const Node& record) const
{
    Ending ending = Ending::inside;
    for (std::uint32_t i = 0; i < record.parts; ++i)
    {
        const Part& part = myPlan.parts[record.first + i];
        if (ending != Ending::inside) return Ending::unsure;
        ending = myPlan.nodes[part.node].ending;
        // Other fields say how long it is.
        if (ending == Ending::outside && part.stepCount > 0) ending = Ending::inside;
    }
    return ending;
}

Ending EndingCompiler::endingOfVariant(const Node& variant) const
{
    Ending ending = Ending::inside;
    for (std::uint32_t i = 1; i < variant.parts; ++i)
        ending = std::max(ending, myPlan.nodes[myPlan.parts[variant.first + i].node].ending);
    return variant.length != Length::none && ending != Ending::inside ? Ending::unsure : ending;
}

Ending EndingCompiler::endingOfArray(const Node& array) const
{
    const Node& element = myPlan.nodes[array.element];
    if (array.extent == Extent::padding) return Ending::inside;
    if (element.ending != Ending::inside || element.size == 0) return Ending::unsure;
    return array.extent == Extent::lengthless ? Ending::outside : Ending::inside;
}

}  // namespace omt
