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
constexpr std::size_t theMostOctets = 0xFFFFFF00;

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

bool indexOpen(const Plan& plan, std::uint32_t node, Octets octets, Index& index)
{
    if (octets.size() <= theMostOctets && QuickIndexer<true>(plan, octets, &index).run(node))
        return true;
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
    {
        const std::size_t needed = place - at + firstLeaf(next);
        const std::size_t left = around.limit - at;
        return fail(std::to_string(needed) + " octets needed, " + std::to_string(left) + " left",
                    at, needed, left, around.depth);
    }
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
    if (node.form == Form::number)
    {
        const std::size_t left = around.limit - at;
        return fail(std::to_string(node.size) + " octets needed, " + std::to_string(left) + " left",
                    at, node.size, left, around.depth);
    }
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
            return fail(std::to_string(place - end + firstLeaf(child)) + " octets needed, " +
                            std::to_string(around.limit - end) + " left",
                        end, place - end + firstLeaf(child), around.limit - end, inner.depth);
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

// Arrays ------------------------------------------------------------------------------------------

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
    if (left < 4)
        return fail("4 octets needed, " + std::to_string(left) + " left", at, 4, left,
                    around.depth);
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
            const std::size_t needed = place - at + element.size;
            return fail(std::to_string(needed) + " octets needed, " +
                            std::to_string(around.limit - at) + " left",
                        at, needed, around.limit - at, around.depth + 1);
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

// Variant records
// -----------------------------------------------------------------------------------

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
    {
        const std::size_t needed = place - at + firstLeaf(part.node);
        return fail(std::to_string(needed) + " octets needed, " +
                        std::to_string(around.limit - at) + " left",
                    at, needed, around.limit - at, inner.depth);
    }
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
    if (header > around.limit)
        return fail(std::to_string(header - at) + " octets needed, " +
                        std::to_string(around.limit - at) + " left",
                    at, header - at, around.limit - at, around.depth);
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
    if (body > around.limit)
        return fail(std::to_string(body - at) + " octets needed, " +
                        std::to_string(around.limit - at) + " left",
                    at, body - at, around.limit - at, around.depth);
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
        if (myIndex.entries[i].end == doubt.stated) myIndex.entries[i].end = narrow(doubt.own);
    at = doubt.own;
    return true;
}

}  // namespace omt
