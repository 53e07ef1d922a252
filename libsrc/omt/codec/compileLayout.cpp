// SPDX-License-Identifier: Apache-2.0
// Compiler: the order in which nodes hold each other, octet boundaries, offsets and sizes.
#include "omt/codec/compile.h"

#include <algorithm>

namespace omt
{

template <typename Visit>
void Compiler::forEachHeld(Id id, const Visit& visit) const
{
    const Node& node = myPlan.nodes[id];
    if (myAliases[id] != theNone) visit(myAliases[id]);
    if (node.form == Form::record || node.form == Form::variant)
        for (std::uint32_t i = 0; i < node.parts; ++i) visit(myPlan.parts[node.first + i].node);
    const bool isHeld = (node.extent == Extent::fixed && node.count > 0) ||
                        node.extent == Extent::terminated || node.extent == Extent::padding;
    if (node.form == Form::array && isHeld) visit(node.element);
}

namespace
{

/// Tarjan's algorithm with a stack of its own: what is held comes before what holds it, and nodes
/// that hold themselves, or each other, come out together.
class HoldingOrder
{
public:
    /// `held` has what node i holds from starts[i] to starts[i + 1].
    HoldingOrder(const std::vector<std::uint32_t>& starts, const std::vector<std::uint32_t>& held)
        : myStarts(starts),
          myHeld(held),
          myNumbers(starts.size(), 0),
          myLows(starts.size(), 0),
          myIsOpen(starts.size(), false)
    {
    }

    /// Calls `visit(node, isRing)` for all nodes.
    template <typename Visit>
    void forEach(const Visit& visit)
    {
        for (std::uint32_t root = 0; root + 1 < myStarts.size(); ++root)
        {
            if (myNumbers[root] == 0) enter(root);
            while (!myFrames.empty()) step(visit);
        }
    }

private:
    struct Frame
    {
        std::uint32_t id;
        std::uint32_t next;
    };

    void enter(std::uint32_t id)
    {
        myNumbers[id] = myLows[id] = ++myNumber;
        myOpen.push_back(id);
        myIsOpen[id] = true;
        myFrames.push_back({id, myStarts[id]});
    }

    template <typename Visit>
    void step(const Visit& visit)
    {
        Frame& frame = myFrames.back();
        const std::uint32_t id = frame.id;
        if (frame.next < myStarts[id + 1])
        {
            const std::uint32_t next = myHeld[frame.next++];
            if (myNumbers[next] == 0)
                enter(next);
            else if (myIsOpen[next])
                myLows[id] = std::min(myLows[id], myNumbers[next]);
            return;
        }
        myFrames.pop_back();
        if (!myFrames.empty())
            myLows[myFrames.back().id] = std::min(myLows[myFrames.back().id], myLows[id]);
        if (myLows[id] == myNumbers[id]) close(id, visit);
    }

    template <typename Visit>
    void close(std::uint32_t id, const Visit& visit)
    {
        const auto first = myHeld.begin() + myStarts[id];
        const auto end = myHeld.begin() + myStarts[id + 1];
        const bool isRing = myOpen.back() != id || std::find(first, end, id) != end;
        for (std::uint32_t one = theNone; one != id;)
        {
            one = myOpen.back();
            myOpen.pop_back();
            myIsOpen[one] = false;
            visit(one, isRing);
        }
    }

    const std::vector<std::uint32_t>& myStarts;
    const std::vector<std::uint32_t>& myHeld;
    std::vector<std::uint32_t> myNumbers;
    std::vector<std::uint32_t> myLows;
    std::vector<bool> myIsOpen;
    std::vector<std::uint32_t> myOpen;
    std::vector<Frame> myFrames;
    std::uint32_t myNumber = 0;
};

}  // namespace

void Compiler::findOrder()
{
    const std::size_t size = myPlan.nodes.size();
    std::vector<std::uint32_t> starts(size + 1);
    std::vector<Id> held;
    for (Id id = 0; id < size; ++id)
    {
        forEachHeld(id, [&held](Id one) { held.push_back(one); });
        starts[id + 1] = static_cast<std::uint32_t>(held.size());
    }
    HoldingOrder(starts, held)
        .forEach(
            [this](Id id, bool isRing)
            {
                myOrder.push_back(id);
                if (!isRing) return;
                if (mySources[id])
                    find(Severity::error, "endless-datatype", mySources[id].definition(), nullptr,
                         "\"" + cutText(mySources[id].definition().name) +
                             "\" holds itself without an array between");
                makeOctets(id);
            });
}

std::uint8_t Compiler::boundaryOf(Id id) const
{
    const Node& node = myPlan.nodes[id];
    if (myAliases[id] != theNone) return myPlan.nodes[myAliases[id]].boundary;
    if (node.boundary == 0 || node.form == Form::number) return node.boundary;
    std::uint8_t most = 1;
    const auto take = [&](Id one) { most = std::max(most, myPlan.nodes[one].boundary); };
    if (node.form == Form::array && node.extent != Extent::padding) take(node.element);
    if (node.form == Form::record || node.form == Form::variant)
        for (std::uint32_t i = 0; i < node.parts; ++i) take(myPlan.parts[node.first + i].node);
    if (node.form == Form::array && node.extent == Extent::counted)
        most = std::max<std::uint8_t>(most, 4);
    if (node.form == Form::variant && node.length == Length::extended)
        most = std::max<std::uint8_t>(most, 4);
    if (node.form == Form::variant && node.length == Length::extendable) most = 8;
    return most;
}

// A node that holds one of this boundary has at least that, unless it is not padded.
bool Compiler::raiseBoundary(Id id, std::uint8_t boundary)
{
    Node& node = myPlan.nodes[id];
    if (node.boundary >= boundary) return false;
    const bool isPadding = node.form == Form::array && node.extent == Extent::padding;
    if (myAliases[id] == theNone && (node.boundary == 0 || node.form == Form::number || isPadding))
        return false;
    node.boundary = boundary;
    return true;
}

// Boundaries only grow, and only three times, so that raising those of all who use a node that grew
// comes to an end in linear time.
void Compiler::findBoundaries()
{
    const std::size_t size = myPlan.nodes.size();
    std::vector<std::pair<Id, Id>> users;
    for (Id id = 0; id < size; ++id)
    {
        const Node& node = myPlan.nodes[id];
        forEachHeld(id, [&users, id](Id one) { users.emplace_back(one, id); });
        if (node.form == Form::array) users.emplace_back(node.element, id);
    }
    std::sort(users.begin(), users.end());
    for (const Id id : myOrder) myPlan.nodes[id].boundary = boundaryOf(id);
    std::vector<Id> changed(size);
    for (Id id = 0; id < size; ++id) changed[size - 1 - id] = id;
    while (!changed.empty())
    {
        const Id id = changed.back();
        changed.pop_back();
        const std::uint8_t boundary = myPlan.nodes[id].boundary;
        for (auto user = std::lower_bound(users.begin(), users.end(), std::pair<Id, Id>{id, 0});
             user != users.end() && user->first == id; ++user)
            if (raiseBoundary(user->second, boundary)) changed.push_back(user->second);
    }
}

void Compiler::layOut(Id id)
{
    if (myAliases[id] != theNone)
    {
        Node node = myPlan.nodes[myAliases[id]];
        node.name = myPlan.nodes[id].name;
        if (myPlan.nodes[id].units.size > 0) node.units = myPlan.nodes[id].units;
        myPlan.nodes[id] = node;
        if (myLooks[id] == Look::elements) myLooks[id] = myLooks[myAliases[id]];
        return;
    }
    Node& node = myPlan.nodes[id];
    switch (node.form)
    {
        case Form::record:
            layOutRecord(node);
            break;
        case Form::variant:
            layOutVariant(node);
            break;
        case Form::array:
            layOutArray(id);
            break;
        case Form::number:
        case Form::octets:
            break;
    }
    if (node.isFixed && node.size > theLargestSize)
    {
        if (mySources[id])
            find(Severity::error, "too-large", mySources[id].definition(), nullptr,
                 "\"" + cutText(mySources[id].definition().name) + "\" has more than 2^31 octets");
        makeOctets(id);
    }
}

namespace
{

std::uint32_t saturated(std::uint64_t size)
{
    return size > theLargestSize ? theLargestSize + 1 : static_cast<std::uint32_t>(size);
}

}  // namespace

void Compiler::layOutRecord(Node& node)
{
    const bool isPacked = node.boundary == 0;
    const std::uint64_t phase = node.phase;
    std::uint64_t at = 0;
    std::uint64_t empties = 0;
    std::uint8_t height = 0;
    node.isFixed = true;
    for (std::uint32_t i = 0; i < node.parts; ++i)
    {
        Part& part = myPlan.parts[node.first + i];
        const Node& field = myPlan.nodes[part.node];
        part.boundary = isPacked ? 1 : std::max<std::uint8_t>(field.boundary, 1);
        const std::uint64_t start = aligned(phase + at, part.boundary) - phase;
        part.offset = node.isFixed ? saturated(start) : theNone;
        node.hasPadding = node.hasPadding || start != at || field.hasPadding;
        node.isFixed = node.isFixed && field.isFixed && part.decider == theNone;
        empties += field.empties + (field.isFixed && field.size == 0 ? 1 : 0);
        height = std::max(height, field.height);
        if (part.decider == theNone) at = start + field.size;
    }
    node.size = saturated(at);
    node.empties = static_cast<std::uint32_t>(std::min<std::uint64_t>(empties, theNone));
    node.height = static_cast<std::uint8_t>(std::min<unsigned>(height + 1U, theDeepest + 1));
    node.boundary = std::max<std::uint8_t>(node.boundary, 1);
    if (!node.isFixed) setRest(node);
}

// What is kept back for the fields after one of open size.
void Compiler::setRest(Node& node)
{
    // From the last field to the first: sizes as if the rest began at a multiple of 8. Offsets of
    // the rest change with where it begins, so it is laid out for each of the 8 phases at once.
    std::uint64_t lengths[8] = {};
    bool isFixed = true;
    for (std::uint32_t i = node.parts; i-- > 0;)
    {
        Part& part = myPlan.parts[node.first + i];
        part.rest = saturated(lengths[0]);
        part.isRestFixed = isFixed;
        const Node& field = myPlan.nodes[part.node];
        const bool isThere = field.isFixed && part.decider == theNone;
        isFixed = isFixed && isThere;
        std::uint64_t longer[8];
        for (std::uint64_t phase = 0; phase < 8; ++phase)
        {
            const std::uint64_t end = isThere ? aligned(phase, part.boundary) + field.size : phase;
            longer[phase] = end - phase + lengths[end % 8];
        }
        std::copy(std::begin(longer), std::end(longer), std::begin(lengths));
    }
}

void Compiler::layOutVariant(Node& node)
{
    const std::uint64_t size = myPlan.nodes[node.element].size;
    std::uint8_t most = 1;
    for (std::uint32_t i = 1; i < node.parts; ++i)
        most = std::max(most, myPlan.nodes[myPlan.parts[node.first + i].node].boundary);
    node.isFixed = false;
    std::uint64_t body = aligned(size, most);
    node.size = saturated(size);
    if (node.length != Length::none)
    {
        const bool isPadded = node.length == Length::extendable;
        node.lengthOffset = saturated(isPadded ? aligned(size, 4) : size);
        node.size = node.lengthOffset + 4;
        body = isPadded ? aligned(node.size, 8) : node.size;
    }
    node.body = saturated(body);
}

void Compiler::layOutArray(Id id)
{
    Node& node = myPlan.nodes[id];
    if (node.extent == Extent::counted) node.size = 4;
    if (node.extent != Extent::fixed && node.extent != Extent::terminated) return;
    const Node empty;
    const Node& element =
        node.count > 0 || node.extent == Extent::terminated ? myPlan.nodes[node.element] : empty;
    const std::uint64_t stride = aligned(element.size, std::max<std::uint8_t>(element.boundary, 1));
    node.stride = saturated(stride);
    if (node.extent == Extent::terminated)
    {
        node.size = element.size;
        return;
    }
    node.isFixed = node.count == 0 || element.isFixed;
    const std::uint64_t last = node.count == 0 ? 0 : element.size;
    node.size = saturated(node.count == 0 ? 0 : stride * (node.count - 1ULL) + last);
    if (!node.isFixed) return;
    node.hasPadding = node.count > 0 && (element.hasPadding || (stride != last && node.count > 1));
    const std::uint64_t empties =
        node.count * (element.empties + (node.count > 0 && element.size == 0 ? 1ULL : 0ULL));
    node.empties = static_cast<std::uint32_t>(std::min<std::uint64_t>(empties, theNone));
    node.height = static_cast<std::uint8_t>(
        std::min<unsigned>((node.count == 0 ? 0U : element.height) + 1U, theDeepest + 1));
}

// What arrays need to know of elements that may hold the array again, so after all sizes are known.
void Compiler::finishArrays()
{
    for (const Id id : myOrder)
    {
        Node& node = myPlan.nodes[id];
        if (node.form != Form::array) continue;
        const Node& element = myPlan.nodes[node.element];
        const std::uint32_t boundary =
            node.boundary == 0 ? 1 : std::max<std::uint8_t>(element.boundary, 1);
        node.boundary = std::max<std::uint8_t>(node.boundary, 1);
        node.stride = saturated(aligned(element.size, boundary));
        node.look = element.isFixed && element.form == Form::number ? myLooks[node.element]
                                                                    : Look::elements;
        if ((node.look == Look::latin1 || node.look == Look::hexadecimal) && element.size != 1)
            node.look = Look::elements;
        if (node.look == Look::utf16 && element.size != 2) node.look = Look::elements;
        if (node.extent == Extent::padding) node.look = Look::hexadecimal;
        const bool isEmpty = element.isFixed && element.size == 0;
        const bool isOctet = element.isFixed && element.size == 1;
        const bool isWrong = (node.extent == Extent::lengthless && isEmpty) ||
                             (node.extent == Extent::terminated && (isEmpty || !element.isFixed)) ||
                             (node.extent == Extent::padding && !isOctet);
        if (!isWrong) continue;
        // What is wrong with elements that cannot be decoded has been said.
        if (mySources[id] && myAliases[id] == theNone && element.form != Form::octets)
            find(Severity::error, "array-element", mySources[id].definition(), nullptr,
                 "the array \"" + cutText(mySources[id].definition().name) +
                     "\" cannot be decoded: elements of \"" +
                     std::string(myPlan.text(element.name)) + "\" do not fit its encoding");
        makeOctets(id);
    }
}

}  // namespace omt
