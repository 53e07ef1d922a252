// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/type.h"

#include "omt/codec/valueParts.h"

namespace omt
{

UnknownName::~UnknownName() = default;

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

void Type::decode(Octets octets, Value& value) const
{
    if (!value.myParts) value.myParts = std::make_unique<Value::Parts>();
    Value::Parts& parts = *value.myParts;
    // The octets may be those of this value.
    parts.scratch.assign(octets.begin(), octets.end());
    parts.owned.swap(parts.scratch);
    decodeInPlace(parts.owned, value);
}

void Type::decodeInPlace(Octets octets, Value& value) const
{
    if (!value.myParts) value.myParts = std::make_unique<Value::Parts>();
    Value::Parts& parts = *value.myParts;
    if (parts.plan != myPlan) parts.plan = myPlan;
    parts.node = myNode;
    parts.octets = octets;
    parts.run();
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
    if (error || myPlan->nodes[myNode].isFixed) return error;
    Index index;
    const Octets written(octets.data() + start, octets.size() - start);
    Indexer(*myPlan, written, index).run(myNode);
    error = refusal(index, written.size());
    if (error) octets.resize(start);
    return error;
}

std::optional<ValueError> Type::read(std::string_view json, Value& value) const
{
    if (!value.myParts) value.myParts = std::make_unique<Value::Parts>();
    Value::Parts& parts = *value.myParts;
    parts.scratch.clear();
    if (std::optional<ValueError> error = readJson(*myPlan, myNode, json, parts.scratch))
        return error;
    const Octets before = parts.octets;
    const bool isOwned = before.data() == parts.owned.data();
    const std::shared_ptr<const Plan> plan = parts.plan;
    const std::uint32_t node = parts.node;
    parts.owned.swap(parts.scratch);
    decodeInPlace(parts.owned, value);
    std::optional<ValueError> error = refusal(parts.index, parts.owned.size());
    if (!error) return std::nullopt;
    parts.owned.swap(parts.scratch);
    parts.plan = plan;
    parts.node = node;
    parts.octets = isOwned ? Octets(parts.owned) : before;
    if (plan) parts.run();
    return error;
}

Field Type::field(std::string_view path) const
{
    if (std::optional<Field> found = findField(path)) return *found;
    throw UnknownName(std::string(name()) + " has no \"" + std::string(path) + "\"");
}

}  // namespace omt
