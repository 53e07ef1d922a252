// SPDX-License-Identifier: Apache-2.0
// Plan is what all datatypes of a model come to: flat tables of nodes that say where octets stand.
//
// A node has a fixed size (all of it stands at offsets known beforehand) or an open one. Offsets
// and padding count from the start of the node; only padding arrays look at the start of the value.
#pragma once

#include "omt/base/nameHash.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// A place in a table, or a number of octets, that there is not.
constexpr std::uint32_t theNone = 0xFFFFFFFF;
/// The most octets of a node of fixed size.
constexpr std::uint32_t theLargestSize = 0x7FFFFFFF;
/// How deep values may be nested.
constexpr std::uint32_t theDeepest = 200;
/// How many elements and fields without octets one value may have.
constexpr std::uint32_t theMostEmpties = 1000000;

enum class Form : std::uint8_t
{
    number,
    record,
    array,
    variant,
    /// Of no known form: the octets up to the end of what there is.
    octets
};

enum class Scalar : std::uint8_t
{
    signedInteger,
    unsignedInteger,
    floating
};

/// How an array says how many elements it has.
enum class Extent : std::uint8_t
{
    fixed,
    /// A signed 32-bit count before the elements.
    counted,
    /// To the end of the value, or as a note on the field states.
    lengthless,
    /// Up to an element of zero octets.
    terminated,
    /// Octets up to a multiple of `count` octets from the start of the value.
    padding
};

/// How elements are shown.
enum class Look : std::uint8_t
{
    elements,
    latin1,
    utf16,
    hexadecimal,
    /// Octets that are characters up to the first zero, as a hint says.
    text
};

/// What a script has after a text.
enum class Leaf : std::uint8_t
{
    /// Nothing: it ends here.
    end,
    /// Nothing: the text goes on in the next step.
    none,
    /// Unsigned integers of one octet and, big-endian, of two and of four.
    octet,
    pair,
    four,
    /// An integer that may have a name; those of one octet and, big-endian, of four.
    label,
    label8,
    label32,
    /// Big-endian floating point numbers.
    float32,
    float64,
    /// Any other number.
    number,
    /// An array of fixed size that is shown as one text.
    text
};

/// How a variant record says how long its alternative is.
enum class Length : std::uint8_t
{
    none,
    /// 32 bits at once after the discriminant, the alternative at once after them.
    extended,
    /// 32 bits at a multiple of 4, the alternative at a multiple of 8.
    extendable
};

/// How a node is passed over where nothing about it is odd.
enum class QuickForm : std::uint8_t
{
    /// A fixed size, octets in each element and field, and its padding listed.
    plain,
    /// Plain fields and a variant record after them, or a variant record alone: see Fork.
    fork,
    record,
    /// A counted array of plain elements without padding in or between them.
    list,
    array,
    octets,
    /// Only by the slow way.
    odd
};

/// Whether octets that were written for a node are sure to be read as the same value.
enum class Ending : std::uint8_t
{
    /// Wherever they stand: they say themselves where they end.
    inside,
    /// Only at the end of a value.
    outside,
    unsure
};

/// A text of the plan's pool.
struct Name
{
    std::uint32_t at = 0;
    std::uint32_t size = 0;
};

// What decoding looks at comes first, so that it stands in one cache line.
struct alignas(64) Node
{
    Form form = Form::octets;
    QuickForm quick = QuickForm::odd;
    Extent extent = Extent::fixed;
    Scalar scalar = Scalar::unsignedInteger;
    bool isLittleEndian = false;
    Look look = Look::elements;
    Length length = Length::none;
    /// V: 1, 2, 4 or 8.
    std::uint8_t boundary = 1;
    bool isFixed = false;
    /// Whether there is padding anywhere in a node of fixed size, or in and between the elements
    /// of an array of open size if they have a fixed one.
    bool hasPadding = false;
    /// Of a record: whether a field decides whether another is there or how long it is.
    bool isLooking = false;
    /// Levels of nesting in it; at most theDeepest + 1. Counts nodes of fixed size only.
    std::uint8_t height = 1;
    Ending ending = Ending::inside;
    /// Of a record: how many octets before it padding counts from, where it does not begin at a
    /// multiple of its boundary.
    std::uint8_t phase = 0;
    /// Octets if isFixed, else the least number of octets.
    std::uint32_t size = 0;
    /// Padding in a node of fixed size and in the lead of a record: a range of Plan::gaps, if
    /// there is not too much of it.
    std::uint32_t gaps = theNone;
    std::uint32_t gapCount = 0;
    /// Of an array: its element. Of a variant record: its discriminant.
    std::uint32_t element = theNone;
    /// Of an array: octets from one element to the next, if elements have a fixed size; else the
    /// least.
    std::uint32_t stride = 0;
    /// Of a fixed array: its elements. Of a padding array: 2, 4 or 8.
    std::uint32_t count = 0;
    /// The cardinality of other arrays.
    std::uint32_t least = 0;
    std::uint32_t most = theNone;
    /// Of a record: its fields. Of a variant record: its discriminant and its alternatives.
    std::uint32_t first = 0;
    std::uint32_t parts = 0;
    /// Of a number: its Enumeration, if it has one. Of a variant record: its Choices.
    std::uint32_t table = theNone;
    /// Of the shape fork: a place in Plan::forks.
    std::uint32_t fork = theNone;
    /// Of a record of open size: how many plain fields it begins with; 0 where it has too much
    /// padding before the next one.
    std::uint32_t lead = 0;
    /// Of a variant record: where the length stands, and the alternative. Of a counted array: the
    /// elements.
    std::uint32_t lengthOffset = 0;
    std::uint32_t body = 0;
    /// Fields and elements without octets in a node of fixed size.
    std::uint32_t empties = 0;
    /// Of a number: octets of the longest of its names in JSON.
    std::uint32_t longestLabel = 0;
    /// How the first fields of a record stand in JSON, if they have a fixed size and there are not
    /// too many of them: a range of Plan::script for so many fields, all of them if the record has
    /// a fixed size, and the most octets that are written. If the last field is a variant record
    /// and all others are in the script, its discriminant is too. The script of a variant record is
    /// its discriminant.
    std::uint32_t script = theNone;
    std::uint32_t scriptCount = 0;
    std::uint32_t scriptParts = 0;
    std::uint32_t scriptRoom = 0;
    bool isVariantInScript = false;
    Name name;
    Name units;
};

/// How a discriminant is loaded.
enum class Load : std::uint8_t
{
    octet,
    big16,
    big32,
    /// By its node.
    other
};

/// A variant record, and the fields before it where it ends a record of plain fields. Places count
/// from the start of this record. It has one Entry, and its alternative one if of open size.
struct Fork
{
    /// Octets up to the alternative.
    std::uint32_t body = 0;
    /// The discriminant, and the length of the alternative if it has one.
    std::uint32_t place = 0;
    std::uint32_t lengthPlace = 0;
    Length length = Length::none;
    Load load = Load::other;
    /// The alternatives of the first numbers, in Plan::targets, and those of others, as Choices has
    /// them.
    std::uint32_t targets = 0;
    std::uint32_t slots = 0;
    std::uint32_t slotCount = 0;
    /// Padding up to the alternative: a range of Plan::gaps, first that in the fields before.
    std::uint32_t gaps = 0;
    std::uint32_t leadGaps = 0;
    std::uint32_t gapCount = 0;
    /// The node of the variant record.
    std::uint32_t variant = 0;
    /// Octets of the alternatives, if all are plain and have the same size; else 0.
    std::uint32_t size = 0;
    /// Whether such alternatives have no padding in them, nor a length before them, and all padding
    /// up to them is under one mask of eight octets from a place, as memory has them.
    bool isEven = false;
    std::uint32_t gapPlace = 0;
    std::uint64_t gapMask = 0;
};

/// The name of a number as JSON has it.
struct Label
{
    std::uint64_t number = ~std::uint64_t{0};
    Name quoted;
};

/// Where the names of an enumeration stand in Plan::labels: that of a number at one of a power of
/// two many places, unless another one has it.
struct LabelPlaces
{
    std::uint32_t first = 0;
    std::uint32_t mask = 0;
    std::uint64_t factor = 0;

    std::size_t of(std::uint32_t number) const { return first + (number * factor >> 32 & mask); }
};

/// A short text of JSON, and the number or text of a value after it. It stands in one cache line.
struct alignas(64) ScriptStep
{
    static constexpr std::size_t theLongest = 32;
    /// Always copied as a whole.
    char text[theLongest] = {};
    std::uint8_t size = 0;
    Leaf leaf = Leaf::end;
    std::uint32_t node = 0;
    /// From the start of the record; in the last step where the octets of the script end.
    std::uint32_t offset = 0;
    /// Of label8 and label32.
    LabelPlaces labels;

    std::string_view before() const { return {text, size}; }
};

/// Octets of padding: those under a mask, as memory has them, of eight octets at an offset from the
/// start of the node; of one octet where there are no eight.
struct Gap
{
    std::uint32_t offset = 0;
    bool isOctet = false;
    std::uint64_t mask = 0;
};

/// A field of a record, or an alternative of a variant record.
struct Part
{
    Name name;
    /// The name as a key of JSON, with quotes and colon; a comma stands before it.
    Name key;
    std::uint32_t node = theNone;
    /// From the start of the record; theNone where it follows a field of open size.
    std::uint32_t offset = 0;
    /// Padding goes up to a multiple of this, from Node::phase before the start of the record.
    std::uint8_t boundary = 1;
    /// Whether the fields after it all have a fixed size.
    bool isRestFixed = true;
    /// Octets of the fields of fixed size after it, as if it ended at a multiple of 8.
    std::uint32_t rest = 0;
    /// A steps range of Plan::steps that gives the number of elements; none where length is 0.
    std::uint32_t steps = 0;
    std::uint32_t stepCount = 0;
    /// HLA 1.3: the field that decides whether this one is there, and the number it then has.
    std::uint32_t decider = theNone;
    std::int64_t decidingNumber = 0;
    /// Whether a later field looks at this one.
    bool isLookedAt = false;
};

/// The most steps of one sum.
constexpr std::size_t theMostSteps = 64;

/// One step of a sum that says how many elements an array has, in reverse Polish notation.
struct Step
{
    enum class What : std::uint8_t
    {
        number,
        field,
        add,
        subtract,
        multiply
    };
    What what = What::number;
    /// The number, or the index of a field of the same record.
    std::int64_t value = 0;
};

/// Names and numbers of an enumerated datatype. Numbers are kept as 64 bits in two's complement.
struct Enumeration
{
    struct Entry
    {
        Name name;
        /// The name as a text of JSON, with quotes.
        Name quoted;
        std::int64_t number = 0;
        /// Whether it is the first number of its name.
        bool isFirst = true;
    };
    /// In the order of the declaration, one for each number.
    std::vector<Entry> entries;
    /// Indices of the first entry of each number, by number; those of names, by name.
    std::vector<std::uint32_t> byNumber;
    std::vector<std::uint32_t> byName;
    /// For numbers below its size: the first entry, or theNone.
    std::vector<std::uint32_t> dense;
    /// The first entries of names, and of numbers that are not in `dense`, by what slotOf() gives
    /// for them; theNone, or another entry, where that of a name or number has no place. A power of
    /// two many, or none.
    std::vector<std::uint32_t> nameSlots;
    std::vector<std::uint32_t> numberSlots;
    /// If a script has it.
    LabelPlaces labels;

    static std::size_t slotOf(std::string_view name, std::size_t slots);
};

/// From a discriminant to an alternative.
struct Choices
{
    struct Range
    {
        std::int64_t number = 0;
        std::uint32_t alternative = theNone;
    };
    /// By number.
    std::vector<Range> numbers;
    /// The alternative of HLAother.
    std::uint32_t other = theNone;
    /// The places of large numbers: a power of two many in Plan::slots.
    std::uint32_t slots = 0;
    std::uint32_t slotCount = 0;
};

/// No alternative follows; and: the number has no meaning at all.
constexpr std::uint32_t theNothing = 0xFFFFFFFE;
constexpr std::uint32_t theUnknown = 0xFFFFFFFD;

/// What hints say of a node.
enum class Role : std::uint8_t
{
    none,
    entityType,
    position,
    /// A number with names in a table.
    table
};

struct Meaning
{
    Role role = Role::none;
    /// Whether the node, or anything in it, has a role.
    bool isInside = false;
    /// One of Plan::enumerations.
    std::uint32_t table = theNone;
};

/// An alternative of a variant record by its index and its node; theNothing and theUnknown have
/// none.
struct Target
{
    std::uint32_t alternative = theUnknown;
    std::uint32_t node = theNone;
    /// Of a plain node: its size and its padding.
    std::uint64_t size = theNoSize;
    std::uint32_t gaps = 0;
    std::uint32_t gapCount = 0;

    /// More than there can be.
    static constexpr std::uint64_t theNoSize = ~std::uint64_t{0};
};

/// The alternative of a number; a number that is not there has a place, but not its own.
struct Slot
{
    std::uint64_t number = 0;
    Target target;
};

/// Spreads numbers over places.
constexpr std::uint64_t theSpread = 0x9E3779B97F4A7C15;

/// Where a number stands among a power of two many places.
inline std::size_t slotOf(std::uint64_t number, std::size_t slots)
{
    return number * theSpread >> 32 & (slots - 1);
}

/// How many numbers of each variant record stand in Plan::targets.
constexpr std::uint32_t theTargets = 64;

struct Plan
{
    std::vector<Node> nodes;
    std::vector<Part> parts;
    /// For nodes with many parts, from Node::first: indices of their parts by name.
    std::vector<std::uint32_t> partsByName;
    std::vector<Step> steps;
    std::vector<Gap> gaps;
    std::vector<ScriptStep> script;
    std::vector<Label> labels;
    std::vector<Enumeration> enumerations;
    std::vector<Choices> choices;
    /// By node; empty where no hint fits.
    std::vector<Meaning> meanings;
    /// The alternatives of the numbers from 0 on, theTargets for each of `choices`.
    std::vector<Target> targets;
    std::vector<Slot> slots;
    std::vector<Fork> forks;
    /// Texts, and octets after them so that any text may be copied in blocks of 32.
    std::string pool;
    /// Nodes by the names of datatypes.
    OwnNameMap<std::uint32_t> names;

    std::string_view text(Name name) const { return {pool.data() + name.at, name.size}; }
    std::string_view keyAfterComma(const Part& part) const
    {
        return {pool.data() + part.key.at - 1, part.key.size + std::size_t{1}};
    }
    Name add(std::string_view text);
    /// Adds a text as JSON has it, with quotes and `end`, after a comma; gives this without the
    /// comma, and in `name` the text itself.
    Name addQuoted(std::string_view text, std::string_view end, Name& name);

    /// Fills the slots of an enumeration whose entries are in order.
    void addSlots(Enumeration& table) const;
    /// The index of the first entry with this number, or theNone.
    static std::uint32_t findEntry(const Enumeration& table, std::int64_t number)
    {
        if (static_cast<std::uint64_t>(number) < table.dense.size())
            return table.dense[static_cast<std::size_t>(number)];
        return findSparse(table, number);
    }
    static std::uint32_t findSparse(const Enumeration& table, std::int64_t number);
    /// The index of the first entry with this name, or theNone.
    std::uint32_t findEntry(const Enumeration& table, std::string_view name) const;
    Target findTarget(const Node& variant, std::int64_t number) const;
    Target findSparse(const Node& variant, std::int64_t number) const;
    Target targetOf(const Node& variant, std::uint32_t alternative) const;
    /// The index of the alternative, theNothing or theUnknown.
    std::uint32_t findAlternative(const Node& variant, std::int64_t number) const
    {
        return findTarget(variant, number).alternative;
    }
    /// After this findPart() is quick for nodes with many parts.
    void sortParts();
    /// The index in a record or variant record of the part with this name, or theNone.
    std::uint32_t findPart(const Node& node, std::string_view name) const;
};

inline Target Plan::findTarget(const Node& variant, std::int64_t number) const
{
    if (static_cast<std::uint64_t>(number) < theTargets)
        return targets[variant.table * std::size_t{theTargets} + static_cast<std::size_t>(number)];
    return findSparse(variant, number);
}

/// The next multiple of a boundary of 1, 2, 4 or 8.
constexpr std::uint64_t aligned(std::uint64_t at, std::uint64_t boundary)
{
    return (at + boundary - 1) & ~(boundary - 1);
}

}  // namespace omt
