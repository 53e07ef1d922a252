// SPDX-License-Identifier: Apache-2.0
// ValueWriter: the steps that a piece begins with.
#include "omt/codec/valueWriterParts.h"

#include <algorithm>

namespace omt
{

struct ValueWriter::Parts::RunMaker
{
    const Plan& plan;
    Run& run;

    void make()
    {
        const Node& node = *run.node;
        run.end = node.size;
        run.isWhole = true;
        // They need no call, so that any number of them would pass.
        run.isEmpty = node.size == 0;
        if (fits(node))
            add(run.id, 0, 1);
        else if (node.form == Form::record)
            run.end = addFields(node);
        else if (node.form == Form::variant)
        {
            run.isWhole = false;
            run.end = addChoice(node, 0, 2);
        }
        else
        {
            run.isSized = false;
            run.isWhole = node.form == Form::octets || node.look != Look::elements;
            addStep(run.id, 0, kindOf(node));
        }
        addStep(theNone, run.end, Kind::end);
        for (std::size_t i = 0; i + 1 < run.steps.size(); ++i) checkGap(run.steps[i]);
    }

private:
    /// Beyond them an array is gone through element by element, a record field by field.
    static constexpr std::size_t theMostSteps = 64;
    static constexpr std::uint32_t theLargest = 65536;
    static constexpr std::uint32_t theHighest = 16;

    static Kind kindOf(const Node& node)
    {
        if (node.form == Form::octets || node.look == Look::hexadecimal) return Kind::octets;
        return node.look == Look::elements ? Kind::array : Kind::text;
    }

    /// Whether all of a node can be steps. None without octets are among them, so that each octet
    /// of a run belongs to one step at most.
    bool fits(const Node& node) const
    {
        if (!node.isFixed || node.size == 0 || node.empties > 0) return false;
        if (node.size > theLargest || node.height > theHighest) return false;
        const std::size_t left = theMostSteps - run.steps.size();
        return stepsOf(node, left) <= left;
    }

    std::size_t stepsOf(const Node& node, std::size_t most) const
    {
        if (node.form == Form::number) return 1;
        if (node.form == Form::array)
        {
            if (node.look != Look::elements) return 1;
            const std::size_t each =
                node.count > most ? 1 : stepsOf(plan.nodes[node.element], most);
            return 1 + node.count * each;
        }
        std::size_t steps = 0;
        for (std::uint32_t i = 0; i < node.parts && steps <= most; ++i)
            steps += stepsOf(plan.nodes[plan.parts[node.first + i].node], most);
        return steps;
    }

    // Those of fixed size that a record begins with, and the discriminant after them; gives where
    // they end.
    std::uint32_t addFields(const Node& record)
    {
        std::uint32_t end = 0;
        for (; run.fields < record.parts && !record.isLooking; ++run.fields)
        {
            const Part& part = plan.parts[record.first + run.fields];
            const Node& field = plan.nodes[part.node];
            run.isWhole = false;
            if (field.form == Form::variant && run.steps.size() < theMostSteps)
            {
                return addChoice(field, part.offset, 3);
            }
            if (!fits(field)) return end;
            add(part.node, part.offset, 2);
            end = part.offset + field.size;
        }
        run.isWhole = run.fields == record.parts;
        return end;
    }

    std::uint32_t addChoice(const Node& variant, std::uint32_t offset, std::uint32_t level)
    {
        run.height = std::max(run.height, level);
        run.variant = &variant;
        run.variantOffset = offset;
        run.joined.resize(variant.parts);
        const Node& discriminant = plan.nodes[variant.element];
        if (discriminant.size == 1)
            run.load = Load::octet;
        else if (discriminant.size == 4 && !discriminant.isLittleEndian)
            run.load = Load::big32;
        run.targets = plan.targets.data() + std::size_t{variant.table} * theTargets;
        const Choices& choices = plan.choices[variant.table];
        run.slots = plan.slots.data() + choices.slots;
        const bool isSigned = discriminant.scalar == Scalar::signedInteger;
        run.slotCount = isSigned ? 0 : choices.slotCount;
        addNumber(variant.element, offset);
        return offset + plan.nodes[variant.element].size;
    }

    void add(std::uint32_t id, std::uint32_t offset, std::uint32_t level)
    {
        const Node& node = plan.nodes[id];
        run.height = std::max(run.height, level);
        if (node.form == Form::number) return addNumber(id, offset);
        if (node.form == Form::record)
        {
            for (std::uint32_t i = 0; i < node.parts; ++i)
            {
                const Part& part = plan.parts[node.first + i];
                add(part.node, offset + part.offset, level + 1);
            }
            return;
        }
        if (node.look != Look::elements) return addStep(id, offset, kindOf(node));
        addStep(id, offset, Kind::fixedArray);
        for (std::uint32_t i = 0; i < node.count; ++i)
            add(node.element, offset + i * node.stride, level + 1);
    }

    void addStep(std::uint32_t id, std::uint32_t offset, Kind kind)
    {
        const bool isNumber = kind == Kind::number;
        run.steps.push_back({isNumber ? 0 : ~std::uint64_t{0}, 0, offset, id, kind, 0});
    }

    void addNumber(std::uint32_t id, std::uint32_t offset)
    {
        const Node& node = plan.nodes[id];
        addStep(id, offset, Kind::number);
        if (node.isLittleEndian && node.size > 1) return;
        Step& step = run.steps.back();
        const unsigned bits = 8 * node.size;
        step.shift = static_cast<std::uint8_t>(64 - bits);
        if (node.scalar == Scalar::floating)
            step.kind = node.size == 8 ? Kind::float64 : Kind::float32;
        else if (node.scalar == Scalar::unsignedInteger)
            step.count = bits == 64 ? std::uint64_t{1} << 63 : std::uint64_t{1} << bits;
        else
        {
            // The largest of 64 bits goes the long way.
            step.least = ~std::uint64_t{0} << (bits - 1);
            step.count = bits == 64 ? ~std::uint64_t{0} : std::uint64_t{1} << bits;
        }
    }

    // Eight octets are written with a number; what is more before the next one has to be set to
    // zero. Octets are written with nothing.
    void checkGap(Step& step) const
    {
        const Step& next = *(&step + 1);
        if (step.kind <= Kind::float64 && next.offset > step.offset + 8)
        {
            step.kind = Kind::number;
            step.count = 0;
        }
        if (step.kind != Kind::octets && step.kind != Kind::text) return;
        const Node& array = plan.nodes[step.node];
        const bool isPlain = array.isFixed && array.size == array.count;
        if (isPlain && next.offset == step.offset + array.size) step.least = array.size;
    }
};

ValueWriter::Parts::Run& ValueWriter::Parts::makeRun(std::uint32_t node)
{
    std::unique_ptr<Run>& run = runs[node];
    run = std::make_unique<Run>();
    run->id = node;
    run->node = &plan.nodes[node];
    RunMaker{plan, *run}.make();
    return *run;
}

// One without steps where an alternative is more than steps.
ValueWriter::Parts::Run& ValueWriter::Parts::joinedRun(Run& run, std::uint32_t alternative)
{
    std::unique_ptr<Run>& joined = run.joined[alternative];
    if (joined) return *joined;
    joined = std::make_unique<Run>();
    const Node& variant = *run.variant;
    const Run& contents = runOf(plan.parts[variant.first + alternative].node);
    if (!contents.isWhole || !contents.isSized || contents.isEmpty) return *joined;
    const bool isField = run.node->form == Form::record;
    joined->id = run.id;
    joined->node = run.node;
    joined->steps = run.steps;
    joined->steps.pop_back();
    const std::uint32_t offset = run.variantOffset + variant.body;
    for (Step step : contents.steps)
    {
        step.offset += offset;
        joined->steps.push_back(step);
    }
    joined->end = offset + contents.end;
    joined->fields = run.fields + (isField ? 1 : 0);
    joined->isWhole = !isField || joined->fields == run.node->parts;
    joined->height = std::max(run.height, contents.height + (isField ? 2 : 1));
    joined->alternative = alternative;
    joined->contents = joined->steps.data() + run.steps.size() - 1;
    joined->length = contents.end;
    return *joined;
}

}  // namespace omt
