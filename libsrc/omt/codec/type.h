// SPDX-License-Identifier: Apache-2.0
// Type is a datatype ready to decode and encode; Field is one number or text inside of it.
#pragma once

#include "omt/base/export.h"
#include "omt/codec/fault.h"
#include "omt/codec/octets.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

class Field;
class Value;
struct Plan;

/// Thrown where a name is asked for that is not there; the text has the nearest ones.
class OMT_EXPORT UnknownName : public std::invalid_argument
{
public:
    using std::invalid_argument::invalid_argument;
    ~UnknownName() override;
};

/// What a value of a type is.
enum class ValueKind : std::uint8_t
{
    /// An integer or a floating point number.
    number,
    /// An integer that may have a name.
    enumerated,
    /// An array of characters.
    text,
    /// An array of octets, or octets of an unknown form.
    octets,
    record,
    array,
    variant
};

/// A datatype of a codec. A small handle: copies share everything with the codec and outlive it.
class OMT_EXPORT Type
{
public:
    /// As the model has it.
    std::string_view name() const;
    /// Of a simple datatype; else empty.
    std::string_view units() const;
    ValueKind kind() const;
    /// The octet boundary: 1, 2, 4 or 8.
    unsigned boundary() const;
    /// The number of octets of every value, or nothing where values differ.
    std::optional<std::size_t> size() const;
    /// The least number of octets that a value has.
    std::size_t leastSize() const;

    /// Fields of a record; the discriminant and all alternatives of a variant record; else 0.
    std::size_t partCount() const;
    /// For an index below partCount().
    std::string_view partName(std::size_t index) const;
    Type partType(std::size_t index) const;
    /// The datatype of the elements of an array; nothing for other kinds.
    std::optional<Type> element() const;

    /// Decodes octets into a value that keeps a copy of them.
    Value decode(Octets octets) const;
    /// The same into a value that was used before and keeps its memory, so that nothing is
    /// allocated once it has grown. Tells whether there was no fault.
    bool decode(Octets octets, Value& value) const;
    /// The same without a copy: the octets have to live as long as the value is read.
    bool decodeInPlace(Octets octets, Value& value) const;

    /// Appends the octets of a value in JSON. Where it is none, nothing is appended and the reason
    /// is returned.
    std::optional<ValueError> encode(std::string_view json,
                                     std::vector<std::uint8_t>& octets) const;
    /// Makes a value from JSON. Where it is none, the value is as before.
    std::optional<ValueError> read(std::string_view json, Value& value) const;

    /// A part by its path, such as "SpatialRVW.WorldLocation.X" or "Datums[2].Value".
    /// Throws UnknownName for one that no value has.
    Field field(std::string_view path) const;
    std::optional<Field> findField(std::string_view path) const;

private:
    friend class Codec;
    friend class Columns;
    friend class Field;
    friend class Item;
    friend class Layout;
    friend class Value;
    Type(std::shared_ptr<const Plan> plan, std::uint32_t node)
        : myPlan(std::move(plan)), myNode(node)
    {
    }
    std::shared_ptr<const Plan> myPlan;
    std::uint32_t myNode;
};

/// One part of a type, read out of octets without decoding the rest: a few loads where the plan
/// fixes its place.
class OMT_EXPORT Field
{
public:
    Type type() const { return {myPlan, myNode}; }
    /// Where the part stands in these octets; nothing where they do not have it: another
    /// alternative, an array with fewer elements, or a fault before its end.
    std::optional<Octets> octets(Octets value) const;
    /// Its number; nothing where it is not there or no number. Integers above 2^53 are rounded.
    std::optional<double> number(Octets value) const;
    /// The same for an integer or enumerated part. Those above 2^63 - 1 come as two's complement.
    std::optional<std::int64_t> integer(Octets value) const;
    /// The name of an enumerated part; nothing where the number has none.
    std::optional<std::string_view> label(Octets value) const;
    /// An array of characters, in UTF-8.
    std::optional<std::string> text(Octets value) const;

private:
    friend class Type;
    /// One step down from a piece to one of its parts.
    struct Step
    {
        enum class What : std::uint8_t
        {
            part,
            element,
            alternative
        };
        What what;
        std::uint32_t node;
        std::uint32_t index;
    };
    Field(std::shared_ptr<const Plan> plan, std::uint32_t node)
        : myPlan(std::move(plan)), myNode(node)
    {
    }
    /// Where the part begins, and whether it ends within the value.
    bool find(Octets value, std::size_t& at, std::size_t& end) const;
    bool findQuickly(Octets value, std::size_t& at, std::size_t& end) const;
    void expect();
    bool findSlowly(Octets value, std::size_t& at, std::size_t& end) const;

    std::shared_ptr<const Plan> myPlan;
    std::uint32_t myNode;
    std::uint32_t myRoot = 0;
    std::vector<Step> mySteps;
    /// The fast way: a variant record at a fixed place, or none, and then a fixed place.
    bool myIsDirect = false;
    std::uint32_t myVariant = 0xFFFFFFFF;
    std::uint32_t myVariantOffset = 0;
    std::uint32_t myAlternative = 0;
    /// The octets of the discriminant, where one number alone stands for the alternative.
    std::uint32_t myExpectedSize = 0;
    std::uint8_t myExpected[8] = {};
    bool myIsDouble = false;
    std::uint32_t myOffset = 0;
    std::uint32_t mySize = 0;
};

}  // namespace omt
