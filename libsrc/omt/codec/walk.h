// SPDX-License-Identifier: Apache-2.0
// Walk goes through an indexed value in the order of its octets and tells a sink what it meets.
#pragma once

#include "omt/codec/index.h"

#include <algorithm>

namespace omt
{

/// A piece of a value: a node, where it stands and, if its size is open, its entry.
struct Spot
{
    std::uint32_t node = theNone;
    std::uint32_t offset = 0;
    std::uint32_t entry = theNone;

    bool isThere() const { return node != theNone; }
};

/// Finds the parts of pieces one after the other.
class Steps
{
public:
    Steps(const Plan& ofPlan, const Index& ofValue) : plan(ofPlan), index(ofValue) {}

    /// Whether something of a piece was decoded.
    bool isThere(const Spot& spot) const { return !index.fault || spot.offset < index.octets; }

    Spot root(std::uint32_t node) const
    {
        const bool isFixed = plan.nodes[node].isFixed;
        const Spot spot{node, 0, isFixed ? theNone : 0};
        const bool isIndexed = isFixed || !index.entries.empty();
        return isIndexed && isThere(spot) ? spot : Spot();
    }

    /// Calls `visit(part, spot)` for the fields that are there, until it gives false. May begin
    /// with any field, if those before it have fixed sizes and are always there.
    template <typename Visit>
    void forEachField(const Spot& record, const Visit& visit, std::uint32_t first = 0) const
    {
        const Node& node = plan.nodes[record.node];
        if (record.entry == theNone || node.quick == QuickForm::fork)
        {
            for (std::uint32_t i = first; i < node.parts; ++i)
            {
                const Part& part = plan.parts[node.first + i];
                const bool isLast = i + 1 == node.parts;
                const Spot spot{part.node, record.offset + part.offset,
                                isLast ? record.entry : theNone};
                if (!isThere(spot) || !visit(part, spot)) return;
            }
            return;
        }
        const Entry& entry = index.entries[record.entry];
        std::uint32_t next = record.entry + 1;
        std::uint64_t at = record.offset;
        if (first > 0)
        {
            const Part& last = plan.parts[node.first + first - 1];
            at += last.offset + plan.nodes[last.node].size;
        }
        for (std::uint32_t i = first; i < node.parts; ++i)
        {
            const Part& part = plan.parts[node.first + i];
            std::uint32_t after = theNone;
            if (part.decider != theNone)
            {
                if (next >= entry.next) return;
                const Entry& decided = index.entries[next++];
                if (decided.count == 0) continue;
                after = decided.next;
            }
            const std::uint64_t origin = std::uint64_t{record.offset} - node.phase;
            at = origin + aligned(at - origin, part.boundary);
            Spot spot{part.node, static_cast<std::uint32_t>(at)};
            if (plan.nodes[part.node].isFixed)
                at += plan.nodes[part.node].size;
            else
            {
                if (next >= entry.next) return;
                spot.entry = next;
                spot.offset = index.entries[next].offset;
                at = index.entries[next].end;
                next = index.entries[next].next;
            }
            if (after != theNone) next = after;
            if (!isThere(spot) || !visit(part, spot)) return;
        }
    }

    /// How many elements an array has of which there is something.
    std::uint32_t count(const Spot& array) const
    {
        if (array.entry != theNone) return index.entries[array.entry].count;
        const Node& node = plan.nodes[array.node];
        if (!index.fault || node.stride == 0) return node.count;
        const std::uint32_t left = index.octets - std::min(index.octets, array.offset);
        return std::min(node.count, (left + node.stride - 1) / node.stride);
    }

    /// Where the first element stands.
    std::uint32_t firstElement(const Spot& array) const
    {
        const Node& node = plan.nodes[array.node];
        if (node.extent != Extent::counted) return array.offset;
        return array.offset +
               static_cast<std::uint32_t>(aligned(4, plan.nodes[node.element].boundary));
    }

    /// Calls `visit(spot)` for the elements of which there is something.
    template <typename Visit>
    void forEachElement(const Spot& array, const Visit& visit) const
    {
        const Node& node = plan.nodes[array.node];
        const std::uint32_t size = count(array);
        const bool isFixed = plan.nodes[node.element].isFixed;
        std::uint32_t at = firstElement(array);
        std::uint32_t next = array.entry + 1;
        for (std::uint32_t i = 0; i < size; ++i)
        {
            if (isFixed)
            {
                visit(Spot{node.element, at});
                at += node.stride;
                continue;
            }
            visit(Spot{node.element, index.entries[next].offset, next});
            next = index.entries[next].next;
        }
    }

    /// An element of which there is something; takes time by the index only where elements have
    /// pieces of open size of their own.
    Spot element(const Spot& array, std::uint32_t i) const
    {
        const Node& node = plan.nodes[array.node];
        if (i >= count(array)) return {};
        if (plan.nodes[node.element].isFixed)
            return {node.element, firstElement(array) + i * node.stride};
        const Entry& entry = index.entries[array.entry];
        std::uint32_t at = array.entry + 1;
        if (entry.next - at == entry.count)
            at += i;
        else
            for (; i > 0; --i) at = index.entries[at].next;
        return {node.element, index.entries[at].offset, at};
    }

    /// The alternative of a variant record, and the part that it is; not there where there is none.
    Spot alternative(const Spot& variant, const Part*& part) const
    {
        const Node& node = plan.nodes[variant.node];
        const Entry& entry = index.entries[variant.entry];
        if (entry.count >= theUnknown) return {};
        part = &plan.parts[node.first + entry.count];
        Spot spot{part->node, variant.offset + node.body};
        if (!plan.nodes[part->node].isFixed)
        {
            if (variant.entry + 1 >= entry.next) return {};
            spot.entry = variant.entry + 1;
            spot.offset = index.entries[spot.entry].offset;
        }
        return isThere(spot) ? spot : Spot();
    }

    const Plan& plan;
    const Index& index;
};

/// A sink has: record(node, octets), which may take a record of fixed size as a whole;
/// beginRecord(node), field(part), endRecord(), beginArray(count), element(), endArray(),
/// number(node, octets), latin1(octets, count), utf16(element, octets, count), hexadecimal(octets,
/// count), text(octets, count, isFilled), which is characters up to the first zero, kept(octets,
/// count).
template <typename Sink>
class Walk
{
public:
    Walk(const Plan& plan, const std::uint8_t* octets, const Index& index, Sink& sink)
        : mySteps(plan, index), myPlan(plan), myOctets(octets), mySink(sink)
    {
    }

    void piece(const Spot& spot)
    {
        const Node& node = myPlan.nodes[spot.node];
        switch (node.form)
        {
            case Form::number:
                mySink.number(node, myOctets + spot.offset);
                return;
            case Form::record:
                return record(spot, node);
            case Form::array:
                return array(spot, node);
            case Form::variant:
                return variant(spot, node);
            case Form::octets:
                mySink.hexadecimal(myOctets + spot.offset,
                                   mySteps.index.entries[spot.entry].end - spot.offset);
                return;
        }
    }

private:
    void record(const Spot& spot, const Node& node)
    {
        const bool isWhole = spot.entry == theNone && !mySteps.index.fault;
        if (isWhole && mySink.record(node, myOctets + spot.offset)) return;
        mySink.beginRecord(node);
        if (isWhole)
            for (std::uint32_t i = 0; i < node.parts; ++i)
            {
                const Part& part = myPlan.parts[node.first + i];
                mySink.field(part);
                piece({part.node, spot.offset + part.offset});
            }
        else
            mySteps.forEachField(spot,
                                 [this](const Part& part, const Spot& one)
                                 {
                                     mySink.field(part);
                                     piece(one);
                                     return true;
                                 });
        mySink.endRecord();
    }

    void array(const Spot& spot, const Node& node)
    {
        const std::uint32_t count = mySteps.count(spot);
        const std::uint8_t* const first = myOctets + mySteps.firstElement(spot);
        switch (node.look)
        {
            case Look::latin1:
                return mySink.latin1(first, count);
            case Look::utf16:
                return mySink.utf16(myPlan.nodes[node.element], first, count);
            case Look::hexadecimal:
                return mySink.hexadecimal(first, count);
            case Look::text:
                return mySink.text(first, count, node.extent == Extent::fixed);
            case Look::elements:
                break;
        }
        mySink.beginArray(count);
        mySteps.forEachElement(spot,
                               [this](const Spot& one)
                               {
                                   mySink.element();
                                   piece(one);
                               });
        mySink.endArray();
    }

    void variant(const Spot& spot, const Node& node)
    {
        mySink.beginRecord(node);
        mySink.field(myPlan.parts[node.first]);
        mySink.number(myPlan.nodes[node.element], myOctets + spot.offset);
        const Entry& entry = mySteps.index.entries[spot.entry];
        const Part* part = nullptr;
        const Spot alternative = mySteps.alternative(spot, part);
        if (alternative.isThere())
        {
            mySink.field(*part);
            piece(alternative);
        }
        if (entry.count == theUnknown)
            mySink.kept(myOctets + spot.offset + node.body, entry.end - spot.offset - node.body);
        mySink.endRecord();
    }

    Steps mySteps;
    const Plan& myPlan;
    const std::uint8_t* myOctets;
    Sink& mySink;
};

}  // namespace omt
