// SPDX-License-Identifier: Apache-2.0
// Indexer: variant records, and which length counts where two differ.
#include "omt/codec/index.h"

#include <cstring>

namespace omt
{

bool Indexer::variant(std::uint32_t id, std::size_t& at, const Around& around)
{
    const Node& node = myPlan.nodes[id];
    const Node& discriminant = myPlan.nodes[node.element];
    myFrames[around.depth] = {id, 0};
    const std::size_t start = at;
    const std::size_t left = around.limit - at;
    if (left < discriminant.size) return missing(node.element, at, around.inner());
    const std::int64_t number = loadInteger(discriminant, myOctets.data() + at);
    const std::uint32_t alternative = myPlan.findAlternative(node, number);
    if (alternative == theUnknown && node.length == Length::none)
        return fail("no alternative for the number " + std::to_string(number), at,
                    discriminant.size, left, around.depth + 1);
    const std::uint32_t entry = around.entry == theNone ? open(at) : around.entry;
    myIndex.entries[entry].next = theNone;
    myIndex.entries[entry].count = alternative;
    at += discriminant.size;
    if (node.length != Length::none) return measured(entry, node, start, at, alternative, around);
    if (alternative == theNothing)
    {
        myTailAt = at;
        myTailSize = start + aligned(discriminant.size, node.boundary) - at;
        close(entry, at);
        return true;
    }
    myFrames[around.depth].index = alternative;
    const Part& part = myPlan.parts[node.first + alternative];
    const Around inner = around.inner();
    const std::size_t place = start + node.body;
    if (place > around.limit)
        return failShort(place - at + firstLeaf(part.node), at, around.limit, inner.depth);
    checkZero(at, place, inner.depth);
    at = place;
    if (!piece(part.node, at, inner)) return false;
    close(entry, at);
    return true;
}

// A variant record that says how long its alternative is.
bool Indexer::measured(std::uint32_t entry, const Node& node, std::size_t start, std::size_t& at,
                       std::uint32_t alternative, const Around& around)
{
    myIndex.entries[entry].count = theNothing;
    const std::size_t place = start + node.lengthOffset;
    const std::size_t header = place + 4;
    if (header > around.limit) return failShort(header - at, at, around.limit, around.depth);
    checkZero(at, place, around.depth);
    std::uint32_t length;
    std::memcpy(&length, myOctets.data() + place, 4);
    length = __builtin_bswap32(length);
    at = header;
    const bool isAbsent = alternative == theNothing || node.length == Length::extendable;
    if (length == 0 && (isAbsent || alternative == theUnknown))
    {
        close(entry, at);
        return true;
    }
    const std::size_t body = start + node.body;
    if (body > around.limit) return failShort(body - at, at, around.limit, around.depth);
    checkZero(at, body, around.depth);
    at = body;
    if (alternative < theUnknown)
    {
        myIndex.entries[entry].count = alternative;
        myFrames[around.depth].index = alternative;
        if (!this->alternative(entry, node, at, length, around)) return false;
        close(entry, at);
        return true;
    }
    if (length > around.limit - at)
        return fail("the length is " + std::to_string(length) + " octets, " +
                        std::to_string(around.limit - at) + " left",
                    header - 4, std::size_t{length} + body - header, around.limit - header,
                    around.depth);
    myIndex.entries[entry].count = theUnknown;
    at += length;
    close(entry, at);
    return true;
}

// The alternative of a known number. Its own size counts where the stated length cannot be right.
bool Indexer::alternative(std::uint32_t entry, const Node& node, std::size_t& at,
                          std::size_t length, const Around& around)
{
    const std::uint32_t id = myPlan.parts[node.first + myIndex.entries[entry].count].node;
    const std::size_t start = at;
    const Mark before = mark();
    const bool isPast = length > around.limit - at;
    const Around stated{isPast ? around.limit : start + length, 0, around.depth + 1};
    const auto complaint = [length]
    { return "the length is " + std::to_string(length) + " octets, "; };
    if (!isPast && piece(id, at, stated))
    {
        if (at == start + length) return true;
        myDoubt = {entry, at, start + length, myIndex.notes.size()};
        note(complaint() + std::to_string(at - start) + " are used", start, around.depth);
        at = start + length;
        return true;
    }
    // Each retry costs what the alternative costs; nested ones would multiply.
    constexpr int theMostRetries = 256;
    if (!isPast && (stated.limit == around.limit || ++myRetries > theMostRetries)) return false;
    goBack(before);
    at = start;
    if (!piece(id, at, around.inner())) return false;
    note(complaint() + "the alternative has " + std::to_string(at - start), start, around.depth);
    return true;
}

// After an alternative whose length is larger than it is: the next element says which is right.
bool Indexer::settleDoubt(std::uint32_t entry, const Node& node, std::size_t& at,
                          const Around& around)
{
    if (myIsProbing) return false;
    const std::size_t start = myIndex.entries[entry].offset;
    const Doubt doubt = myDoubt;
    const std::uint32_t array = myFrames[around.depth].node;
    const auto fits = [&](std::size_t end)
    {
        const Mark before = mark();
        myIsProbing = true;
        std::size_t place = end;
        const Around inner = around.inner();
        const std::uint32_t boundary = myPlan.nodes[node.element].boundary;
        const bool isFit =
            pad(place, start, boundary, node.element, inner) && piece(node.element, place, inner);
        goBack(before);
        myIsProbing = false;
        myFrames[around.depth].node = array;
        return isFit;
    };
    if (fits(doubt.stated) || !fits(doubt.own)) return false;
    for (std::size_t i = entry + 1; i < myIndex.entries.size(); ++i)
        if (myIndex.entries[i].end == doubt.stated)
            myIndex.entries[i].end = static_cast<std::uint32_t>(doubt.own);
    at = doubt.own;
    return true;
}

}  // namespace omt
