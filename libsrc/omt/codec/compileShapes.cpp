// SPDX-License-Identifier: Apache-2.0
// Compiler: what decoding looks at first: shapes, padding in lists, alternatives by their numbers.
#include "omt/codec/compile.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace omt
{

void Compiler::findShapes()
{
    myPlan.targets.resize(myPlan.choices.size() * theTargets);
    for (const Id id : myOrder) findShape(myPlan.nodes[id]);
    for (const Id id : myOrder) findList(myPlan.nodes[id]);
}

// After all shapes, as elements may come after their arrays in the order.
void Compiler::findList(Node& node) const
{
    if (node.quick != QuickForm::array || node.extent != Extent::counted || node.hasPadding) return;
    if (myPlan.nodes[node.element].quick == QuickForm::plain) node.quick = QuickForm::list;
}

void Compiler::findShape(Node& node)
{
    // Far below theDeepest, so that a plain node is not asked how deep it stands.
    constexpr std::uint8_t theMostLevels = 100;
    node.quick = QuickForm::odd;
    if (node.isFixed)
    {
        Holes holes;
        const bool isListed = !node.hasPadding || (addHoles(holes, node, node.parts) &&
                                                   setGaps(node, holes, node.size));
        if (isListed && node.size > 0 && node.empties == 0 && node.height <= theMostLevels)
            node.quick = QuickForm::plain;
        return;
    }
    switch (node.form)
    {
        case Form::variant:
            addTargets(node);
            setFork(node, 0);
            break;
        case Form::record:
            setLead(node);
            break;
        case Form::array:
            setElements(node);
            break;
        case Form::octets:
            node.quick = QuickForm::octets;
            break;
        case Form::number:
            break;
    }
}

// What is the same for all elements of an array of open size.
void Compiler::setElements(Node& node) const
{
    const Node& element = myPlan.nodes[node.element];
    node.body = static_cast<std::uint32_t>(aligned(4, element.boundary));
    node.hasPadding = element.hasPadding || node.stride != element.size;
    node.quick = QuickForm::array;
}

void Compiler::addTargets(const Node& variant)
{
    Target* const targets = myPlan.targets.data() + variant.table * std::size_t{theTargets};
    for (std::uint32_t number = 0; number < theTargets; ++number)
        targets[number] = myPlan.findSparse(variant, number);
    addSlots(variant);
}

// Larger numbers, as many of them as have a place of their own.
void Compiler::addSlots(const Node& variant)
{
    constexpr std::size_t theMostSlots = 1024;
    const auto isLarge = [](const Choices::Range& row)
    { return static_cast<std::uint64_t>(row.number) >= theTargets; };
    Choices& choices = myPlan.choices[variant.table];
    const auto& numbers = choices.numbers;
    const auto large =
        static_cast<std::size_t>(std::count_if(numbers.begin(), numbers.end(), isLarge));
    const std::size_t size = std::min(std::bit_ceil(2 * large), theMostSlots);
    const std::size_t first = myPlan.slots.size();
    choices.slots = static_cast<std::uint32_t>(first);
    choices.slotCount = static_cast<std::uint32_t>(size);
    myPlan.slots.resize(first + size);
    for (const Choices::Range& row : numbers)
    {
        if (!isLarge(row)) continue;
        const auto number = static_cast<std::uint64_t>(row.number);
        Slot& slot = myPlan.slots[first + slotOf(number, size)];
        if (slot.number == 0) slot = {number, myPlan.targetOf(variant, row.alternative)};
    }
}

// Padding ---------------------------------------------------------------------------------------

namespace
{

constexpr std::size_t theMostHoles = 128;
constexpr std::size_t theMostGaps = 16;
constexpr std::uint32_t theWindow = 8;

}  // namespace

bool Compiler::addHoles(Holes& holes, std::uint32_t from, std::uint32_t to) const
{
    if (to - from > theMostHoles - holes.size()) return false;
    for (; from < to; ++from) holes.push_back(from);
    return true;
}

// Those of a field or element that stands at an offset.
bool Compiler::addHoles(Holes& holes, std::uint32_t at, const Node& child) const
{
    if (child.hasPadding && child.gaps == theNone) return false;
    for (std::uint32_t i = 0; i < child.gapCount; ++i)
    {
        const Gap& gap = myPlan.gaps[child.gaps + i];
        std::uint8_t mask[theWindow];
        std::memcpy(mask, &gap.mask, sizeof mask);
        for (std::uint32_t j = 0; j < theWindow; ++j)
            if (mask[j] != 0 && !addHoles(holes, at + gap.offset + j, at + gap.offset + j + 1))
                return false;
    }
    return true;
}

// Those of a fixed array, or of the first fields of a record up to the next one or the end.
bool Compiler::addHoles(Holes& holes, const Node& node, std::uint32_t fields) const
{
    std::uint32_t end = 0;
    const auto add = [&](std::uint32_t at, const Node& child)
    {
        const bool isListed = addHoles(holes, end, at) && addHoles(holes, at, child);
        end = at + child.size;
        return isListed;
    };
    if (node.form == Form::array)
    {
        for (std::uint32_t i = 0; i < node.count; ++i)
            if (!add(i * node.stride, myPlan.nodes[node.element])) return false;
        return true;
    }
    for (std::uint32_t i = 0; i < fields; ++i)
    {
        const Part& part = myPlan.parts[node.first + i];
        if (!add(part.offset, myPlan.nodes[part.node])) return false;
    }
    return fields == node.parts || addHoles(holes, end, myPlan.parts[node.first + fields].offset);
}

// Adds the gaps that cover holes, given how many octets there are to look at.
void Compiler::addGaps(const Holes& holes, std::uint32_t size)
{
    for (std::size_t i = 0; i < holes.size();)
    {
        Gap gap{holes[i], size < theWindow, 0xFF};
        if (!gap.isOctet)
        {
            gap.offset = std::min(gap.offset, size - theWindow);
            std::uint8_t mask[theWindow] = {};
            for (; i < holes.size() && holes[i] < gap.offset + theWindow; ++i)
                mask[holes[i] - gap.offset] = 0xFF;
            std::memcpy(&gap.mask, mask, sizeof mask);
        }
        else
            ++i;
        myPlan.gaps.push_back(gap);
    }
}

// Makes holes the gaps of a node; false where they are too many.
bool Compiler::setGaps(Node& node, const Holes& holes, std::uint32_t size)
{
    const std::size_t first = myPlan.gaps.size();
    addGaps(holes, size);
    const std::size_t count = myPlan.gaps.size() - first;
    if (count > theMostGaps)
    {
        myPlan.gaps.resize(first);
        return false;
    }
    node.gaps = static_cast<std::uint32_t>(first);
    node.gapCount = static_cast<std::uint32_t>(count);
    return true;
}

// Forks and records -----------------------------------------------------------------------------

namespace
{

Load loadOf(const Node& number)
{
    const bool isOther = number.scalar != Scalar::unsignedInteger;
    if (number.size == 1 && !isOther) return Load::octet;
    if (isOther || number.isLittleEndian) return Load::other;
    return number.size == 2 ? Load::big16 : number.size == 4 ? Load::big32 : Load::other;
}

}  // namespace

std::uint32_t Compiler::commonSize(const Node& variant) const
{
    std::uint32_t size = 0;
    for (std::uint32_t i = 1; i < variant.parts; ++i)
    {
        const Node& node = myPlan.nodes[myPlan.parts[variant.first + i].node];
        if (node.quick != QuickForm::plain || (i > 1 && node.size != size)) return 0;
        size = node.size;
    }
    return size;
}

void Compiler::setEven(Fork& fork) const
{
    const Node& variant = myPlan.nodes[fork.variant];
    const auto hasGaps = [&](std::uint32_t i)
    { return myPlan.nodes[myPlan.parts[variant.first + i].node].gapCount > 0; };
    if (fork.size == 0 || fork.length != Length::none || fork.load == Load::other) return;
    if (fork.body + fork.size < theWindow || fork.gapCount > 1) return;
    for (std::uint32_t i = 1; i < variant.parts; ++i)
        if (hasGaps(i)) return;
    fork.isEven = fork.gapCount == 0 || !myPlan.gaps[fork.gaps].isOctet;
    if (fork.gapCount == 0 || !fork.isEven) return;
    fork.gapPlace = myPlan.gaps[fork.gaps].offset;
    fork.gapMask = myPlan.gaps[fork.gaps].mask;
}

// A variant record, or a record that ends with one after plain fields.
bool Compiler::setFork(Node& node, std::uint32_t lead)
{
    const bool isRecord = node.form == Form::record;
    const Part* const last = isRecord ? &myPlan.parts[node.first + lead] : nullptr;
    if (isRecord && (lead + 1 != node.parts || myPlan.nodes[last->node].form != Form::variant))
        return false;
    const Node& variant = isRecord ? myPlan.nodes[last->node] : node;
    Fork fork;
    fork.variant = static_cast<Id>(&variant - myPlan.nodes.data());
    fork.place = isRecord ? last->offset : 0;
    fork.body = fork.place + variant.body;
    fork.length = variant.length;
    fork.lengthPlace = fork.place + variant.lengthOffset;
    fork.load = loadOf(myPlan.nodes[variant.element]);
    fork.targets = variant.table * theTargets;
    fork.slots = myPlan.choices[variant.table].slots;
    fork.slotCount = myPlan.choices[variant.table].slotCount;
    fork.size = commonSize(variant);
    fork.gaps = static_cast<std::uint32_t>(myPlan.gaps.size());
    Holes holes;
    if (isRecord && !addHoles(holes, node, lead)) return false;
    const std::uint32_t end = fork.place + myPlan.nodes[variant.element].size;
    addGaps(holes, end);
    fork.leadGaps = static_cast<std::uint32_t>(myPlan.gaps.size()) - fork.gaps;
    holes.clear();
    if (fork.length == Length::none)
        addHoles(holes, end, fork.body);
    else
    {
        addHoles(holes, end, fork.lengthPlace);
        addHoles(holes, fork.lengthPlace + 4, fork.body);
    }
    addGaps(holes, fork.body);
    fork.gapCount = static_cast<std::uint32_t>(myPlan.gaps.size()) - fork.gaps;
    setEven(fork);
    node.quick = QuickForm::fork;
    node.fork = static_cast<std::uint32_t>(myPlan.forks.size());
    myPlan.forks.push_back(fork);
    return true;
}

// A record of open size: what stands at its beginning is looked at as a whole.
void Compiler::setLead(Node& node)
{
    if (node.isLooking || node.parts == 0) return;
    node.quick = QuickForm::record;
    std::uint32_t lead = 0;
    while (myPlan.nodes[myPlan.parts[node.first + lead].node].quick == QuickForm::plain) ++lead;
    const std::uint32_t end = myPlan.parts[node.first + lead].offset;
    Holes holes;
    if (lead == 0 || end > theLargestSize || setFork(node, lead)) return;
    if (addHoles(holes, node, lead) && setGaps(node, holes, end)) node.lead = lead;
}

}  // namespace omt
