// SPDX-License-Identifier: Apache-2.0
#include "nearestNames.h"

#include "plainText.h"

#include <algorithm>
#include <numeric>

namespace
{

constexpr std::size_t theMostNames = 3;
constexpr std::size_t theLongestCompared = 200;  // octets; names out of a file may be huge

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The number of letters to insert, drop or replace (Levenshtein distance).
std::size_t distance(std::string_view a, std::string_view b)
{
    a = a.substr(0, theLongestCompared);
    b = b.substr(0, theLongestCompared);
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i)
    {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < b.size(); ++j)
        {
            const std::size_t replaced = diagonal + (lower(a[i]) == lower(b[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

}  // namespace

std::vector<std::string> nearestNames(std::string_view sought,
                                      const std::vector<std::string>& names)
{
    std::vector<std::pair<std::size_t, std::string>> ranked;
    for (const std::string& name : names)
        if (name != sought) ranked.emplace_back(distance(sought, name), name);
    std::sort(ranked.begin(), ranked.end());
    ranked.erase(std::unique(ranked.begin(), ranked.end()), ranked.end());
    ranked.resize(std::min(ranked.size(), theMostNames));
    std::vector<std::string> nearest;
    for (auto& [changes, name] : ranked) nearest.push_back(std::move(name));
    return nearest;
}

std::string unknownName(std::string_view kind, std::string_view sought,
                        const std::vector<std::string>& names)
{
    std::string sentence = "no " + std::string(kind) + " \"" + std::string(sought) + '"';
    std::vector<std::string> nearest = nearestNames(sought, names);
    for (std::string& name : nearest) name = clipped(oneLine(name), theLongestCompared);
    if (!nearest.empty()) sentence += "; the nearest are " + joined(nearest, ", ");
    return sentence;
}
