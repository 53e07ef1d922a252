// SPDX-License-Identifier: Apache-2.0
// Values to JSON, straight into the text.
#include "omt/codec/jsonLeaves.h"
#include "omt/codec/valueParts.h"

#include <algorithm>

namespace omt
{

namespace
{

/// Characters or octets for which there is room at once.
constexpr std::size_t theChunk = 256;

class JsonWalk
{
public:
    JsonWalk(const Plan& plan, const std::uint8_t* octets, const Index& index,
             const JsonOptions& options, JsonRoom& room)
        : mySteps(plan, index),
          myPlan(plan),
          myOctets(octets),
          myLeaves(plan, options),
          myRoom(room)
    {
    }

    void piece(const Spot& spot)
    {
        const Node& node = myPlan.nodes[spot.node];
        switch (node.form)
        {
            case Form::number:
                return number(node, myOctets + spot.offset);
            case Form::record:
                return record(spot, node);
            case Form::array:
                return array(spot, node);
            case Form::variant:
                return variant(spot, node);
            case Form::octets:
                return hexadecimal(myOctets + spot.offset,
                                   mySteps.index.entries[spot.entry].end - spot.offset);
        }
    }

private:
    void number(const Node& node, const std::uint8_t* octets)
    {
        const std::size_t longest = JsonLeaves::theLongestLabel + node.longestLabel;
        if (longest > JsonRoom::theMost) return longLabel(node, octets);
        myRoom.moveTo(myLeaves.number(myRoom.at(longest), node, octets));
    }

    // Of a name for which there may be no room at once.
    void longLabel(const Node& node, const std::uint8_t* octets)
    {
        std::string text(JsonLeaves::theLongestLabel + node.longestLabel + JsonRoom::theSlack, ' ');
        const char* const end = myLeaves.number(text.data(), node, octets);
        myRoom.put({text.data(), static_cast<std::size_t>(end - text.data())});
    }

    bool hasScript(const Node& node) const { return node.scriptCount != 0 && !mySteps.index.fault; }

    void script(const Node& node, const std::uint8_t* octets)
    {
        myRoom.moveTo(myLeaves.script(myRoom.at(node.scriptRoom), node, octets));
    }

    void record(const Spot& spot, const Node& node)
    {
        if (!hasScript(node)) return fields(spot, 0);
        script(node, myOctets + spot.offset);
        if (node.isFixed) return;
        if (!node.isVariantInScript) return fields(spot, node.scriptParts);
        const Part& last = myPlan.parts[node.first + node.scriptParts];
        const std::uint32_t entry = spot.entry + (node.quick == QuickForm::fork ? 0 : 1);
        alternative({last.node, spot.offset + last.offset, entry});
        myRoom.put("}}");
    }

    // All fields but the first.
    void fields(const Spot& spot, std::uint32_t first)
    {
        char before = first == 0 ? '{' : ',';
        mySteps.forEachField(
            spot,
            [&](const Part& part, const Spot& one)
            {
                key(before, part);
                before = ',';
                piece(one);
                return true;
            },
            first);
        if (before == '{') myRoom.put('{');
        myRoom.put('}');
    }

    void key(char before, const Part& part)
    {
        if (before == ',') return myRoom.put(myPlan.keyAfterComma(part));
        myRoom.put(before);
        myRoom.put(myPlan.text(part.key));
    }

    void array(const Spot& spot, const Node& node)
    {
        const std::uint32_t count = mySteps.count(spot);
        if (node.look != Look::elements)
            return text(node, myOctets + mySteps.firstElement(spot), count);
        char before = '[';
        mySteps.forEachElement(spot,
                               [&](const Spot& one)
                               {
                                   myRoom.put(before);
                                   before = ',';
                                   piece(one);
                               });
        if (before == '[') myRoom.put('[');
        myRoom.put(']');
    }

    void text(const Node& array, const std::uint8_t* octets, std::size_t count)
    {
        if (count <= theChunk)
        {
            char* const at = myRoom.at(JsonLeaves::longestText(count));
            return myRoom.moveTo(myLeaves.text(at, array, octets, count));
        }
        const std::size_t shown = array.look == Look::text ? textSize(octets, count) : count;
        const bool hasRest = JsonLeaves::isRestShown(array, octets, count, shown);
        if (hasRest) myRoom.put("{\"text\":");
        longText(array.look, array.element, octets, shown);
        if (!hasRest) return;
        myRoom.put(",\"rest\":");
        longText(Look::hexadecimal, theNone, octets + shown + 1, count - shown - 1);
        myRoom.put('}');
    }

    // In chunks, between which no pair of surrogates stands.
    void longText(Look look, std::uint32_t element, const std::uint8_t* octets, std::size_t count)
    {
        myRoom.put('"');
        while (count > 0)
        {
            std::size_t chunk = std::min(count, theChunk);
            char* const at = myRoom.at((chunk + 1) * JsonLeaves::theLongestUnit);
            if (look == Look::utf16)
            {
                const Node& unit = myPlan.nodes[element];
                const std::uint64_t last = loadBits(unit, octets + 2 * (chunk - 1));
                if (chunk < count && (last & 0xFC00) == 0xD800) ++chunk;
                myRoom.moveTo(JsonLeaves::utf16(at, unit, octets, chunk));
                octets += chunk;
            }
            else
                myRoom.moveTo(look == Look::hexadecimal ? JsonLeaves::hexadecimal(at, octets, chunk)
                                                        : JsonLeaves::latin1(at, octets, chunk));
            octets += chunk;
            count -= chunk;
        }
        myRoom.put('"');
    }

    void hexadecimal(const std::uint8_t* octets, std::size_t count)
    {
        longText(Look::hexadecimal, theNone, octets, count);
    }

    void variant(const Spot& spot, const Node& node)
    {
        const std::uint8_t* const octets = myOctets + spot.offset;
        if (hasScript(node))
            script(node, octets);
        else
        {
            key('{', myPlan.parts[node.first]);
            number(myPlan.nodes[node.element], octets);
        }
        alternative(spot);
        myRoom.put('}');
    }

    // What follows a discriminant.
    void alternative(const Spot& variant)
    {
        const Part* part = nullptr;
        const Spot spot = mySteps.alternative(variant, part);
        if (spot.isThere())
        {
            key(',', *part);
            const Node& node = myPlan.nodes[spot.node];
            if (node.isFixed && hasScript(node))
                script(node, myOctets + spot.offset);
            else
                piece(spot);
        }
        const Entry& entry = mySteps.index.entries[variant.entry];
        if (entry.count != theUnknown) return;
        const std::size_t start = variant.offset + myPlan.nodes[variant.node].body;
        myRoom.put(",\"octets\":");
        hexadecimal(myOctets + start, entry.end - start);
    }

    const Steps mySteps;
    const Plan& myPlan;
    const std::uint8_t* myOctets;
    JsonLeaves myLeaves;
    JsonRoom& myRoom;
};

/// How many octets of JSON a piece of open size comes to, more or less.
std::size_t usualSize(const Index& index, const Spot& spot)
{
    constexpr std::size_t theLeast = 256;
    constexpr std::size_t theFactor = 8;
    if (spot.entry == theNone || index.fault) return theLeast;
    const std::size_t octets = index.entries[spot.entry].end - spot.offset;
    return std::min(theLeast + theFactor * octets, JsonRoom::theMost);
}

}  // namespace

void appendJsonOf(const Plan& plan, const std::uint8_t* octets, const Index& index,
                  const Spot& spot, std::string& text, const JsonOptions& options)
{
    if (!spot.isThere()) return;
    const Node& node = plan.nodes[spot.node];
    const JsonLeaves leaves(plan, options);
    if (node.isFixed && node.scriptCount != 0 && !index.fault)
        return JsonRoom::append(text, node.scriptRoom,
                                [&](char* at)
                                { return leaves.script(at, node, octets + spot.offset); });
    if (node.form == Form::array && node.look != Look::elements)
    {
        const Steps steps(plan, index);
        const std::uint32_t count = steps.count(spot);
        const std::uint8_t* const first = octets + steps.firstElement(spot);
        if (count <= theChunk)
            return JsonRoom::append(text, JsonLeaves::longestText(count),
                                    [&](char* at) { return leaves.text(at, node, first, count); });
    }
    JsonRoom room(text, usualSize(index, spot));
    JsonWalk(plan, octets, index, options, room).piece(spot);
    room.finish();
}

}  // namespace omt
