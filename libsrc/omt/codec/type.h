// SPDX-License-Identifier: Apache-2.0
// Type is a datatype ready to decode and encode; Field is one number or text inside of it.
#pragma once

#include "omt/base/export.h"
#include "omt/codec/fault.h"
#include "omt/codec/octets.h"

#include <cstdint>
#include <cstring>
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
    friend class ValueWriter;
    Type(std::shared_ptr<const Plan> plan, std::uint32_t node)
        : myPlan(std::move(plan)), myNode(node)
    {
    }
    bool decodeAny(Octets octets, Value& value) const;

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
    std::optional<double> number(Octets value) const
    {
        if (myLoad == Load::other) return findNumber(value);
        if (!isThere(value)) return std::nullopt;
        return load(value.data() + myPlace);
    }
    /// The same for an integer or enumerated part. Those above 2^63 - 1 come as two's complement.
    std::optional<std::int64_t> integer(Octets value) const
    {
        if (myLoad > Load::big32) return findInteger(value);
        if (!isThere(value)) return std::nullopt;
        return loadInteger(value.data() + myPlace);
    }
    /// Writes a number in place into the octets of a value, which have this part already. False,
    /// and nothing written, where they have not; where the part cannot be this number; and for what
    /// decides about other parts, such as a discriminant.
    bool write(std::uint8_t* octets, std::size_t size, double number) const
    {
        if (myLoad == Load::other || myIsDecisive) return writeAny(octets, size, number);
        return isThere({octets, size}) && store(octets + myPlace, number);
    }
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
    /// Numbers that are loaded at once where the part has a fixed place; integers first.
    enum class Load : std::uint8_t
    {
        octet,
        big16,
        big32,
        float32,
        float64,
        other
    };
    /// What has to be looked at before a part at a fixed place is there.
    enum class Check : std::uint8_t
    {
        size,
        /// A discriminant: eight octets under a mask.
        octets,
        /// The count of an array.
        count
    };

    /// For a part at a fixed place.
    bool isThere(Octets value) const
    {
        if (value.size() < myEnd) return false;
        if (myCheck == Check::size) return true;
        if (myCheck == Check::count) return isElement(value);
        std::uint64_t octets;
        std::memcpy(&octets, value.data() + myCheckPlace, sizeof octets);
        return (octets & myMask) == myWanted;
    }
    bool isElement(Octets value) const
    {
        // A negative count is none.
        const auto count = static_cast<std::int32_t>(big32(value.data() + myCheckPlace));
        return count > myIndex &&
               static_cast<std::uint64_t>(count) * myStride <= value.size() - myFirst;
    }
    double load(const std::uint8_t* at) const
    {
        if (myLoad == Load::float64)
        {
            double number;
            std::uint64_t bits;
            std::memcpy(&bits, at, sizeof bits);
            bits = __builtin_bswap64(bits);
            std::memcpy(&number, &bits, sizeof number);
            return number;
        }
        if (myLoad != Load::float32) return static_cast<double>(loadInteger(at));
        float number;
        const std::uint32_t bits = big32(at);
        std::memcpy(&number, &bits, sizeof number);
        return static_cast<double>(number);
    }
    std::int64_t loadInteger(const std::uint8_t* at) const
    {
        const std::uint64_t bits = myLoad == Load::octet   ? *at
                                   : myLoad == Load::big32 ? big32(at)
                                                           : at[0] * 256U + at[1];
        return static_cast<std::int64_t>(bits << myShift) >> myShift;
    }
    bool store(std::uint8_t* at, double number) const
    {
        if (myLoad == Load::float64)
        {
            std::uint64_t bits;
            std::memcpy(&bits, &number, sizeof bits);
            bits = __builtin_bswap64(bits);
            std::memcpy(at, &bits, sizeof bits);
            return true;
        }
        std::uint32_t bits;
        if (myLoad == Load::float32)
        {
            const float rounded = static_cast<float>(number);
            // A finite number that none of 32 bits comes near.
            if (rounded - rounded != 0 && number - number == 0) return false;
            std::memcpy(&bits, &rounded, sizeof bits);
        }
        else
        {
            if (!(number >= myLeast && number <= myMost)) return false;
            const auto whole = static_cast<std::int64_t>(number);
            if (static_cast<double>(whole) != number) return false;
            bits = static_cast<std::uint32_t>(whole);
        }
        if (myLoad == Load::octet)
            *at = static_cast<std::uint8_t>(bits);
        else if (myLoad == Load::big16)
        {
            const std::uint16_t two = __builtin_bswap16(static_cast<std::uint16_t>(bits));
            std::memcpy(at, &two, sizeof two);
        }
        else
        {
            bits = __builtin_bswap32(bits);
            std::memcpy(at, &bits, sizeof bits);
        }
        return true;
    }
    static std::uint32_t big32(const std::uint8_t* at)
    {
        std::uint32_t bits;
        std::memcpy(&bits, at, sizeof bits);
        return __builtin_bswap32(bits);
    }
    void place();
    void placeEnd();
    void placeInForks();
    bool expect(const Step& step, std::uint64_t at);
    bool expectElement(const Step& step, std::uint64_t at);
    void setLoad();
    bool writeAny(std::uint8_t* octets, std::size_t size, double number) const;
    std::optional<double> findNumber(Octets value) const;
    std::optional<std::int64_t> findInteger(Octets value) const;
    /// Where the part begins, and whether it ends within the value.
    bool find(Octets value, std::size_t& at, std::size_t& end) const;
    bool findInForks(Octets value, std::size_t& at, std::size_t& end) const;
    bool findQuickly(Octets value, std::size_t& at, std::size_t& end) const;
    bool findSlowly(Octets value, std::size_t& at, std::size_t& end) const;

    std::shared_ptr<const Plan> myPlan;
    std::uint32_t myNode;
    std::uint32_t myRoot = 0;
    std::vector<Step> mySteps;
    /// How many steps lead over open sizes, and where the part stands after them, if that is known.
    std::size_t myOpenSteps = 0;
    std::uint32_t myRest = 0;
    /// Whether the part has a fixed place, so that what follows holds.
    bool myIsFixed = false;
    /// Whether other parts depend on it.
    bool myIsDecisive = false;
    Load myLoad = Load::other;
    Check myCheck = Check::size;
    /// Up and down again, which repeats the sign of an integer that has one.
    std::uint8_t myShift = 0;
    std::uint32_t myPlace = 0;
    std::uint32_t myEnd = 0;
    std::uint32_t myCheckPlace = 0;
    std::uint64_t myMask = 0;
    std::uint64_t myWanted = 0;
    /// Of a part of an element that is a fork: which one, and the alternative that the part is in,
    /// if it is in one; myPlace then counts from the start of the element.
    std::uint32_t myFork = 0xFFFFFFFF;
    std::uint32_t myAlternative = 0xFFFFFFFF;
    /// Of an element of an array with a count: its index, where the first one stands, and how many
    /// octets each takes.
    std::int32_t myIndex = 0;
    std::uint32_t myFirst = 0;
    std::uint32_t myStride = 0;
    /// The range of an integer that is loaded at once.
    double myLeast = 0;
    double myMost = 0;
};

}  // namespace omt
