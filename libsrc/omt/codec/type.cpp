// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/type.h"

#include "omt/codec/valueParts.h"
#include "omt/codec/writingRules.h"

#include <algorithm>
#include <cstring>

namespace omt
{

UnknownName::~UnknownName() = default;

// Decoding ---------------------------------------------------------------------------------------

namespace
{

template <std::size_t part>
void copyEnds(std::uint8_t* to, const std::uint8_t* from, std::size_t size)
{
    std::uint8_t first[part];
    std::uint8_t last[part];
    std::memcpy(first, from, part);
    std::memcpy(last, from + size - part, part);
    std::memcpy(to, first, part);
    std::memcpy(to + size - part, last, part);
}

// In blocks of 16, the last of which may overlap the one before it.
[[gnu::always_inline]] inline void copyBlocks(std::uint8_t* to, const std::uint8_t* from,
                                              std::size_t size)
{
    std::uint8_t last[16];
    std::memcpy(last, from + size - sizeof last, sizeof last);
    for (std::size_t i = 0; i < size - sizeof last; i += 16) std::memcpy(to + i, from + i, 16);
    std::memcpy(to + size - sizeof last, last, sizeof last);
}

constexpr std::size_t theMostInBlocks = 160;

// Most values are short, so that a call would take longer than the copy. What is copied over itself
// stays where it is.
[[gnu::always_inline]] inline void copyShort(std::uint8_t* to, const std::uint8_t* from,
                                             std::size_t size)
{
    if (size > 32)
        copyBlocks(to, from, size);
    else if (size >= 16)
        copyEnds<16>(to, from, size);
    else if (size >= 8)
        copyEnds<8>(to, from, size);
    else if (size >= 4)
        copyEnds<4>(to, from, size);
    else
        for (std::size_t i = 0; i < size; ++i) to[i] = from[i];
}

}  // namespace

void Value::Parts::own(Octets others)
{
    // Octets of its own fit, so that none of them are lost here.
    if (owned.size() < others.size()) owned.resize(others.size());
    if (others.size() > theMostInBlocks)
        std::memmove(owned.data(), others.data(), others.size());
    else
        copyShort(owned.data(), others.data(), others.size());
    octets = {owned.data(), others.size()};
}

bool Value::Parts::take(const std::shared_ptr<const Plan>& ofType, std::uint32_t type,
                        Octets others)
{
    if (plan != ofType) plan = ofType;
    node = type;
    octets = others;
    return indexValue(*plan, node, octets, index);
}

Value::Parts& Value::parts()
{
    if (!myParts) myParts = std::make_unique<Parts>();
    return *myParts;
}

std::string_view Type::name() const
{
    return myPlan->text(myPlan->nodes[myNode].name);
}

std::string_view Type::units() const
{
    return myPlan->text(myPlan->nodes[myNode].units);
}

ValueKind Type::kind() const
{
    return kindOf(*myPlan, myPlan->nodes[myNode]);
}

unsigned Type::boundary() const
{
    return myPlan->nodes[myNode].boundary;
}

std::optional<std::size_t> Type::size() const
{
    const Node& node = myPlan->nodes[myNode];
    return node.isFixed ? std::optional<std::size_t>(node.size) : std::nullopt;
}

std::size_t Type::leastSize() const
{
    return myPlan->nodes[myNode].size;
}

std::size_t Type::partCount() const
{
    const Node& node = myPlan->nodes[myNode];
    return node.form == Form::record || node.form == Form::variant ? node.parts : 0;
}

std::string_view Type::partName(std::size_t index) const
{
    return myPlan->text(myPlan->parts[myPlan->nodes[myNode].first + index].name);
}

Type Type::partType(std::size_t index) const
{
    return {myPlan, myPlan->parts[myPlan->nodes[myNode].first + index].node};
}

std::optional<Type> Type::element() const
{
    const Node& node = myPlan->nodes[myNode];
    if (node.form != Form::array) return std::nullopt;
    return Type(myPlan, node.element);
}

Value Type::decode(Octets octets) const
{
    Value value;
    decode(octets, value);
    return value;
}

// A short value of the type before, or one of the same codec, without a call on the way.
bool Type::decode(Octets octets, Value& value) const
{
    Value::Parts* const parts = value.myParts.get();
    if (!parts || parts->plan != myPlan || parts->index.isOdd ||
        octets.size() > std::min(theMostInBlocks, parts->owned.size()) ||
        !indexQuickly(*myPlan, myNode, octets, parts->index))
        return decodeAny(octets, value);
    parts->node = myNode;
    parts->octets = {parts->owned.data(), octets.size()};
    copyShort(parts->owned.data(), octets.data(), octets.size());
    return true;
}

// The octets are looked at where they are given: what was just copied is slow to read in pieces of
// another size.
[[gnu::noinline]] bool Type::decodeAny(Octets octets, Value& value) const
{
    Value::Parts& parts = value.parts();
    const bool isWhole = parts.take(myPlan, myNode, octets);
    parts.own(octets);
    return isWhole;
}

bool Type::decodeInPlace(Octets octets, Value& value) const
{
    return value.parts().take(myPlan, myNode, octets);
}

std::optional<ValueError> Type::encode(std::string_view json,
                                       std::vector<std::uint8_t>& octets) const
{
    const std::size_t start = octets.size();
    std::optional<ValueError> error = readJson(*myPlan, myNode, json, octets);
    const Octets written(octets.data() + start, octets.size() - start);
    if (error || isSure(myPlan->nodes[myNode], written.size())) return error;
    // Kept for its memory, unless that is much.
    thread_local Index index;
    constexpr std::size_t theMostKept = 65536;
    indexValue(*myPlan, myNode, written, index);
    error = refusal(index, written.size());
    if (index.entries.size() > theMostKept || index.looked.size() > theMostKept) index = Index();
    if (error) octets.resize(start);
    return error;
}

std::optional<ValueError> Type::read(std::string_view json, Value& value) const
{
    Value::Parts& parts = value.parts();
    parts.scratch.clear();
    if (std::optional<ValueError> error = readJson(*myPlan, myNode, json, parts.scratch))
        return error;
    const Octets before = parts.octets;
    const std::shared_ptr<const Plan> plan = parts.plan;
    const std::uint32_t node = parts.node;
    parts.owned.swap(parts.scratch);
    parts.take(myPlan, myNode, parts.owned);
    std::optional<ValueError> error = refusal(parts.index, parts.owned.size());
    if (!error) return std::nullopt;
    parts.owned.swap(parts.scratch);
    parts.octets = before;
    if (plan) parts.take(plan, node, before);
    return error;
}

Field Type::field(std::string_view path) const
{
    if (std::optional<Field> found = findField(path)) return *found;
    throw UnknownName(std::string(name()) + " has no \"" + std::string(path) +
                      "\": " + whyNoPiece(*myPlan, myNode, path));
}

}  // namespace omt
