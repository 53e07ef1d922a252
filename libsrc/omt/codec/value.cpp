// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/value.h"

#include "omt/base/character.h"
#include "omt/codec/valueParts.h"

#include <charconv>
#include <cmath>

namespace omt
{

namespace
{

const std::optional<Fault> theNoFault;
const std::vector<ValueNote> theNoNotes;

}  // namespace

ValueKind kindOf(const Plan&, const Node& node)
{
    switch (node.form)
    {
        case Form::number:
            return node.table == theNone ? ValueKind::number : ValueKind::enumerated;
        case Form::record:
            return ValueKind::record;
        case Form::variant:
            return ValueKind::variant;
        case Form::octets:
            return ValueKind::octets;
        case Form::array:
            break;
    }
    return node.look == Look::elements      ? ValueKind::array
           : node.look == Look::hexadecimal ? ValueKind::octets
                                            : ValueKind::text;
}

void appendLatin1(std::string& text, const std::uint8_t* octets, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) appendUtf8(text, octets[i]);
}

void appendUtf16(std::string& text, const Node& element, const std::uint8_t* octets,
                 std::size_t count)
{
    const auto load = [&](std::size_t i)
    { return static_cast<std::uint32_t>(loadInteger(element, octets + 2 * i) & 0xFFFF); };
    for (std::size_t i = 0; i < count; ++i)
    {
        std::uint32_t code = load(i);
        const std::uint32_t next = i + 1 < count ? load(i + 1) : 0;
        if ((code & 0xFC00) == 0xD800 && (next & 0xFC00) == 0xDC00)
        {
            code = 0x10000 + ((code & 0x3FF) << 10) + (next & 0x3FF);
            ++i;
        }
        appendUtf8(text, code);
    }
}

std::optional<std::string> textOf(const Plan& plan, std::uint32_t id, const std::uint8_t* first,
                                  std::size_t count)
{
    const Node& node = plan.nodes[id];
    if (kindOf(plan, node) != ValueKind::text) return std::nullopt;
    std::string text;
    if (node.look == Look::text) count = textSize(first, count);
    if (node.look != Look::utf16)
        appendLatin1(text, first, count);
    else
        appendUtf16(text, plan.nodes[node.element], first, count);
    return text;
}

// Value ------------------------------------------------------------------------------------------

Octets Value::Parts::octetsOf(const Spot& spot) const
{
    const Node& piece = plan->nodes[spot.node];
    std::uint32_t first = spot.offset;
    std::uint32_t end = spot.offset + piece.size;
    if (spot.entry != theNone)
    {
        const Entry& entry = index.entries[spot.entry];
        end = entry.end;
        if (piece.form == Form::variant && entry.count == theUnknown) first += piece.body;
    }
    end = std::min(end, index.octets);
    return {octets.data() + first, end - std::min(first, end)};
}

Value::Value() = default;
Value::Value(Value&& other) noexcept = default;
Value& Value::operator=(Value&& other) noexcept = default;
Value::~Value() = default;

Value::Value(const Value& other)
{
    *this = other;
}

Value& Value::operator=(const Value& other)
{
    if (this == &other) return *this;
    if (!other.myParts)
    {
        myParts.reset();
        return *this;
    }
    if (!myParts) myParts = std::make_unique<Parts>();
    *myParts = *other.myParts;
    if (other.myParts->isOwner()) myParts->octets = {myParts->owned.data(), myParts->octets.size()};
    return *this;
}

Octets Value::octets() const
{
    if (!myParts) return {};
    return {myParts->octets.data(), myParts->index.octets};
}

std::size_t Value::left() const
{
    return myParts ? myParts->octets.size() - myParts->index.octets : 0;
}

const std::optional<Fault>& Value::fault() const
{
    return myParts ? myParts->index.fault : theNoFault;
}

const std::vector<ValueNote>& Value::notes() const
{
    return myParts ? myParts->index.notes : theNoNotes;
}

Item Value::root() const
{
    const Spot spot = myParts ? myParts->root() : Spot();
    return spot.isThere() ? Item(*this, spot.node, spot.offset, spot.entry) : Item();
}

void Value::appendJson(std::string& text, const JsonOptions& options) const
{
    if (myParts && myParts->plan)
        appendJsonOf(*myParts->plan, myParts->octets.data(), myParts->index, myParts->root(), text,
                     options);
}

std::string Value::json(const JsonOptions& options) const
{
    std::string text;
    appendJson(text, options);
    return text;
}

// Item -------------------------------------------------------------------------------------------

Type Item::type() const
{
    return {myValue->myParts->plan, myNode};
}

ValueKind Item::kind() const
{
    const Plan& plan = *myValue->myParts->plan;
    return kindOf(plan, plan.nodes[myNode]);
}

std::size_t Item::size() const
{
    if (!myValue) return 0;
    const Steps steps = myValue->myParts->steps();
    const Spot spot{myNode, myOffset, myEntry};
    const Node& node = steps.plan.nodes[myNode];
    std::size_t size = 0;
    const Part* part = nullptr;
    switch (node.form)
    {
        case Form::record:
            steps.forEachField(spot, [&size](const Part&, const Spot&) { return ++size != 0; });
            return size;
        case Form::array:
            return steps.count(spot);
        case Form::variant:
            return steps.alternative(spot, part).isThere() ? 2 : 1;
        case Form::number:
        case Form::octets:
            break;
    }
    return 0;
}

namespace
{

/// A field of a record or variant record, by name or by its place among those that are there.
Spot findField(const Steps& steps, const Spot& spot, std::string_view name, std::size_t index,
               const Part*& part)
{
    const Node& node = steps.plan.nodes[spot.node];
    const auto isWanted = [&](const Part& one)
    { return name.data() ? steps.plan.text(one.name) == name : index-- == 0; };
    Spot found;
    if (node.form == Form::record)
        steps.forEachField(spot,
                           [&](const Part& one, const Spot& place)
                           {
                               if (!isWanted(one)) return true;
                               found = place;
                               part = &one;
                               return false;
                           });
    if (node.form != Form::variant) return found;
    part = &steps.plan.parts[node.first];
    if (isWanted(*part)) return {node.element, spot.offset};
    const Spot alternative = steps.alternative(spot, part);
    return alternative.isThere() && isWanted(*part) ? alternative : Spot();
}

}  // namespace

std::string_view Item::name(std::size_t index) const
{
    if (!myValue) return {};
    const Steps steps = myValue->myParts->steps();
    const Part* part = nullptr;
    const Spot spot = findField(steps, {myNode, myOffset, myEntry}, {}, index, part);
    return spot.isThere() ? steps.plan.text(part->name) : std::string_view();
}

Item Item::operator[](std::size_t index) const
{
    if (!myValue) return {};
    const Steps steps = myValue->myParts->steps();
    const Spot spot{myNode, myOffset, myEntry};
    const Part* part = nullptr;
    const bool isArray = steps.plan.nodes[myNode].form == Form::array;
    const Spot found =
        isArray ? index < theNone ? steps.element(spot, static_cast<std::uint32_t>(index)) : Spot()
                : findField(steps, spot, {}, index, part);
    return found.isThere() ? Item(*myValue, found.node, found.offset, found.entry) : Item();
}

void Item::forEach(const std::function<bool(std::string_view, const Item&)>& visit) const
{
    if (!myValue) return;
    const Steps steps = myValue->myParts->steps();
    const Spot spot{myNode, myOffset, myEntry};
    const Node& node = steps.plan.nodes[myNode];
    const auto tell = [&](const Part* part, const Spot& one)
    {
        return visit(part ? steps.plan.text(part->name) : std::string_view(),
                     Item(*myValue, one.node, one.offset, one.entry));
    };
    if (node.form == Form::record)
        steps.forEachField(spot,
                           [&](const Part& part, const Spot& one) { return tell(&part, one); });
    if (node.form == Form::array)
    {
        const std::uint32_t count = steps.count(spot);
        Spot one = steps.element(spot, 0);
        for (std::uint32_t i = 0; i < count && tell(nullptr, one); ++i)
        {
            if (one.entry != theNone) one.entry = steps.index.entries[one.entry].next;
            one.offset = one.entry == theNone ? one.offset + node.stride
                         : i + 1 < count      ? steps.index.entries[one.entry].offset
                                              : one.offset;
        }
    }
    if (node.form != Form::variant) return;
    const Part* part = &steps.plan.parts[node.first];
    if (!tell(part, {node.element, spot.offset})) return;
    const Spot alternative = steps.alternative(spot, part);
    if (alternative.isThere()) tell(part, alternative);
}

Item Item::operator[](std::string_view path) const
{
    if (!myValue) return {};
    const Steps steps = myValue->myParts->steps();
    Spot spot{myNode, myOffset, myEntry};
    bool isWrong = false;
    while (const std::optional<PathStep> step = takeStep(path, isWrong))
    {
        const Part* part = nullptr;
        const bool isArray = steps.plan.nodes[spot.node].form == Form::array;
        if (isArray != (step->index != theNone)) return {};
        spot = isArray ? steps.element(spot, step->index)
                       : findField(steps, spot, step->name, 0, part);
        if (!spot.isThere()) return {};
    }
    return isWrong ? Item() : Item(*myValue, spot.node, spot.offset, spot.entry);
}

std::optional<double> Item::number() const
{
    if (!myValue) return std::nullopt;
    const Node& node = myValue->myParts->plan->nodes[myNode];
    if (node.form != Form::number) return std::nullopt;
    return loadNumber(node, myValue->myParts->octets.data() + myOffset);
}

std::optional<std::int64_t> Item::integer() const
{
    if (!myValue) return std::nullopt;
    const Node& node = myValue->myParts->plan->nodes[myNode];
    if (node.form != Form::number || node.scalar == Scalar::floating) return std::nullopt;
    return loadInteger(node, myValue->myParts->octets.data() + myOffset);
}

std::optional<std::string_view> Item::label() const
{
    const std::optional<std::int64_t> number = integer();
    if (!number) return std::nullopt;
    const Plan& plan = *myValue->myParts->plan;
    const Node& node = plan.nodes[myNode];
    if (node.table == theNone) return std::nullopt;
    const Enumeration& table = plan.enumerations[node.table];
    const std::uint32_t entry = Plan::findEntry(table, *number);
    if (entry == theNone) return std::nullopt;
    return plan.text(table.entries[entry].name);
}

std::optional<std::string> Item::text() const
{
    if (!myValue || kind() != ValueKind::text) return std::nullopt;
    const Steps steps = myValue->myParts->steps();
    const Spot spot{myNode, myOffset, myEntry};
    return textOf(steps.plan, myNode, myValue->myParts->octets.data() + steps.firstElement(spot),
                  steps.count(spot));
}

Octets Item::octets() const
{
    return myValue ? myValue->myParts->octetsOf({myNode, myOffset, myEntry}) : Octets();
}

void Item::appendJson(std::string& text, const JsonOptions& options) const
{
    if (!myValue) return;
    const Value::Parts& parts = *myValue->myParts;
    appendJsonOf(*parts.plan, parts.octets.data(), parts.index, {myNode, myOffset, myEntry}, text,
                 options);
}

// Visitor ----------------------------------------------------------------------------------------

Visitor::~Visitor() = default;
void Visitor::beginRecord(std::string_view) {}
void Visitor::field(std::string_view) {}
void Visitor::endRecord() {}
void Visitor::beginArray(std::size_t) {}
void Visitor::element() {}
void Visitor::endArray() {}
void Visitor::integer(std::int64_t, bool) {}
void Visitor::number(double) {}
void Visitor::label(std::string_view, std::int64_t) {}
void Visitor::text(std::string_view) {}
void Visitor::octets(Octets) {}

namespace
{

class VisitorSink
{
public:
    VisitorSink(const Plan& plan, Visitor& visitor) : myPlan(plan), myVisitor(visitor) {}

    static bool record(const Node&, const std::uint8_t*) { return false; }
    void beginRecord(const Node& node) { myVisitor.beginRecord(myPlan.text(node.name)); }
    void field(const Part& part) { myVisitor.field(myPlan.text(part.name)); }
    void endRecord() { myVisitor.endRecord(); }
    void beginArray(std::size_t count) { myVisitor.beginArray(count); }
    void element() { myVisitor.element(); }
    void endArray() { myVisitor.endArray(); }
    void hexadecimal(const std::uint8_t* octets, std::size_t count)
    {
        myVisitor.octets({octets, count});
    }
    void kept(const std::uint8_t* octets, std::size_t count)
    {
        myVisitor.field("octets");
        myVisitor.octets({octets, count});
    }
    void latin1(const std::uint8_t* octets, std::size_t count)
    {
        myText.clear();
        appendLatin1(myText, octets, count);
        myVisitor.text(myText);
    }
    void text(const std::uint8_t* octets, std::size_t count, bool)
    {
        latin1(octets, textSize(octets, count));
    }
    void utf16(const Node& element, const std::uint8_t* octets, std::size_t count)
    {
        myText.clear();
        appendUtf16(myText, element, octets, count);
        myVisitor.text(myText);
    }
    void number(const Node& node, const std::uint8_t* octets)
    {
        if (node.scalar == Scalar::floating) return myVisitor.number(loadNumber(node, octets));
        const std::int64_t number = loadInteger(node, octets);
        const Enumeration* const table =
            node.table == theNone ? nullptr : &myPlan.enumerations[node.table];
        const std::uint32_t entry = table ? Plan::findEntry(*table, number) : theNone;
        if (entry == theNone)
            myVisitor.integer(number, node.scalar == Scalar::unsignedInteger);
        else
            myVisitor.label(myPlan.text(table->entries[entry].name), number);
    }

private:
    const Plan& myPlan;
    Visitor& myVisitor;
    std::string myText;
};

}  // namespace

void Value::visit(Visitor& visitor) const
{
    if (!myParts || !myParts->plan || !myParts->root().isThere()) return;
    VisitorSink sink(*myParts->plan, visitor);
    Walk<VisitorSink>(*myParts->plan, myParts->octets.data(), myParts->index, sink)
        .piece(myParts->root());
}

}  // namespace omt
