// SPDX-License-Identifier: Apache-2.0
// Value::set(): one piece changed, in place where nothing else moves.
#include "omt/codec/valueParts.h"

#include <charconv>

namespace omt
{

namespace
{

/// JSON as it is given; a bare word as a text.
std::string quotedIfBare(std::string_view json)
{
    constexpr std::string_view theStarts = "\"{[0123456789";
    const bool isNegative = json.size() > 1 && json[0] == '-' && json[1] != 'I';
    if (isNegative || (!json.empty() && theStarts.find(json.front()) != std::string_view::npos))
        return std::string(json);
    std::string text = "\"";
    for (const char letter : json)
    {
        if (letter == '"' || letter == '\\') text += '\\';
        text += letter;
    }
    return text + '"';
}

/// Writes the JSON of a value with one piece of it replaced.
class Replacement
{
public:
    Replacement(const Steps& steps, const std::uint8_t* octets, std::string_view json)
        : mySteps(steps), myPlan(steps.plan), myOctets(octets), myJson(json)
    {
    }

    /// False, with a reason, where the piece is not there.
    bool write(const Spot& spot, std::string_view path)
    {
        bool isWrong = false;
        const std::optional<PathStep> step = takeStep(path, isWrong);
        if (isWrong) return false;
        if (!step)
        {
            text += myJson;
            return true;
        }
        const Node& node = myPlan.nodes[spot.node];
        const bool isIndex = step->index != theNone;
        if (node.form == Form::record && !isIndex) return record(spot, *step, path);
        if (node.form == Form::variant && !isIndex) return variant(spot, *step, path);
        if (node.form == Form::array && node.look == Look::elements && isIndex)
            return array(spot, *step, path);
        return false;
    }

    std::string text;
    /// Empty where the path is to blame.
    std::string complaint;

private:
    bool fail(std::string_view why)
    {
        complaint = why;
        return false;
    }

    void keep(const Spot& spot) { appendJsonOf(myPlan, myOctets, mySteps.index, spot, text, {}); }

    bool record(const Spot& spot, const PathStep& step, std::string_view path)
    {
        bool isFound = false;
        bool isWritten = true;
        text += '{';
        mySteps.forEachField(spot,
                             [&](const Part& part, const Spot& one)
                             {
                                 if (text.back() != '{') text += ',';
                                 text += myPlan.text(part.key);
                                 if (myPlan.text(part.name) != step.name)
                                     keep(one);
                                 else
                                 {
                                     isFound = true;
                                     isWritten = write(one, path);
                                 }
                                 return isWritten;
                             });
        text += '}';
        return isWritten && isFound;
    }

    bool array(const Spot& spot, const PathStep& step, std::string_view path)
    {
        if (step.index >= mySteps.count(spot)) return fail("the array has no such element");
        std::uint32_t i = 0;
        bool isWritten = true;
        text += '[';
        mySteps.forEachElement(spot,
                               [&](const Spot& one)
                               {
                                   if (i > 0) text += ',';
                                   if (i++ != step.index)
                                       keep(one);
                                   else
                                       isWritten = write(one, path);
                               });
        text += ']';
        return isWritten;
    }

    bool variant(const Spot& spot, const PathStep& step, std::string_view path)
    {
        const Node& node = myPlan.nodes[spot.node];
        const std::uint32_t wanted = myPlan.findPart(node, step.name);
        if (wanted == theNone) return false;
        const Part* present = nullptr;
        const Spot alternative = mySteps.alternative(spot, present);
        text += '{';
        text += myPlan.text(myPlan.parts[node.first].key);
        if (wanted == 0) return path.empty() && discriminant(spot, alternative, present);
        const Part& part = myPlan.parts[node.first + wanted];
        if (alternative.isThere() && present == &part)
        {
            keep({node.element, spot.offset});
            text += ',';
            text += myPlan.text(part.key);
            if (!write(alternative, path)) return false;
        }
        else
        {
            if (!path.empty())
                return fail(std::string(myPlan.text(myPlan.parts[node.first].name)) +
                            " chooses another alternative, and has to be set before");
            if (!numberOf(node, wanted)) return fail("no number stands for this alternative");
            text += ',';
            text += myPlan.text(part.key);
            text += myJson;
        }
        text += '}';
        return true;
    }

    // A number that stands for an alternative.
    bool numberOf(const Node& node, std::uint32_t wanted)
    {
        for (const Choices::Range& row : myPlan.choices[node.table].numbers)
        {
            if (row.alternative != wanted) continue;
            const bool isUnsigned = myPlan.nodes[node.element].scalar == Scalar::unsignedInteger;
            text += isUnsigned ? std::to_string(static_cast<std::uint64_t>(row.number))
                               : std::to_string(row.number);
            return true;
        }
        return false;
    }

    bool discriminant(const Spot& spot, const Spot& alternative, const Part* present)
    {
        const Node& node = myPlan.nodes[spot.node];
        std::vector<std::uint8_t> number;
        if (const auto error = readJson(myPlan, node.element, myJson, number))
            return fail(error->what);
        text += myJson;
        const std::uint32_t now =
            myPlan.findAlternative(node, loadInteger(myPlan.nodes[node.element], number.data()));
        if (now < theUnknown)
        {
            const Part& part = myPlan.parts[node.first + now];
            text += ',';
            text += myPlan.text(part.key);
            if (alternative.isThere() && present == &part)
                keep(alternative);
            else if (!zeros(part.node))
                return fail(
                    "the alternative cannot begin with zeros, so it has to be given itself");
        }
        else if (isKept(spot))
        {
            text += ",\"octets\":";
            keepOctets(spot);
        }
        text += '}';
        return true;
    }

    bool isKept(const Spot& variant) const
    {
        return mySteps.index.entries[variant.entry].count == theUnknown;
    }

    // The octets of an alternative that is not known.
    void keepOctets(const Spot& variant)
    {
        constexpr char theDigits[] = "0123456789abcdef";
        const std::uint32_t end = mySteps.index.entries[variant.entry].end;
        text += '"';
        for (std::uint32_t i = variant.offset + myPlan.nodes[variant.node].body; i < end; ++i)
        {
            text += theDigits[myOctets[i] >> 4];
            text += theDigits[myOctets[i] & 15];
        }
        text += '"';
    }

    bool zeros(std::uint32_t node)
    {
        constexpr std::uint32_t theMost = 1U << 20;
        const std::uint32_t size = myPlan.nodes[node].size;
        if (size > theMost) return false;
        const std::vector<std::uint8_t> octets(size);
        Index index;
        if (!indexValue(myPlan, node, octets, index)) return false;
        appendJsonOf(myPlan, octets.data(), index, Steps(myPlan, index).root(node), text, {});
        return true;
    }

    const Steps mySteps;
    const Plan& myPlan;
    const std::uint8_t* myOctets;
    std::string_view myJson;
};

/// Whether other pieces depend on what stands at the end of this path.
bool isDecisive(const Plan& plan, std::uint32_t node, std::string_view path)
{
    bool isWrong = false;
    bool isIt = false;
    while (const std::optional<PathStep> step = takeStep(path, isWrong))
    {
        const Node& from = plan.nodes[node];
        if (from.form == Form::array)
        {
            node = from.element;
            // An element of zeros would end the array.
            isIt = from.extent == Extent::terminated;
            continue;
        }
        const std::uint32_t i = plan.findPart(from, step->name);
        if (i == theNone) return true;
        const Part& part = plan.parts[from.first + i];
        isIt = (isIt && from.form == Form::record) || part.isLookedAt ||
               (from.form == Form::variant && i == 0);
        node = part.node;
    }
    return isIt;
}

}  // namespace

std::optional<ValueError> Value::set(std::string_view path, std::string_view json)
{
    if (!myParts || !myParts->plan || fault())
        return ValueError{"only a value without a fault can be changed", std::string(path)};
    Parts& parts = *myParts;
    const Plan& plan = *parts.plan;
    const std::string wanted = quotedIfBare(json);
    parts.scratch.clear();
    const Item item = root()[path];
    const bool isPlaced = item && plan.nodes[item.myNode].isFixed && item.myEntry == theNone &&
                          !isDecisive(plan, parts.node, path);
    if (isPlaced)
    {
        std::optional<ValueError> error = readJson(plan, item.myNode, wanted, parts.scratch);
        if (error)
        {
            const bool isField = !error->path.empty() && error->path.front() != '[';
            error->path = std::string(path) + (isField && !path.empty() ? "." : "") + error->path;
            return error;
        }
        if (!parts.isOwner()) parts.own(parts.octets);
        std::copy(parts.scratch.begin(), parts.scratch.end(), parts.owned.begin() + item.myOffset);
        return std::nullopt;
    }
    Replacement replacement(parts.steps(), parts.octets.data(), wanted);
    if (!root() || !replacement.write(parts.root(), path))
        return ValueError{replacement.complaint.empty() ? whyNoPiece(plan, parts.node, path)
                                                        : replacement.complaint,
                          std::string(path)};
    std::optional<ValueError> error = Type(parts.plan, parts.node).read(replacement.text, *this);
    if (error) error->line = error->column = 0;
    return error;
}

std::optional<ValueError> Value::set(std::string_view path, double number)
{
    char text[40];
    if (number != number) return set(path, std::string_view("NaN"));
    if (number - number != 0)
        return set(path, std::string_view(number > 0 ? "Infinity" : "-Infinity"));
    return set(path, std::string_view(
                         text, static_cast<std::size_t>(
                                   std::to_chars(text, text + sizeof text, number).ptr - text)));
}

}  // namespace omt
