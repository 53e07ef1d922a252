// SPDX-License-Identifier: Apache-2.0
// PartGrowth keeps the parts of definitions that several modules have until all modules are merged.
#pragma once

#include "omt/base/nameHash.h"
#include "omt/model/mergeReport.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace omt
{

/// Lists of a definition are copied once, when they begin to grow, and once when they are kept, so
/// that time and memory stay linear in the size of the models.
class PartGrowth
{
public:
    PartGrowth(Merging& merging, MergeReport& report) : myMerging(merging), myReport(report) {}

    /// Whether a definition of the merged model has parts, those included that wait to be kept.
    template <typename T>
    bool hasParts(const T& definition, std::uint32_t index) const;

    /// Merges parts of a later definition with those of the one with this index in its table.
    template <typename T, typename Part>
    void merge(std::uint32_t index, const List<Part>& ours, const List<Part>& theirs,
               const Repetition& repetition)
    {
        if constexpr (isOrdered<Part>)
            myReport.compareInOrder(ours, theirs, repetition);
        else
            mergeByName(keyIn<T>(index), ours, theirs, repetition);
    }

    /// Gives the definitions of a table the lists that have grown.
    template <typename T>
    void keep(std::vector<T>& table);

private:
    /// The parts of one definition, with what finds them.
    template <typename Part>
    struct Growth
    {
        void add(const Part& part);

        std::vector<Part> parts;
        NameMap<std::uint32_t> byKey;
        OwnNameMap<std::uint32_t> byClaim;
        /// How many parts came with the definition itself; these are the first.
        std::size_t own = 0;
        bool isChanged = false;
    };
    /// By kind and index of the definition.
    template <typename Part>
    using Growths = std::unordered_map<std::uint64_t, Growth<Part>>;

    template <typename T>
    static constexpr std::uint64_t keyIn(std::uint32_t index)
    {
        return (static_cast<std::uint64_t>(T::theKind) << 32) | index;
    }
    template <typename Part>
    void mergeByName(std::uint64_t key, const List<Part>& ours, const List<Part>& theirs,
                     const Repetition& repetition);
    template <typename Part>
    Growth<Part>& growthOf(std::uint64_t key, const List<Part>& ours);
    template <typename Part>
    void mergePart(Growth<Part>& growth, Part& ours, const Part& theirs,
                   const Repetition& repetition);
    template <typename Part>
    void addPart(Growth<Part>& growth, const Part& part, const Repetition& repetition);
    template <typename Part>
    void reportTakenClaims(const Growth<Part>& growth, const Part& part,
                           const Repetition& repetition);
    template <typename Part>
    void reportMissing(const Growth<Part>& growth, std::vector<std::uint32_t> matched,
                       const Repetition& repetition);

    Merging& myMerging;
    MergeReport& myReport;
    std::tuple<Growths<Text>, Growths<DirectedInteraction>, Growths<Attribute>, Growths<Parameter>,
               Growths<Enumerator>, Growths<Alternative>>
        myGrowths;
};

template <typename T>
bool PartGrowth::hasParts(const T& definition, std::uint32_t index) const
{
    bool isAny = false;
    forEachPartList<T>(
        [&](auto list)
        {
            isAny = isAny || !(definition.*list).empty();
            using Part = std::decay_t<decltype(*(definition.*list).begin())>;
            if constexpr (!isOrdered<Part>)
                isAny = isAny || std::get<Growths<Part>>(myGrowths).count(keyIn<T>(index)) != 0;
        });
    return isAny;
}

template <typename T>
void PartGrowth::keep(std::vector<T>& table)
{
    forEachPartList<T>(
        [&](auto list)
        {
            using Part = std::decay_t<decltype(*(std::declval<T&>().*list).begin())>;
            if constexpr (!isOrdered<Part>)
                for (const auto& [key, growth] : std::get<Growths<Part>>(myGrowths))
                    if (growth.isChanged && key >> 32 == keyIn<T>(0) >> 32)
                        table[key & 0xFFFFFFFFU].*list = myMerging.builder.list(growth.parts);
        });
}

}  // namespace omt
