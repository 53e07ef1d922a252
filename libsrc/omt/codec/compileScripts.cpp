// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/compileScripts.h"

#include "omt/codec/jsonLeaves.h"

#include <algorithm>
#include <bit>

namespace omt
{

namespace
{

constexpr std::size_t theLongestScript = 96;
constexpr std::size_t theLongestText = 1024;

Leaf leafOf(const Node& number)
{
    const bool isUnsigned = number.scalar == Scalar::unsignedInteger;
    if (number.scalar == Scalar::floating)
        return number.isLittleEndian ? Leaf::number
               : number.size == 4    ? Leaf::float32
                                     : Leaf::float64;
    if (number.table != theNone)
        return number.size == 1 && isUnsigned               ? Leaf::label8
               : number.size == 4 && !number.isLittleEndian ? Leaf::label32
                                                            : Leaf::label;
    if (!isUnsigned) return Leaf::number;
    if (number.size == 1) return Leaf::octet;
    if (number.isLittleEndian) return Leaf::number;
    return number.size == 2 ? Leaf::pair : number.size == 4 ? Leaf::four : Leaf::number;
}

/// The most octets of a number in JSON: its digits, or its name.
std::uint64_t longestOf(const Node& number)
{
    if (number.table != theNone) return JsonLeaves::theLongestLabel + number.longestLabel;
    const bool isShort = number.scalar == Scalar::unsignedInteger && number.size <= 4;
    constexpr std::uint64_t theLongestShort = 10;
    return isShort ? theLongestShort : JsonLeaves::theLongestNumber;
}

}  // namespace

void ScriptCompiler::run(const std::vector<std::uint32_t>& order)
{
    for (Node& node : myPlan.nodes) measureLabels(node);
    for (const std::uint32_t id : order)
        if (myPlan.nodes[id].form == Form::record || myPlan.nodes[id].form == Form::variant)
            write(myPlan.nodes[id]);
    myPlan.pool.append(JsonRoom::theSlack, '\0');
}

void ScriptCompiler::measureLabels(Node& node) const
{
    if (node.form != Form::number || node.table == theNone) return;
    for (const Enumeration::Entry& entry : myPlan.enumerations[node.table].entries)
        node.longestLabel = std::max(node.longestLabel, entry.quoted.size);
}

// Small numbers stand in their order, others where they are spread to. What has no place is found
// another way.
LabelPlaces ScriptCompiler::labelsOf(const Node& number)
{
    Enumeration& table = myPlan.enumerations[number.table];
    if (table.labels.factor != 0) return table.labels;
    std::uint64_t largest = 0;
    for (const Enumeration::Entry& entry : table.entries)
        largest = std::max(largest, static_cast<std::uint64_t>(entry.number));
    constexpr std::uint64_t theMostInOrder = 256;
    const bool isInOrder = largest < theMostInOrder;
    const std::size_t size = std::bit_ceil(isInOrder ? largest + 1 : 2 * table.entries.size());
    table.labels = {static_cast<std::uint32_t>(myPlan.labels.size()),
                    static_cast<std::uint32_t>(size - 1),
                    isInOrder ? std::uint64_t{1} << 32 : theSpread};
    myPlan.labels.resize(myPlan.labels.size() + size);
    for (const std::uint32_t i : table.byNumber)
    {
        const Enumeration::Entry& entry = table.entries[i];
        const auto bits = static_cast<std::uint64_t>(entry.number);
        // Larger ones may be negative numbers.
        if (!entry.isFirst || bits >> 31 != 0) continue;
        Label& label = myPlan.labels[table.labels.of(static_cast<std::uint32_t>(bits))];
        if (label.quoted.size == 0) label = {bits, entry.quoted};
    }
    return table.labels;
}

void ScriptCompiler::write(Node& node)
{
    mySteps.clear();
    myBefore.clear();
    myRoom = 0;
    const bool isWritten = node.height <= theDeepest &&
                           (node.form == Form::variant ? addVariant(node, 0) : addFields(node));
    if (!isWritten) return;
    node.script = static_cast<std::uint32_t>(myPlan.script.size());
    node.scriptCount = static_cast<std::uint32_t>(mySteps.size());
    node.scriptRoom = static_cast<std::uint32_t>(myRoom);
    myPlan.script.insert(myPlan.script.end(), mySteps.begin(), mySteps.end());
}

// The operations below give false where the script gets too long.

bool ScriptCompiler::addFields(Node& record)
{
    std::uint32_t& i = record.scriptParts;
    std::uint32_t size = 0;
    for (i = 0; i < record.parts; ++i)
    {
        const Part& part = myPlan.parts[record.first + i];
        const Node& node = myPlan.nodes[part.node];
        if (part.offset == theNone || part.decider != theNone) break;
        record.isVariantInScript = node.form == Form::variant && i + 1 == record.parts;
        if (!node.isFixed && !record.isVariantInScript) break;
        addKey(part, i);
        if (record.isVariantInScript) return addVariant(node, part.offset);
        if (!addNode(part.node, part.offset)) return false;
        size = part.offset + node.size;
    }
    if (record.isFixed) myBefore += '}';
    return i > 0 && addLeaf(0, size, Leaf::end, 0);
}

void ScriptCompiler::addKey(const Part& part, std::uint32_t i)
{
    myBefore += i == 0 ? '{' : ',';
    myBefore += myPlan.text(part.key);
}

// Up to the discriminant.
bool ScriptCompiler::addVariant(const Node& variant, std::uint32_t offset)
{
    addKey(myPlan.parts[variant.first], 0);
    const std::uint32_t end = offset + myPlan.nodes[variant.element].size;
    return addNode(variant.element, offset) && addLeaf(0, end, Leaf::end, 0);
}

bool ScriptCompiler::addNode(std::uint32_t id, std::uint32_t offset)
{
    const Node& node = myPlan.nodes[id];
    switch (node.form)
    {
        case Form::number:
            return addLeaf(id, offset, leafOf(node), longestOf(node));
        case Form::record:
            return addRecord(node, offset);
        case Form::array:
            return addArray(id, offset);
        default:
            return false;
    }
}

bool ScriptCompiler::addLeaf(std::uint32_t id, std::uint32_t offset, Leaf leaf,
                             std::uint64_t longest)
{
    if (leaf != Leaf::end &&
        (mySteps.size() >= theLongestScript || myBefore.size() > theLongestText))
        return false;
    myRoom += myBefore.size() + longest;
    std::string_view before = myBefore;
    for (; before.size() > ScriptStep::theLongest; before.remove_prefix(ScriptStep::theLongest))
        addStep(before.substr(0, ScriptStep::theLongest), id, offset, Leaf::none);
    addStep(before, id, offset, leaf);
    myBefore.clear();
    return myRoom <= JsonRoom::theMost;
}

void ScriptCompiler::addStep(std::string_view before, std::uint32_t id, std::uint32_t offset,
                             Leaf leaf)
{
    ScriptStep& step = mySteps.emplace_back();
    before.copy(step.text, before.size());
    step.size = static_cast<std::uint8_t>(before.size());
    step.leaf = leaf;
    step.node = id;
    step.offset = offset;
    if (leaf == Leaf::label8 || leaf == Leaf::label32) step.labels = labelsOf(myPlan.nodes[id]);
}

bool ScriptCompiler::addRecord(const Node& record, std::uint32_t offset)
{
    if (record.parts == 0) myBefore += '{';
    for (std::uint32_t i = 0; i < record.parts; ++i)
    {
        const Part& part = myPlan.parts[record.first + i];
        addKey(part, i);
        if (!addNode(part.node, offset + part.offset)) return false;
    }
    myBefore += '}';
    return myBefore.size() <= theLongestText;
}

bool ScriptCompiler::addArray(std::uint32_t id, std::uint32_t offset)
{
    const Node& array = myPlan.nodes[id];
    if (array.look != Look::elements)
        return addLeaf(id, offset, Leaf::text, JsonLeaves::longestText(array.count));
    if (array.count == 0) myBefore += '[';
    for (std::uint32_t i = 0; i < array.count; ++i)
    {
        myBefore += i == 0 ? '[' : ',';
        if (!addNode(array.element, offset + i * array.stride)) return false;
    }
    myBefore += ']';
    return myBefore.size() <= theLongestText;
}

}  // namespace omt
