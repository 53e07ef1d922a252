// SPDX-License-Identifier: Apache-2.0
// What components of HLA 1.3 mean by the names that the RPR FOM gives them.
#pragma once

#include <cstdint>
#include <string_view>

namespace omt
{

/// "PaddingTo32" and the like are octets up to this boundary; 0 for other names.
inline std::uint32_t paddingByName(std::string_view name)
{
    return name == "PaddingTo16" ? 2 : name == "PaddingTo32" ? 4 : name == "PaddingTo64" ? 8 : 0;
}

/// Whether a number of this name says how many elements the next component has.
inline bool isCountByName(std::string_view name)
{
    constexpr std::string_view theStart = "NumberOf";
    constexpr std::string_view theEnd = "SetCount";
    return name.substr(0, theStart.size()) == theStart ||
           (name.size() > theEnd.size() && name.substr(name.size() - theEnd.size()) == theEnd);
}

}  // namespace omt
