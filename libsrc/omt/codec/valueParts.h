// SPDX-License-Identifier: Apache-2.0
// Value::Parts is what a value holds: its type, its octets and its index.
#pragma once

#include "omt/codec/piecePath.h"
#include "omt/codec/value.h"
#include "omt/codec/walk.h"

namespace omt
{

struct Value::Parts
{
    std::shared_ptr<const Plan> plan;
    std::uint32_t node = theNone;
    /// All that were given; where the value owns them, at the beginning of `owned`, which only
    /// grows.
    Octets octets;
    std::vector<std::uint8_t> owned;
    Index index;
    /// Used by set(), kept for its memory.
    std::vector<std::uint8_t> scratch;

    bool isOwner() const { return octets.data() == owned.data(); }
    /// Copies octets, which may be some of its own.
    void own(Octets others);
    /// Makes octets the value; whether there was no fault.
    bool take(const std::shared_ptr<const Plan>& ofType, std::uint32_t type, Octets others);
    Steps steps() const { return {*plan, index}; }
    Spot root() const { return plan ? steps().root(node) : Spot(); }
    /// The octets of a piece.
    Octets octetsOf(const Spot& spot) const;
};

ValueKind kindOf(const Plan& plan, const Node& node);
/// How many octets stand before the first zero.
inline std::size_t textSize(const std::uint8_t* octets, std::size_t count)
{
    const void* const zero = count > 0 ? std::memchr(octets, 0, count) : nullptr;
    return zero ? static_cast<std::size_t>(static_cast<const std::uint8_t*>(zero) - octets) : count;
}
/// Characters in UTF-8, appended.
void appendLatin1(std::string& text, const std::uint8_t* octets, std::size_t count);
/// A lone surrogate takes three octets, as any other unit.
void appendUtf16(std::string& text, const Node& element, const std::uint8_t* octets,
                 std::size_t count);
std::optional<std::string> textOf(const Plan& plan, std::uint32_t node, const std::uint8_t* first,
                                  std::size_t count);
void appendJsonOf(const Plan& plan, const std::uint8_t* octets, const Index& index,
                  const Spot& spot, std::string& text, const JsonOptions& options);
/// Reads JSON as the octets of a node; appends nothing where it is none.
std::optional<ValueError> readJson(const Plan& plan, std::uint32_t node, std::string_view json,
                                   std::vector<std::uint8_t>& octets);

}  // namespace omt
