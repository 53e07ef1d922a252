// SPDX-License-Identifier: Apache-2.0
// Finding one of very many entries by its key, for as long as one piece of work lasts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace omtreader
{

/// The indices of entries in some list, found by the hash of a key.
///
/// The entries stay where they are: the table keeps a hash and an index each, side by side, so that
/// a key that is not there is mostly refused without a look at any entry.
class IndexTable
{
public:
    static constexpr std::size_t theNone = 0xFFFFFFFF;

    /// The first entered index of this hash for which the test holds, or theNone.
    template <typename Test>
    std::size_t find(std::size_t hash, Test isSought) const
    {
        if (mySlots.empty()) return theNone;
        const std::uint32_t shortHash = shorten(hash);
        for (std::size_t at = shortHash & mask(); mySlots[at].index != theNone; at = next(at))
            if (mySlots[at].hash == shortHash && isSought(std::size_t(mySlots[at].index)))
                return mySlots[at].index;
        return theNone;
    }

    /// Enters an index, below theNone. Several of equal keys are found in the order entered.
    void add(std::size_t hash, std::size_t index)
    {
        if (2 * ++mySize > mySlots.size()) grow();
        enter({shorten(hash), static_cast<std::uint32_t>(index)});
    }

private:
    struct Slot
    {
        std::uint32_t hash = 0;
        std::uint32_t index = theNone;
    };

    /// Spreads a hash over 32 bits, as that of a number may be the number itself.
    static std::uint32_t shorten(std::size_t hash)
    {
        return static_cast<std::uint32_t>((hash * std::uint64_t(0x9E3779B97F4A7C15)) >> 32);
    }

    std::size_t mask() const { return mySlots.size() - 1; }  // the size is a power of two
    std::size_t next(std::size_t at) const { return (at + 1) & mask(); }

    void enter(Slot slot)
    {
        std::size_t at = slot.hash & mask();
        while (mySlots[at].index != theNone) at = next(at);
        mySlots[at] = slot;
    }

    void grow()
    {
        std::vector<Slot> old(mySlots.empty() ? theSmallest : 2 * mySlots.size());
        old.swap(mySlots);
        // From the slot after a free one on, so that indices of equal keys keep their order.
        std::size_t start = 0;
        while (start < old.size() && old[start].index != theNone) ++start;
        for (std::size_t i = 0; i < old.size(); ++i)
        {
            const Slot& slot = old[(start + i) % old.size()];
            if (slot.index != theNone) enter(slot);
        }
    }

    static constexpr std::size_t theSmallest = 32;

    std::vector<Slot> mySlots;
    std::size_t mySize = 0;
};

}  // namespace omtreader
