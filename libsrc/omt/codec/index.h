// SPDX-License-Identifier: Apache-2.0
// Indexer finds the pieces of a value: where each stands whose place the plan does not fix.
#pragma once

#include "omt/codec/fault.h"
#include "omt/codec/octets.h"
#include "omt/codec/plan.h"

#include <optional>
#include <vector>

namespace omt
{

/// One piece of open size. Pieces stand in the order of their octets, each before those in it. A
/// field that another one decides about has an entry of its own, with a count of 1 if it is there.
struct Entry
{
    std::uint32_t node = 0;
    std::uint32_t offset = 0;
    std::uint32_t end = 0;
    /// Of an array: its elements, at a fault those of which there is something. Of a variant
    /// record: the index of its alternative, theNothing, or theUnknown where octets were kept.
    std::uint32_t count = 0;
    /// The entry after those of this piece.
    std::uint32_t next = 0;
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
    std::vector<Entry> entries;
    std::vector<ValueNote> notes;
    std::optional<Fault> fault;
    /// How many octets were decoded.
    std::uint32_t octets = 0;
    /// For the walk itself.
    std::vector<Looked> looked;

    void clear();
};

/// Reads the number of a node of the form number.
std::int64_t loadInteger(const Node& node, const std::uint8_t* octets);
double loadNumber(const Node& node, const std::uint8_t* octets);

/// How many elements other fields state for an array, given what these hold.
std::optional<std::int64_t> evaluate(const Plan& plan, const Part& part, const Looked* looked);

class Indexer
{
public:
    Indexer(const Plan& plan, Octets octets, Index& index)
        : myPlan(plan), myOctets(octets), myIndex(index)
    {
        myIndex.clear();
    }

    /// Indexes a whole value; whether there was no fault.
    bool run(std::uint32_t node);
    /// Where a piece ends that begins at `at`, or nothing at a fault.
    std::optional<std::size_t> endOf(std::uint32_t node, std::size_t at, std::size_t limit,
                                     std::size_t reserve);

private:
    /// What a piece is in: where its octets end, how many of these are kept back for what follows
    /// it, how deep it is nested, and the field that it is, if it is one.
    struct Around
    {
        std::size_t limit;
        std::size_t reserve;
        std::uint32_t depth;
        const Part* part = nullptr;

        Around inner(const Part* field = nullptr) const
        {
            return {limit, reserve, depth + 1, field};
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
    bool field(const Node& node, std::uint32_t i, std::size_t start, std::size_t& at,
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
    bool measured(std::uint32_t entry, const Node& node, std::size_t& at, std::uint32_t alternative,
                  const Around& around);
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

    std::uint32_t open(std::uint32_t id, std::size_t at);
    void close(std::uint32_t entry, std::size_t at);
    Mark mark() const;
    void goBack(const Mark& mark);
    void note(std::string what, std::size_t at, std::uint32_t depth);
    bool fail(std::string what, std::size_t at, std::size_t needed, std::size_t left,
              std::uint32_t depth);
    std::string path(std::uint32_t depth) const;

    const Plan& myPlan;
    Octets myOctets;
    Index& myIndex;
    std::size_t myEmpties = 0;
    std::size_t myTailAt = 0;
    std::size_t myTailSize = 0;
    bool myIsProbing = false;
    Doubt myDoubt;
    int myRetries = 0;
    std::size_t myLookedBase = 0;
    Frame myFrames[theDeepest + 2];
};

}  // namespace omt
