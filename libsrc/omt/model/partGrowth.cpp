// SPDX-License-Identifier: Apache-2.0
#include "omt/model/partGrowth.h"

#include <algorithm>

namespace omt
{

template <typename Part>
void PartGrowth::Growth<Part>::add(const Part& part)
{
    const auto index = static_cast<std::uint32_t>(parts.size());
    byKey.try_emplace(keyOf(part), index);
    forEachClaim(part, [&](std::string claim) { byClaim.try_emplace(std::move(claim), index); });
    parts.push_back(part);
}

template <typename Part>
PartGrowth::Growth<Part>& PartGrowth::growthOf(std::uint64_t key, const List<Part>& ours)
{
    const auto [place, isNew] = std::get<Growths<Part>>(myGrowths).try_emplace(key);
    Growth<Part>& growth = place->second;
    if (!isNew) return growth;
    for (const Part& part : ours)
        if (!isNone(part)) growth.add(part);
    growth.own = growth.parts.size();
    return growth;
}

template <typename Part>
void PartGrowth::mergeByName(std::uint64_t key, const List<Part>& ours, const List<Part>& theirs,
                             const Repetition& repetition)
{
    Growth<Part>& growth = growthOf(key, ours);
    std::vector<std::uint32_t> matched;
    bool isDefinition = false;
    for (const Part& part : theirs)
    {
        isDefinition = isDefinition || !isMention(part);
        if (isNone(part)) continue;
        const auto found = growth.byKey.find(keyOf(part));
        if (found == growth.byKey.end())
        {
            isDefinition = true;
            addPart(growth, part, repetition);
            continue;
        }
        matched.push_back(found->second);
        mergePart(growth, growth.parts[found->second], part, repetition);
    }
    if (isDefinition && !repetition.mayLeaveOut)
        reportMissing(growth, std::move(matched), repetition);
}

template void PartGrowth::mergeByName(std::uint64_t, const List<Text>&, const List<Text>&,
                                      const Repetition&);
template void PartGrowth::mergeByName(std::uint64_t, const List<DirectedInteraction>&,
                                      const List<DirectedInteraction>&, const Repetition&);
template void PartGrowth::mergeByName(std::uint64_t, const List<Attribute>&, const List<Attribute>&,
                                      const Repetition&);
template void PartGrowth::mergeByName(std::uint64_t, const List<Parameter>&, const List<Parameter>&,
                                      const Repetition&);
template void PartGrowth::mergeByName(std::uint64_t, const List<Enumerator>&,
                                      const List<Enumerator>&, const Repetition&);
template void PartGrowth::mergeByName(std::uint64_t, const List<Alternative>&,
                                      const List<Alternative>&, const Repetition&);

/// What was a mention becomes the definition; otherwise both have to say the same.
template <typename Part>
void PartGrowth::mergePart(Growth<Part>& growth, Part& ours, const Part& theirs,
                           const Repetition& repetition)
{
    if constexpr (!std::is_same_v<Part, Text>)
    {
        if (isMention(theirs)) return;
        if (!isMention(ours))
            return myReport.comparePart(ours, theirs, Part::theKind, keyOf(theirs), repetition);
        Part whole = theirs;
        whole.module += myMerging.firstModule;
        myMerging.keepAsides(ours, whole);
        ours = whole;
        growth.isChanged = true;
    }
}

template <typename Part>
void PartGrowth::addPart(Growth<Part>& growth, const Part& part, const Repetition& repetition)
{
    const std::uint32_t line = lineOfPart(part) != 0 ? lineOfPart(part) : repetition.laterLine;
    if (!repetition.mayAdd)
        myReport.reportAddition(kindOfPart<Part>(), keyOf(part), line, repetition);
    reportTakenClaims(growth, part, repetition);
    Part added = part;
    if constexpr (!std::is_same_v<Part, Text>) added.module += myMerging.firstModule;
    growth.add(added);
    growth.isChanged = true;
}

template <typename Part>
void PartGrowth::reportTakenClaims(const Growth<Part>& growth, const Part& part,
                                   const Repetition& repetition)
{
    forEachClaim(part,
                 [&](const std::string& claim)
                 {
                     const auto taken = growth.byClaim.find(claim);
                     if (taken == growth.byClaim.end()) return;
                     const Part& owner = growth.parts[taken->second];
                     if constexpr (!std::is_same_v<Part, Text>)
                         myReport.reportTakenClaim(part, Part::theKind, keyOf(part), claim, owner,
                                                   keyOf(owner), repetition);
                 });
}

/// Names parts that came with the definition itself and that its repetition lacks.
template <typename Part>
void PartGrowth::reportMissing(const Growth<Part>& growth, std::vector<std::uint32_t> matched,
                               const Repetition& repetition)
{
    constexpr std::size_t theMost = 3;
    // Names that are there twice are not missing; that many of them are looked at and no more.
    const std::size_t end = std::min(growth.own, matched.size() + 1000);
    std::sort(matched.begin(), matched.end());
    std::string names;
    std::size_t count = 0;
    auto next = matched.begin();
    for (std::uint32_t i = 0; i < end && count < theMost; ++i)
    {
        while (next != matched.end() && *next < i) ++next;
        if (next != matched.end() && *next == i) continue;
        if constexpr (!std::is_same_v<Part, Text>)
            if (growth.parts[i].module != repetition.firstModule) continue;
        // A name that the definition has twice was matched by the first of the two.
        if (growth.byKey.find(keyOf(growth.parts[i]))->second != i) continue;
        names += (count == 0 ? "" : ", ") + shown(keyOf(growth.parts[i]));
        ++count;
    }
    if (count != 0) myReport.reportMissing(kindOfPart<Part>(), names, repetition);
}

}  // namespace omt
