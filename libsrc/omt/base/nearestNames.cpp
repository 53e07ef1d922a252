// SPDX-License-Identifier: Apache-2.0
#include "omt/base/nearestNames.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace omt
{

namespace
{

constexpr std::size_t theLongestCompared = 200;

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The number of letters to insert, drop or replace (Levenshtein distance).
std::size_t distance(std::string_view a, std::string_view b)
{
    std::array<std::size_t, theLongestCompared + 1> row;
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
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
    return row[b.size()];
}

bool isSame(char a, char b)
{
    return lower(a) == lower(b);
}

/// How far a name is from what was sought: first the part that counts most.
struct Rank
{
    std::size_t changes;
    std::size_t distance;
    std::string_view name;

    bool operator<(const Rank& other) const
    {
        return std::tie(changes, distance, name) <
               std::tie(other.changes, other.distance, other.name);
    }
};

/// Who writes part of a name mostly means the name: letters that are only missing at its end count
/// as two changes, those at its begin as three.
Rank rank(std::string_view sought, std::string_view whole)
{
    constexpr std::size_t theShortestPart = 3;
    const std::string_view name = whole.substr(0, theLongestCompared);
    Rank rank = {0, distance(sought, name), whole};
    rank.changes = rank.distance;
    if (sought.size() < theShortestPart) return rank;
    const auto* const part =
        std::search(name.begin(), name.end(), sought.begin(), sought.end(), isSame);
    if (part != name.end())
        rank.changes = std::min<std::size_t>(rank.changes, part == name.begin() ? 2 : 3);
    return rank;
}

/// A name for a sentence, which a name of a document must not fill.
std::string inSentence(std::string_view name)
{
    if (name.size() <= theLongestCompared) return std::string(name);
    std::size_t end = theLongestCompared;
    while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80U) --end;
    return std::string(name.substr(0, end)) + "...";
}

}  // namespace

std::vector<std::string_view> nearestNames(std::string_view sought,
                                           const std::vector<std::string_view>& names,
                                           std::size_t most)
{
    sought = sought.substr(0, theLongestCompared);
    std::vector<Rank> ranked;
    ranked.reserve(names.size());
    for (const std::string_view name : names)
        if (name != sought) ranked.push_back(rank(sought, name));
    std::sort(ranked.begin(), ranked.end());

    std::vector<std::string_view> nearest;
    for (const Rank& one : ranked)
    {
        const std::size_t letters = std::max(sought.size(), one.name.size());
        if (nearest.size() == most) break;
        // The first may be a guess, but not a longer one with next to nothing of what was sought.
        if (nearest.empty() ? letters <= 2 || one.changes * 3 <= letters * 2
                            : one.changes * 2 <= letters && nearest.back() != one.name)
            nearest.push_back(one.name);
    }
    return nearest;
}

std::string didYouMean(std::string_view sought, const std::vector<std::string_view>& names)
{
    std::string sentence;
    const std::vector<std::string_view> nearest = nearestNames(sought, names);
    for (std::size_t i = 0; i < nearest.size(); ++i)
    {
        sentence += i == 0 ? "; did you mean " : i + 1 == nearest.size() ? " or " : ", ";
        sentence += inSentence(nearest[i]);
    }
    return nearest.empty() ? sentence : sentence + '?';
}

std::string unknownName(std::string_view kind, std::string_view sought,
                        const std::vector<std::string_view>& names)
{
    return "no " + std::string(kind) + " \"" + inSentence(sought) + '"' + didYouMean(sought, names);
}

std::string unknownName(std::string_view kind, std::string_view sought,
                        const std::vector<std::string>& names)
{
    return unknownName(kind, sought, std::vector<std::string_view>(names.begin(), names.end()));
}

}  // namespace omt
