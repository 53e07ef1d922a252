// SPDX-License-Identifier: Apache-2.0
// ValueWriter: records, fields and elements that are told, which have to begin or end at this
// place.
#include "omt/codec/valueWriterParts.h"

namespace omt
{

void ValueWriter::beginRecord(std::string_view)
{
    Parts& parts = *myParts;
    for (;; parts.move())
    {
        const Step& step = *myCursor.step;
        const Form form = parts.nodeOf(parts.top()).form;
        if (parts.isAtStart() && (form == Form::record || form == Form::variant)) return;
        if (step.kind == Kind::failed) return;
        if (step.kind == Kind::end) continue;
        bool isHere = false;
        if (step.kind < Kind::end && parts.isInSteps())
            parts.forEachLevel(step,
                               [&](const Node& node, std::uint32_t i, std::uint32_t at)
                               {
                                   const bool isFirst = node.form != Form::array && i == 0;
                                   isHere = isHere || (isFirst && at == step.offset);
                               });
        if (!isHere) parts.fail("no record begins here");
        return;
    }
}

void ValueWriter::field(std::string_view name)
{
    Parts& parts = *myParts;
    for (;; parts.move(&name))
    {
        const Step& step = *myCursor.step;
        if (step.kind == Kind::failed) return;
        const Part* const part = parts.isAtStart() ? parts.partOnTop() : nullptr;
        if (part && parts.plan.text(part->name) == name) return;
        if (&step == &Parts::theKept && name == "octets") return;
        if (step.kind == Kind::end) continue;
        bool isHere = false;
        if (step.kind < Kind::end && parts.isInSteps())
            parts.forEachLevel(step,
                               [&](const Node& node, std::uint32_t i, std::uint32_t at)
                               {
                                   if (node.form == Form::array || at != step.offset) return;
                                   const Part& one = parts.plan.parts[node.first + i];
                                   isHere = isHere || parts.plan.text(one.name) == name;
                               });
        if (!isHere) parts.fail("no field \"" + std::string(name) + "\" begins here");
        return;
    }
}

void ValueWriter::element()
{
    Parts& parts = *myParts;
    for (;; parts.move())
    {
        const Step& step = *myCursor.step;
        if (step.kind == Kind::failed) return;
        if (parts.isAtStart() && parts.depth > 0 && !parts.partOnTop()) return;
        if (step.kind == Kind::end) continue;
        bool isHere = false;
        if (step.kind < Kind::end && parts.isInSteps())
            parts.forEachLevel(
                step, [&](const Node& node, std::uint32_t, std::uint32_t at)
                { isHere = isHere || (node.form == Form::array && at == step.offset); });
        if (!isHere) parts.fail("no element begins here");
        return;
    }
}

// Whether a record, or an array, that is all steps ends with the step before this one.
bool ValueWriter::Parts::endsBefore(const Step& step, bool isArray) const
{
    // The steps of a value that is complete are left.
    const bool isOfRun = isInSteps() && step.kind <= Kind::end && &step != &theEnd;
    if (!isOfRun || &step == top().run->steps.data()) return false;
    const Step& last = *(&step - 1);
    if (last.kind == Kind::fixedArray) return false;
    const std::uint32_t end = last.offset + nodeOf(last).size;
    bool isIt = false;
    forEachLevel(last,
                 [&](const Node& node, std::uint32_t i, std::uint32_t at)
                 {
                     const bool isRoot = &node == &nodeOf(top());
                     const bool isKind = node.form == (isArray ? Form::array : Form::record);
                     const bool isAlternative = node.form == Form::variant && i > 0;
                     isIt = isIt || (!isArray && isAlternative && end == top().run->end);
                     if (isRoot || !isKind) return;
                     const std::uint32_t before =
                         isArray ? i * node.stride : plan.parts[node.first + i].offset;
                     isIt = isIt || at - before + node.size == end;
                 });
    return isIt;
}

void ValueWriter::endRecord()
{
    Parts& parts = *myParts;
    for (;;)
    {
        const Step& step = *myCursor.step;
        if (step.kind == Kind::failed || parts.endsBefore(step, false)) return;
        if (step.kind != Kind::end) return parts.fail("the record does not end here");
        const Form form = parts.nodeOf(parts.top()).form;
        const Node* const variant = parts.isInSteps() ? parts.top().run->variant : nullptr;
        const std::string_view none;
        const bool isLeftOut = variant && variant->length == Length::extendable;
        const Parts::Move move = parts.move(isLeftOut ? &none : nullptr);
        const bool isRecord = form == Form::record || form == Form::variant;
        if (move == Parts::Move::ended && isRecord) return;
    }
}

void ValueWriter::endArray()
{
    Parts& parts = *myParts;
    for (;;)
    {
        const Step& step = *myCursor.step;
        if (step.kind == Kind::failed || parts.endsBefore(step, true)) return;
        if (step.kind != Kind::end) return parts.fail("the array does not end here");
        const Node& node = parts.nodeOf(parts.top());
        if (parts.move() == Parts::Move::ended && node.form == Form::array) return;
    }
}

}  // namespace omt
