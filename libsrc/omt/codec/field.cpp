// SPDX-License-Identifier: Apache-2.0
// A field is a way of steps through the plan. Where all steps lead over fixed places, or over one
// variant record at a fixed place, it is a check and a load.
#include "omt/codec/quickIndex.h"
#include "omt/codec/valueParts.h"

#include <bit>
#include <cstring>

namespace omt
{

std::optional<Field> Type::findField(std::string_view path) const
{
    Field field(myPlan, myNode);
    field.myRoot = myNode;
    field.myIsDirect = true;
    std::uint64_t offset = 0;
    bool isWrong = false;
    while (const std::optional<PathStep> step = takeStep(path, isWrong))
    {
        const Node& node = myPlan->nodes[field.myNode];
        using What = Field::Step::What;
        Field::Step one{What::part, field.myNode, step->index};
        if (node.form == Form::array && step->index != theNone)
        {
            if (node.extent == Extent::fixed && step->index >= node.count) return std::nullopt;
            one.what = What::element;
            field.myIsDirect = field.myIsDirect && node.isFixed;
            offset += std::uint64_t{step->index} * node.stride;
            field.myNode = node.element;
        }
        else if ((node.form == Form::record || node.form == Form::variant) &&
                 step->index == theNone)
        {
            one.index = myPlan->findPart(node, step->name);
            if (one.index == theNone) return std::nullopt;
            const Part& part = myPlan->parts[node.first + one.index];
            if (node.form == Form::variant && one.index > 0)
            {
                one.what = What::alternative;
                field.myIsDirect =
                    field.myIsDirect && field.myVariant == theNone && node.length == Length::none;
                field.myVariant = static_cast<std::uint32_t>(&node - myPlan->nodes.data());
                field.myVariantOffset = static_cast<std::uint32_t>(offset);
                field.myAlternative = one.index;
                offset += node.body;
            }
            else if (node.form == Form::variant)
                // Its number has to be looked at.
                field.myIsDirect = field.myIsDirect && node.length != Length::none;
            else
            {
                const bool isPlaced = part.offset != theNone && part.decider == theNone;
                field.myIsDirect = field.myIsDirect && isPlaced;
                offset += isPlaced ? part.offset : 0;
            }
            field.myNode = part.node;
        }
        else
            return std::nullopt;
        field.mySteps.push_back(one);
    }
    if (isWrong) return std::nullopt;
    const Node& node = myPlan->nodes[field.myNode];
    field.myIsDirect = field.myIsDirect && node.isFixed && offset < theLargestSize;
    field.myOffset = static_cast<std::uint32_t>(offset);
    field.mySize = node.size;
    field.myIsDouble = node.form == Form::number && node.scalar == Scalar::floating &&
                       node.size == 8 && !node.isLittleEndian;
    if (field.myIsDirect) field.expect();
    return field;
}

// Most alternatives have one number, whose octets are then compared as they stand.
void Field::expect()
{
    if (myVariant == theNone) return;
    const Node& variant = myPlan->nodes[myVariant];
    const Choices& choices = myPlan->choices[variant.table];
    const Node& discriminant = myPlan->nodes[variant.element];
    const Choices::Range* found = nullptr;
    for (const Choices::Range& row : choices.numbers)
    {
        if (row.alternative != myAlternative) continue;
        if (found) return;
        found = &row;
    }
    if (!found || choices.other == myAlternative) return;
    const auto bits = static_cast<std::uint64_t>(found->number);
    for (std::uint32_t i = 0; i < discriminant.size; ++i)
        myExpected[discriminant.isLittleEndian ? i : discriminant.size - 1 - i] =
            static_cast<std::uint8_t>(bits >> 8 * i);
    // A number that the discriminant cannot hold is never there.
    if (loadInteger(discriminant, myExpected) == found->number) myExpectedSize = discriminant.size;
}

bool Field::find(Octets value, std::size_t& at, std::size_t& end) const
{
    if (!myIsDirect) return findQuickly(value, at, end) || findSlowly(value, at, end);
    at = myOffset;
    end = at + mySize;
    if (end > value.size()) return false;
    if (myVariant == theNone) return true;
    if (myExpectedSize == 1) return value[myVariantOffset] == myExpected[0];
    if (myExpectedSize > 0)
        return std::memcmp(value.data() + myVariantOffset, myExpected, myExpectedSize) == 0;
    const Node& variant = myPlan->nodes[myVariant];
    const std::int64_t number =
        loadInteger(myPlan->nodes[variant.element], value.data() + myVariantOffset);
    return myPlan->findAlternative(variant, number) == myAlternative;
}

// Pieces before the part are passed over, where nothing about them is odd.
bool Field::findQuickly(Octets value, std::size_t& at, std::size_t& end) const
{
    using Quick = QuickIndexer<false>;
    Quick quick(*myPlan, value, nullptr);
    Quick::Around around{value.size(), 0, 0};
    at = 0;
    for (const Step& step : mySteps)
    {
        const Node& node = myPlan->nodes[step.node];
        if (step.what == Step::What::element)
            at = quick.element(node, step.index, at, around);
        else if (step.what == Step::What::alternative)
            at = quick.alternative(node, step.index, at, around);
        else if (node.form == Form::record)
            at = quick.field(node, step.index, at, around);
        else if (quick.isKnown(node, at, around))
            around.depth += 1;
        else
            return false;
        if (at == theOdd) return false;
    }
    end = quick.piece(myNode, at, around);
    return end != theOdd;
}

// Over pieces of open size the value is indexed, which tells where they stand.
bool Field::findSlowly(Octets value, std::size_t& at, std::size_t& end) const
{
    Index index;
    indexValue(*myPlan, myRoot, value, index);
    const omt::Steps steps(*myPlan, index);
    Spot spot = steps.root(myRoot);
    for (const Step& step : mySteps)
    {
        if (!spot.isThere()) return false;
        const Spot from = spot;
        const Node& node = myPlan->nodes[from.node];
        const Part* const wanted = &myPlan->parts[node.first + step.index];
        const Part* part = nullptr;
        spot = {};
        if (step.what == Step::What::element)
            spot = steps.element(from, step.index);
        else if (node.form == Form::variant && step.what == Step::What::part)
            spot = {node.element, from.offset};
        else if (step.what == Step::What::alternative)
            spot = steps.alternative(from, part);
        else
            steps.forEachField(from,
                               [&](const Part& one, const Spot& place)
                               {
                                   if (&one != wanted) return true;
                                   spot = place;
                                   return false;
                               });
        if (step.what == Step::What::alternative && part != wanted) return false;
    }
    if (!spot.isThere()) return false;
    at = spot.offset;
    end =
        spot.entry == theNone ? at + myPlan->nodes[spot.node].size : index.entries[spot.entry].end;
    return end <= index.octets;
}

std::optional<Octets> Field::octets(Octets value) const
{
    std::size_t at = 0;
    std::size_t end = 0;
    if (!find(value, at, end)) return std::nullopt;
    return Octets(value.data() + at, end - at);
}

std::optional<double> Field::number(Octets value) const
{
    std::size_t at = 0;
    std::size_t end = 0;
    if (myIsDouble)
    {
        if (!find(value, at, end)) return std::nullopt;
        std::uint64_t bits;
        std::memcpy(&bits, value.data() + at, sizeof bits);
        return std::bit_cast<double>(__builtin_bswap64(bits));
    }
    const Node& node = myPlan->nodes[myNode];
    if (node.form != Form::number || !find(value, at, end)) return std::nullopt;
    return loadNumber(node, value.data() + at);
}

std::optional<std::int64_t> Field::integer(Octets value) const
{
    std::size_t at = 0;
    std::size_t end = 0;
    const Node& node = myPlan->nodes[myNode];
    const bool isInteger = node.form == Form::number && node.scalar != Scalar::floating;
    if (!isInteger || !find(value, at, end)) return std::nullopt;
    return loadInteger(node, value.data() + at);
}

std::optional<std::string_view> Field::label(Octets value) const
{
    const Node& node = myPlan->nodes[myNode];
    const std::optional<std::int64_t> number = integer(value);
    if (!number || node.table == theNone) return std::nullopt;
    const Enumeration& table = myPlan->enumerations[node.table];
    const std::uint32_t entry = Plan::findEntry(table, *number);
    if (entry == theNone) return std::nullopt;
    return myPlan->text(table.entries[entry].name);
}

std::optional<std::string> Field::text(Octets value) const
{
    if (type().kind() != ValueKind::text) return std::nullopt;
    const std::optional<Octets> found = octets(value);
    if (!found) return std::nullopt;
    return type().decode(*found).root().text();
}

}  // namespace omt
