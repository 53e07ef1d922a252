// SPDX-License-Identifier: Apache-2.0
// ValueWriter::Parts knows what is to be written next, and goes from one place to the next.
#pragma once

#include "omt/codec/valueWriter.h"
#include "omt/codec/writingRules.h"

#include <memory>
#include <vector>

namespace omt
{

struct ValueWriter::Parts
{
    /// What a piece begins with: steps at fixed places, up to one of the kind end.
    struct Run
    {
        std::uint32_t id = theNone;
        const Node* node = nullptr;
        std::vector<Step> steps;
        /// Where the octets of the steps end.
        std::uint32_t end = 0;
        /// Of a record: how many fields the steps are.
        std::uint32_t fields = 0;
        /// Whether the steps are the whole piece.
        bool isWhole = false;
        /// Whether they end where `end` says.
        bool isSized = true;
        /// Whether it may have no octets.
        bool isEmpty = false;
        /// Levels of nesting, the piece itself counted.
        std::uint32_t height = 1;
        /// The variant record with whose discriminant the steps end, which is the piece itself or
        /// its next field, and where that begins; null for none.
        const Node* variant = nullptr;
        std::uint32_t variantOffset = 0;
        /// How its discriminant is loaded, and the alternatives of its numbers, large ones only of
        /// unsigned ones.
        Load load = Load::other;
        const Target* targets = nullptr;
        const Slot* slots = nullptr;
        std::uint32_t slotCount = 0;
        /// By alternative: the same steps and those of the alternative, if these are all of it.
        std::vector<std::unique_ptr<Run>> joined;
        /// Of joined steps: the alternative, its first step, and the length of it where one stands.
        std::uint32_t alternative = theNone;
        const Step* contents = nullptr;
        std::uint32_t length = 0;
    };
    /// How far an open piece is.
    enum class Stage : std::uint8_t
    {
        steps,
        /// In what follows its steps.
        parts,
        /// A variant record: in octets in the place of its alternative, or after this.
        kept,
        done
    };
    struct Frame
    {
        Run* run;
        std::size_t start;
        /// The field, alternative or element that it is in.
        std::uint32_t index;
        /// Elements, and what each begins with, if one may follow the other without any check.
        std::uint32_t count;
        Run* element;
        /// Of `looked`, if fields look at others.
        std::size_t looked;
        Stage stage;
    };
    /// What a move has come to.
    enum class Move : std::uint8_t
    {
        failed,
        begun,
        ended
    };

    Parts(Cursor& cursor, std::shared_ptr<const Plan> ofType, std::uint32_t node);

    /// Begins a value.
    void begin();
    /// The next piece that takes a call; null after an error.
    const Step* reach();
    /// To the alternative, or to the next element, where all is as usual; else nothing happens.
    bool advance();
    bool advanceToElement();
    /// Whether the last step of a value is written, and nothing has to be checked.
    bool isAtEnd();
    /// From the end of the steps of a piece, or of a piece in it, to what follows. `name` is the
    /// field that is asked for, if one is.
    Move move(const std::string_view* name = nullptr);
    void fail(const std::string& what);
    void failExpecting(const Step& step, std::string_view but = "is expected");
    std::string pathOf() const;

    const Node& nodeOf(const Step& step) const { return plan.nodes[step.node]; }
    static const Node& nodeOf(const Frame& frame) { return *frame.run->node; }
    Frame& top() { return frames[depth]; }
    const Frame& top() const { return frames[depth]; }
    /// Whether nothing of the piece on top was written yet.
    bool isAtStart() const { return isInSteps() && cursor->step == top().run->steps.data(); }
    bool isInSteps() const { return top().stage == Stage::steps; }
    bool endsBefore(const Step& step, bool isArray) const;
    /// The field or alternative that the piece on top is; null for others.
    const Part* partOnTop() const;
    /// Where a step is written, from the start of the value.
    std::size_t placeOf(const Step& step) const { return top().start + step.offset; }
    /// Octets that may be written at a place, and eight more.
    std::uint8_t* room(std::size_t place, std::size_t count)
    {
        if (octets.size() < place + count + theSlack) enlarge(place + count + theSlack);
        return octets.data() + place;
    }
    void enlarge(std::size_t needed);
    /// After what was written for a step, up to this place.
    void pass(const Step& step, std::size_t end);
    void growTo(std::size_t place)
    {
        if (place <= size) return;
        std::uint8_t* const at = room(size, place - size);
        // Padding is of no more than eight octets, and what follows is written later.
        std::memset(at, 0, 8);
        if (place - size > 8) std::memset(at, 0, place - size);
        size = place;
    }

    /// Calls `visit(node, index, offset)` for what the step is in, from outside to inside: a
    /// record and one of its fields, an array and one of its elements, which begins there.
    template <typename Visit>
    void forEachLevel(const Step& step, const Visit& visit) const;

    struct RunMaker;
    Run& runOf(std::uint32_t node) { return runs[node] ? *runs[node] : makeRun(node); }
    Run& makeRun(std::uint32_t node);
    void open(Run& run);
    void setFrame(Run& run, std::size_t start, Stage stage);
    bool push(std::uint32_t node);
    Move pop();
    Move nextField(const std::string_view* name);
    Move nextElement();
    Move choose(const std::string_view* name);
    Move chooseSlowly(const Node& variant, std::uint32_t given);
    void enterVariant(std::size_t start);
    Run& joinedRun(Run& run, std::uint32_t alternative);
    bool join(std::uint32_t alternative);
    bool noteLooked(const Frame& record, const Frame& field);

    void writeInteger(std::int64_t number, bool isUnsigned);
    void writeNumber(double number);
    void writeFloat(float number);
    void writeBits(const Step& step, std::uint64_t bits);
    const Enumeration* reachTable(const Step*& step);
    template <typename Letters>
    void writeText(Letters letters);
    void writeOctets(Octets others);
    void writeElements(const Step& step, std::size_t first, std::size_t count);

    static const Step theEnd;
    static const Step theKept;
    static const Step theCompleted;
    static const Step theFailed;

    static constexpr std::size_t theSlack = 16;

    Cursor* cursor;
    std::shared_ptr<const Plan> owner;
    const Plan& plan;
    /// By node, made when first needed.
    std::vector<std::unique_ptr<Run>> runs;
    Run* root = nullptr;
    std::vector<std::uint8_t> octets;
    /// Where the octets of the last piece that is complete end.
    std::size_t size = 0;
    bool isSure = false;
    std::uint32_t empties = 0;
    /// How many elements the last array had.
    std::size_t elements = 0;
    std::uint32_t depth = 0;
    Frame frames[theDeepest + 1] = {};
    std::vector<Looked> looked;
    Index again;
    std::optional<ValueError> error;
};

template <typename Visit>
void ValueWriter::Parts::forEachLevel(const Step& step, const Visit& visit) const
{
    std::uint32_t id = top().run->id;
    std::uint32_t at = 0;
    while (id != step.node)
    {
        const Node& node = plan.nodes[id];
        std::uint32_t index = 0;
        if (node.form == Form::array)
        {
            index = (step.offset - at) / node.stride;
            at += index * node.stride;
            visit(node, index, at);
            id = node.element;
            continue;
        }
        if (node.form == Form::variant && step.offset > at)
        {
            index = top().run->alternative;
            at += node.body;
        }
        if (node.form == Form::record)
            while (index + 1 < node.parts &&
                   plan.parts[node.first + index + 1].offset <= step.offset - at)
                ++index;
        const Part& part = plan.parts[node.first + index];
        if (node.form == Form::record) at += part.offset;
        visit(node, index, at);
        id = part.node;
    }
}

}  // namespace omt
