// SPDX-License-Identifier: Apache-2.0
// A field is a way of steps through the plan. Where all of them lead over fixed places, or over one
// alternative or element at a fixed place, it is a check and a load.
#include "omt/codec/jsonNumbers.h"
#include "omt/codec/quickIndex.h"
#include "omt/codec/valueParts.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace omt
{

std::optional<Field> Type::findField(std::string_view path) const
{
    Field field(myPlan, myNode);
    field.myRoot = myNode;
    bool isWrong = false;
    while (const std::optional<PathStep> step = takeStep(path, isWrong))
    {
        const Node& node = myPlan->nodes[field.myNode];
        using What = Field::Step::What;
        Field::Step one{What::element, field.myNode, step->index};
        if (node.form == Form::array && step->index != theNone)
        {
            if (node.extent == Extent::fixed && step->index >= node.count) return std::nullopt;
            // An element of zeros would end the array.
            field.myIsDecisive = node.extent == Extent::terminated;
            field.myNode = node.element;
        }
        else if ((node.form == Form::record || node.form == Form::variant) &&
                 step->index == theNone)
        {
            one.index = myPlan->findPart(node, step->name);
            if (one.index == theNone) return std::nullopt;
            const bool isAlternative = node.form == Form::variant && one.index > 0;
            one.what = isAlternative ? What::alternative : What::part;
            const Part& part = myPlan->parts[node.first + one.index];
            field.myIsDecisive = (field.myIsDecisive && node.form == Form::record) ||
                                 part.isLookedAt || (node.form == Form::variant && !isAlternative);
            field.myNode = part.node;
        }
        else
            return std::nullopt;
        field.mySteps.push_back(one);
    }
    if (isWrong) return std::nullopt;
    field.place();
    field.placeEnd();
    field.placeInForks();
    return field;
}

// Fixed places -----------------------------------------------------------------------------------

// Finds out whether the part has a fixed place, after at most one check.
void Field::place()
{
    const Node& node = myPlan->nodes[myNode];
    if (!node.isFixed) return;
    std::uint64_t at = 0;
    for (const Step& step : mySteps)
    {
        const Node& from = myPlan->nodes[step.node];
        const Part* const part =
            step.what == Step::What::element ? nullptr : &myPlan->parts[from.first + step.index];
        if (part && part->decider != theNone) return;
        if (at > theLargestSize) return;
        if (part && from.form == Form::record)
        {
            if (part->offset == theNone) return;
            at += part->offset;
        }
        else if (part && !expect(step, at))
            return;
        else if (part)
            at += step.index > 0 ? from.body : 0;
        else if (from.isFixed)
            at += std::uint64_t{step.index} * from.stride;
        else if (!expectElement(step, at))
            return;
        else
            at += from.body + std::uint64_t{step.index} * from.stride;
    }
    if (at + node.size > theLargestSize) return;
    myPlace = static_cast<std::uint32_t>(at);
    myEnd = myPlace + node.size;
    constexpr std::uint32_t theWindow = sizeof myMask;
    if (myCheck == Check::octets && myEnd < theWindow) return;
    if (myCheck == Check::octets && myCheckPlace > myEnd - theWindow)
    {
        // Eight octets that end where the part does.
        const std::uint32_t shift = 8 * (myCheckPlace - (myEnd - theWindow));
        myCheckPlace = myEnd - theWindow;
        myMask <<= shift;
        myWanted <<= shift;
    }
    myIsFixed = true;
    setLoad();
}

// The last steps are one, where they lead to a place that is fixed after those before.
void Field::placeEnd()
{
    myOpenSteps = mySteps.size();
    if (myPlan->nodes[myNode].quick != QuickForm::plain) return;
    std::uint64_t rest = 0;
    for (; myOpenSteps > 0; --myOpenSteps)
    {
        const Step& step = mySteps[myOpenSteps - 1];
        const Node& from = myPlan->nodes[step.node];
        if (step.what == Step::What::element && from.isFixed)
            rest += std::uint64_t{step.index} * from.stride;
        else if (step.what == Step::What::part && from.form == Form::record && !from.isLooking)
        {
            const std::uint32_t offset = myPlan->parts[from.first + step.index].offset;
            if (offset == theNone) break;
            rest += offset;
        }
        else
            break;
        if (rest > theLargestSize) break;
        myRest = static_cast<std::uint32_t>(rest);
    }
}

// The discriminant of an alternative that has one number. All others have to be looked up, and so
// has the discriminant itself, which is no part where it is none.
bool Field::expect(const Step& step, std::uint64_t at)
{
    const Node& variant = myPlan->nodes[step.node];
    if (step.what == Step::What::part) return variant.length != Length::none;
    const Choices& choices = myPlan->choices[variant.table];
    if (myCheck != Check::size || variant.length != Length::none || choices.other == step.index)
        return false;
    const auto isWanted = [&step](const Choices::Range& row)
    { return row.alternative == step.index; };
    const auto& numbers = choices.numbers;
    const auto found = std::find_if(numbers.begin(), numbers.end(), isWanted);
    if (found == numbers.end() || std::any_of(found + 1, numbers.end(), isWanted)) return false;
    const Node& discriminant = myPlan->nodes[variant.element];
    if (discriminant.size > sizeof myWanted || !isInRange(discriminant, found->number))
        return false;
    std::uint8_t octets[2][sizeof myWanted] = {};
    storeBits(discriminant, static_cast<std::uint64_t>(found->number), octets[0]);
    storeBits(discriminant, ~std::uint64_t{0}, octets[1]);
    std::memcpy(&myWanted, octets[0], sizeof myWanted);
    std::memcpy(&myMask, octets[1], sizeof myMask);
    myCheck = Check::octets;
    myCheckPlace = static_cast<std::uint32_t>(at);
    return true;
}

// An element of an array with a count, without padding between elements.
bool Field::expectElement(const Step& step, std::uint64_t at)
{
    const Node& array = myPlan->nodes[step.node];
    const Node& element = myPlan->nodes[array.element];
    if (myCheck != Check::size || array.extent != Extent::counted || !element.isFixed ||
        array.stride != element.size || element.size == 0 || step.index > theLargestSize)
        return false;
    myCheck = Check::count;
    myCheckPlace = static_cast<std::uint32_t>(at);
    myIndex = static_cast<std::int32_t>(step.index);
    myFirst = myCheckPlace + array.body;
    myStride = array.stride;
    return true;
}

void Field::setLoad()
{
    const Node& node = myPlan->nodes[myNode];
    if (node.form != Form::number || (node.isLittleEndian && node.size > 1)) return;
    if (node.scalar == Scalar::floating)
    {
        myLoad = node.size == 4 ? Load::float32 : Load::float64;
        return;
    }
    const bool isSigned = node.scalar == Scalar::signedInteger;
    const int bits = static_cast<int>(8 * node.size);
    myShift = isSigned ? static_cast<std::uint8_t>(64 - bits) : std::uint8_t{0};
    myLeast = isSigned ? -std::ldexp(1, bits - 1) : 0;
    myMost = std::ldexp(1, isSigned ? bits - 1 : bits) - 1;
    myLoad = node.size == 1   ? Load::octet
             : node.size == 2 ? Load::big16
             : node.size == 4 ? Load::big32
                              : Load::other;
}

// A part of an element of an array of forks, which stands at a fixed place in this element.
void Field::placeInForks()
{
    if (mySteps.empty() || myPlan->nodes[myNode].quick != QuickForm::plain) return;
    const Node& array = myPlan->nodes[mySteps[0].node];
    if (array.quick != QuickForm::array || mySteps[0].index > theLargestSize) return;
    const Node& element = myPlan->nodes[array.element];
    if (array.extent != Extent::counted && array.extent != Extent::lengthless) return;
    if (element.quick != QuickForm::fork) return;
    std::uint64_t at = 0;
    for (std::size_t i = 1; i < mySteps.size(); ++i)
    {
        const Step& step = mySteps[i];
        const Node& from = myPlan->nodes[step.node];
        if (step.what == Step::What::element && !from.isFixed) return;
        if (step.what == Step::What::element)
            at += std::uint64_t{step.index} * from.stride;
        else if (from.form == Form::record)
            at += myPlan->parts[from.first + step.index].offset;
        else if (step.what == Step::What::part)
            return;
        else
        {
            at += from.body;
            myAlternative = step.index;
        }
        if (at > theLargestSize) return;
    }
    myFork = element.fork;
    myIndex = static_cast<std::int32_t>(mySteps[0].index);
    myFirst = array.extent == Extent::counted ? array.body : 0;
    myPlace = static_cast<std::uint32_t>(at);
}

// Any place --------------------------------------------------------------------------------------

bool Field::find(Octets value, std::size_t& at, std::size_t& end) const
{
    if (myFork != theNone && findInForks(value, at, end)) return true;
    if (!myIsFixed) return findQuickly(value, at, end) || findSlowly(value, at, end);
    at = myPlace;
    end = myEnd;
    return isThere(value);
}

// Usual elements before it are passed over.
bool Field::findInForks(Octets value, std::size_t& at, std::size_t& end) const
{
    const Node& array = myPlan->nodes[myRoot];
    const Node& element = myPlan->nodes[array.element];
    const Fork& fork = myPlan->forks[myFork];
    const auto index = static_cast<std::uint32_t>(myIndex);
    if (value.size() < myFirst) return false;
    if (array.extent == Extent::counted)
    {
        const std::uint64_t count = big32(value.data());
        if (index >= count || count > theLargestSize ||
            array.stride * (count - 1) + element.size > value.size() - myFirst)
            return false;
    }
    at = myFirst;
    const std::size_t boundary = array.boundary == 1 ? 1 : element.boundary;
    const ForkRow row{fork, boundary, value.data(), value.size()};
    if (passForks<false>(*myPlan, row, 0, at, index, nullptr) != index) return false;
    if ((at & (boundary - 1)) != 0) return false;
    std::uint32_t alternative = myAlternative;
    const bool isWanted =
        myAlternative == theNone || (sizeOfFork<false>(*myPlan, fork, value.data() + at,
                                                       value.size() - at, alternative) != theOdd &&
                                     alternative == myAlternative);
    at += myPlace;
    end = at + myPlan->nodes[myNode].size;
    return isWanted && end <= value.size();
}

// Pieces before the part are passed over, where nothing about them is odd.
bool Field::findQuickly(Octets value, std::size_t& at, std::size_t& end) const
{
    using Quick = QuickIndexer<false>;
    Quick quick(*myPlan, value, nullptr);
    Quick::Around around{value.size(), 0, 0};
    at = 0;
    for (std::size_t i = 0; i < myOpenSteps; ++i)
    {
        const Step& step = mySteps[i];
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
    const Node& node = myPlan->nodes[myNode];
    if (node.quick != QuickForm::plain)
    {
        end = quick.piece(myNode, at, around);
        return end != theOdd;
    }
    at += myRest;
    end = at + node.size;
    return end <= around.limit;
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

std::optional<double> Field::findNumber(Octets value) const
{
    std::size_t at = 0;
    std::size_t end = 0;
    const Node& node = myPlan->nodes[myNode];
    if (node.form != Form::number || !find(value, at, end)) return std::nullopt;
    return loadNumber(node, value.data() + at);
}

namespace
{

/// The bits of a number of this node, where it can be this number.
std::optional<std::uint64_t> bitsOf(const Node& node, double number)
{
    if (node.scalar == Scalar::floating)
    {
        if (node.size == 8) return std::bit_cast<std::uint64_t>(number);
        const auto rounded = static_cast<float>(number);
        if (std::isinf(rounded) && !std::isinf(number)) return std::nullopt;
        return std::bit_cast<std::uint32_t>(rounded);
    }
    const bool isUnsigned = node.scalar == Scalar::unsignedInteger;
    const double end = isUnsigned ? 0x1p64 : 0x1p63;
    if (!(number >= (isUnsigned ? 0 : -end) && number < end) || std::trunc(number) != number)
        return std::nullopt;
    const auto bits = isUnsigned ? static_cast<std::uint64_t>(number)
                                 : static_cast<std::uint64_t>(static_cast<std::int64_t>(number));
    if (!isInRange(node, static_cast<std::int64_t>(bits))) return std::nullopt;
    return bits;
}

}  // namespace

bool Field::writeAny(std::uint8_t* octets, std::size_t size, double number) const
{
    std::size_t at = 0;
    std::size_t end = 0;
    const Node& node = myPlan->nodes[myNode];
    if (myIsDecisive || node.form != Form::number) return false;
    const std::optional<std::uint64_t> bits = bitsOf(node, number);
    if (!bits || !find({octets, size}, at, end)) return false;
    storeBits(node, *bits, octets + at);
    return true;
}

std::optional<std::int64_t> Field::findInteger(Octets value) const
{
    std::size_t at = 0;
    std::size_t end = 0;
    const Node& node = myPlan->nodes[myNode];
    const bool isInteger = node.form == Form::number && node.scalar != Scalar::floating;
    if (!isInteger || !find(value, at, end)) return std::nullopt;
    return omt::loadInteger(node, value.data() + at);
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
