// SPDX-License-Identifier: Apache-2.0
// Merging holds the model that comes of several, and takes definitions of the next one into it.
#pragma once

#include "omt/model/modelBuilder.h"
#include "omt/model/parts.h"

#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace omt
{

/// A definition of a later model, beside the one of its name that stands.
struct Repetition
{
    /// "object class `A.B`".
    std::string what;
    std::uint32_t firstModule = 0;
    std::uint32_t firstLine = 0;
    /// Where the later one is, by the number that its module has in the merged model.
    std::uint32_t laterModule = 0;
    std::uint32_t laterLine = 0;
    /// Whether it may add parts, and whether it may leave out what the first one has.
    bool mayAdd = false;
    bool mayLeaveOut = false;
    /// Whether the first one did not say what it is, so that this one does.
    bool isCompletion = false;
};

/// What all that merges works on. Modules of the model that is being added are numbered from 0 in
/// its own definitions, and from `firstModule` in the merged model.
struct Merging
{
    Tables& tables() { return builder.tables(); }
    const Tables& tables() const { return builder.tables(); }

    /// Of a module of the merged model.
    Edition editionOf(std::uint32_t module) const;
    Place place(std::uint32_t module, std::uint32_t line) const;

    /// A definition of the model that is being added, its parts included, with its module's number
    /// in the merged model.
    template <typename T>
    T adopted(T definition)
    {
        definition.module += firstModule;
        return withPartsAdopted(definition);
    }
    template <typename T>
    T withPartsAdopted(T definition);

    /// Puts what stands beside a scaffold beside the definition that takes its place.
    void keepAsides(const Definition& scaffold, Definition& whole);

    ModelBuilder builder;
    std::uint32_t firstModule = 0;
    /// References to notes that went to a definition of another module, and their own module.
    std::vector<std::pair<Text, std::uint32_t>> movedNotes;
};

template <typename T>
T Merging::withPartsAdopted(T definition)
{
    if (firstModule == 0) return definition;
    forEachPartList<T>(
        [&](auto list)
        {
            using Part = std::decay_t<decltype(*(definition.*list).begin())>;
            if constexpr (!std::is_same_v<Part, Text>)
            {
                definition.*list = builder.copy(definition.*list);
                for (Part& part : definition.*list) part.module += firstModule;
            }
        });
    return definition;
}

}  // namespace omt
