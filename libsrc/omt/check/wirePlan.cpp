// SPDX-License-Identifier: Apache-2.0
#include "omt/check/wirePlan.h"

#include <algorithm>
#include <optional>
#include <set>
#include <vector>

namespace omt
{

namespace
{

bool isPadding(const Node& node)
{
    return node.form == Form::array && node.extent == Extent::padding;
}

/// Joins fields of a record that are one thing in other editions, and leaves out padding that they
/// do without.
class RecordJoiner
{
public:
    RecordJoiner(Plan& plan, std::uint32_t record) : myPlan(plan), myRecord(record)
    {
        const Node& node = plan.nodes[record];
        myParts.assign(plan.parts.begin() + node.first,
                       plan.parts.begin() + node.first + node.parts);
        myUses.resize(myParts.size());
        for (const Part& part : myParts)
        {
            if (part.decider != theNone) ++myUses[part.decider];
            forEachStep(part,
                        [this](Step& step)
                        {
                            if (step.what == Step::What::field) ++myUses[place(step)];
                        });
        }
    }

    void run()
    {
        for (std::size_t i = 0; i < myParts.size();)
        {
            myPlaces.push_back(static_cast<std::uint32_t>(myNew.size()));
            const std::size_t end =
                isBetween(i) ? i + 1 : std::max(joinedCount(i), joinedChoice(i));
            if (end == 0) myNew.push_back(myParts[i++]);
            for (; i < end; ++i)
                if (myPlaces.size() <= i)
                    myPlaces.push_back(static_cast<std::uint32_t>(myNew.size() - 1));
        }
        if (myNew.size() != myParts.size()) store();
    }

private:
    static std::size_t place(const Step& step) { return static_cast<std::size_t>(step.value); }

    template <typename Visit>
    void forEachStep(const Part& part, const Visit& visit)
    {
        for (std::uint32_t i = 0; i < part.stepCount; ++i) visit(myPlan.steps[part.steps + i]);
    }

    const Node& nodeOf(std::size_t i) const { return myPlan.nodes[myParts[i].node]; }

    /// Whether a field is padding, or octets that are by their name.
    bool isPaddingAt(std::size_t i) const
    {
        const Node& node = nodeOf(i);
        if (isPadding(node)) return true;
        const bool isArray = node.form == Form::array && node.extent == Extent::fixed;
        const Node& one = isArray ? myPlan.nodes[node.element] : node;
        const std::string_view name = myPlan.text(myParts[i].name).substr(0, 7);
        return one.form == Form::number && one.size == 1 && myUses[i] == 0 &&
               (name == "Padding" || name == "padding");
    }

    /// Whether a field is padding up to one whose place is known, which tells as much.
    bool isBetween(std::size_t i) const
    {
        return i + 1 < myParts.size() && myParts[i].decider == theNone &&
               myParts[i].offset != theNone && myParts[i + 1].offset != theNone && isPaddingAt(i);
    }

    /// The field after one, and after padding that follows it.
    std::size_t next(std::size_t i) const
    {
        ++i;
        return i < myParts.size() && isPaddingAt(i) ? i + 1 : i;
    }

    /// How many octets after its begin a number is followed by a field.
    std::uint32_t distance(std::size_t number, std::size_t field) const
    {
        const Part& first = myParts[number];
        const Part& second = myParts[field];
        if (first.offset != theNone && second.offset != theNone)
            return second.offset - first.offset;
        const Node* const between = field > number + 1 ? &nodeOf(number + 1) : nullptr;
        std::uint64_t boundary = second.boundary;
        std::uint64_t at = nodeOf(number).size;
        if (between && isPadding(*between))
            boundary = std::max<std::uint64_t>(boundary, between->count);
        else if (between)
            at = aligned(at, myParts[number + 1].boundary) + between->size;
        return static_cast<std::uint32_t>(aligned(at, boundary));
    }

    Node& addNode(std::size_t from, Form form)
    {
        Part part = myParts[from];
        part.node = static_cast<std::uint32_t>(myPlan.nodes.size());
        myNew.push_back(part);
        Node& node = myPlan.nodes.emplace_back();
        node.form = form;
        node.name = part.name;
        node.boundary = part.boundary;
        return node;
    }

    /// Where a count and its array end; 0 where there are none.
    std::size_t joinedCount(std::size_t i)
    {
        const Node& count = nodeOf(i);
        const std::size_t j = next(i);
        if (count.form != Form::number || count.size != 4 || count.isLittleEndian ||
            count.scalar == Scalar::floating || j >= myParts.size() || myUses[i] != 1 ||
            myParts[i].decider != theNone)
            return 0;
        const Part& array = myParts[j];
        const Node from = nodeOf(j);
        if (from.form != Form::array || from.extent != Extent::lengthless || array.stepCount != 1 ||
            array.decider != theNone)
            return 0;
        const Step& step = myPlan.steps[array.steps];
        if (step.what != Step::What::field || place(step) != i) return 0;
        const std::uint32_t body = distance(i, j);
        Node& node = addNode(i, Form::array);
        node.extent = Extent::counted;
        node.element = from.element;
        node.stride = from.stride;
        node.size = 4;
        node.body = body;
        myNew.back().name = array.name;
        return j + 1;
    }

    /// Where a discriminant and the fields that it decides about end; 0 where there are none.
    std::size_t joinedChoice(std::size_t i)
    {
        const Node& number = nodeOf(i);
        std::size_t end = next(i);
        const std::size_t first = end;
        std::set<std::int64_t> numbers;
        while (end < myParts.size() && myParts[end].decider == i && myParts[end].stepCount == 0 &&
               numbers.insert(myParts[end].decidingNumber).second)
            ++end;
        if (number.form != Form::number || numbers.empty() || numbers.size() != myUses[i] ||
            myParts[i].decider != theNone)
            return 0;
        const std::uint32_t body = distance(i, first);
        const std::uint32_t size = number.size;
        Node& node = addNode(i, Form::variant);
        node.element = myParts[i].node;
        node.size = size;
        node.body = body;
        node.first = static_cast<std::uint32_t>(myPlan.parts.size());
        node.parts = static_cast<std::uint32_t>(end - first + 1);
        node.table = static_cast<std::uint32_t>(myPlan.choices.size());
        myPlan.parts.push_back(myParts[i]);
        Choices& choices = myPlan.choices.emplace_back();
        for (std::size_t k = first; k < end; ++k)
        {
            choices.numbers.push_back(
                {myParts[k].decidingNumber, static_cast<std::uint32_t>(k - first + 1)});
            myPlan.parts.push_back(myParts[k]);
        }
        std::sort(choices.numbers.begin(), choices.numbers.end(),
                  [](const Choices::Range& one, const Choices::Range& two)
                  { return one.number < two.number; });
        return end;
    }

    void store()
    {
        Node& node = myPlan.nodes[myRecord];
        node.first = static_cast<std::uint32_t>(myPlan.parts.size());
        node.parts = static_cast<std::uint32_t>(myNew.size());
        for (Part& part : myNew)
        {
            if (part.decider != theNone) part.decider = myPlaces[part.decider];
            const std::uint32_t from = part.steps;
            part.steps = static_cast<std::uint32_t>(myPlan.steps.size());
            for (std::uint32_t k = 0; k < part.stepCount; ++k)
            {
                Step step = myPlan.steps[from + k];
                if (step.what == Step::What::field) step.value = myPlaces[place(step)];
                myPlan.steps.push_back(step);
            }
            myPlan.parts.push_back(part);
        }
    }

    Plan& myPlan;
    const std::uint32_t myRecord;
    std::vector<Part> myParts;
    /// How many steps and fields look at each part.
    std::vector<std::size_t> myUses;
    std::vector<Part> myNew;
    /// Where each part is among the new ones.
    std::vector<std::uint32_t> myPlaces;
};

/// Gives the fields of a record offsets past padding to a multiple, where the record begins at such
/// a multiple; gives whether it has a fixed size now, and had none.
bool layOutPadded(Plan& plan, Node& node)
{
    std::uint64_t at = 0;
    for (std::uint32_t i = 0; i < node.parts; ++i)
    {
        Part& part = plan.parts[node.first + i];
        const Node& field = plan.nodes[part.node];
        const bool isPadded = isPadding(field) && field.count <= node.boundary;
        if (part.decider != theNone || at > theLargestSize) return false;
        at = aligned(at, isPadded ? 1 : std::max<std::uint8_t>(part.boundary, 1));
        part.offset = static_cast<std::uint32_t>(at);
        if (!isPadded && !field.isFixed) return false;
        at = isPadded ? aligned(at, field.count) : at + field.size;
    }
    if (at > theLargestSize) return false;
    node.isFixed = true;
    node.size = static_cast<std::uint32_t>(at);
    return true;
}

/// From one element to the next, if elements have a fixed size only now. Arrays without padding are
/// told by what they were.
void setStride(const Plan& plan, Node& node)
{
    const Node& element = plan.nodes[node.element];
    const std::uint32_t boundary = std::max<std::uint8_t>(element.boundary, 1);
    const std::uint64_t stride =
        node.stride % boundary == 0 ? aligned(element.size, boundary) : element.size;
    node.stride = static_cast<std::uint32_t>(stride);
}

bool layOutArray(const Plan& plan, Node& node)
{
    const Node& element = plan.nodes[node.element];
    const std::uint64_t stride = aligned(element.size, std::max<std::uint8_t>(element.boundary, 1));
    const std::uint64_t size = node.count == 0 ? 0 : stride * (node.count - 1ULL) + element.size;
    if (!element.isFixed || size > theLargestSize) return false;
    node.isFixed = true;
    node.stride = static_cast<std::uint32_t>(stride);
    node.size = static_cast<std::uint32_t>(size);
    return true;
}

}  // namespace

void toOctets(Plan& plan)
{
    // Deeper nests of padding to multiples stay of open size.
    constexpr int theMostLevels = 8;
    std::vector<bool> wasFixed;
    for (const Node& node : plan.nodes) wasFixed.push_back(node.isFixed);
    bool isChanged = true;
    for (int level = 0; level < theMostLevels && isChanged; ++level)
    {
        isChanged = false;
        for (Node& node : plan.nodes)
        {
            if (node.isFixed) continue;
            if (node.form == Form::record) isChanged = layOutPadded(plan, node) || isChanged;
            if (node.form == Form::array && node.extent == Extent::fixed)
                isChanged = layOutArray(plan, node) || isChanged;
        }
    }
    const auto count = static_cast<std::uint32_t>(plan.nodes.size());
    for (std::uint32_t i = 0; i < count; ++i)
    {
        Node& node = plan.nodes[i];
        if (node.form == Form::array && !wasFixed[node.element] && plan.nodes[node.element].isFixed)
            setStride(plan, node);
        if (node.form == Form::array && node.extent == Extent::counted)
            node.body = static_cast<std::uint32_t>(aligned(4, plan.nodes[node.element].boundary));
        if (node.form == Form::record && node.parts > 1) RecordJoiner(plan, i).run();
    }
}

}  // namespace omt
