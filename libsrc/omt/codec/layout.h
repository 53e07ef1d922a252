// SPDX-License-Identifier: Apache-2.0
// layout() says where the octets of a datatype stand.
#pragma once

#include "omt/codec/type.h"

namespace omt
{

/// A field, an alternative or the elements of an array, with its place.
struct LayoutRow
{
    /// How deep it is nested; the type itself is at 0.
    unsigned depth = 0;
    /// The name of the field or alternative; "[]" for elements, "" for the type itself.
    std::string name;
    std::string type;
    /// "number", "enumerated", "record", "variant", "array", "text" or "octets".
    std::string kind;
    /// In octets from the start of what holds it; nothing where it follows something of open size.
    std::optional<std::size_t> offset;
    /// Octets of padding before it; nothing where these differ.
    std::optional<std::size_t> padding;
    unsigned boundary = 1;
    std::size_t leastSize = 0;
    /// Nothing where there is no limit.
    std::optional<std::size_t> greatestSize;
    /// What else there is to say, such as "count of 32 bits", "3 elements" or the enumerators.
    std::string remark;
};

/// The type and all that is in it, each before what it holds. A datatype that holds itself through
/// an array is named there and not shown again.
OMT_EXPORT std::vector<LayoutRow> layout(const Type& type);

}  // namespace omt
