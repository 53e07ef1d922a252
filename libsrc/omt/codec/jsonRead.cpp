// SPDX-License-Identifier: Apache-2.0
// JsonReader: structure.
#include "omt/base/nearestNames.h"
#include "omt/codec/jsonReader.h"
#include "omt/codec/valueParts.h"
#include "omt/codec/writingRules.h"

#include <algorithm>

namespace omt
{

std::optional<ValueError> readJson(const Plan& plan, std::uint32_t node, std::string_view json,
                                   std::vector<std::uint8_t>& octets)
{
    OctetRoom room(octets);
    std::optional<ValueError> error = JsonReader(plan, json, room).run(node);
    if (!error) room.keep();
    return error;
}

std::optional<ValueError> JsonReader::run(std::uint32_t node)
{
    if (piece(node, 0) && !myText.isAtEnd()) failHere("something follows the value", 0);
    return std::move(myError);
}

bool JsonReader::fail(const std::string& what, std::uint32_t depth)
{
    if (myError) return false;
    std::string path;
    for (std::uint32_t i = 0; i < depth; ++i)
    {
        const Node& node = myPlan.nodes[myFrames[i].node];
        if (node.form == Form::array)
            path += '[' + std::to_string(myFrames[i].index) + ']';
        else
        {
            if (!path.empty()) path += '.';
            path += myPlan.text(myPlan.parts[node.first + myFrames[i].index].name);
        }
    }
    if (myToken) myText.goTo(myToken);
    const auto [line, column] = myText.lineAndColumn();
    myError = ValueError{what, path, line, column};
    return false;
}

bool JsonReader::failHere(const std::string& what, std::uint32_t depth)
{
    myToken = nullptr;
    return fail(what, depth);
}

std::string JsonReader::quoted(Name name) const
{
    return "\"" + std::string(myPlan.text(name)) + "\"";
}

bool JsonReader::piece(std::uint32_t id, std::uint32_t depth)
{
    myText.peek();
    myToken = myText.place();
    if (depth >= theDeepest) return fail("values are nested deeper than 200", depth);
    const Node& node = myPlan.nodes[id];
    switch (node.form)
    {
        case Form::number:
            return number(node, depth);
        case Form::record:
            return record(id, depth);
        case Form::array:
            return array(id, depth);
        case Form::variant:
            return variant(id, depth);
        case Form::octets:
        {
            std::size_t count = 0;
            return hexadecimal(count, depth);
        }
    }
    return false;
}

// Records ----------------------------------------------------------------------------------------

namespace
{

// A whole number of up to five digits; null for any other.
const char* smallNumber(const char* at, const char* end, std::uint32_t& number)
{
    constexpr std::ptrdiff_t theMost = 5;
    const char* const first = at;
    for (; at != end && at - first <= theMost; ++at)
    {
        const auto digit = static_cast<unsigned>(*at) - '0';
        if (digit > 9) break;
        number = 10 * number + digit;
    }
    const std::ptrdiff_t size = at - first;
    const bool isUsual = size == 1 || (size > 1 && size <= theMost && *first != '0');
    return isUsual ? at : nullptr;
}

}  // namespace

// Reads the fields of a script as they are written, letter for letter; else nothing happens.
bool JsonReader::script(const Node& record, std::uint32_t depth)
{
    if (record.scriptCount == 0 || depth + record.height >= theDeepest) return false;
    const ScriptStep* step = myPlan.script.data() + record.script;
    const std::uint32_t size = myPlan.script[record.script + record.scriptCount - 1].offset;
    std::uint8_t* const octets = myOctets.need(size);
    const char* const end = myText.end();
    const char* at = myText.place();
    for (;; ++step)
    {
        if (!JsonScanner::isText(at, end, step->before())) break;
        at += step->size;
        if (step->leaf == Leaf::none) continue;
        if (step->leaf == Leaf::end)
        {
            myText.goTo(at);
            myOctets.add(size);
            return true;
        }
        myToken = at;
        at = leaf(*step, at, octets + step->offset);
        if (at == nullptr) break;
    }
    std::memset(octets, 0, size + OctetRoom::theSlack);
    return false;
}

const char* JsonReader::leaf(const ScriptStep& step, const char* at, std::uint8_t* octets) const
{
    const Node& node = myPlan.nodes[step.node];
    if (step.leaf == Leaf::octet || step.leaf == Leaf::pair)
    {
        const bool isOctet = step.leaf == Leaf::octet;
        std::uint32_t number = 0;
        const char* const last = smallNumber(at, myText.end(), number);
        if (last != nullptr && number <= (isOctet ? 0xFFU : 0xFFFFU))
        {
            if (!isOctet) *octets++ = static_cast<std::uint8_t>(number >> 8);
            *octets = static_cast<std::uint8_t>(number);
            return last;
        }
    }
    if (step.leaf == Leaf::text) return quickText(node, at, octets);
    return quickNumber(node, at, octets);
}

bool JsonReader::key(std::string_view& name, std::uint32_t depth)
{
    myText.peek();
    myToken = myText.place();
    RawText raw;
    if (!myText.raw(raw)) return fail("the name of a field is expected", depth);
    name = unescaped(raw);
    return myText.takes(':') || failHere("a \":\" is missing", depth);
}

// The key of this part, as it is written.
bool JsonReader::takesKey(const Part& part, bool isFirst)
{
    const std::string_view text = isFirst ? myPlan.text(part.key) : myPlan.keyAfterComma(part);
    const char* const place = myText.place();
    if (!JsonScanner::isText(place, myText.end(), text)) return false;
    myToken = place + (isFirst ? 0 : 1);
    myText.goTo(place + text.size());
    return true;
}

bool JsonReader::record(std::uint32_t id, std::uint32_t depth)
{
    const Node& node = myPlan.nodes[id];
    Fields fields{node, myOctets.size(), myLooked.size()};
    myFrames[depth] = {id, 0};
    // What others look at is not in scripts.
    const bool isScripted = !node.isLooking && script(node, depth);
    if (isScripted && node.isFixed) return true;
    if (isScripted)
    {
        fields.next = node.scriptParts;
        if (node.isVariantInScript && !alternative(fields, depth)) return false;
    }
    else if (!myText.takes('{'))
        return fail("a record is expected", depth);
    if (node.isLooking) myLooked.resize(fields.looked + node.parts);
    for (bool isFirst = !isScripted;; isFirst = false)
    {
        if (!passAbsent(fields, depth)) return false;
        if (fields.next < node.parts && takesKey(myPlan.parts[node.first + fields.next], isFirst))
        {
            if (!field(fields, depth)) return false;
            continue;
        }
        if (myText.takes('}')) break;
        if (!isFirst && !myText.takes(',')) return failHere("a \",\" or \"}\" is missing", depth);
        if (!fieldByName(fields, depth)) return false;
    }
    return finish(fields, depth);
}

// Of the variant record whose discriminant a script has read.
bool JsonReader::alternative(Fields& fields, std::uint32_t depth)
{
    myFrames[depth].index = fields.next;
    const Part& part = myPlan.parts[fields.node.first + fields.next++];
    Choice choice{myPlan.nodes[part.node], fields.start + part.offset, myText.place()};
    myFrames[depth + 1] = {part.node, 0};
    return parts(choice, depth + 1);
}

bool JsonReader::fieldByName(Fields& fields, std::uint32_t depth)
{
    const Node& node = fields.node;
    std::string_view name;
    if (!key(name, depth)) return false;
    std::uint32_t i = fields.next;
    if (i >= node.parts || myPlan.text(myPlan.parts[node.first + i].name) != name)
        i = myPlan.findPart(node, name);
    if (i == theNone)
        return fail("no field is called \"" + std::string(name) + "\"" + nearestParts(node, name),
                    depth);
    return i == fields.next ? field(fields, depth) : keepForLater(fields, i, depth);
}

std::string JsonReader::nearestParts(const Node& node, std::string_view name) const
{
    std::vector<std::string_view> names;
    for (std::uint32_t i = 0; i < node.parts; ++i)
        names.push_back(myPlan.text(myPlan.parts[node.first + i].name));
    return didYouMean(name, names);
}

// Passes over a field that stands out of order.
bool JsonReader::keepForLater(Fields& fields, std::uint32_t i, std::uint32_t depth)
{
    const Part& part = myPlan.parts[fields.node.first + i];
    if (i < fields.next && isAbsent(fields, part)) return refuseAbsent(part, depth);
    if (fields.slots == theNoSlots)
    {
        fields.slots = mySlots.size();
        mySlots.resize(fields.slots + fields.node.parts);
    }
    const char*& place = mySlots[fields.slots + i];
    if (i < fields.next || place != nullptr)
        return fail(quoted(part.name) + " stands twice", depth);
    place = myText.place();
    return myText.skip() || failHere("no value", depth);
}

bool JsonReader::isAbsent(const Fields& fields, const Part& part) const
{
    return omt::isAbsent(part, myLooked.data() + fields.looked);
}

// Goes past fields that other ones say are not there.
bool JsonReader::passAbsent(Fields& fields, std::uint32_t depth)
{
    if (!fields.node.isLooking) return true;
    for (; fields.next < fields.node.parts; ++fields.next)
    {
        const Part& part = myPlan.parts[fields.node.first + fields.next];
        if (!isAbsent(fields, part)) return true;
        if (fields.slots != theNoSlots && mySlots[fields.slots + fields.next] != nullptr)
            return refuseAbsent(part, depth);
    }
    return true;
}

bool JsonReader::refuseAbsent(const Part& part, std::uint32_t depth)
{
    return fail(quoted(part.name) + " does not go with the fields before it", depth);
}

// Reads the next field, whose value begins here.
bool JsonReader::field(Fields& fields, std::uint32_t depth)
{
    const std::uint32_t i = fields.next++;
    const Part& part = myPlan.parts[fields.node.first + i];
    if (fields.slots != theNoSlots && mySlots[fields.slots + i] != nullptr &&
        mySlots[fields.slots + i] != myText.place())
        return fail(quoted(part.name) + " stands twice", depth);
    pad(fields.start - fields.node.phase, part.boundary);
    myFrames[depth].index = i;
    const std::size_t start = myOctets.size();
    if (!piece(part.node, depth + 1)) return false;
    const Node& node = myPlan.nodes[part.node];
    if (part.isLookedAt && node.form == Form::number)
        myLooked[fields.looked + i] = {loadInteger(node, myOctets.data() + start), true};
    return part.stepCount == 0 || node.form != Form::array || checkStated(fields, part, depth);
}

bool JsonReader::checkStated(const Fields& fields, const Part& part, std::uint32_t depth)
{
    const std::string complaint =
        statedComplaint(myPlan, part, myLooked.data() + fields.looked, myCount);
    return complaint.empty() || fail(complaint, depth + 1);
}

// Reads the fields that stood out of order.
bool JsonReader::finish(Fields& fields, std::uint32_t depth)
{
    const char* const end = myText.place();
    while (passAbsent(fields, depth) && fields.next < fields.node.parts)
    {
        const Part& part = myPlan.parts[fields.node.first + fields.next];
        const Node& node = myPlan.nodes[part.node];
        const char* const place =
            fields.slots != theNoSlots ? mySlots[fields.slots + fields.next] : nullptr;
        if (place != nullptr)
        {
            myText.goTo(place);
            if (!field(fields, depth)) return false;
            myText.goTo(end);
            continue;
        }
        if (node.form != Form::array || node.extent != Extent::padding)
            return failHere(quoted(part.name) + " is missing", depth);
        ++fields.next;
        pad(fields.start - fields.node.phase, part.boundary);
        pad(myBase, node.count);
    }
    if (fields.slots != theNoSlots) mySlots.resize(fields.slots);
    myLooked.resize(fields.looked);
    return !myError;
}

// Variant records --------------------------------------------------------------------------------

bool JsonReader::variant(std::uint32_t id, std::uint32_t depth)
{
    Choice choice{myPlan.nodes[id], myOctets.size()};
    myFrames[depth] = {id, 0};
    if (script(choice.node, depth))
        choice.discriminant = myText.place();
    else if (!myText.takes('{'))
        return fail("a variant record is expected", depth);
    return parts(choice, depth);
}

// The parts of a variant record that were not read yet, and its end.
bool JsonReader::parts(Choice& choice, std::uint32_t depth)
{
    for (bool isFirst = choice.discriminant == nullptr;; isFirst = false)
    {
        std::uint32_t i = takesPart(choice, isFirst);
        if (i == theNone)
        {
            if (myText.takes('}')) break;
            if (!isFirst && !myText.takes(','))
                return failHere("a \",\" or \"}\" is missing", depth);
            if (!partByName(choice, i, depth)) return false;
        }
        if (!part(choice, i, depth)) return false;
    }
    return choice.isWritten || finish(choice, depth);
}

// The part that is to follow, if its key stands here as it is written.
std::uint32_t JsonReader::takesPart(const Choice& choice, bool isFirst)
{
    std::uint32_t i = 0;
    if (choice.contents != nullptr) return theNone;
    if (choice.discriminant != nullptr)
    {
        const Node& discriminant = myPlan.nodes[choice.node.element];
        i = myPlan.findAlternative(choice.node,
                                   loadInteger(discriminant, myOctets.data() + choice.start));
        if (i >= theUnknown) return theNone;
    }
    return takesKey(myPlan.parts[choice.node.first + i], isFirst) ? i : theNone;
}

bool JsonReader::partByName(const Choice& choice, std::uint32_t& i, std::uint32_t depth)
{
    std::string_view name;
    if (!key(name, depth)) return false;
    i = myPlan.findPart(choice.node, name);
    if (i == theNone && name != "octets")
        return fail("no alternative is called \"" + std::string(name) + "\"" +
                        nearestParts(choice.node, name),
                    depth);
    if ((i == 0 ? choice.discriminant : choice.contents) != nullptr)
        return fail("\"" + std::string(name) + "\" is one too many", depth);
    if (i == theNone) i = theUnknown;
    return true;
}

// Reads the discriminant, and the alternative if it follows it; else passes over this.
bool JsonReader::part(Choice& choice, std::uint32_t i, std::uint32_t depth)
{
    if (i == 0)
    {
        choice.discriminant = myText.place();
        if (choice.contents == nullptr) return piece(choice.node.element, depth + 1);
    }
    else
    {
        choice.contents = myText.place();
        choice.given = i;
        choice.isWritten = choice.discriminant != nullptr;
        if (choice.isWritten) return body(choice, depth);
    }
    return myText.skip() || failHere("no value", depth);
}

bool JsonReader::finish(Choice& choice, std::uint32_t depth)
{
    const char* const end = myText.place();
    if (choice.discriminant == nullptr)
        return fail(quoted(myPlan.parts[choice.node.first].name) + " is missing", depth);
    if (choice.contents != nullptr)
    {
        myText.goTo(choice.discriminant);
        if (!piece(choice.node.element, depth + 1)) return false;
        myText.goTo(choice.contents);
        myToken = choice.contents;
    }
    if (!body(choice, depth)) return false;
    myText.goTo(end);
    return true;
}

// What follows the discriminant: the alternative begins here, if one is given.
bool JsonReader::body(const Choice& choice, std::uint32_t depth)
{
    const Node& node = choice.node;
    const Node& discriminant = myPlan.nodes[node.element];
    const std::size_t start = choice.start;
    const std::int64_t number = loadInteger(discriminant, myOctets.data() + start);
    const std::uint32_t wanted = myPlan.findAlternative(node, number);
    const bool isMeasured = node.length != Length::none;
    if (!isAlternative(node, wanted, choice.given))
        return fail(alternativeComplaint(myPlan, node, number, wanted, choice.given), depth);
    if (isMeasured) myOctets.growTo(start + node.lengthOffset + 4);
    if (choice.given == theNothing) return true;
    myOctets.growTo(start + node.body);
    if (choice.given < theUnknown)
    {
        myFrames[depth].index = choice.given;
        if (!piece(myPlan.parts[node.first + choice.given].node, depth + 1)) return false;
    }
    else if (std::size_t count = 0; !hexadecimal(count, depth))
        return false;
    if (!isMeasured) return true;
    const std::size_t end = myOctets.size() - start;
    const std::size_t kept = closeMeasured(node, myOctets.data() + start, end);
    if (kept < end) myOctets.dropTo(start + kept);
    return true;
}

// Arrays -----------------------------------------------------------------------------------------

bool JsonReader::array(std::uint32_t id, std::uint32_t depth)
{
    const Node& node = myPlan.nodes[id];
    const std::size_t start = myOctets.size();
    if (node.extent == Extent::counted) myOctets.growTo(start + 4);
    myFrames[depth].node = id;
    std::size_t count = 0;
    const bool isWhole = node.look == Look::elements      ? elements(node, start, count, depth)
                         : node.look == Look::text        ? hintedText(node, count, depth)
                         : node.look == Look::hexadecimal ? hexadecimal(count, depth)
                                                          : characters(node, count, depth);
    if (!isWhole) return false;
    const std::size_t size = myPlan.nodes[node.element].size;
    if (node.look != Look::elements && node.extent == Extent::terminated)
        for (std::size_t i = 0; i < count; ++i)
            if (isZero(start + i * size, size)) return fail("a zero ends the array", depth);
    if (!isCount(node, count, start - myBase))
        return fail(countComplaint(node, count, start - myBase), depth);
    if (node.extent == Extent::counted)
    {
        const std::uint32_t stored = __builtin_bswap32(static_cast<std::uint32_t>(count));
        std::memcpy(myOctets.data() + start, &stored, 4);
    }
    if (node.extent == Extent::terminated) myOctets.growTo(start + count * node.stride + size);
    myCount = count;
    return true;
}

bool JsonReader::isZero(std::size_t start, std::size_t size)
{
    const std::uint8_t* const first = myOctets.data() + start;
    return std::all_of(first, first + size, [](std::uint8_t octet) { return octet == 0; });
}

bool JsonReader::elements(const Node& node, std::size_t start, std::size_t& count,
                          std::uint32_t depth)
{
    if (!myText.takes('[')) return fail("an array is expected", depth);
    const Node& element = myPlan.nodes[node.element];
    const std::uint32_t boundary = node.boundary == 1 ? 1 : element.boundary;
    for (bool isMore = !myText.takes(']'); isMore; ++count)
    {
        if (count > theLargestSize) return fail("too many elements", depth);
        myFrames[depth].index = static_cast<std::uint32_t>(count);
        pad(start, boundary);
        const std::size_t place = myOctets.size();
        if (!piece(node.element, depth + 1)) return false;
        if (node.extent == Extent::terminated && isZero(place, element.size))
            return fail("a zero ends the array", depth + 1);
        isMore = myText.takes(',');
        if (!isMore && !myText.takes(']')) return failHere("a \",\" or \"]\" is missing", depth);
    }
    return true;
}

}  // namespace omt
