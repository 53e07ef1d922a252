// SPDX-License-Identifier: Apache-2.0
// WireCompare says whether two datatypes have the same octets, from the plans of both models.
//
// Each pair of nodes that meets is looked at once, by itself: a number beside a number, a record
// beside a record. What differs then spreads to the pairs that hold it, from the octet that differs
// first, so that datatypes may hold each other in rings and nests of any depth.
#pragma once

#include "omt/check/diff.h"
#include "omt/codec/plan.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace omt
{

/// What is to say about a datatype that no plan can decode and that has one name in both models.
struct Undecoded
{
    /// Whether both models say the same of it.
    bool isSame = true;
    /// The datatypes that it refers to, before and after.
    std::vector<std::pair<std::string, std::string>> held = {};
};

class WireCompare
{
public:
    /// The plans must outlive this.
    WireCompare(const Plan& before, const Plan& after,
                std::function<Undecoded(std::string_view name)> undecoded);

    /// What became of the octets of two nodes, theNone being one that there is not.
    WireChange compare(std::uint32_t before, std::uint32_t after);

private:
    using Id = std::uint32_t;
    using Octet = std::optional<std::uint64_t>;

    /// Something that a pair holds: another pair, where it begins, and what it is called.
    struct Held
    {
        Id pair;
        Octet offset;
        Name name;
        bool isElement;
    };
    /// Two nodes that meet. What it holds is a range of myHeld.
    struct Pair
    {
        Id before;
        Id after;
        std::size_t first = 0;
        std::size_t end = 0;
        /// What differs in the pair itself, then in all that it holds.
        Wire wire = Wire::same;
        Octet octet = std::nullopt;
        std::string why = {};
        /// What it holds that differs first, an index of myHeld, or none.
        std::size_t through = theNothingHeld;
        /// The pair that `why` is said of, at the end of that way.
        Id source = 0;
    };
    static constexpr std::size_t theNothingHeld = static_cast<std::size_t>(-1);

    Id pairOf(Id before, Id after);
    void look(Id pair);
    void lookAtRecords(const Node& before, const Node& after);
    bool isSameDecision(const Part& before, const Part& after) const;
    bool lookAtPart(const Node& recordBefore, const Node& recordAfter, std::uint32_t i);
    void lookAtArrays(const Node& before, const Node& after);
    void lookAtNumbers(const Node& before, const Node& after);
    void lookAtNames(const Enumeration& before, const Enumeration& after, const Node& node);
    void lookAtVariants(const Node& before, const Node& after);
    void lookAtChoices(const Node& before, const Node& after);
    void lookAtAlternatives(const Node& before, const Node& after, Id first, Id second);
    void lookAtUndecoded(const Node& before, const Node& after);

    /// Says what differs in the pair that is being looked at; the greatest change counts, of equal
    /// ones that with the first octet.
    void say(Wire wire, Octet octet, std::string why);
    void sayOther(const Node& before, const Node& after, Octet octet);
    void hold(Id before, Id after, Octet offset, Name name, bool isElement = false);

    void spread(Id first);
    void spread(Id first, Wire wire);
    WireChange changeOf(Id pair) const;

    const Plan& myBefore;
    const Plan& myAfter;
    std::function<Undecoded(std::string_view name)> myUndecoded;
    /// For each node the innermost one whose octets it has and no others: records of one field.
    std::vector<Id> myInnerBefore;
    std::vector<Id> myInnerAfter;
    std::unordered_map<std::uint64_t, Id> myIds;
    std::vector<Pair> myPairs;
    std::vector<Held> myHeld;
    /// The pair that is being looked at.
    Id myCurrent = 0;
    /// How much may still be looked at; more than any model needs that nobody made for that.
    std::size_t myStepsLeft;
};

}  // namespace omt
