// SPDX-License-Identifier: Apache-2.0
// Indexer: arrays, by what says how many elements they have.
#include "omt/codec/index.h"

#include <algorithm>
#include <cstring>

namespace omt
{

bool Indexer::array(std::uint32_t id, std::size_t& at, const Around& around)
{
    const Node& node = myPlan.nodes[id];
    const std::uint32_t entry = open(at);
    const std::size_t start = at;
    myIndex.entries[entry].next = theNone;
    myFrames[around.depth].node = id;
    bool isWhole = false;
    switch (node.extent)
    {
        case Extent::fixed:
            isWhole = elements(entry, node, at, node.count, around);
            break;
        case Extent::counted:
            isWhole = counted(entry, node, at, around);
            break;
        case Extent::lengthless:
            isWhole = lengthless(entry, node, at, around);
            break;
        case Extent::terminated:
            isWhole = terminated(entry, node, at, around);
            break;
        case Extent::padding:
            isWhole = padding(entry, node, at, around);
            break;
    }
    if (!isWhole) return false;
    close(entry, at);
    return at != start || charge(1, at, around);
}

void Indexer::checkCardinality(const Node& node, std::size_t at, std::uint64_t count,
                               std::uint32_t depth)
{
    if (count >= node.least && count <= node.most) return;
    note(std::to_string(count) + " elements, which is outside the cardinality", at, depth);
}

bool Indexer::counted(std::uint32_t entry, const Node& node, std::size_t& at, const Around& around)
{
    const std::size_t start = at;
    const std::size_t left = around.limit - at;
    if (left < 4) return failShort(4, at, around.limit, around.depth);
    std::uint32_t bits;
    std::memcpy(&bits, myOctets.data() + at, 4);
    bits = __builtin_bswap32(bits);
    if (bits > theLargestSize) return fail("the count is negative", at, 4, left - 4, around.depth);
    at += 4;
    const Node& element = myPlan.nodes[node.element];
    const std::size_t place = start + aligned(4, element.boundary);
    if (bits == 0)
    {
        myTailAt = at;
        myTailSize = place - at;
    }
    else
    {
        const std::size_t needed =
            place - at + std::uint64_t{node.stride} * (bits - 1) + element.size;
        if (needed > left - 4)
            return fail(std::to_string(bits) + " elements need " + std::to_string(needed) +
                            " octets, " + std::to_string(left - 4) + " left",
                        start, needed, left - 4, around.depth);
        checkZero(at, place, around.depth);
        at = place;
    }
    checkCardinality(node, start, bits, around.depth);
    return elements(entry, node, at, bits, around);
}

bool Indexer::elements(std::uint32_t entry, const Node& node, std::size_t& at, std::uint64_t count,
                       const Around& around)
{
    const Node& element = myPlan.nodes[node.element];
    if (count == 0) return true;
    if (!element.isFixed)
    {
        for (std::uint32_t i = 0; i < count; ++i)
            if (!this->element(entry, node, i, at, around)) return false;
        return true;
    }
    if (around.depth + 1 + element.height > theDeepest + 1)
        return fail("values are nested deeper than 200", at, 0, around.limit - at, around.depth);
    const std::uint64_t empties = element.empties + (element.size == 0 ? 1ULL : 0ULL);
    if (empties > theMostEmpties || (empties > 0 && count > theMostEmpties / empties))
        return charge(std::uint64_t{theMostEmpties} + 1, at, around);
    if (!charge(empties * count, at, around)) return false;
    myIndex.entries[entry].count = static_cast<std::uint32_t>(count);
    if (element.hasPadding || node.stride != element.size)
        for (std::uint32_t i = 0; i < count; ++i)
        {
            const std::size_t place = at + std::size_t{i} * node.stride;
            myFrames[around.depth].index = i;
            if (i > 0) checkZero(place - node.stride + element.size, place, around.depth + 1);
            if (element.hasPadding) checkPadding(element, place, around.depth + 1);
        }
    at += node.stride * (count - 1) + element.size;
    return true;
}

bool Indexer::element(std::uint32_t entry, const Node& node, std::uint32_t i, std::size_t& at,
                      const Around& around)
{
    const std::size_t start = myIndex.entries[entry].offset;
    const Node& element = myPlan.nodes[node.element];
    const std::uint32_t boundary = node.boundary == 1 ? 1 : element.boundary;
    myFrames[around.depth].index = i;
    const Around inner = around.inner();
    if (i > 0 && myDoubt.entry != theNone && myDoubt.stated == at)
        settleDoubt(entry, node, at, around);
    myDoubt.entry = theNone;
    if (!pad(at, start, boundary, node.element, inner)) return false;
    const std::size_t place = at;
    myIndex.entries[entry].count = i + 1;
    if (piece(node.element, at, inner)) return true;
    if (!myIndex.fault || myIndex.fault->offset <= place) myIndex.entries[entry].count = i;
    return false;
}

bool Indexer::lengthless(std::uint32_t entry, const Node& node, std::size_t& at,
                         const Around& around)
{
    if (around.part && around.part->stepCount > 0) return stated(entry, node, at, around);
    const std::size_t start = at;
    if (!toEnd(entry, node, at, around)) return false;
    checkCardinality(node, start, myIndex.entries[entry].count, around.depth);
    return true;
}

bool Indexer::stated(std::uint32_t entry, const Node& node, std::size_t& at, const Around& around)
{
    const std::optional<std::int64_t> count =
        evaluate(myPlan, *around.part, myIndex.looked.data() + myLookedBase);
    const std::size_t left = around.limit - at;
    if (!count || *count < 0 || *count > theLargestSize)
        return fail("other fields state an impossible number of elements" +
                        (count ? ": " + std::to_string(*count) : std::string()),
                    at, 0, left, around.depth);
    const auto number = static_cast<std::uint64_t>(*count);
    const std::uint64_t needed =
        number == 0 ? 0 : node.stride * (number - 1) + myPlan.nodes[node.element].size;
    if (needed > left)
        return fail(std::to_string(number) + " elements are stated, which need " +
                        std::to_string(needed) + " octets; " + std::to_string(left) + " left",
                    at, needed, left, around.depth);
    checkCardinality(node, at, number, around.depth);
    return elements(entry, node, at, number, around);
}

bool Indexer::toEnd(std::uint32_t entry, const Node& node, std::size_t& at, const Around& around)
{
    const std::size_t kept = std::min(around.limit, around.reserve);
    const Around inside{std::max(at, around.limit - kept), 0, around.depth};
    const Node& element = myPlan.nodes[node.element];
    const std::size_t start = at;
    if (!element.isFixed)
    {
        const std::uint32_t boundary = node.boundary == 1 ? 1 : element.boundary;
        for (std::uint32_t i = 0; start + aligned(at - start, boundary) < inside.limit; ++i)
        {
            const std::size_t before = at;
            if (!this->element(entry, node, i, at, inside)) return false;
            if (at == before)
                return fail("an element without octets", at, 0, inside.limit - at, around.depth);
        }
        return true;
    }
    const std::size_t size = inside.limit - at;
    const std::size_t count = size < element.size ? 0 : (size - element.size) / node.stride + 1;
    if (!elements(entry, node, at, count, inside)) return false;
    const std::size_t place = start + count * node.stride;
    if (place >= inside.limit) return true;
    myFrames[around.depth].index = static_cast<std::uint32_t>(count);
    checkZero(at, place, around.depth + 1);
    static_cast<void>(missing(node.element, place, inside.inner()));
    if (myIndex.fault && myIndex.fault->offset > place)
        myIndex.entries[entry].count = static_cast<std::uint32_t>(count + 1);
    return false;
}

bool Indexer::terminated(std::uint32_t entry, const Node& node, std::size_t& at,
                         const Around& around)
{
    const Node& element = myPlan.nodes[node.element];
    const std::size_t start = at;
    for (std::uint32_t count = 0;; ++count)
    {
        const std::size_t place = start + std::size_t{count} * node.stride;
        myFrames[around.depth].index = count;
        if (place > around.limit || around.limit - place < element.size)
        {
            if (place <= around.limit) return missing(node.element, place, around.inner());
            return failShort(place - at + element.size, at, around.limit, around.depth + 1);
        }
        checkZero(at, place, around.depth + 1);
        at = place + element.size;
        const std::uint8_t* const first = myOctets.data() + place;
        if (std::all_of(first, first + element.size, [](std::uint8_t octet) { return octet == 0; }))
        {
            checkCardinality(node, start, count, around.depth);
            return true;
        }
        if (element.hasPadding) checkPadding(element, place, around.depth + 1);
        myIndex.entries[entry].count = count + 1;
    }
}

bool Indexer::padding(std::uint32_t entry, const Node& node, std::size_t& at, const Around& around)
{
    const std::size_t needed = aligned(at, node.count) - at;
    const std::size_t left = around.limit - at;
    if (needed > left)
        return fail(
            std::to_string(needed) + " octets of padding needed, " + std::to_string(left) + " left",
            at, needed, left, around.depth);
    myIndex.entries[entry].count = static_cast<std::uint32_t>(needed);
    at += needed;
    return true;
}

}  // namespace omt
