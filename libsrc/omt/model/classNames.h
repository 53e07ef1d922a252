// SPDX-License-Identifier: Apache-2.0
// shortFullName() gives full names of classes that a deep chain of classes cannot make explode.
#pragma once

#include "omt/model/definitions.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// The names from the root to a class with periods between them. Of one longer than `most` octets
/// the end, from the begin of a character on, after "...".
template <typename Class>
std::string shortFullName(const std::vector<Class>& table, const Class& node,
                          std::size_t most = 1000)
{
    std::vector<std::string_view> names;
    std::size_t length = 0;
    bool isWhole = false;
    for (const Class* at = &node; length <= most + 1; at = &table[at->parent])
    {
        names.push_back(at->name);
        length += at->name.size() + 1;
        isWhole = at->parent == ClassDefinition::theNone;
        if (isWhole) break;
    }
    std::string text;
    for (auto name = names.rbegin(); name != names.rend(); ++name)
    {
        if (!text.empty()) text += '.';
        text += *name;
    }
    if (isWhole && text.size() <= most) return text;
    std::size_t begin = text.size() - std::min(text.size(), most);
    while (begin < text.size() && (static_cast<unsigned char>(text[begin]) & 0xC0U) == 0x80U)
        ++begin;
    return "..." + text.substr(begin);
}

}  // namespace omt
