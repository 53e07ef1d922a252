// SPDX-License-Identifier: Apache-2.0
// Indexer finds the pieces of a value: where each stands whose place the plan does not fix.
#pragma once

#include "omt/codec/fault.h"
#include "omt/codec/octets.h"
#include "omt/codec/plan.h"

#include <bit>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace omt
{

/// One piece of open size. Pieces stand in the order of their octets, each before those in it. A
/// record that is a fork and its variant record are one entry. A field that another one decides
/// about has an entry of its own, with a count of 1 if it is there.
struct Entry
{
    std::uint32_t offset;
    std::uint32_t end;
    /// Of an array: its elements, at a fault those of which there is something. Of a variant
    /// record: the index of its alternative, theNothing, or theUnknown where octets were kept.
    std::uint32_t count;
    /// The entry after those of this piece.
    std::uint32_t next;
};

/// A row of entries in memory that only grows and is not set to zero.
class Entries
{
public:
    Entries() = default;
    Entries(const Entries& other) { *this = other; }
    Entries(Entries&& other) noexcept { *this = std::move(other); }
    ~Entries() = default;
    Entries& operator=(const Entries& other)
    {
        if (this == &other) return *this;
        clear();
        for (const Entry& entry : other) push_back(entry);
        return *this;
    }
    Entries& operator=(Entries&& other) noexcept
    {
        std::swap(myRoom, other.myRoom);
        std::swap(myEnd, other.myEnd);
        std::swap(myLast, other.myLast);
        return *this;
    }

    std::size_t size() const { return static_cast<std::size_t>(myEnd - myRoom.get()); }
    bool empty() const { return myEnd == myRoom.get(); }
    Entry* begin() { return myRoom.get(); }
    Entry* end() { return myEnd; }
    const Entry* begin() const { return myRoom.get(); }
    const Entry* end() const { return myEnd; }
    Entry& operator[](std::size_t i) { return myRoom[i]; }
    const Entry& operator[](std::size_t i) const { return myRoom[i]; }

    void clear() { myEnd = myRoom.get(); }
    /// To no more than there are.
    void resize(std::size_t size) { myEnd = myRoom.get() + size; }
    bool isFull() const { return myEnd == myLast; }
    /// Where the room for them ends.
    const Entry* last() const { return myLast; }
    void grow();
    /// Counts those that were written after the last one, where there is room.
    void addWritten(std::size_t count) { myEnd += count; }
    /// Only where it is not full.
    void add(const Entry& entry) { *myEnd++ = entry; }
    void push_back(const Entry& entry)
    {
        if (isFull()) grow();
        add(entry);
    }

private:
    std::unique_ptr<Entry[]> myRoom;
    Entry* myEnd = nullptr;
    Entry* myLast = nullptr;
};

/// A field that others look at.
struct Looked
{
    std::int64_t number = 0;
    bool isThere = false;
};

/// What came of indexing. Kept by values, so that nothing is allocated once it has grown.
struct Index
{
    Entries entries;
    /// How many octets were decoded.
    std::uint32_t octets = 0;
    /// Whether there may be notes or a fault.
    bool isOdd = false;
    std::vector<ValueNote> notes;
    std::optional<Fault> fault;
    /// For the walk itself.
    std::vector<Looked> looked;

    void clear()
    {
        entries.clear();
        if (isOdd) forgetOddities();
    }

private:
    void forgetOddities();
};

static_assert(std::endian::native == std::endian::little, "loads swap octets for big-endian");

inline std::uint16_t loadBig16(const std::uint8_t* octets)
{
    std::uint16_t bits;
    std::memcpy(&bits, octets, sizeof bits);
    return __builtin_bswap16(bits);
}

inline std::uint32_t loadBig32(const std::uint8_t* octets)
{
    std::uint32_t bits;
    std::memcpy(&bits, octets, sizeof bits);
    return __builtin_bswap32(bits);
}

inline std::uint64_t loadBig64(const std::uint8_t* octets)
{
    std::uint64_t bits;
    std::memcpy(&bits, octets, sizeof bits);
    return __builtin_bswap64(bits);
}

/// The octets of a number, the last one lowest.
inline std::uint64_t loadBits(const Node& node, const std::uint8_t* octets)
{
    std::uint64_t bits = 0;
    switch (node.size)
    {
        case 1:
            return *octets;
        case 2:
        {
            std::uint16_t two;
            std::memcpy(&two, octets, 2);
            return node.isLittleEndian ? two : __builtin_bswap16(two);
        }
        case 4:
        {
            std::uint32_t four;
            std::memcpy(&four, octets, 4);
            return node.isLittleEndian ? four : __builtin_bswap32(four);
        }
        case 8:
            std::memcpy(&bits, octets, 8);
            return node.isLittleEndian ? bits : __builtin_bswap64(bits);
        default:
            for (std::uint32_t i = 0; i < node.size; ++i)
                bits = bits << 8 | octets[node.isLittleEndian ? node.size - 1 - i : i];
            return bits;
    }
}

/// Reads the number of a node of the form number.
inline std::int64_t loadInteger(const Node& node, const std::uint8_t* octets)
{
    const std::uint64_t bits = loadBits(node, octets);
    if (node.scalar != Scalar::signedInteger) return static_cast<std::int64_t>(bits);
    const unsigned shift = 64 - 8 * node.size;
    return static_cast<std::int64_t>(bits << shift) >> shift;
}

inline double loadNumber(const Node& node, const std::uint8_t* octets)
{
    if (node.scalar == Scalar::floating)
    {
        const std::uint64_t bits = loadBits(node, octets);
        if (node.size == 8) return std::bit_cast<double>(bits);
        return static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
    }
    const std::int64_t number = loadInteger(node, octets);
    if (node.scalar == Scalar::signedInteger) return static_cast<double>(number);
    return static_cast<double>(static_cast<std::uint64_t>(number));
}

/// Whether padding of a node that begins here is zero, as far as it is listed.
inline bool isZeroIn(const Plan& plan, std::uint32_t gaps, std::uint32_t count,
                     const std::uint8_t* octets)
{
    const Gap* gap = plan.gaps.data() + gaps;
    for (const Gap* const end = gap + count; gap != end; ++gap)
    {
        std::uint64_t bits = octets[gap->offset];
        if (!gap->isOctet) std::memcpy(&bits, octets + gap->offset, sizeof bits);
        if ((bits & gap->mask) != 0) return false;
    }
    return true;
}

/// Told in the place of where a piece ends.
constexpr std::size_t theOdd = ~std::size_t{0};
/// The most octets of a value that is indexed the quick way.
constexpr std::size_t theMostOctets = 0xFFFFFF00;

/// The alternative of the number that stands here; null where it has to be looked up.
inline const Target* targetAt(const Plan& plan, const Fork& fork, const std::uint8_t* octets)
{
    std::uint32_t number = *octets;
    if (fork.load == Load::big32)
        number = loadBig32(octets);
    else if (fork.load == Load::big16)
        number = loadBig16(octets);
    else if (fork.load == Load::other)
        return nullptr;
    if (number < theTargets) return &plan.targets[fork.targets + number];
    const Slot& slot = plan.slots[fork.slots + slotOf(number, fork.slotCount)];
    return slot.number == number ? &slot.target : nullptr;
}

/// How many octets a fork with a plain alternative takes, where nothing about it is odd; else
/// theOdd. `isChecked`: whether padding has to be zero. Inlined, as a call would cost as much.
template <bool isChecked>
[[gnu::always_inline]] inline std::size_t sizeOfFork(const Plan& plan, const Fork& fork,
                                                     const std::uint8_t* octets, std::size_t left,
                                                     std::uint32_t& alternative)
{
    if (left < fork.body) return theOdd;
    const Target* const target = targetAt(plan, fork, octets + fork.place);
    if (!target || target->size == Target::theNoSize) return theOdd;
    // Where the next piece begins is known before the target is, if it can be.
    std::uint64_t size = fork.size;
    if (fork.length != Length::none)
    {
        size = loadBig32(octets + fork.lengthPlace);
        if (size != target->size) return theOdd;
    }
    else if (size == 0)
        size = target->size;
    if (size > left - fork.body) return theOdd;
    if (isChecked && fork.gapCount > 0 && !isZeroIn(plan, fork.gaps, fork.gapCount, octets))
        return theOdd;
    if (isChecked && target->gapCount > 0 &&
        !isZeroIn(plan, target->gaps, target->gapCount, octets + fork.body))
        return theOdd;
    alternative = target->alternative;
    return fork.body + size;
}

/// How many octets a counted array of plain elements takes that have no padding, and how many
/// elements it has.
template <bool isChecked>
std::size_t sizeOfList(const Node& array, const std::uint8_t* octets, std::size_t left,
                       std::uint32_t& count)
{
    if (left < 4) return theOdd;
    count = loadBig32(octets);
    // None has nothing before elements, so that zeros there may be odd.
    if (count == 0) return array.body == 4 && (!isChecked || array.least == 0) ? 4 : theOdd;
    if (count > theLargestSize || left < array.body) return theOdd;
    if (isChecked && (count < array.least || count > array.most)) return theOdd;
    const std::uint64_t size = std::uint64_t{array.stride} * count;
    if (size > left - array.body) return theOdd;
    // The elements begin at the 4th or the 8th octet.
    if (isChecked && array.body != 4 && loadBig32(octets + 4) != 0) return theOdd;
    return array.body + size;
}

/// Indexes a value of one of the usual forms in which nothing is odd; false where it is another.
/// For an index without oddities. Needs no call, so that what it is inlined in needs no frame.
[[gnu::always_inline]] inline bool indexQuickly(const Plan& plan, std::uint32_t node, Octets octets,
                                                Index& index)
{
    const Node& type = plan.nodes[node];
    index.entries.clear();
    if (type.quick == QuickForm::plain)
    {
        index.octets = type.size;
        return type.size <= octets.size() &&
               (type.gapCount == 0 || isZeroIn(plan, type.gaps, type.gapCount, octets.data()));
    }
    if (octets.size() > theMostOctets || index.entries.isFull()) return false;
    std::size_t size = theOdd;
    std::uint32_t count = 0;
    if (type.quick == QuickForm::fork)
        size = sizeOfFork<true>(plan, plan.forks[type.fork], octets.data(), octets.size(), count);
    else if (type.quick == QuickForm::list)
        size = sizeOfList<true>(type, octets.data(), octets.size(), count);
    if (size == theOdd) return false;
    index.octets = static_cast<std::uint32_t>(size);
    index.entries.add({0, index.octets, count, 1});
    return true;
}

/// The same for any value, given an index that is clear; whether there was no fault.
bool indexOpen(const Plan& plan, std::uint32_t node, Octets octets, Index& index);

/// Indexes a whole value; whether there was no fault.
inline bool indexValue(const Plan& plan, std::uint32_t node, Octets octets, Index& index)
{
    index.clear();
    return indexQuickly(plan, node, octets, index) || indexOpen(plan, node, octets, index);
}

/// How many elements other fields state for an array, given what these hold.
std::optional<std::int64_t> evaluate(const Plan& plan, const Part& part, const Looked* looked);

class Indexer
{
public:
    Indexer(const Plan& plan, Octets octets, Index& index)
        : myPlan(plan), myOctets(octets), myIndex(index)
    {
        myIndex.clear();
        myIndex.looked.clear();
        myIndex.isOdd = true;
    }

    /// Lets notes go, which take memory.
    void dropNotes() { myDropsNotes = true; }
    /// Indexes a whole value; whether there was no fault.
    bool run(std::uint32_t node);

private:
    /// What a piece is in: where its octets end, how many of these are kept back for what follows
    /// it, how deep it is nested, the field that it is, and the entry that it shares.
    struct Around
    {
        std::size_t limit;
        std::size_t reserve;
        std::uint32_t depth;
        const Part* part = nullptr;
        std::uint32_t entry = theNone;

        Around inner(const Part* field = nullptr) const
        {
            return {limit, reserve, depth + 1, field, theNone};
        }
    };
    /// Not set to zero, as only what the walk has written is read.
    struct Frame
    {
        std::uint32_t node;
        std::uint32_t index;
    };
    /// A variant record whose length and alternative end at different places.
    struct Doubt
    {
        std::uint32_t entry = theNone;
        std::size_t own = 0;
        std::size_t stated = 0;
        std::size_t note = 0;
    };
    struct Mark
    {
        std::size_t entries, notes, empties;
    };

    bool piece(std::uint32_t id, std::size_t& at, const Around& around);
    bool fixed(std::uint32_t id, std::size_t& at, const Around& around);
    bool record(std::uint32_t id, std::size_t& at, const Around& around);
    bool field(const Node& node, std::uint32_t i, std::uint32_t entry, std::size_t& at,
               const Around& around, std::size_t looked);
    bool array(std::uint32_t id, std::size_t& at, const Around& around);
    bool counted(std::uint32_t entry, const Node& node, std::size_t& at, const Around& around);
    bool lengthless(std::uint32_t entry, const Node& node, std::size_t& at, const Around& around);
    bool stated(std::uint32_t entry, const Node& node, std::size_t& at, const Around& around);
    bool toEnd(std::uint32_t entry, const Node& node, std::size_t& at, const Around& around);
    bool terminated(std::uint32_t entry, const Node& node, std::size_t& at, const Around& around);
    bool padding(std::uint32_t entry, const Node& node, std::size_t& at, const Around& around);
    bool elements(std::uint32_t entry, const Node& node, std::size_t& at, std::uint64_t count,
                  const Around& around);
    bool element(std::uint32_t entry, const Node& node, std::uint32_t i, std::size_t& at,
                 const Around& around);
    bool settleDoubt(std::uint32_t entry, const Node& node, std::size_t& at, const Around& around);
    bool variant(std::uint32_t id, std::size_t& at, const Around& around);
    bool measured(std::uint32_t entry, const Node& node, std::size_t start, std::size_t& at,
                  std::uint32_t alternative, const Around& around);
    bool alternative(std::uint32_t entry, const Node& node, std::size_t& at, std::size_t length,
                     const Around& around);

    bool pad(std::size_t& at, std::size_t start, std::uint32_t boundary, std::uint32_t next,
             const Around& around);
    void checkPadding(const Node& node, std::size_t at, std::uint32_t depth);
    void notePadding(const Node& node, std::size_t at, std::uint32_t depth);
    void checkZero(std::size_t at, std::size_t end, std::uint32_t depth);
    std::size_t firstLeaf(std::uint32_t id) const;
    bool missing(std::uint32_t id, std::size_t at, const Around& around);
    bool charge(std::uint64_t empties, std::size_t at, const Around& around);
    void checkCardinality(const Node& node, std::size_t at, std::uint64_t count,
                          std::uint32_t depth);
    void acceptTail(std::size_t& at);

    std::uint32_t open(std::size_t at);
    void close(std::uint32_t entry, std::size_t at);
    Mark mark() const;
    void goBack(const Mark& mark);
    void note(std::string what, std::size_t at, std::uint32_t depth);
    bool fail(std::string what, std::size_t at, std::size_t needed, std::size_t left,
              std::uint32_t depth);
    /// More octets are needed than there are up to `limit`.
    bool failShort(std::size_t needed, std::size_t at, std::size_t limit, std::uint32_t depth);
    std::string path(std::uint32_t depth) const;

    const Plan& myPlan;
    Octets myOctets;
    Index& myIndex;
    std::size_t myEmpties = 0;
    std::size_t myTailAt = 0;
    std::size_t myTailSize = 0;
    bool myIsProbing = false;
    bool myDropsNotes = false;
    Doubt myDoubt;
    int myRetries = 0;
    std::size_t myLookedBase = 0;
    Frame myFrames[theDeepest + 2];
};

}  // namespace omt
