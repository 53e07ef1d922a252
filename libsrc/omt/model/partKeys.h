// SPDX-License-Identifier: Apache-2.0
// Says what a part of a definition is known by where models are merged, and what it claims besides.
#pragma once

#include "omt/model/compare.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <type_traits>

namespace omt
{

/// What a part is known by within its definition.
inline std::string_view keyOf(const Text& dimension)
{
    return dimension;
}
inline std::string_view keyOf(const Definition& part)
{
    return part.name;
}
inline std::string_view keyOf(const Alternative& alternative)
{
    return saysSomething(alternative.name.view()) ? alternative.name : alternative.enumerator;
}

/// Calls `visit` with what a part claims for itself besides its name: the numbers of an enumerator,
/// the enumerators of an alternative.
template <typename Part, typename Visit>
void forEachClaim(const Part& part, Visit&& visit)
{
    if constexpr (std::is_same_v<Part, Enumerator>)
        for (const Text& value : part.values) visit(comparableNumber(value));
    if constexpr (std::is_same_v<Part, Alternative>)
    {
        std::string_view rest = part.enumerator;
        while (!rest.empty())
        {
            std::string_view token = rest.substr(0, rest.find(','));
            rest.remove_prefix(std::min(token.size() + 1, rest.size()));
            while (token.starts_with(' ')) token.remove_prefix(1);
            while (token.ends_with(' ')) token.remove_suffix(1);
            if (!token.empty()) visit(std::string(token));
        }
    }
}

/// Parts whose order is their meaning.
template <typename Part>
constexpr bool isOrdered = std::is_same_v<Part, RecordField> || std::is_same_v<Part, Component> ||
                           std::is_same_v<Part, RoutingDimension>;

template <typename Part>
constexpr Kind kindOfPart()
{
    if constexpr (std::is_same_v<Part, Text>)
        return Kind::dimension;
    else
        return Part::theKind;
}

template <typename Part>
std::uint32_t lineOfPart(const Part& part)
{
    if constexpr (std::is_same_v<Part, Text>)
        return part.line();
    else
        return part.line;
}

/// Whether a part is an attribute or a parameter by its name alone, which mentions the one that
/// another module defines.
template <typename Part>
bool isMention([[maybe_unused]] const Part& part)
{
    if constexpr (std::is_base_of_v<Member, Part>)
        return !saysSomething(part, Part::theKind);
    else
        return false;
}

/// Whether a part is the NA of a class without dimensions.
template <typename Part>
bool isNone([[maybe_unused]] const Part& part)
{
    if constexpr (std::is_same_v<Part, Text>)
        return !saysSomething(part.view());
    else
        return false;
}

}  // namespace omt
