// SPDX-License-Identifier: Apache-2.0
// Says what is wrong with a value that is to be written, whoever gives it: JSON or calls.
#pragma once

#include "omt/codec/index.h"

#include <optional>
#include <string>
#include <string_view>

namespace omt
{

/// Of a number that a node cannot be; an unsigned one comes as two's complement.
std::string rangeComplaint(const Plan& plan, const Node& node, std::int64_t number,
                           bool isUnsigned);

/// A name that no enumerator of a node has.
std::string nameComplaint(const Plan& plan, const Node& node, std::string_view name);

/// Whether an alternative may be given where findAlternative() has `wanted` for the discriminant:
/// its index, theNothing, or theUnknown for octets.
inline bool isAlternative(const Node& variant, std::uint32_t wanted, std::uint32_t given)
{
    if (given == wanted && given != theUnknown) return true;
    if (variant.length == Length::none) return false;
    const bool isLeftOut = given == theNothing && variant.length == Length::extendable;
    return isLeftOut || (wanted >= theUnknown && given >= theUnknown);
}
std::string alternativeComplaint(const Plan& plan, const Node& variant, std::int64_t number,
                                 std::uint32_t wanted, std::uint32_t given);

/// Whether an array that begins so many octets after the value may have so many elements.
inline bool isCount(const Node& array, std::size_t count, std::size_t place)
{
    if (array.extent == Extent::fixed) return count == array.count;
    if (array.extent == Extent::padding) return count == aligned(place, array.count) - place;
    return count >= array.least && count <= array.most;
}
std::string countComplaint(const Node& array, std::size_t count, std::size_t place);

/// A number of elements beside what other fields of the record state; empty where they agree.
std::string statedComplaint(const Plan& plan, const Part& part, const Looked* looked,
                            std::size_t count);

/// Whether a field is not there, by the fields that were looked at.
inline bool isAbsent(const Part& part, const Looked* looked)
{
    if (part.decider == theNone) return false;
    const Looked& decider = looked[part.decider];
    return !decider.isThere || decider.number != part.decidingNumber;
}

/// Of a variant record whose alternative stands from `body` to `end`: stores its length. Gives
/// where the variant record ends, which is before the padding where the alternative has no octets.
std::size_t closeMeasured(const Node& variant, std::uint8_t* start, std::size_t end);

/// Whether octets that were written for a node are sure to be read as they were meant; where
/// elements end with the value they may not be.
inline bool isSure(const Node& node, std::size_t size)
{
    return node.ending != Ending::unsure && size <= theLargestSize;
}
/// What reading them has come to, which should be a value of this size.
std::optional<ValueError> refusal(const Index& index, std::size_t size);

}  // namespace omt
