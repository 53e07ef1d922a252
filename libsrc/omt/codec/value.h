// SPDX-License-Identifier: Apache-2.0
// Value is the octets of one value and where its pieces stand; Item is a piece of it.
#pragma once

#include "omt/codec/type.h"

#include <functional>
#include <memory>

namespace omt
{

class Visitor;

/// What the JSON of values looks like.
struct JsonOptions
{
    /// 64-bit integers that a double does not hold exactly are written as texts.
    bool largeIntegersAsText = false;
};

/// A piece of a value: a view that lives as long as the value is not changed.
class OMT_EXPORT Item
{
public:
    Item() = default;
    /// Whether the value has this piece. One that it has not answers nothing to all questions.
    bool isThere() const { return myValue != nullptr; }
    explicit operator bool() const { return isThere(); }

    /// Only for one that is there.
    Type type() const;
    ValueKind kind() const;

    /// How many fields or elements there are; the discriminant of a variant record and its
    /// alternative count one each.
    std::size_t size() const;
    /// The name of a field that is there, by its index below size(); empty for elements.
    std::string_view name(std::size_t index) const;
    /// A field or an element by its index.
    Item operator[](std::size_t index) const;
    /// By a path such as "WorldLocation.X" or "Datums[2].Value".
    Item operator[](std::string_view path) const;

    /// Calls `visit` with the name and the piece of each field, or with each element and an empty
    /// name, in their order until it gives false. Takes time by their number.
    void forEach(const std::function<bool(std::string_view name, const Item& part)>& visit) const;
    /// Where the piece begins, in octets from the start of the value.
    std::size_t offset() const { return myOffset; }

    /// A number, as Field has it.
    std::optional<double> number() const;
    std::optional<std::int64_t> integer() const;
    std::optional<std::string_view> label() const;
    std::optional<std::string> text() const;
    /// The octets of this piece as they stand; for octets of a variant record whose alternative is
    /// not known, these alone.
    Octets octets() const;
    /// Appends the piece in JSON; nothing where it is not there.
    void appendJson(std::string& text, const JsonOptions& options = {}) const;

private:
    friend class Value;
    Item(const Value& value, std::uint32_t node, std::uint32_t offset, std::uint32_t entry)
        : myValue(&value), myNode(node), myOffset(offset), myEntry(entry)
    {
    }
    const Value* myValue = nullptr;
    std::uint32_t myNode = 0;
    std::uint32_t myOffset = 0;
    std::uint32_t myEntry = 0;
};

/// One decoded value. Copies are independent of each other; one value is not for two threads at a
/// time where it changes.
class OMT_EXPORT Value
{
public:
    /// A value of no type: its root() is not there.
    Value();
    Value(const Value& other);
    Value(Value&& other) noexcept;
    Value& operator=(const Value& other);
    Value& operator=(Value&& other) noexcept;
    ~Value();

    /// The octets that were decoded, padding and all: encoding is taking them.
    Octets octets() const;
    /// How many octets stand after the value.
    std::size_t left() const;
    /// What stopped decoding, or nothing.
    const std::optional<Fault>& fault() const;
    /// At most 101.
    const std::vector<ValueNote>& notes() const;
    /// Neither a fault nor octets left.
    bool isWhole() const { return !fault() && left() == 0; }

    Item root() const;
    Item operator[](std::string_view path) const { return root()[path]; }

    /// Appends the value in JSON; after a fault what was decoded, and nothing where that is
    /// nothing.
    void appendJson(std::string& text, const JsonOptions& options = {}) const;
    std::string json(const JsonOptions& options = {}) const;

    /// Changes the piece at a path. A piece of fixed size is written in place, and nothing else
    /// changes; for another one, and for a discriminant, the value is written anew, without what
    /// was odd about it. Another alternative begins with zeros. A text that is no JSON is taken as
    /// a name or text without its quotes. Where it cannot be done the value is as before. Only for
    /// a value without a fault.
    std::optional<ValueError> set(std::string_view path, std::string_view json);
    std::optional<ValueError> set(std::string_view path, double number);

    /// Tells a visitor the value from its first to its last piece.
    void visit(Visitor& visitor) const;

private:
    friend class Item;
    friend class OverlayFinder;
    friend class Type;
    struct Parts;
    Parts& parts();
    std::unique_ptr<Parts> myParts;
};

/// Is told a value piece by piece. What it does not override it ignores.
class OMT_EXPORT Visitor
{
public:
    virtual ~Visitor();
    virtual void beginRecord(std::string_view type);
    /// The next piece is a field, a discriminant or an alternative.
    virtual void field(std::string_view name);
    virtual void endRecord();
    virtual void beginArray(std::size_t count);
    virtual void element();
    virtual void endArray();
    /// An integer that has no name; unsigned ones above 2^63 - 1 come as two's complement.
    virtual void integer(std::int64_t number, bool isUnsigned);
    virtual void number(double number);
    /// An integer that has one.
    virtual void label(std::string_view name, std::int64_t number);
    /// In UTF-8; a lone surrogate in three octets as any other unit.
    virtual void text(std::string_view text);
    virtual void octets(Octets octets);
};

}  // namespace omt
