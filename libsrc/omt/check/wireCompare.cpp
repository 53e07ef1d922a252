// SPDX-License-Identifier: Apache-2.0
#include "omt/check/wireCompare.h"

#include "omt/model/compare.h"

#include <algorithm>
#include <queue>
#include <set>
#include <tuple>

namespace omt
{

namespace
{

std::string quoted(std::string_view name)
{
    return '`' + cutText(name) + '`';
}

std::string describeNumber(const Node& node)
{
    constexpr std::string_view theScalars[] = {"a signed number of ", "an unsigned number of ",
                                               "a floating point number of "};
    return std::string(theScalars[static_cast<std::size_t>(node.scalar)]) +
           std::to_string(8 * node.size) + " bits" +
           (node.isLittleEndian && node.size > 1 ? ", little-endian" : "");
}

std::string describeArray(const Node& node)
{
    switch (node.extent)
    {
        case Extent::fixed:
            return "an array of " + std::to_string(node.count) + " elements";
        case Extent::counted:
            return "an array with a count";
        case Extent::lengthless:
            return "an array without a count";
        case Extent::terminated:
            return "an array up to a zero";
        case Extent::padding:
            return "padding to a multiple of " + std::to_string(node.count);
    }
    return "";
}

std::string describe(const Node& node)
{
    switch (node.form)
    {
        case Form::number:
            return describeNumber(node);
        case Form::record:
            return "a record";
        case Form::variant:
            return node.length == Length::none       ? "a variant record"
                   : node.length == Length::extended ? "an extended variant record"
                                                     : "an extendable variant record";
        case Form::array:
            return describeArray(node);
        case Form::octets:
            return "something that cannot be decoded";
    }
    return "";
}

/// Whether a node has the octets of what it holds and no others.
bool isOnlyAround(const Plan& plan, const Node& node)
{
    if (node.form == Form::array) return node.extent == Extent::fixed && node.count == 1;
    if (node.form != Form::record || node.parts != 1) return false;
    const Part& part = plan.parts[node.first];
    return part.offset == 0 && part.stepCount == 0 && part.decider == theNone;
}

/// For each node the innermost one that it is only around, which may be itself.
std::vector<std::uint32_t> innermost(const Plan& plan)
{
    std::vector<std::uint32_t> inner(plan.nodes.size(), theNone);
    std::vector<std::uint32_t> chain;
    for (std::uint32_t start = 0; start < inner.size(); ++start)
    {
        std::uint32_t at = start;
        while (inner[at] == theNone && isOnlyAround(plan, plan.nodes[at]))
        {
            chain.push_back(at);
            const Node& node = plan.nodes[at];
            at = node.form == Form::array ? node.element : plan.parts[node.first].node;
        }
        if (inner[at] == theNone) inner[at] = at;
        for (; !chain.empty(); chain.pop_back()) inner[chain.back()] = inner[at];
    }
    return inner;
}

std::optional<std::uint64_t> known(std::uint32_t offset)
{
    return offset == theNone ? std::nullopt : std::optional<std::uint64_t>(offset);
}

/// The first octet in which two numbers of a form differ; nothing where they do not.
std::optional<std::uint64_t> firstOctet(std::int64_t before, std::int64_t after, const Node& node)
{
    const auto change = static_cast<std::uint64_t>(before) ^ static_cast<std::uint64_t>(after);
    for (std::uint32_t i = 0; i < node.size && i < 8; ++i)
        if ((change >> 8 * (node.isLittleEndian ? i : node.size - 1 - i) & 0xFF) != 0) return i;
    return std::nullopt;
}

}  // namespace

WireCompare::WireCompare(const Plan& before, const Plan& after,
                         std::function<Undecoded(std::string_view name)> undecoded)
    : myBefore(before),
      myAfter(after),
      myUndecoded(std::move(undecoded)),
      myInnerBefore(innermost(before)),
      myInnerAfter(innermost(after))
{
    constexpr std::size_t theLeast = 100000;
    constexpr std::size_t theFactor = 16;
    std::size_t size = 0;
    for (const Plan* const plan : {&before, &after})
    {
        size += plan->nodes.size() + plan->parts.size();
        for (const Enumeration& one : plan->enumerations) size += one.entries.size();
        for (const Choices& one : plan->choices) size += one.numbers.size();
    }
    myStepsLeft = theLeast + theFactor * size;
}

WireChange WireCompare::compare(std::uint32_t before, std::uint32_t after)
{
    if (before == theNone || after == theNone)
        return {Wire::unknown, std::nullopt, "its datatype is not known"};
    const Id first = static_cast<Id>(myPairs.size());
    const Id pair = pairOf(before, after);
    for (Id next = first; next < myPairs.size(); ++next) look(next);
    if (first < myPairs.size()) spread(first);
    return changeOf(pair);
}

WireCompare::Id WireCompare::pairOf(Id before, Id after)
{
    const Id innerBefore = myInnerBefore[before];
    const Id innerAfter = myInnerAfter[after];
    const auto isOneForm = [this](Id one, Id two)
    { return myBefore.nodes[one].form == myAfter.nodes[two].form; };
    // Records of one field are records where that tells more.
    if (isOneForm(innerBefore, innerAfter) || !isOneForm(before, after))
    {
        before = innerBefore;
        after = innerAfter;
    }
    const auto [place, isNew] =
        myIds.try_emplace(std::uint64_t{before} << 32 | after, static_cast<Id>(myPairs.size()));
    if (isNew) myPairs.push_back({before, after});
    return place->second;
}

void WireCompare::say(Wire wire, Octet octet, std::string why)
{
    Pair& pair = myPairs[myCurrent];
    const bool isEarlier = octet && (!pair.octet || *octet < *pair.octet);
    if (wire < pair.wire || (wire == pair.wire && !isEarlier)) return;
    pair.wire = wire;
    pair.octet = octet;
    pair.why = std::move(why);
}

void WireCompare::sayOther(const Node& before, const Node& after, Octet octet)
{
    say(Wire::different, octet, "it is " + describe(after) + ", and was " + describe(before));
}

void WireCompare::hold(Id before, Id after, Octet offset, Name name, bool isElement)
{
    const Id pair = pairOf(before, after);
    myHeld.push_back({pair, offset, name, isElement});
}

void WireCompare::look(Id pair)
{
    myCurrent = pair;
    myPairs[pair].first = myPairs[pair].end = myHeld.size();
    const Node& before = myBefore.nodes[myPairs[pair].before];
    const Node& after = myAfter.nodes[myPairs[pair].after];
    if (myStepsLeft == 0)
        say(Wire::unknown, std::nullopt, "too many datatypes would have to be compared");
    else if (--myStepsLeft; before.form == Form::octets || after.form == Form::octets)
        lookAtUndecoded(before, after);
    else if (before.form != after.form)
        sayOther(before, after, 0);
    else if (before.form == Form::number)
        lookAtNumbers(before, after);
    else if (before.form == Form::record)
        lookAtRecords(before, after);
    else if (before.form == Form::array)
        lookAtArrays(before, after);
    else
        lookAtVariants(before, after);
    myPairs[pair].end = myHeld.size();
}

// Nothing is known of its octets, so what its words say must do.
void WireCompare::lookAtUndecoded(const Node& before, const Node& after)
{
    const std::string_view name = myAfter.text(after.name);
    const bool isOne = before.form == after.form && myBefore.text(before.name) == name;
    const Undecoded found = isOne ? myUndecoded(name) : Undecoded{false};
    bool isSame = found.isSame;
    for (const auto& [first, second] : found.held)
    {
        const auto one = myBefore.names.find(first);
        const auto two = myAfter.names.find(second);
        if (one != myBefore.names.end() && two != myAfter.names.end())
            hold(one->second, two->second, std::nullopt, {});
        else
            isSame = isSame && first == second && one == myBefore.names.end() &&
                     two == myAfter.names.end();
    }
    if (!isSame) say(Wire::unknown, std::nullopt, "it cannot be decoded");
}

// Numbers ----------------------------------------------------------------------------------------

void WireCompare::lookAtNumbers(const Node& before, const Node& after)
{
    const bool areNamed = before.table != theNone || after.table != theNone;
    const bool isOneForm =
        (before.scalar == Scalar::floating) == (after.scalar == Scalar::floating);
    const bool isOneOrder = before.isLittleEndian == after.isLittleEndian || after.size == 1;
    // Whether numbers with names have a sign is nothing that octets show.
    if (before.size != after.size || !isOneForm || !isOneOrder ||
        (before.scalar != after.scalar && !areNamed))
        return sayOther(before, after, 0);
    if (before.table != theNone && after.table != theNone)
        lookAtNames(myBefore.enumerations[before.table], myAfter.enumerations[after.table], after);
}

// Another name for a number is no other octet; a name with another number is.
void WireCompare::lookAtNames(const Enumeration& before, const Enumeration& after, const Node& node)
{
    for (const Enumeration::Entry& entry : before.entries)
    {
        if (myStepsLeft > 0) --myStepsLeft;
        const std::string_view name = myBefore.text(entry.name);
        const std::uint32_t named = entry.isFirst ? myAfter.findEntry(after, name) : theNone;
        const std::int64_t number = named == theNone ? entry.number : after.entries[named].number;
        if (const Octet octet = firstOctet(entry.number, number, node))
            return say(Wire::different, octet,
                       "the enumerator " + quoted(name) + " is " + std::to_string(number) +
                           ", and was " + std::to_string(entry.number));
        if (Plan::findEntry(after, number) == theNone)
            return say(
                Wire::different, 0,
                "the enumerator " + quoted(name) + " (" + std::to_string(number) + ") is gone");
    }
    for (const Enumeration::Entry& entry : after.entries)
    {
        if (myStepsLeft > 0) --myStepsLeft;
        if (Plan::findEntry(before, entry.number) == theNone)
            return say(Wire::compatible, 0,
                       "the enumerator " + quoted(myAfter.text(entry.name)) + " (" +
                           std::to_string(entry.number) + ") is new");
    }
}

// Records ----------------------------------------------------------------------------------------

void WireCompare::lookAtRecords(const Node& before, const Node& after)
{
    Octet end = 0;
    const std::uint32_t count = std::min(before.parts, after.parts);
    for (std::uint32_t i = 0; i < count; ++i)
    {
        const Part& second = myAfter.parts[after.first + i];
        if (!lookAtPart(before, after, i)) return;
        const Node& node = myAfter.nodes[second.node];
        end = known(second.offset);
        if (end && node.isFixed && second.decider == theNone)
            *end += node.size;
        else
            end.reset();
    }
    if (before.parts == after.parts && before.isFixed && after.isFixed && before.size != after.size)
        say(Wire::different, std::min(before.size, after.size), "padding at its end differs");
    const auto name = [](const Plan& plan, const Node& node, std::uint32_t index)
    { return "the field " + quoted(plan.text(plan.parts[node.first + index].name)); };
    if (before.parts > count) say(Wire::different, end, name(myBefore, before, count) + " is gone");
    if (after.parts > count) say(Wire::different, end, name(myAfter, after, count) + " is new");
}

namespace
{

std::string startsAt(std::uint32_t offset)
{
    return offset == theNone ? " follows something of open size"
                             : " begins at octet " + std::to_string(offset);
}

}  // namespace

/// Whether the same decides whether a field is there, and how many elements it has.
bool WireCompare::isSameDecision(const Part& before, const Part& after) const
{
    const auto isSameStep = [](const Step& one, const Step& two)
    { return one.what == two.what && one.value == two.value; };
    const auto steps = myBefore.steps.begin() + before.steps;
    return before.stepCount == after.stepCount && before.decider == after.decider &&
           before.decidingNumber == after.decidingNumber &&
           std::equal(steps, steps + before.stepCount, myAfter.steps.begin() + after.steps,
                      isSameStep);
}

/// Whether what follows can still be compared.
bool WireCompare::lookAtPart(const Node& recordBefore, const Node& recordAfter, std::uint32_t i)
{
    const Part& before = myBefore.parts[recordBefore.first + i];
    const Part& after = myAfter.parts[recordAfter.first + i];
    if (myStepsLeft > 0) --myStepsLeft;
    const std::string name = quoted(myAfter.text(after.name));
    const bool isOpen = before.offset == theNone;
    if (before.offset != after.offset)
    {
        say(Wire::different, known(std::min(before.offset, after.offset)),
            name + startsAt(after.offset) + ", and " + quoted(myBefore.text(before.name)) +
                startsAt(before.offset));
        return false;
    }
    if (isOpen && before.boundary != after.boundary)
    {
        say(Wire::different, std::nullopt, "padding before " + name + " differs");
        return false;
    }
    if ((before.stepCount == 0) != (after.stepCount == 0))
        say(Wire::unknown, known(after.offset),
            "only one of the models says how many elements " + name + " has");
    else if (!isSameDecision(before, after))
    {
        say(Wire::different, known(after.offset), "what decides about " + name + " differs");
        return false;
    }
    const Node& first = myBefore.nodes[before.node];
    const Node& second = myAfter.nodes[after.node];
    hold(before.node, after.node, known(after.offset), after.name);
    // What follows stands elsewhere only because this one is as it is.
    return first.size == second.size;
}

// Arrays -----------------------------------------------------------------------------------------

void WireCompare::lookAtArrays(const Node& before, const Node& after)
{
    const auto isOpen = [](const Node& node)
    { return node.extent == Extent::lengthless || node.extent == Extent::terminated; };
    if (before.extent != after.extent)
        return sayOther(before, after, isOpen(before) && isOpen(after) ? Octet() : Octet(0));
    const bool isFixed = after.extent == Extent::fixed;
    if (after.extent == Extent::padding && before.count != after.count)
        return sayOther(before, after, std::nullopt);
    const std::uint64_t stride = std::min(before.stride, after.stride);
    if (isFixed && before.count != after.count)
        sayOther(before, after, std::min(before.count, after.count) * stride);
    if (isFixed && (before.count == 0 || after.count == 0)) return;

    const Node& first = myBefore.nodes[before.element];
    const Node& second = myAfter.nodes[after.element];
    const bool areCounted = after.extent == Extent::counted;
    if (areCounted && before.body != after.body)
        return say(Wire::different, std::min(before.body, after.body),
                   "padding before its elements differs");
    const std::uint64_t begin = areCounted ? after.body : 0;
    hold(before.element, after.element, begin, {}, true);
    if (before.stride != after.stride && first.size == second.size)
        say(Wire::different, begin + second.size, "padding between its elements differs");
    if (!isFixed && (before.least != after.least || before.most != after.most))
        say(Wire::compatible, 0, "it may have another number of elements");
}

// Variant records --------------------------------------------------------------------------------

void WireCompare::lookAtVariants(const Node& before, const Node& after)
{
    hold(before.element, after.element, 0, myAfter.parts[after.first].name);
    if (before.length != after.length)
        return sayOther(before, after, myAfter.nodes[after.element].size);
    if (myBefore.nodes[before.element].size != myAfter.nodes[after.element].size) return;
    if (before.body != after.body)
        return say(Wire::different, std::min(before.body, after.body),
                   "padding before its alternatives differs");
    lookAtChoices(before, after);
}

namespace
{

std::uint32_t alternativeOf(const Plan& plan, const Node& variant, std::int64_t number)
{
    const Choices& choices = plan.choices[variant.table];
    const auto found =
        std::lower_bound(choices.numbers.begin(), choices.numbers.end(), number,
                         [](const Choices::Range& one, std::int64_t n) { return one.number < n; });
    if (found != choices.numbers.end() && found->number == number) return found->alternative;
    return choices.other == theNone ? theUnknown : choices.other;
}

}  // namespace

void WireCompare::lookAtChoices(const Node& before, const Node& after)
{
    const Choices& first = myBefore.choices[before.table];
    const Choices& second = myAfter.choices[after.table];
    std::set<std::pair<Id, Id>> seen;
    const auto look = [&](Id one, Id two)
    {
        if (myStepsLeft > 0) --myStepsLeft;
        if (seen.insert({one, two}).second) lookAtAlternatives(before, after, one, two);
    };
    const auto orUnknown = [](Id other) { return other == theNone ? theUnknown : other; };
    for (const Choices::Range& range : first.numbers)
        look(range.alternative, alternativeOf(myAfter, after, range.number));
    look(orUnknown(first.other), orUnknown(second.other));
    for (const Choices::Range& range : second.numbers)
        look(alternativeOf(myBefore, before, range.number), range.alternative);
}

/// The alternatives of one number, which may be theNothing or theUnknown.
void WireCompare::lookAtAlternatives(const Node& before, const Node& after, Id first, Id second)
{
    const bool isThere = first < theUnknown;
    if (!isThere && second >= theUnknown) return;
    if (isThere && second < theUnknown)
    {
        const Part& part = myAfter.parts[after.first + second];
        return hold(myBefore.parts[before.first + first].node, part.node, after.body, part.name);
    }
    const Part& part =
        isThere ? myBefore.parts[before.first + first] : myAfter.parts[after.first + second];
    const std::string name =
        "the alternative " + quoted((isThere ? myBefore : myAfter).text(part.name));
    if (isThere)
        say(Wire::different, after.body, name + " is gone");
    else
        say(Wire::compatible, after.body, name + " is new");
}

// From what differs to all that holds it ---------------------------------------------------------

void WireCompare::spread(Id first)
{
    for (const Wire wire : {Wire::different, Wire::unknown, Wire::compatible}) spread(first, wire);
}

// The way from each pair to the octet that differs first is a shortest way; offsets are lengths.
void WireCompare::spread(Id first, Wire wire)
{
    // Octets that are not known come after all others, then the fewest steps count.
    using Distance = std::tuple<bool, std::uint64_t, std::size_t>;
    using Entry = std::tuple<Distance, Id, std::size_t, Id>;
    std::priority_queue<Entry, std::vector<Entry>, std::greater<>> open;
    std::vector<bool> isDone(myPairs.size() - first);
    for (Id id = first; id < myPairs.size(); ++id)
    {
        const Pair& pair = myPairs[id];
        if (pair.wire > wire) isDone[id - first] = true;
        if (pair.wire == wire)
            open.push({
                {!pair.octet, pair.octet.value_or(0), 0},
                id, theNothingHeld, id
            });
    }
    std::vector<std::vector<std::pair<Id, std::size_t>>> users(myPairs.size() - first);
    const auto reach = [&](Id user, std::size_t held, const Distance& from)
    {
        if (isDone[user - first]) return;
        const Octet offset = myHeld[held].offset;
        const bool isUnknown = std::get<0>(from) || !offset;
        open.push({
            {isUnknown, isUnknown ? 0 : std::get<1>(from) + *offset, std::get<2>(from) + 1},
            user,
            held,
            user
        });
    };
    for (Id id = first; id < myPairs.size(); ++id)
        for (std::size_t i = myPairs[id].first; i < myPairs[id].end; ++i)
        {
            const Pair& held = myPairs[myHeld[i].pair];
            if (myHeld[i].pair >= first)
                users[myHeld[i].pair - first].emplace_back(id, i);
            else if (held.wire == wire)
                reach(id, i, {!held.octet, held.octet.value_or(0), 0});
        }
    while (!open.empty())
    {
        const auto [distance, id, through, ignored] = open.top();
        open.pop();
        if (isDone[id - first]) continue;
        isDone[id - first] = true;
        Pair& pair = myPairs[id];
        pair.wire = wire;
        pair.octet = std::get<0>(distance) ? Octet() : Octet(std::get<1>(distance));
        pair.through = through;
        pair.source = through == theNothingHeld ? id : myPairs[myHeld[through].pair].source;
        for (const auto& [user, held] : users[id - first]) reach(user, held, distance);
    }
}

WireChange WireCompare::changeOf(Id pair) const
{
    WireChange change;
    change.wire = myPairs[pair].wire;
    if (change.wire == Wire::same) return change;
    if (change.wire != Wire::compatible && myPairs[pair].octet) change.octet = myPairs[pair].octet;
    change.why = myPairs[myPairs[pair].source].why;
    constexpr std::size_t theLongest = 300;
    constexpr int theMostHeld = 100;
    std::string path;
    int steps = 0;
    for (; myPairs[pair].through != theNothingHeld; pair = myHeld[myPairs[pair].through].pair)
    {
        const Held& held = myHeld[myPairs[pair].through];
        const std::string_view name = myAfter.text(held.name);
        if (path.size() > theLongest || ++steps > theMostHeld)
        {
            path += "...";
            break;
        }
        if (held.isElement)
            path += "[0]";
        else if (!name.empty())
        {
            if (!path.empty()) path += '.';
            path += cutText(name);
        }
    }
    change.path = std::move(path);
    return change;
}

}  // namespace omt
