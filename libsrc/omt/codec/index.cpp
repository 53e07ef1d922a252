// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/index.h"

#include "omt/codec/quickIndex.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>

namespace omt
{

namespace
{

constexpr std::size_t theMostNotes = 100;

std::uint32_t narrow(std::size_t offset)
{
    return static_cast<std::uint32_t>(offset);
}

}  // namespace

std::optional<std::int64_t> evaluate(const Plan& plan, const Part& part, const Looked* looked)
{
    std::array<std::int64_t, theMostSteps> stack;
    std::size_t size = 0;
    for (std::uint32_t i = 0; i < part.stepCount; ++i)
    {
        const Step& step = plan.steps[part.steps + i];
        if (step.what == Step::What::number || step.what == Step::What::field)
        {
            const bool isNumber = step.what == Step::What::number;
            stack[size++] = isNumber ? step.value : looked[step.value].number;
            continue;
        }
        const std::int64_t right = stack[--size];
        std::int64_t& left = stack[size - 1];
        const bool isTooLarge =
            step.what == Step::What::add        ? __builtin_add_overflow(left, right, &left)
            : step.what == Step::What::subtract ? __builtin_sub_overflow(left, right, &left)
                                                : __builtin_mul_overflow(left, right, &left);
        if (isTooLarge) return std::nullopt;
    }
    return stack[0];
}

void Entries::grow()
{
    constexpr std::size_t theFirst = 16;
    const std::size_t size = this->size();
    const std::size_t room = std::max(theFirst, 2 * size);
    std::unique_ptr<Entry[]> larger(new Entry[room]);
    std::copy(begin(), end(), larger.get());
    myRoom = std::move(larger);
    myEnd = myRoom.get() + size;
    myLast = myRoom.get() + room;
}

void Index::forgetOddities()
{
    isOdd = false;
    notes.clear();
    fault.reset();
}

namespace
{

/// Indexes an array of forks in which nothing is odd. False, and anything in the index, for any
/// other.
bool indexForks(const Plan& plan, const Node& array, Octets octets, Index& index)
{
    const Node& element = plan.nodes[array.element];
    const bool isCounted = array.extent == Extent::counted;
    if (element.quick != QuickForm::fork || index.entries.isFull()) return false;
    if (!isCounted && array.extent != Extent::lengthless) return false;
    std::uint64_t most = theNone;
    std::size_t at = 0;
    if (isCounted)
    {
        if (octets.size() < array.body) return false;
        most = loadBig32(octets.data());
        at = array.body;
        const bool isPadded = at == 4 || loadBig32(octets.data() + 4) == 0;
        if (!isPadded || most > theLargestSize) return false;
    }
    index.entries.add({});
    const std::size_t boundary = array.boundary == 1 ? 1 : element.boundary;
    const ForkRow row{plan.forks[element.fork], boundary, octets.data(), octets.size()};
    const std::uint64_t count = passForks<true>(plan, row, 0, at, most, &index.entries);
    if (count == 0 || count < array.least || count > array.most) return false;
    if (isCounted ? count != most : at != octets.size()) return false;
    index.octets = narrow(at);
    index.entries[0] = {0, narrow(at), narrow(count), narrow(index.entries.size())};
    return true;
}

}  // namespace

bool indexOpen(const Plan& plan, std::uint32_t node, Octets octets, Index& index)
{
    const Node& type = plan.nodes[node];
    const bool isQuick = octets.size() <= theMostOctets;
    if (isQuick && type.quick == QuickForm::array)
    {
        if (indexForks(plan, type, octets, index)) return true;
        index.entries.clear();
    }
    if (isQuick && QuickIndexer<true>(plan, octets, &index).run(node)) return true;
    return Indexer(plan, octets, index).run(node);
}

// What the walk keeps ------------------------------------------------------------------------

std::uint32_t Indexer::open(std::size_t at)
{
    const auto entry = static_cast<std::uint32_t>(myIndex.entries.size());
    myIndex.entries.push_back({narrow(at), narrow(at), 0, entry + 1});
    return entry;
}

void Indexer::close(std::uint32_t entry, std::size_t at)
{
    myIndex.entries[entry].end = narrow(at);
    myIndex.entries[entry].next = static_cast<std::uint32_t>(myIndex.entries.size());
}

Indexer::Mark Indexer::mark() const
{
    return {myIndex.entries.size(), myIndex.notes.size(), myEmpties};
}

void Indexer::goBack(const Mark& mark)
{
    myIndex.entries.resize(mark.entries);
    myIndex.notes.resize(std::min(mark.notes, myIndex.notes.size()));
    myEmpties = mark.empties;
    myIndex.fault.reset();
}

std::string Indexer::path(std::uint32_t depth) const
{
    std::string text;
    for (std::uint32_t i = 0; i < depth; ++i)
    {
        const Node& node = myPlan.nodes[myFrames[i].node];
        if (node.form == Form::array)
        {
            text += '[' + std::to_string(myFrames[i].index) + ']';
            continue;
        }
        if (!text.empty()) text += '.';
        text += myPlan.text(myPlan.parts[node.first + myFrames[i].index].name);
    }
    return text;
}

void Indexer::note(std::string what, std::size_t at, std::uint32_t depth)
{
    if (myIsProbing || myDropsNotes || myIndex.notes.size() > theMostNotes) return;
    if (myIndex.notes.size() == theMostNotes)
        myIndex.notes.push_back({"there are more notes, which are left out", "", at});
    else
        myIndex.notes.push_back({std::move(what), path(depth), at});
}

bool Indexer::fail(std::string what, std::size_t at, std::size_t needed, std::size_t left,
                   std::uint32_t depth)
{
    if (myIsProbing)
        myIndex.fault.emplace();
    else
        myIndex.fault = Fault{std::move(what), path(depth), at, needed, left};
    return false;
}

bool Indexer::failShort(std::size_t needed, std::size_t at, std::size_t limit, std::uint32_t depth)
{
    const std::size_t left = limit - at;
    return fail(std::to_string(needed) + (needed == 1 ? " octet" : " octets") + " needed, " +
                    std::to_string(left) + " left",
                at, needed, left, depth);
}

bool Indexer::charge(std::uint64_t empties, std::size_t at, const Around& around)
{
    if (empties <= theMostEmpties && myEmpties + empties <= theMostEmpties)
    {
        myEmpties += empties;
        return true;
    }
    return fail("there are more than 1000000 elements and fields without octets", at, 0,
                around.limit - at, around.depth);
}

// Padding, and what is missing ------------------------------------------------------------------

void Indexer::checkZero(std::size_t at, std::size_t end, std::uint32_t depth)
{
    for (std::size_t i = at; i < end && !myDropsNotes; ++i)
    {
        if (myOctets[i] == 0) continue;
        return note("padding is not zero", i, depth);
    }
}

bool Indexer::pad(std::size_t& at, std::size_t start, std::uint32_t boundary, std::uint32_t next,
                  const Around& around)
{
    const std::size_t place = start + aligned(at - start, boundary);
    if (place == at) return true;
    if (place > around.limit)
        return failShort(place - at + firstLeaf(next), at, around.limit, around.depth);
    checkZero(at, place, around.depth);
    at = place;
    return true;
}

void Indexer::checkPadding(const Node& node, std::size_t at, std::uint32_t depth)
{
    if (node.gaps != theNone && isZeroIn(myPlan, node.gaps, node.gapCount, myOctets.data() + at))
        return;
    notePadding(node, at, depth);
}

// Walks through a node of fixed size and notes each place where padding is not zero.
void Indexer::notePadding(const Node& node, std::size_t at, std::uint32_t depth)
{
    if (node.form == Form::array)
    {
        const Node& element = myPlan.nodes[node.element];
        for (std::uint32_t i = 0; i < node.count; ++i, at += node.stride)
        {
            myFrames[depth].index = i;
            myFrames[depth].node = static_cast<std::uint32_t>(&node - myPlan.nodes.data());
            if (i > 0) checkZero(at - node.stride + element.size, at, depth + 1);
            if (element.hasPadding) notePadding(element, at, depth + 1);
        }
    }
    if (node.form != Form::record) return;
    std::size_t end = at;
    for (std::uint32_t i = 0; i < node.parts; ++i)
    {
        const Part& part = myPlan.parts[node.first + i];
        const Node& child = myPlan.nodes[part.node];
        if (end == at + part.offset && !child.hasPadding)
        {
            end += child.size;
            continue;
        }
        myFrames[depth].index = i;
        myFrames[depth].node = static_cast<std::uint32_t>(&node - myPlan.nodes.data());
        checkZero(end, at + part.offset, depth + 1);
        if (child.hasPadding) notePadding(child, at + part.offset, depth + 1);
        end = at + part.offset + child.size;
    }
}

// The size of the first number in a node; 0 where it may do without one.
std::size_t Indexer::firstLeaf(std::uint32_t id) const
{
    for (std::uint32_t depth = 0; depth <= theDeepest; ++depth)
    {
        const Node& node = myPlan.nodes[id];
        if (node.size == 0) return 0;
        switch (node.form)
        {
            case Form::number:
                return node.size;
            case Form::octets:
                return 0;
            case Form::variant:
                id = node.element;
                break;
            case Form::array:
                if (node.extent == Extent::counted) return 4;
                id = node.element;
                break;
            case Form::record:
            {
                std::uint32_t i = node.first;
                while (i + 1 < node.first + node.parts &&
                       myPlan.nodes[myPlan.parts[i].node].size == 0)
                    ++i;
                id = myPlan.parts[i].node;
                break;
            }
        }
    }
    return 0;
}

// Finds the number of a node of fixed size at which the octets end.
bool Indexer::missing(std::uint32_t id, std::size_t at, const Around& around)
{
    const Node& node = myPlan.nodes[id];
    if (node.form == Form::number) return failShort(node.size, at, around.limit, around.depth);
    myFrames[around.depth].node = id;
    Around inner = around.inner();
    std::size_t end = at;
    const std::size_t count = node.form == Form::array ? node.count : node.parts;
    std::size_t i = 0;
    if (node.form == Form::array && node.stride > 0)
    {
        i = (around.limit - at) / node.stride;
        end = i == 0 ? at : at + (i - 1) * node.stride + myPlan.nodes[node.element].size;
    }
    for (; i < count; ++i)
    {
        const bool isArray = node.form == Form::array;
        const Part* const part = isArray ? nullptr : &myPlan.parts[node.first + i];
        const std::uint32_t child = isArray ? node.element : part->node;
        const std::size_t place = at + (isArray ? i * node.stride : part->offset);
        myFrames[around.depth].index = static_cast<std::uint32_t>(i);
        if (place > around.limit)
            return failShort(place - end + firstLeaf(child), end, around.limit, inner.depth);
        end = place + myPlan.nodes[child].size;
        if (end > around.limit) return missing(child, place, inner);
    }
    return true;
}

// Pieces ------------------------------------------------------------------------------------------

bool Indexer::run(std::uint32_t node)
{
    std::size_t at = 0;
    if (myOctets.size() > theMostOctets)
        return fail("a value of more than 4 GB", 0, 0, myOctets.size(), 0);
    const bool isWhole = piece(node, at, {myOctets.size(), 0, 0});
    if (isWhole)
        acceptTail(at);
    else
    {
        at = myIndex.fault->offset;
        for (Entry& entry : myIndex.entries)
        {
            if (entry.next != theNone) continue;
            entry.end = narrow(at);
            entry.next = static_cast<std::uint32_t>(myIndex.entries.size());
        }
    }
    myIndex.octets = narrow(at);
    return isWhole;
}

// Some write padding for an alternative or for elements that are not there.
void Indexer::acceptTail(std::size_t& at)
{
    if (at == myOctets.size() || at != myTailAt || myOctets.size() - at != myTailSize) return;
    if (std::any_of(myOctets.begin() + at, myOctets.end(),
                    [](std::uint8_t octet) { return octet != 0; }))
        return;
    note("padding before nothing", at, 0);
    at = myOctets.size();
}

bool Indexer::piece(std::uint32_t id, std::size_t& at, const Around& around)
{
    const Node& node = myPlan.nodes[id];
    if (node.isFixed) return fixed(id, at, around);
    if (around.depth >= theDeepest)
        return fail("values are nested deeper than 200", at, 0, around.limit - at, around.depth);
    switch (node.form)
    {
        case Form::record:
            return record(id, at, around);
        case Form::array:
            return array(id, at, around);
        case Form::variant:
            return variant(id, at, around);
        case Form::number:
        case Form::octets:
            break;
    }
    const std::size_t start = at;
    const std::uint32_t entry = open(at);
    at = std::max(at, around.limit - std::min(around.limit, around.reserve));
    close(entry, at);
    return at != start || charge(1, at, around);
}

bool Indexer::fixed(std::uint32_t id, std::size_t& at, const Around& around)
{
    const Node& node = myPlan.nodes[id];
    if (around.depth + node.height > theDeepest + 1)
        return fail("values are nested deeper than 200", at, 0, around.limit - at, around.depth);
    if (node.size > around.limit - at) return missing(id, at, around);
    if (node.size == 0 || node.empties > 0)
        if (!charge(node.empties + (node.size == 0 ? 1ULL : 0ULL), at, around)) return false;
    if (node.hasPadding) checkPadding(node, at, around.depth);
    at += node.size;
    return true;
}

bool Indexer::record(std::uint32_t id, std::size_t& at, const Around& around)
{
    const Node& node = myPlan.nodes[id];
    const std::size_t start = at;
    const std::uint32_t entry = open(at);
    myIndex.entries[entry].next = theNone;
    const std::size_t looked = myIndex.looked.size();
    if (node.isLooking) myIndex.looked.resize(looked + node.parts);
    myFrames[around.depth].node = id;
    for (std::uint32_t i = 0; i < node.parts; ++i)
        if (!field(node, i, entry, at, around, looked)) return false;
    myIndex.looked.resize(looked);
    close(entry, at);
    return at != start || charge(1, at, around);
}

bool Indexer::field(const Node& node, std::uint32_t i, std::uint32_t entry, std::size_t& at,
                    const Around& around, std::size_t looked)
{
    const std::size_t start = myIndex.entries[entry].offset;
    const Part& part = myPlan.parts[node.first + i];
    std::uint32_t decided = theNone;
    if (part.decider != theNone)
    {
        const Looked decider = myIndex.looked[looked + part.decider];
        decided = open(at);
        if (!decider.isThere || decider.number != part.decidingNumber) return true;
        myIndex.entries[decided].count = 1;
        myIndex.entries[decided].next = theNone;
    }
    myFrames[around.depth].index = i;
    Around inner = around.inner(&part);
    if (!pad(at, start - node.phase, part.boundary, part.node, inner)) return false;
    inner.reserve += part.rest;
    if (node.quick == QuickForm::fork && i + 1 == node.parts) inner.entry = entry;
    myLookedBase = looked;
    if (!piece(part.node, at, inner)) return false;
    if (decided != theNone) close(decided, at);
    if (!part.isLookedAt) return true;
    const Node& number = myPlan.nodes[part.node];
    if (number.form == Form::number)
        myIndex.looked[looked + i] = {loadInteger(number, myOctets.data() + at - number.size),
                                      true};
    return true;
}

}  // namespace omt
