// SPDX-License-Identifier: Apache-2.0
// ValueWriter: numbers and texts.
#include "omt/codec/valueWriter.h"

#include "omt/codec/jsonNumbers.h"
#include "omt/codec/valueParts.h"
#include "omt/codec/valueWriterParts.h"
#include "omt/codec/writtenTexts.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>

namespace omt
{

ValueWriter::ValueWriter(const Type& type)
    : myParts(std::make_unique<Parts>(myCursor, type.myPlan, type.myNode))
{
    const Parts::Run& run = *myParts->root;
    const bool isSteps = run.isWhole && run.isSized && myParts->isSure;
    if (isSteps) myWhole = {run.steps.data(), &run.steps.back()};
}

ValueWriter::ValueWriter(ValueWriter&& other) noexcept
{
    *this = std::move(other);
}

ValueWriter& ValueWriter::operator=(ValueWriter&& other) noexcept
{
    if (this == &other) return *this;
    myCursor = other.myCursor;
    myWhole = other.myWhole;
    myParts = std::move(other.myParts);
    if (myParts) myParts->cursor = &myCursor;
    return *this;
}

ValueWriter::~ValueWriter() = default;

// Numbers ----------------------------------------------------------------------------------------

// What comes first after a discriminant, or in an element, is written here as anywhere else.
void ValueWriter::writeInteger(std::int64_t number, bool isUnsigned)
{
    if (myCursor.step->kind == Kind::end && myParts->advance())
    {
        const Step& step = *myCursor.step;
        const auto bits = static_cast<std::uint64_t>(number);
        if ((number >= 0 || !isUnsigned) && bits - step.least < step.count)
            return store(step, bits << step.shift);
    }
    myParts->writeInteger(number, isUnsigned);
}

void ValueWriter::writeNumber(double number)
{
    if (myCursor.step->kind == Kind::end && myParts->advance() &&
        myCursor.step->kind == Kind::float64)
        return store(*myCursor.step, std::bit_cast<std::uint64_t>(number));
    myParts->writeNumber(number);
}

void ValueWriter::writeFloat(float number)
{
    myParts->writeFloat(number);
}

// What is usual with a single store, as where a call is inlined.
void ValueWriter::Parts::writeBits(const Step& step, std::uint64_t bits)
{
    const Node& node = nodeOf(step);
    const std::size_t place = placeOf(step);
    if (step.count > 0 || step.kind != Kind::number)
    {
        const std::uint64_t stored = __builtin_bswap64(bits << (64 - 8 * node.size));
        std::memcpy(octets.data() + place, &stored, sizeof stored);
        cursor->step = &step + 1;
        return;
    }
    storeBits(node, bits, octets.data() + place);
    pass(step, place + node.size);
}

void ValueWriter::Parts::writeInteger(std::int64_t number, bool isUnsigned)
{
    const Step* const step = reach();
    if (!step) return;
    if (step->kind > Kind::float64) return failExpecting(*step);
    const auto bits = static_cast<std::uint64_t>(number);
    const bool isBelow = number >= 0 || !isUnsigned;
    if (isBelow && bits - step->least < step->count) return writeBits(*step, bits);
    const Node& node = nodeOf(*step);
    if (node.scalar == Scalar::floating)
        return writeNumber(isUnsigned ? static_cast<double>(bits) : static_cast<double>(number));
    const bool isOfThem = node.scalar == Scalar::unsignedInteger;
    if ((number < 0 && isOfThem != isUnsigned) || !isInRange(node, number))
        return fail(rangeComplaint(plan, node, number, isUnsigned));
    writeBits(*step, bits);
}

namespace
{

std::string shortest(double number)
{
    char text[40];
    return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

}  // namespace

void ValueWriter::Parts::writeNumber(double number)
{
    const Step* const step = reach();
    if (!step) return;
    if (step->kind > Kind::float64) return failExpecting(*step);
    const Node& node = nodeOf(*step);
    if (node.scalar != Scalar::floating)
    {
        constexpr double theLimit = 18446744073709551616.0;
        if (std::trunc(number) != number) return fail(shortest(number) + " is no whole number");
        if (number >= -theLimit / 2 && number < theLimit / 2)
            return writeInteger(static_cast<std::int64_t>(number), false);
        if (number > 0 && number < theLimit)
            return writeInteger(static_cast<std::int64_t>(static_cast<std::uint64_t>(number)),
                                true);
    }
    const auto rounded = static_cast<float>(number);
    const bool isOutside = node.size == 4 && std::isfinite(number) && !std::isfinite(rounded);
    if (node.scalar != Scalar::floating || isOutside)
        return fail(shortest(number) + " is out of range of " + std::string(plan.text(node.name)));
    if (node.size == 8) return writeBits(*step, std::bit_cast<std::uint64_t>(number));
    writeBits(*step, std::bit_cast<std::uint32_t>(rounded));
}

void ValueWriter::Parts::writeFloat(float number)
{
    const Step* const step = reach();
    if (!step) return;
    const bool isFloat = step->kind <= Kind::float64 && nodeOf(*step).size == 4 &&
                         nodeOf(*step).scalar == Scalar::floating;
    if (isFloat) return writeBits(*step, std::bit_cast<std::uint32_t>(number));
    writeNumber(static_cast<double>(number));
}

// The names of the next piece; null after an error.
const Enumeration* ValueWriter::Parts::reachTable(const Step*& step)
{
    step = reach();
    if (!step) return nullptr;
    const bool isNumber = step->kind <= Kind::float64;
    if (isNumber && nodeOf(*step).table != theNone) return &plan.enumerations[nodeOf(*step).table];
    failExpecting(*step, isNumber ? "without names is expected" : "is expected");
    return nullptr;
}

void ValueWriter::label(std::string_view name)
{
    const Step* step = nullptr;
    const Enumeration* const table = myParts->reachTable(step);
    if (!table) return;
    const std::uint32_t entry = myParts->plan.findEntry(*table, name);
    const Node& node = myParts->nodeOf(*step);
    if (entry == theNone) return myParts->fail(nameComplaint(myParts->plan, node, name));
    myParts->writeInteger(table->entries[entry].number, node.scalar == Scalar::unsignedInteger);
}

void ValueWriter::label(std::string_view name, std::int64_t number)
{
    const Step* step = nullptr;
    const Enumeration* const table = myParts->reachTable(step);
    if (!table) return;
    const Plan& plan = myParts->plan;
    const std::uint32_t entry = Plan::findEntry(*table, number);
    const Node& node = myParts->nodeOf(*step);
    if (entry == theNone || plan.text(table->entries[entry].name) != name)
        return myParts->fail("\"" + std::string(name) + "\" does not have this number");
    myParts->writeInteger(number, node.scalar == Scalar::unsignedInteger);
}

// Texts, octets, arrays --------------------------------------------------------------------------

template <typename Letters>
void ValueWriter::Parts::writeText(Letters letters)
{
    const Step* const step = reach();
    if (!step) return;
    if (step->kind != Kind::text) return failExpecting(*step);
    const Node& array = nodeOf(*step);
    const Node& element = plan.nodes[array.element];
    const std::size_t first = placeOf(*step) + (array.extent == Extent::counted ? 4 : 0);
    const bool isFilled = array.look == Look::text && array.extent == Extent::fixed;
    const std::size_t most = std::max(letters.size(), std::size_t{isFilled ? array.count : 0});
    std::uint8_t* const at = room(first, most * element.size);
    std::size_t count = 0;
    if (const char* const wrong = storeText(element, letters, at, count)) return fail(wrong);
    if (array.look == Look::text && textSize(at, count) != count) return fail("a zero ends a text");
    if (isFilled && count < array.count)
    {
        std::memset(at + count, 0, array.count - count);
        count = array.count;
    }
    writeElements(*step, first, count);
}

void ValueWriter::text(std::string_view text)
{
    myParts->writeText(text);
}

void ValueWriter::text(std::u16string_view text)
{
    myParts->writeText(text);
}

void ValueWriter::writeOctets(Octets octets)
{
    myParts->writeOctets(octets);
}

void ValueWriter::Parts::writeOctets(Octets others)
{
    const Step* const step = reach();
    if (!step) return;
    const bool isKept = step == &theKept;
    const bool isText = step->kind == Kind::text && plan.nodes[nodeOf(*step).element].size == 1;
    if (step->kind != Kind::octets && !isText) return failExpecting(*step);
    const bool isArray = !isKept && nodeOf(*step).form == Form::array;
    const bool isCounted = isArray && nodeOf(*step).extent == Extent::counted;
    const std::size_t first = isKept ? size : placeOf(*step) + (isCounted ? 4 : 0);
    std::uint8_t* const at = room(first, others.size());
    if (others.size() > 0) std::memcpy(at, others.data(), others.size());
    if (isArray) return writeElements(*step, first, others.size());
    size = first + others.size();
    cursor->step = &theEnd;
}

// After the octets of all elements: whether there may be so many, and what stands around them.
void ValueWriter::Parts::writeElements(const Step& step, std::size_t first, std::size_t count)
{
    const Node& array = nodeOf(step);
    const std::size_t each = plan.nodes[array.element].size;
    const std::size_t place = placeOf(step);
    std::size_t end = first + count * each;
    const auto isZero = [](std::uint8_t octet) { return octet == 0; };
    if (!isCount(array, count, place)) return fail(countComplaint(array, count, place));
    if (array.extent == Extent::counted)
    {
        const std::uint32_t stored = __builtin_bswap32(static_cast<std::uint32_t>(count));
        std::memcpy(octets.data() + place, &stored, sizeof stored);
    }
    if (array.extent == Extent::terminated)
    {
        for (const std::uint8_t* at = octets.data() + first; at != octets.data() + end; at += each)
            if (std::all_of(at, at + each, isZero)) return fail("a zero ends the array");
        std::memset(room(end, each), 0, each);
        end += each;
    }
    elements = count;
    pass(step, end);
}

void ValueWriter::beginArray(std::size_t count)
{
    Parts& parts = *myParts;
    const Step* const step = parts.reach();
    if (!step) return;
    if (step->kind != Kind::array && step->kind != Kind::fixedArray)
        return parts.failExpecting(*step);
    const Node& array = parts.nodeOf(*step);
    const std::size_t place = parts.placeOf(*step);
    if (count > theLargestSize) return parts.fail("too many elements");
    if (!isCount(array, count, place)) return parts.fail(countComplaint(array, count, place));
    myCursor.step = step + 1;
    if (step->kind == Kind::fixedArray) return;
    parts.size = place;
    parts.top().stage = Parts::Stage::parts;
    parts.top().index = 0;
    parts.top().count = static_cast<std::uint32_t>(count);
    Parts::Run& element = parts.runOf(array.element);
    const bool isFree = array.extent != Extent::terminated && !element.isEmpty &&
                        element.steps.front().offset == 0 && !element.node->isLooking;
    parts.top().element = isFree ? &element : nullptr;
    if (array.extent != Extent::counted) return;
    const std::uint32_t stored = __builtin_bswap32(parts.top().count);
    std::memcpy(parts.room(place, sizeof stored), &stored, sizeof stored);
    parts.size += sizeof stored;
}

// The end ----------------------------------------------------------------------------------------

std::optional<ValueError> ValueWriter::finishAny(Octets& octets)
{
    Parts& parts = *myParts;
    if (parts.isAtEnd())
    {
        octets = {parts.octets.data(), parts.size};
        parts.begin();
        return std::nullopt;
    }
    while (myCursor.step->kind == Kind::end) parts.move();
    if (myCursor.step->kind < Kind::end) parts.failExpecting(*myCursor.step, "is missing");
    octets = {parts.octets.data(), parts.size};
    std::optional<ValueError> error;
    if (!parts.error && !isSure(*parts.root->node, parts.size))
    {
        indexValue(parts.plan, parts.root->id, octets, parts.again);
        error = refusal(parts.again, parts.size);
    }
    if (parts.error) error.swap(parts.error);
    if (error) octets = {};
    parts.begin();
    return error;
}

std::optional<ValueError> ValueWriter::finish(std::vector<std::uint8_t>& octets)
{
    Octets written;
    std::optional<ValueError> error = finish(written);
    octets.insert(octets.end(), written.begin(), written.end());
    return error;
}

void ValueWriter::clear()
{
    myParts->error.reset();
    myParts->begin();
}

}  // namespace omt
