// SPDX-License-Identifier: Apache-2.0
// ValueWriter: from one piece to the next.
#include "omt/codec/valueWriterParts.h"

#include <algorithm>

namespace omt
{

const ValueWriter::Step ValueWriter::Parts::theEnd{0, 0, 0, theNone, Kind::end, 0};
const ValueWriter::Step ValueWriter::Parts::theKept{0, 0, 0, theNone, Kind::octets, 0};
const ValueWriter::Step ValueWriter::Parts::theCompleted{0, 0, 0, theNone, Kind::complete, 0};
const ValueWriter::Step ValueWriter::Parts::theFailed{0, 0, 0, theNone, Kind::failed, 0};

ValueWriter::Parts::Parts(Cursor& ofWriter, std::shared_ptr<const Plan> ofType, std::uint32_t node)
    : cursor(&ofWriter), owner(std::move(ofType)), plan(*owner), runs(plan.nodes.size())
{
    root = &runOf(node);
    isSure = omt::isSure(plan.nodes[node], 0);
    begin();
}

void ValueWriter::Parts::begin()
{
    size = 0;
    empties = 0;
    depth = 0;
    looked.clear();
    open(*root);
}

// Room, and mistakes -----------------------------------------------------------------------------

void ValueWriter::Parts::enlarge(std::size_t needed)
{
    constexpr std::size_t theLeast = 256;
    octets.resize(std::max({needed, 2 * octets.size(), theLeast}));
    cursor->start = octets.data() + top().start;
}

void ValueWriter::Parts::pass(const Step& step, std::size_t end)
{
    cursor->step = &step + 1;
    if (!top().run->isSized)
        size = end;
    else
        std::memset(octets.data() + end, 0, placeOf(*cursor->step) - end);
}

void ValueWriter::Parts::fail(const std::string& what)
{
    if (!error) error = ValueError{what, pathOf()};
    cursor->step = &theFailed;
}

void ValueWriter::Parts::failExpecting(const Step& step, std::string_view but)
{
    const char* const what = step.kind == Kind::text     ? "a text "
                             : step.kind == Kind::octets ? "an array of octets "
                             : step.kind >= Kind::array  ? "an array "
                                                         : "a number ";
    fail(what + std::string(but));
}

std::string ValueWriter::Parts::pathOf() const
{
    std::string path;
    const auto add = [&](const Node& node, std::uint32_t i, std::uint32_t)
    {
        if (node.form == Form::array)
        {
            path += '[' + std::to_string(i) + ']';
            return;
        }
        if (!path.empty()) path += '.';
        path += plan.text(plan.parts[node.first + i].name);
    };
    for (std::uint32_t i = 0; i < depth; ++i) add(nodeOf(frames[i]), frames[i].index, 0);
    if (top().stage == Stage::steps && cursor->step->kind < Kind::end)
        forEachLevel(*cursor->step, add);
    return path;
}

const Part* ValueWriter::Parts::partOnTop() const
{
    if (depth == 0) return nullptr;
    const Frame& around = frames[depth - 1];
    const Node& node = nodeOf(around);
    return node.form == Form::array ? nullptr : &plan.parts[node.first + around.index];
}

// Moves ------------------------------------------------------------------------------------------

const ValueWriter::Step* ValueWriter::Parts::reach()
{
    while (cursor->step->kind == Kind::end)
        if (!advance()) move();
    if (cursor->step->kind < Kind::end) return cursor->step;
    if (cursor->step->kind == Kind::complete) fail("something follows the value");
    return nullptr;
}

bool ValueWriter::Parts::advance()
{
    Frame& frame = top();
    const Run& run = *frame.run;
    if (!run.variant || run.load == Load::other || frame.stage != Stage::steps)
        return run.isWhole && advanceToElement();
    std::uint8_t* const start = cursor->start + run.variantOffset;
    const std::uint32_t number = run.load == Load::octet ? *start : loadBig32(start);
    std::uint32_t alternative = theNone;
    if (number < theTargets)
        alternative = run.targets[number].alternative;
    else if (run.slotCount > 0)
    {
        const Slot& slot = run.slots[slotOf(number, run.slotCount)];
        if (slot.number == number) alternative = slot.target.alternative;
    }
    if (alternative >= run.joined.size()) return false;
    Run* const joined = run.joined[alternative].get();
    if (!joined || !joined->contents || depth + joined->height > theDeepest) return false;
    if (octets.size() < frame.start + joined->end + theSlack) return false;
    const Node& variant = *run.variant;
    // Numbers are stored with the padding after them.
    if (variant.length != Length::none)
    {
        const std::uint64_t length = __builtin_bswap32(joined->length);
        std::memcpy(start + variant.lengthOffset, &length, sizeof length);
    }
    cursor->step = joined->contents;
    frame.run = joined;
    return true;
}

bool ValueWriter::Parts::advanceToElement()
{
    if (depth == 0) return false;
    Frame& piece = top();
    Frame& around = frames[depth - 1];
    // Only arrays have elements.
    const bool isNext = around.element && around.index + 1 < around.count;
    if (!isNext || piece.stage != Stage::steps || !piece.run->isSized) return false;
    Run& element = *around.element;
    const std::size_t end = piece.start + piece.run->end;
    const std::uint32_t boundary = around.run->node->boundary == 1 ? 1 : element.node->boundary;
    const std::size_t start = around.start + aligned(end - around.start, boundary);
    if (octets.size() < start + element.end + theSlack) return false;
    std::memset(octets.data() + end, 0, 8);
    ++around.index;
    size = start;
    piece.start = start;
    piece.run = &element;
    cursor->start = octets.data() + start;
    cursor->step = element.steps.data();
    return true;
}

bool ValueWriter::Parts::isAtEnd()
{
    const Frame& piece = top();
    const Run& run = *piece.run;
    if (!isSure || !run.isWhole || cursor->step != &run.steps.back()) return false;
    if (depth == 1)
    {
        const Frame& around = frames[0];
        if (!around.element || around.index + 1 != around.count) return false;
    }
    if (run.isSized) size = piece.start + run.end;
    return depth < 2;
}

// Member by member, as they are soon read again that way.
void ValueWriter::Parts::setFrame(Run& run, std::size_t start, Stage stage)
{
    Frame& frame = frames[depth];
    frame.run = &run;
    frame.start = start;
    frame.index = 0;
    frame.count = 0;
    frame.element = nullptr;
    frame.looked = looked.size();
    frame.stage = stage;
}

void ValueWriter::Parts::open(Run& run)
{
    setFrame(run, size, Stage::steps);
    if (run.node->isLooking) looked.resize(looked.size() + run.node->parts);
    cursor->step = run.steps.data();
    cursor->start = room(size, run.end);
    // Padding may come before the first field where it counts from elsewhere.
    if (cursor->step->offset > 0) std::memset(cursor->start, 0, 8);
}

bool ValueWriter::Parts::push(std::uint32_t id)
{
    Run& run = runOf(id);
    if (depth + 1 + run.height > theDeepest)
        return fail("values are nested deeper than 200"), false;
    if (run.isEmpty && ++empties > theMostEmpties)
        return fail("there are more than 1000000 elements and fields without octets"), false;
    ++depth;
    open(run);
    return true;
}

ValueWriter::Parts::Move ValueWriter::Parts::pop()
{
    const Frame& piece = top();
    if (depth == 0)
    {
        cursor->step = &theCompleted;
        return Move::ended;
    }
    cursor->step = &theEnd;
    Frame& around = frames[depth - 1];
    const Node& node = nodeOf(around);
    if (nodeOf(piece).isLooking) looked.resize(piece.looked);
    if (node.isLooking && !noteLooked(around, piece)) return Move::failed;
    if (node.extent == Extent::terminated)
    {
        const std::uint8_t* const first = octets.data() + piece.start;
        const auto isZero = [](std::uint8_t octet) { return octet == 0; };
        if (std::all_of(first, first + (size - piece.start), isZero))
            return fail("a zero ends the array"), Move::failed;
    }
    --depth;
    if (node.form == Form::variant)
        around.stage = Stage::done;
    else
        ++around.index;
    return Move::ended;
}

// What a field of a record means for those after it.
bool ValueWriter::Parts::noteLooked(const Frame& record, const Frame& field)
{
    const Part& part = plan.parts[nodeOf(record).first + record.index];
    const Node& node = nodeOf(field);
    if (part.isLookedAt && node.form == Form::number)
        looked[record.looked + record.index] = {loadInteger(node, octets.data() + field.start),
                                                true};
    if (part.stepCount == 0 || node.form != Form::array) return true;
    const std::string complaint =
        statedComplaint(plan, part, looked.data() + record.looked, elements);
    if (!complaint.empty()) fail(complaint);
    return complaint.empty();
}

ValueWriter::Parts::Move ValueWriter::Parts::move(const std::string_view* name)
{
    Frame& frame = top();
    const Run& run = *frame.run;
    const Node& node = nodeOf(frame);
    if (frame.stage == Stage::steps)
    {
        if (run.isSized) size = frame.start + run.end;
        if (run.isWhole) return pop();
        if (run.variant) return choose(name);
        frame.stage = Stage::parts;
        frame.index = run.fields;
    }
    if (node.form == Form::record) return nextField(name);
    if (node.form == Form::array) return nextElement();
    if (node.length != Length::none)
        size = frame.start + closeMeasured(node, octets.data() + frame.start, size - frame.start);
    return pop();
}

ValueWriter::Parts::Move ValueWriter::Parts::nextField(const std::string_view* name)
{
    Frame& frame = top();
    const Node& node = nodeOf(frame);
    for (; frame.index < node.parts; ++frame.index)
    {
        const Part& part = plan.parts[node.first + frame.index];
        if (node.isLooking && isAbsent(part, looked.data() + frame.looked)) continue;
        const std::size_t origin = frame.start - node.phase;
        growTo(origin + aligned(size - origin, part.boundary));
        const Node& field = plan.nodes[part.node];
        const bool isPadding = field.form == Form::array && field.extent == Extent::padding;
        if (!isPadding || (name && *name == plan.text(part.name)))
            return push(part.node) ? Move::begun : Move::failed;
        growTo(aligned(size, field.count));
    }
    return pop();
}

ValueWriter::Parts::Move ValueWriter::Parts::nextElement()
{
    Frame& frame = top();
    const Node& array = nodeOf(frame);
    const Node& element = plan.nodes[array.element];
    if (frame.index < frame.count)
    {
        const std::uint32_t boundary = array.boundary == 1 ? 1 : element.boundary;
        growTo(frame.start + aligned(size - frame.start, boundary));
        return push(array.element) ? Move::begun : Move::failed;
    }
    elements = frame.count;
    if (array.extent == Extent::terminated)
        growTo(frame.start + std::size_t{frame.count} * array.stride + element.size);
    return pop();
}

// What follows a discriminant: the alternative of its number, unless another one is asked for.
ValueWriter::Parts::Move ValueWriter::Parts::choose(const std::string_view* name)
{
    const Frame& frame = top();
    const Node& node = *frame.run->variant;
    const std::size_t start = frame.start + frame.run->variantOffset;
    const std::int64_t number = loadInteger(plan.nodes[node.element], octets.data() + start);
    const std::uint32_t wanted = plan.findAlternative(node, number);
    std::uint32_t given = wanted;
    if (name && given < theUnknown && plan.text(plan.parts[node.first + given].name) != *name)
    {
        given = plan.findPart(node, *name);
        if (given == theNone || given == 0) given = theNothing;
    }
    if (given >= theUnknown && node.length != Length::none)
        given = name && *name == "octets" ? theUnknown : theNothing;
    const bool isRight = isAlternative(node, wanted, given);
    if (isRight && given < theUnknown && join(given)) return Move::begun;
    enterVariant(start);
    if (isRight) return chooseSlowly(node, given);
    return fail(alternativeComplaint(plan, node, number, wanted, given)), Move::failed;
}

// Goes on with steps of which the alternative is a part.
bool ValueWriter::Parts::join(std::uint32_t alternative)
{
    Frame& frame = top();
    const Run& run = *frame.run;
    Run& joined = joinedRun(*frame.run, alternative);
    if (!joined.contents || depth + joined.height > theDeepest) return false;
    cursor->start = room(frame.start, joined.end);
    cursor->step = joined.contents;
    const Node& node = *run.variant;
    std::uint8_t* const start = cursor->start + run.variantOffset;
    std::memset(start + plan.nodes[node.element].size, 0, 8);
    if (node.length != Length::none) closeMeasured(node, start, joined.end - run.variantOffset);
    frame.run = &joined;
    return true;
}

// Gives the variant record that begins here a frame of its own, if it is a field.
void ValueWriter::Parts::enterVariant(std::size_t start)
{
    Frame& frame = top();
    if (nodeOf(frame).form == Form::record)
    {
        frame.stage = Stage::parts;
        frame.index = frame.run->fields;
        Run& run = runOf(plan.parts[nodeOf(frame).first + frame.index].node);
        ++depth;
        setFrame(run, start, Stage::done);
    }
    top().stage = Stage::done;
}

ValueWriter::Parts::Move ValueWriter::Parts::chooseSlowly(const Node& variant, std::uint32_t given)
{
    Frame& frame = top();
    frame.index = given;
    const bool isMeasured = variant.length != Length::none;
    if (isMeasured) growTo(frame.start + variant.lengthOffset + 4);
    if (given == theNothing)
    {
        if (isMeasured) std::memset(octets.data() + frame.start + variant.lengthOffset, 0, 4);
        return pop();
    }
    growTo(frame.start + variant.body);
    if (given == theUnknown)
    {
        frame.stage = Stage::kept;
        cursor->step = &theKept;
        return Move::begun;
    }
    return push(plan.parts[variant.first + given].node) ? Move::begun : Move::failed;
}

}  // namespace omt
