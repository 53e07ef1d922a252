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
    bool run(std::uint32_t id)
    {
        const std::size_t at = piece(id, 0, {mySize, 0, 0});
        if (at == theOdd || (at != mySize && myHasTail)) return false;
        myIndex->octets = static_cast<std::uint32_t>(at);
        return true;
    }

    /// Where a piece ends that begins at `at`, or theOdd.
    std::size_t piece(std::uint32_t id, std::size_t at, const Around& around)
    {
        const Node& node = myPlan.nodes[id];
        return node.quick == QuickForm::plain ? plain(node, at, around.limit)
                                              : open(node, at, around);
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

    /// Where the alternative of a variant record begins that has this index.
    std::size_t alternative(const Node& node, std::uint32_t wanted, std::size_t at, Around& around)
    {
        const std::size_t size = myPlan.nodes[node.element].size;
        if (around.limit - at < size || target(myPlan.forks[node.fork], at).alternative != wanted)
            return theOdd;
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
    void add(std::size_t at, std::size_t end, std::uint64_t count)
    {
        if constexpr (!isKept) return;
        const auto next = static_cast<std::uint32_t>(myIndex->entries.size() + 1);
        myIndex->entries.push_back({static_cast<std::uint32_t>(at), static_cast<std::uint32_t>(end),
                                    static_cast<std::uint32_t>(count), next});
    }
    // The entry of a piece that may have entries in it.
    std::size_t begin(std::size_t at, std::uint64_t count = 0)
    {
        if constexpr (!isKept) return 0;
        add(at, at, count);
        return myIndex->entries.size() - 1;
    }
    void setCount(std::size_t entry, std::uint64_t count)
    {
        if constexpr (isKept) myIndex->entries[entry].count = static_cast<std::uint32_t>(count);
    }
    std::size_t finish(std::size_t entry, std::size_t at)
    {
        if constexpr (isKept)
        {
            Entry& one = myIndex->entries[entry];
            one.end = static_cast<std::uint32_t>(at);
            one.next = static_cast<std::uint32_t>(myIndex->entries.size());
        }
        return at;
    }

    std::uint32_t load(std::size_t at) const { return loadBig32(myData + at); }

    bool isZero(std::size_t at, std::size_t end) const
    {
        if constexpr (!isKept) return true;
        return std::all_of(myData + at, myData + end, [](std::uint8_t one) { return one == 0; });
    }
    bool isPadded(std::uint32_t gaps, std::uint32_t count, std::size_t at) const
    {
        return !isKept || count == 0 || isZeroIn(myPlan, gaps, count, myData + at);
    }
    std::size_t padded(std::size_t start, std::size_t at, std::uint32_t boundary, std::size_t limit)
    {
        const std::size_t place = start + aligned(at - start, boundary);
        return place == at ? at : place <= limit && isZero(at, place) ? place : theOdd;
    }

    static bool isIn(const Node& node, std::uint64_t count)
    {
        return !isKept || (count >= node.least && count <= node.most);
    }

    std::size_t plain(const Node& node, std::size_t at, std::size_t limit) const
    {
        const bool isPlain = node.size <= limit - at && isPadded(node.gaps, node.gapCount, at);
        return isPlain ? at + node.size : theOdd;
    }

    std::size_t open(const Node& node, std::size_t at, const Around& around)
    {
        constexpr std::uint32_t theDeepestQuick = 32;
        if (around.depth >= theDeepestQuick) return theOdd;
        switch (node.quick)
        {
            case QuickForm::fork:
                return fork(myPlan.forks[node.fork], at, around);
            case QuickForm::array:
                return array(node, at, around);
            case QuickForm::record:
                return record(node, at, around);
            case QuickForm::octets:
            {
                const std::size_t end = kept(at, around);
                // Pieces without octets are counted.
                if (end == at) return theOdd;
                add(at, end, 0);
                return end;
            }
            case QuickForm::plain:
            case QuickForm::odd:
                break;
        }
        return theOdd;
    }

    std::size_t record(const Node& node, std::size_t at, const Around& around)
    {
        const std::size_t start = at;
        const std::size_t entry = begin(at);
        std::uint32_t i = node.lead;
        if (i > 0)
        {
            at += myPlan.parts[node.first + i].offset;
            if (at > around.limit || !isPadded(node.gaps, node.gapCount, start)) return theOdd;
        }
        for (; i < node.parts; ++i)
        {
            const Part& part = myPlan.parts[node.first + i];
            at = padded(start - node.phase, at, part.boundary, around.limit);
            if (at == theOdd) return theOdd;
            at = piece(part.node, at, {around.limit, around.reserve + part.rest, around.depth + 1});
            if (at == theOdd) return theOdd;
        }
        return at == start ? theOdd : finish(entry, at);
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

    std::size_t array(const Node& node, std::size_t at, const Around& around)
    {
        const std::size_t start = at;
        const std::size_t entry = begin(at);
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
        return at == theOdd || at == start ? theOdd : finish(entry, at);
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

    std::size_t openElement(const Node& array, const Node& element, std::size_t start,
                            std::size_t at, const Around& inner)
    {
        at = padded(start, at, boundaryIn(array), inner.limit);
        if (at == theOdd) return at;
        if (element.quick == QuickForm::fork) return fork(myPlan.forks[element.fork], at, inner);
        return open(element, at, inner);
    }

    std::size_t elements(std::size_t entry, const Node& node, std::size_t start, std::size_t at,
                         std::uint64_t count, const Around& around)
    {
        const Node& element = myPlan.nodes[node.element];
        setCount(entry, count);
        if (count == 0) return at;
        if (element.quick != QuickForm::plain)
        {
            const Around inner{around.limit, around.reserve, around.depth + 1};
            for (std::uint64_t i = 0; i < count && at != theOdd; ++i)
                at = openElement(node, element, start, at, inner);
            return at;
        }
        const std::uint64_t size = node.stride * (count - 1) + element.size;
        if (size > around.limit - at) return theOdd;
        if (isKept && (element.hasPadding || node.stride != element.size))
            for (std::uint64_t i = 0; i < count; ++i)
            {
                const std::size_t place = at + i * node.stride;
                if (i > 0 && !isZero(place - node.stride + element.size, place)) return theOdd;
                if (!isPadded(element.gaps, element.gapCount, place)) return theOdd;
            }
        return at + size;
    }

    std::size_t toEnd(std::size_t entry, const Node& node, std::size_t at, const Around& around)
    {
        const Around inside{kept(at, around), 0, around.depth};
        const Node& element = myPlan.nodes[node.element];
        const std::size_t start = at;
        std::uint64_t count = 0;
        if (element.quick == QuickForm::plain)
        {
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
            at = openElement(node, element, start, at, inner);
            if (at == theOdd || at == before) return theOdd;
        }
        setCount(entry, count);
        return isIn(node, count) ? at : theOdd;
    }

    std::size_t terminated(std::size_t entry, const Node& node, std::size_t at,
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

    Target target(const Fork& fork, std::size_t at) const
    {
        const std::uint8_t* const octets = myData + at + fork.place;
        std::uint64_t number = *octets;
        const Node& variant = myPlan.nodes[fork.variant];
        if (fork.load == Load::big32)
            number = loadBig32(octets);
        else if (fork.load == Load::big16)
            number = loadBig16(octets);
        else if (fork.load == Load::other)
            number = static_cast<std::uint64_t>(loadInteger(myPlan.nodes[variant.element], octets));
        if (number < theTargets) return myPlan.targets[fork.targets + number];
        return myPlan.findSparse(variant, static_cast<std::int64_t>(number));
    }

    std::size_t fork(const Fork& fork, std::size_t at, const Around& around)
    {
        if (around.limit - at < fork.body) return bareFork(fork, at, around);
        const Target target = this->target(fork, at);
        if (target.node == theNone) return bareFork(fork, at, around);
        if (!isPadded(fork.gaps, fork.gapCount, at)) return theOdd;
        const Node& inside = myPlan.nodes[target.node];
        if (inside.quick != QuickForm::plain) return openFork(fork, target, at, around);
        const std::size_t end = plain(inside, at + fork.body, around.limit);
        if (end == theOdd) return theOdd;
        if (fork.length != Length::none && load(at + fork.lengthPlace) != inside.size)
            return bareFork(fork, at, around);
        add(at, end, target.alternative);
        return end;
    }

    // With an alternative of open size.
    [[gnu::noinline]] std::size_t openFork(const Fork& fork, const Target& target, std::size_t at,
                                           const Around& around)
    {
        const std::size_t body = at + fork.body;
        Around inner{around.limit, around.reserve, around.depth + 2};
        if (fork.length != Length::none)
        {
            const std::size_t length = load(at + fork.lengthPlace);
            if (length > around.limit - body) return theOdd;
            inner = {body + length, 0, inner.depth};
        }
        const std::size_t entry = begin(at, target.alternative);
        const std::size_t end = piece(target.node, body, inner);
        if (end == theOdd || (fork.length != Length::none && end != inner.limit)) return theOdd;
        return finish(entry, end);
    }

    // Without an alternative, or with one that is not known and has a length.
    [[gnu::noinline]] std::size_t bareFork(const Fork& fork, std::size_t at, const Around& around)
    {
        const Node& variant = myPlan.nodes[fork.variant];
        const std::size_t size = myPlan.nodes[variant.element].size;
        const std::size_t end = at + fork.place + size;
        if (end > around.limit || !isPadded(fork.gaps, fork.leadGaps, at)) return theOdd;
        const Target target = this->target(fork, at);
        if (fork.length == Length::none)
        {
            if (target.alternative != theNothing) return theOdd;
            myHasTail = myHasTail || aligned(size, variant.boundary) != size;
            add(at, end, theNothing);
            return end;
        }
        const std::size_t header = at + fork.lengthPlace + 4;
        const std::size_t body = at + fork.body;
        if (header > around.limit || !isZero(end, header - 4)) return theOdd;
        const std::size_t length = load(header - 4);
        if (length == 0 && (target.node == theNone || fork.length == Length::extendable))
        {
            add(at, header, theNothing);
            return header;
        }
        if (target.alternative != theUnknown || body > around.limit ||
            length > around.limit - body || !isZero(header, body))
            return theOdd;
        add(at, body + length, theUnknown);
        return body + length;
    }

    const Plan& myPlan;
    const std::uint8_t* myData;
    std::size_t mySize;
    Index* myIndex;
    /// Whether zeros after the value may be padding before nothing.
    bool myHasTail = false;
};

}  // namespace omt
