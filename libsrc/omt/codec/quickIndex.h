// SPDX-License-Identifier: Apache-2.0
// QuickIndexer finds the pieces of a value that has nothing odd about it, and gives up at the first
// oddity: a fault, a note, fields that others decide about, deep nesting. Indexer then begins anew.
#pragma once

#include "omt/codec/index.h"

#include <algorithm>
#include <cstring>

namespace omt
{

/// Elements that are forks, in octets that end at a limit.
struct ForkRow
{
    const Fork& fork;
    std::size_t boundary;
    const std::uint8_t* octets;
    std::size_t limit;
};

// Alternatives of one size: nothing depends on the octets of an element but whether it is usual.
template <bool isKept, typename Loader>
std::uint64_t passEvenForks(const Plan& plan, const ForkRow& row, std::size_t& at,
                            std::uint64_t most, Entries* entries, const Loader& loader)
{
    // A copy, which does not change where entries are written.
    const Fork fork = row.fork;
    const std::size_t size = fork.body + fork.size;
    const Target* const targets = plan.targets.data() + fork.targets;
    const std::size_t limit = row.limit;
    const std::uint8_t* octets = row.octets + at;
    Entry* entry = isKept ? entries->end() : nullptr;
    const Entry* const last = isKept ? entries->last() : nullptr;
    auto next = static_cast<std::uint32_t>(isKept ? entries->size() : 0);
    std::uint64_t count = 0;
    for (; count < most && size <= limit - at; ++count, at += size, octets += size)
    {
        const std::uint32_t number = loader(octets + fork.place);
        if (number >= theTargets || targets[number].node == theNone) break;
        if constexpr (!isKept) continue;
        std::uint64_t gap = 0;
        std::memcpy(&gap, octets + fork.gapPlace, sizeof gap);
        if (entry == last || (gap & fork.gapMask) != 0) break;
        const auto start = static_cast<std::uint32_t>(at);
        *entry++ = {start, start + static_cast<std::uint32_t>(size), targets[number].alternative,
                    ++next};
    }
    if constexpr (isKept) entries->addWritten(count);
    return count;
}

/// Passes over elements with plain alternatives in which nothing is odd, as long as they stand one
/// right after another, there is room for their entries if these are kept, and there are fewer than
/// `most`; how many. `start`: where the array begins.
template <bool isKept>
std::uint64_t passForks(const Plan& plan, const ForkRow& row, std::size_t start, std::size_t& at,
                        std::uint64_t most, Entries* entries)
{
    const Fork& fork = row.fork;
    const std::size_t mask = row.boundary - 1;
    if (fork.isEven && ((fork.body + fork.size) & mask) == 0)
    {
        if (((start - at) & mask) != 0) return 0;
        if (fork.load == Load::octet)
            return passEvenForks<isKept>(plan, row, at, most, entries,
                                         [](const std::uint8_t* place) { return *place; });
        if (fork.load == Load::big16)
            return passEvenForks<isKept>(plan, row, at, most, entries, loadBig16);
        return passEvenForks<isKept>(plan, row, at, most, entries, loadBig32);
    }
    std::uint64_t count = 0;
    for (; count < most && ((start - at) & mask) == 0; ++count)
    {
        std::uint32_t alternative = 0;
        const std::size_t size =
            isKept && entries->isFull()
                ? theOdd
                : sizeOfFork<isKept>(plan, fork, row.octets + at, row.limit - at, alternative);
        if (size == theOdd) break;
        if constexpr (isKept)
            entries->add({static_cast<std::uint32_t>(at), static_cast<std::uint32_t>(at + size),
                          alternative, static_cast<std::uint32_t>(entries->size() + 1)});
        at += size;
    }
    return count;
}

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
        const Elements all = elementsOf(node, start, around);
        for (std::uint64_t i = forks(all, at, wanted); at != theOdd;
             i += forks(all, at, wanted - i))
        {
            if (i == wanted) return padded(start, at, boundaryIn(node), around.limit);
            const std::size_t before = at;
            at = openElement(all, at);
            if (at == before) return theOdd;
            ++i;
        }
        return theOdd;
    }

    /// Whether a variant record begins with a discriminant that is no fault.
    bool isKnown(const Node& node, std::size_t at, const Around& around) const
    {
        if (around.limit - at < myPlan.nodes[node.element].size) return false;
        return node.length != Length::none ||
               target(myPlan.forks[node.fork], at).alternative != theUnknown;
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
    bool isFull() const
    {
        if constexpr (!isKept) return false;
        return myIndex->entries.isFull();
    }
    // Only where entries are not full.
    void add(std::size_t at, std::size_t end, std::uint64_t count)
    {
        if constexpr (!isKept) return;
        Entries& entries = myIndex->entries;
        const auto next = static_cast<std::uint32_t>(entries.size() + 1);
        entries.add({static_cast<std::uint32_t>(at), static_cast<std::uint32_t>(end),
                     static_cast<std::uint32_t>(count), next});
    }
    // The entry of a piece that may have entries in it.
    std::size_t begin(std::size_t at, std::uint64_t count = 0)
    {
        if constexpr (!isKept) return 0;
        if (isFull()) myIndex->entries.grow();
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

    // Rarely anything but a few octets; out of line, as it is asked for in many places.
    [[gnu::noinline]] bool isZero(std::size_t at, std::size_t end) const
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
            case QuickForm::list:
                return list(node, at, around);
            case QuickForm::array:
                return array(node, at, around);
            case QuickForm::record:
                return record(node, at, around);
            case QuickForm::octets:
                return octets(at, around);
            case QuickForm::plain:
            case QuickForm::odd:
                break;
        }
        return theOdd;
    }

    std::size_t octets(std::size_t at, const Around& around)
    {
        const std::size_t end = kept(at, around);
        // Pieces without octets are counted.
        return end == at ? theOdd : finish(begin(at), end);
    }

    // Out of line, as the others that open() chooses from, so that these need no large frame.
    [[gnu::noinline]] std::size_t record(const Node& node, std::size_t at, const Around& around)
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

    // A usual list is passed over by a few instructions, and needs no frame.
    [[gnu::noinline]] std::size_t list(const Node& node, std::size_t at, const Around& around)
    {
        std::uint32_t count = 0;
        const std::size_t size =
            isFull() ? theOdd : sizeOfList<isKept>(node, myData + at, around.limit - at, count);
        if (size == theOdd) return array(node, at, around);
        add(at, at + size, count);
        return at + size;
    }

    // Out of line, so that the operation that asks for it needs no frame.
    [[gnu::noinline]] std::size_t array(const Node& node, std::size_t at, const Around& around)
    {
        if (node.extent != Extent::counted) return uncounted(node, at, around);
        const std::size_t start = at;
        std::uint64_t count = 0;
        at = counted(node, at, around.limit, count);
        if (at == theOdd) return theOdd;
        const std::size_t entry = begin(start);
        at = elements(entry, node, start, at, count, around);
        return at == theOdd ? theOdd : finish(entry, at);
    }

    std::size_t uncounted(const Node& node, std::size_t at, const Around& around)
    {
        const std::size_t start = at;
        const std::size_t entry = begin(at);
        switch (node.extent)
        {
            case Extent::fixed:
                at = elements(entry, node, start, at, node.count, around);
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
            case Extent::counted:
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
        const std::size_t place = at + node.body;
        if (count == 0)
        {
            myHasTail = myHasTail || place != at + 4;
            return at + 4;
        }
        const std::uint64_t needed = place - at + node.stride * (count - 1) + element.size;
        if (needed > limit - at) return theOdd;
        // The elements begin at the 4th or the 8th octet.
        return !isKept || place == at + 4 || load(at + 4) == 0 ? place : theOdd;
    }

    // What is the same for all elements of open size.
    struct Elements
    {
        const Node& element;
        const Fork* fork;
        std::size_t start;
        std::size_t boundary;
        Around inner;
    };
    Elements elementsOf(const Node& array, std::size_t start, const Around& around) const
    {
        const Node& element = myPlan.nodes[array.element];
        const bool isFork = element.quick == QuickForm::fork;
        return {
            element, isFork ? &myPlan.forks[element.fork] : nullptr, start, boundaryIn(array),
            Around{around.limit, around.reserve, around.depth + 1}
        };
    }
    // Passes over elements that are forks with plain alternatives, one right after another; how
    // many.
    std::uint64_t forks(const Elements& all, std::size_t& at, std::uint64_t most)
    {
        if (!all.fork || at == theOdd) return 0;
        const ForkRow row{*all.fork, all.boundary, myData, all.inner.limit};
        return passForks<isKept>(myPlan, row, all.start, at, most,
                                 isKept ? &myIndex->entries : nullptr);
    }

    std::size_t openElement(const Elements& all, std::size_t at)
    {
        const std::size_t gap = (all.start - at) & (all.boundary - 1);
        if (gap > 0 && (gap > all.inner.limit - at || !isZero(at, at + gap))) return theOdd;
        return all.fork ? fork(*all.fork, at + gap, all.inner)
                        : open(all.element, at + gap, all.inner);
    }

    std::size_t elements(std::size_t entry, const Node& node, std::size_t start, std::size_t at,
                         std::uint64_t count, const Around& around)
    {
        const Node& element = myPlan.nodes[node.element];
        setCount(entry, count);
        if (count == 0) return at;
        if (element.quick != QuickForm::plain)
        {
            const Elements all = elementsOf(node, start, around);
            for (std::uint64_t i = forks(all, at, count); i < count && at != theOdd;
                 i += forks(all, at, count - i))
            {
                at = openElement(all, at);
                ++i;
            }
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
        const Elements all = elementsOf(node, start, inside);
        for (count = forks(all, at, theNone);
             at + ((start - at) & (all.boundary - 1)) < inside.limit;
             count += forks(all, at, theNone))
        {
            const std::size_t before = at;
            at = openElement(all, at);
            if (at == theOdd || at == before) return theOdd;
            ++count;
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
        if (const Target* const usual = targetAt(myPlan, fork, myData + at + fork.place))
            return *usual;
        const Node& variant = myPlan.nodes[fork.variant];
        return myPlan.findTarget(
            variant, loadInteger(myPlan.nodes[variant.element], myData + at + fork.place));
    }

    // What is rare is left by a call at the end, so that the usual way needs no frame.
    [[gnu::noinline]] std::size_t fork(const Fork& fork, std::size_t at, const Around& around)
    {
        std::uint32_t alternative = 0;
        const std::size_t size = isFull() ? theOdd
                                          : sizeOfFork<isKept>(myPlan, fork, myData + at,
                                                               around.limit - at, alternative);
        if (size == theOdd) return anyFork(fork, at, around);
        add(at, at + size, alternative);
        return at + size;
    }

    // Out of line, so that the operation above needs no frame.
    [[gnu::noinline]] std::size_t anyFork(const Fork& fork, std::size_t at, const Around& around)
    {
        if (around.limit - at < fork.body) return bareFork(fork, at, around);
        const bool isBare = target(fork, at).node == theNone ||
                            (fork.length != Length::none && load(at + fork.lengthPlace) == 0);
        return isBare ? bareFork(fork, at, around) : openFork(fork, at, around);
    }

    // With an alternative of any size.
    std::size_t openFork(const Fork& fork, std::size_t at, const Around& around)
    {
        if (!isPadded(fork.gaps, fork.gapCount, at)) return theOdd;
        const Target target = this->target(fork, at);
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
    std::size_t bareFork(const Fork& fork, std::size_t at, const Around& around)
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
            return finish(begin(at, theNothing), end);
        }
        const std::size_t header = at + fork.lengthPlace + 4;
        const std::size_t body = at + fork.body;
        if (header > around.limit || !isZero(end, header - 4)) return theOdd;
        const std::size_t length = load(header - 4);
        if (length == 0 && (target.node == theNone || fork.length == Length::extendable))
            return finish(begin(at, theNothing), header);
        if (target.alternative != theUnknown || body > around.limit ||
            length > around.limit - body || !isZero(header, body))
            return theOdd;
        return finish(begin(at, theUnknown), body + length);
    }

    const Plan& myPlan;
    const std::uint8_t* myData;
    std::size_t mySize;
    Index* myIndex;
    /// Whether zeros after the value may be padding before nothing.
    bool myHasTail = false;
};

}  // namespace omt
