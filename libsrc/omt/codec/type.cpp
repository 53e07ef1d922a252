// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/type.h"

#include "omt/codec/valueParts.h"

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

// As memmove. Most values are short, so that the call would take longer than the copy.
void copyOctets(std::uint8_t* to, const std::uint8_t* from, std::size_t size)
{
    if (size > 32)
        std::memmove(to, from, size);
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
    copyOctets(owned.data(), others.data(), others.size());
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

bool Type::decode(Octets octets, Value& value) const
{
    Value::Parts& parts = value.parts();
    parts.own(octets);
    return parts.take(myPlan, myNode, parts.octets);
}

bool Type::decodeInPlace(Octets octets, Value& value) const
{
    return value.parts().take(myPlan, myNode, octets);
}

namespace
{

// What was written has to be read the same way; where elements end with the value it may not be.
std::optional<ValueError> refusal(const Index& index, std::size_t size)
{
    if (!index.fault && index.octets == size) return std::nullopt;
    return ValueError{"the octets could not be read again" +
                          (index.fault ? ": " + index.fault->what : std::string()),
                      index.fault ? index.fault->path : std::string()};
}

}  // namespace

std::optional<ValueError> Type::encode(std::string_view json,
                                       std::vector<std::uint8_t>& octets) const
{
    const std::size_t start = octets.size();
    std::optional<ValueError> error = readJson(*myPlan, myNode, json, octets);
    const Octets written(octets.data() + start, octets.size() - start);
    const bool isSure = myPlan->nodes[myNode].ending != Ending::unsure;
    if (error || (isSure && written.size() <= theLargestSize)) return error;
    Index index;
    indexValue(*myPlan, myNode, written, index);
    error = refusal(index, written.size());
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
    throw UnknownName(std::string(name()) + " has no \"" + std::string(path) + "\"");
}

}  // namespace omt
