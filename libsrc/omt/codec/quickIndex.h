// SPDX-License-Identifier: Apache-2.0
// QuickIndexer finds the pieces of a value that has nothing odd about it, and gives up at the first
// oddity: a fault, a note, fields that others decide about, deep nesting. Indexer then begins anew.
#pragma once

#include "omt/codec/index.h"

#include <algorithm>
#include <cstring>

namespace omt
{

/// Told in the place of where a piece ends.
constexpr std::size_t theOdd = ~std::size_t{0};

/// `isKept`: whether entries are written, and padding looked at; else pieces are only passed over.
template <bool isKept>
class QuickIndexer
{
public:
    QuickIndexer(const Plan& plan, Octets octets, Index* index)
        : myPlan(plan), myData(octets.data()), mySize(octets.size()), myIndex(index)
    {
    }

    /// What a piece is in: where its octets end, how many of these are kept back for what follows
    /// it, and how deep it is nested.
    struct Around
    {
        std::size_t limit;
        std::size_t reserve;
        std::uint32_t depth;
    };

    /// Whether the index is written.
    bool run(std::uint32_t node)
    {
        const std::size_t at = piece(node, 0, {mySize, 0, 0});
        if (at == theOdd || (at != mySize && myHasTail)) return false;
        myIndex->octets = static_cast<std::uint32_t>(at);
        return true;
    }

    /// Where a piece ends that begins at `at`, or theOdd.
    std::size_t piece(std::uint32_t id, std::size_t at, const Around& around)
    {
        constexpr std::uint32_t theDeepestQuick = 32;
        const Node& node = myPlan.nodes[id];
        if (node.isFixed) return fixed(node, at, around);
        if (around.depth >= theDeepestQuick) return theOdd;
        switch (node.form)
        {
            case Form::record:
                return record(id, node, at, around);
            case Form::array:
                return array(id, node, at, around);
            case Form::variant:
                return variant(id, node, at, around);
            case Form::number:
            case Form::octets:
                break;
        }
        const std::uint32_t entry = open(id, at);
        return close(entry, std::max(at, around.limit - std::min(around.limit, around.reserve)));
    }

    /// Where a field of a record begins, given where the record does. `around` becomes the field's.
    std::size_t field(const Node& node, std::uint32_t wanted, std::size_t at, Around& around)
    {
        const std::size_t start = at;
        const Around outer{around.limit, around.reserve, around.depth + 1};
        if (node.isLooking) return theOdd;
        std::uint32_t i = wanted;
        while (myPlan.parts[node.first + i].offset > theLargestSize && i > 0) --i;
        for (at += myPlan.parts[node.first + i].offset; at != theOdd && at <= outer.limit; ++i)
        {
            const Part& part = myPlan.parts[node.first + i];
            around = {outer.limit, outer.reserve + part.rest, outer.depth};
            at = padded(start - node.phase, at, part.boundary, outer.limit);
            if (at == theOdd || i == wanted) return at;
            at = piece(part.node, at, around);
        }
        return theOdd;
    }

    /// Where an element of an array begins.
    std::size_t element(const Node& node, std::uint32_t wanted, std::size_t at, Around& around)
    {
        const std::size_t start = at;
        std::uint64_t count = node.count;
        const Node& element = myPlan.nodes[node.element];
        if (node.extent == Extent::counted)
            at = counted(node, at, around.limit, count);
        else if (node.extent == Extent::lengthless)
        {
            around = {kept(at, around), 0, around.depth};
            count = theNone;
        }
        else if (node.extent != Extent::fixed)
            return theOdd;
        if (at == theOdd || wanted >= count) return theOdd;
        around.depth += 1;
        if (element.isFixed)
        {
            at += std::size_t{wanted} * node.stride;
            return at <= around.limit ? at : theOdd;
        }
        for (std::uint32_t i = 0; at != theOdd; ++i)
        {
            at = padded(start, at, boundaryIn(node), around.limit);
            if (at == theOdd || i == wanted) return at;
            const std::size_t before = at;
            at = piece(node.element, at, around);
            if (at == before) return theOdd;
        }
        return theOdd;
    }

    /// Where the alternative of this index begins.
    std::size_t alternative(const Node& node, std::uint32_t wanted, std::size_t at, Around& around)
    {
        const std::size_t size = myPlan.nodes[node.element].size;
        if (around.limit - at < size || numberOf(node, at) != wanted) return theOdd;
        const std::size_t body = at + node.body;
        if (body > around.limit) return theOdd;
        around.depth += 1;
        if (node.length == Length::none) return body;
        const std::size_t length = load(at + node.lengthOffset);
        if (length == 0 || length > around.limit - body) return theOdd;
        around = {body + length, 0, around.depth};
        const std::uint32_t id = myPlan.parts[node.first + wanted].node;
        return piece(id, body, around) == body + length ? body : theOdd;
    }

private:
    std::uint32_t open(std::uint32_t id, std::size_t at, std::uint32_t count = 0)
    {
        if constexpr (!isKept) return 0;
        const auto entry = static_cast<std::uint32_t>(myIndex->entries.size());
        const auto place = static_cast<std::uint32_t>(at);
        myIndex->entries.push_back({id, place, place, count, entry + 1});
        return entry;
    }
    std::size_t close(std::uint32_t entry, std::size_t at)
    {
        if constexpr (isKept)
        {
            Entry& one = myIndex->entries[entry];
            one.end = static_cast<std::uint32_t>(at);
            one.next = static_cast<std::uint32_t>(myIndex->entries.size());
        }
        return at;
    }
    void setCount(std::uint32_t entry, std::uint64_t count)
    {
        if constexpr (isKept) myIndex->entries[entry].count = static_cast<std::uint32_t>(count);
    }

    std::uint32_t load(std::size_t at) const
    {
        std::uint32_t bits;
        std::memcpy(&bits, myData + at, 4);
        return __builtin_bswap32(bits);
    }

    bool isZero(std::size_t at, std::size_t end) const
    {
        if constexpr (!isKept) return true;
        if (at == end) return true;
        if (at + 8 <= mySize && end - at <= 8)
        {
            std::uint64_t eight;
            std::memcpy(&eight, myData + at, 8);
            return eight << (64 - 8 * (end - at)) == 0;
        }
        return std::all_of(myData + at, myData + end, [](std::uint8_t one) { return one == 0; });
    }
    bool isPaddedWithZeros(const Node& node, std::size_t at) const
    {
        if constexpr (!isKept) return true;
        if (node.gaps == theNone) return !node.hasPadding;
        for (std::uint32_t i = 0; i < node.gapCount; ++i)
        {
            const Gap gap = myPlan.gaps[node.gaps + i];
            if (!isZero(at + gap.offset, at + gap.offset + gap.size)) return false;
        }
        return true;
    }
    std::size_t padded(std::size_t start, std::size_t at, std::uint32_t boundary, std::size_t limit)
    {
        const std::size_t place = start + aligned(at - start, boundary);
        return place <= limit && isZero(at, place) ? place : theOdd;
    }

    static bool hasOctets(const Node& node) { return node.empties == 0 && node.size > 0; }
    static bool isIn(const Node& node, std::uint64_t count)
    {
        return !isKept || (count >= node.least && count <= node.most);
    }

    std::size_t fixed(const Node& node, std::size_t at, const Around& around) const
    {
        const bool isPlain = hasOctets(node) && node.size <= around.limit - at &&
                             around.depth + node.height <= theDeepest + 1;
        return isPlain && isPaddedWithZeros(node, at) ? at + node.size : theOdd;
    }

    // The fields of fixed size at the beginning of a record; `i` becomes their number.
    std::size_t lead(const Node& node, std::size_t at, std::size_t limit, std::uint32_t& i) const
    {
        i = node.lead;
        if (i == 0) return at;
        const std::size_t end = at + myPlan.parts[node.first + i].offset;
        return end <= limit && isPaddedWithZeros(node, at) ? end : theOdd;
    }

    std::size_t record(std::uint32_t id, const Node& node, std::size_t at, const Around& around)
    {
        if (node.isLooking) return theOdd;
        const std::size_t start = at;
        const std::uint32_t entry = open(id, at);
        std::uint32_t i = 0;
        at = lead(node, at, around.limit, i);
        if (at == theOdd) return theOdd;
        for (; i < node.parts; ++i)
        {
            const Part& part = myPlan.parts[node.first + i];
            at = padded(start - node.phase, at, part.boundary, around.limit);
            if (at == theOdd) return theOdd;
            at = piece(part.node, at, {around.limit, around.reserve + part.rest, around.depth + 1});
            if (at == theOdd) return theOdd;
        }
        return at == start ? theOdd : close(entry, at);
    }

    // Arrays -------------------------------------------------------------------------------------

    std::uint32_t boundaryIn(const Node& node) const
    {
        return node.boundary == 1 ? 1 : myPlan.nodes[node.element].boundary;
    }
    static std::size_t kept(std::size_t at, const Around& around)
    {
        return std::max(at, around.limit - std::min(around.limit, around.reserve));
    }

    std::size_t array(std::uint32_t id, const Node& node, std::size_t at, const Around& around)
    {
        const std::size_t start = at;
        const std::uint32_t entry = open(id, at);
        std::uint64_t count = node.count;
        switch (node.extent)
        {
            case Extent::fixed:
                at = elements(entry, node, start, at, count, around);
                break;
            case Extent::counted:
                at = counted(node, at, around.limit, count);
                if (at != theOdd) at = elements(entry, node, start, at, count, around);
                break;
            case Extent::lengthless:
                at = toEnd(entry, node, at, around);
                break;
            case Extent::terminated:
                at = terminated(entry, node, at, around);
                break;
            case Extent::padding:
                at = aligned(at, node.count);
                setCount(entry, at - start);
                if (at > around.limit) at = theOdd;
                break;
        }
        return at == theOdd || at == start ? theOdd : close(entry, at);
    }

    // Where the first element begins.
    std::size_t counted(const Node& node, std::size_t at, std::size_t limit, std::uint64_t& count)
    {
        if (limit - at < 4) return theOdd;
        count = load(at);
        if (count > theLargestSize || !isIn(node, count)) return theOdd;
        const Node& element = myPlan.nodes[node.element];
        const std::size_t place = at + aligned(4, element.boundary);
        if (count == 0)
        {
            myHasTail = myHasTail || place != at + 4;
            return at + 4;
        }
        const std::uint64_t needed = place - at + node.stride * (count - 1) + element.size;
        return needed <= limit - at && isZero(at + 4, place) ? place : theOdd;
    }

    std::size_t elements(std::uint32_t entry, const Node& node, std::size_t start, std::size_t at,
                         std::uint64_t count, const Around& around)
    {
        const Node& element = myPlan.nodes[node.element];
        setCount(entry, count);
        if (count == 0) return at;
        if (!element.isFixed)
        {
            const std::uint32_t boundary = boundaryIn(node);
            const Around inner{around.limit, around.reserve, around.depth + 1};
            for (std::uint64_t i = 0; i < count && at != theOdd; ++i)
            {
                at = padded(start, at, boundary, around.limit);
                if (at != theOdd) at = piece(node.element, at, inner);
            }
            return at;
        }
        const std::uint64_t size = node.stride * (count - 1) + element.size;
        if (!hasOctets(element) || size > around.limit - at ||
            around.depth + 1 + element.height > theDeepest + 1)
            return theOdd;
        if (element.hasPadding || node.stride != element.size)
            for (std::uint64_t i = 0; i < count; ++i)
            {
                const std::size_t place = at + i * node.stride;
                if (i > 0 && !isZero(place - node.stride + element.size, place)) return theOdd;
                if (!isPaddedWithZeros(element, place)) return theOdd;
            }
        return at + size;
    }

    std::size_t toEnd(std::uint32_t entry, const Node& node, std::size_t at, const Around& around)
    {
        const Around inside{kept(at, around), 0, around.depth};
        const Node& element = myPlan.nodes[node.element];
        const std::size_t start = at;
        std::uint64_t count = 0;
        if (element.isFixed)
        {
            if (node.stride == 0) return theOdd;
            const std::size_t size = inside.limit - at;
            count = size < element.size ? 0 : (size - element.size) / node.stride + 1;
            at = elements(entry, node, start, at, count, inside);
            return start + count * node.stride >= inside.limit && isIn(node, count) ? at : theOdd;
        }
        const std::uint32_t boundary = boundaryIn(node);
        const Around inner{inside.limit, 0, around.depth + 1};
        for (; start + aligned(at - start, boundary) < inside.limit; ++count)
        {
            const std::size_t before = at;
            at = padded(start, at, boundary, inside.limit);
            if (at != theOdd) at = piece(node.element, at, inner);
            if (at == theOdd || at == before) return theOdd;
        }
        setCount(entry, count);
        return isIn(node, count) ? at : theOdd;
    }

    std::size_t terminated(std::uint32_t entry, const Node& node, std::size_t at,
                           const Around& around)
    {
        const Node& element = myPlan.nodes[node.element];
        if (node.stride != element.size || element.hasPadding || element.size == 0) return theOdd;
        for (std::uint64_t count = 0; around.limit - at >= element.size; ++count)
        {
            const std::uint8_t* const first = myData + at;
            at += element.size;
            if (std::any_of(first, first + element.size,
                            [](std::uint8_t octet) { return octet != 0; }))
                continue;
            setCount(entry, count);
            return isIn(node, count) ? at : theOdd;
        }
        return theOdd;
    }

    // Variant records ----------------------------------------------------------------------------

    std::uint32_t numberOf(const Node& node, std::size_t at) const
    {
        return myPlan.findAlternative(node, loadInteger(myPlan.nodes[node.element], myData + at));
    }

    std::size_t variant(std::uint32_t id, const Node& node, std::size_t at, const Around& around)
    {
        const std::size_t size = myPlan.nodes[node.element].size;
        if (around.limit - at < size) return theOdd;
        const std::uint32_t alternative = numberOf(node, at);
        const std::uint32_t entry = open(id, at, alternative);
        if (node.length != Length::none) return measured(entry, node, at, alternative, around);
        if (alternative == theUnknown) return theOdd;
        if (alternative == theNothing)
        {
            myHasTail = myHasTail || aligned(size, node.boundary) != size;
            return close(entry, at + size);
        }
        const std::size_t body = at + node.body;
        if (body > around.limit || !isZero(at + size, body)) return theOdd;
        const std::size_t end = piece(myPlan.parts[node.first + alternative].node, body,
                                      {around.limit, around.reserve, around.depth + 1});
        return end == theOdd ? theOdd : close(entry, end);
    }

    // A variant record that says how long its alternative is.
    std::size_t measured(std::uint32_t entry, const Node& node, std::size_t at,
                         std::uint32_t alternative, const Around& around)
    {
        const std::size_t size = myPlan.nodes[node.element].size;
        const std::size_t header = at + node.lengthOffset + 4;
        const std::size_t body = at + node.body;
        if (header > around.limit || !isZero(at + size, header - 4)) return theOdd;
        const std::size_t length = load(header - 4);
        if (length == 0)
        {
            if (alternative < theUnknown && node.length != Length::extendable) return theOdd;
            setCount(entry, theNothing);
            return close(entry, header);
        }
        if (alternative == theNothing || body > around.limit || length > around.limit - body ||
            !isZero(header, body))
            return theOdd;
        if (alternative < theUnknown &&
            piece(myPlan.parts[node.first + alternative].node, body,
                  {body + length, 0, around.depth + 1}) != body + length)
            return theOdd;
        return close(entry, body + length);
    }

    const Plan& myPlan;
    const std::uint8_t* myData;
    std::size_t mySize;
    Index* myIndex;
    /// Whether zeros after the value may be padding before nothing.
    bool myHasTail = false;
};

}  // namespace omt
