// SPDX-License-Identifier: Apache-2.0
// Model::Index finds the definitions of a model by name.
#pragma once

#include "omt/base/nameHash.h"
#include "omt/model/model.h"

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace omt
{

/// Every definition that is looked up by name.
struct Model::Index
{
    explicit Index(const Tables& tables);

    template <typename T>
    void addDatatypes(const std::vector<T>& table)
    {
        for (const T& definition : table) datatypes.try_emplace(definition.name, definition);
    }

    using Names = NameMap<std::uint32_t>;
    template <typename T>
    static void addNames(Names& names, const std::vector<T>& table)
    {
        names.reserve(table.size());
        for (std::uint32_t i = 0; i < table.size(); ++i) names.try_emplace(table[i].name, i);
    }

    /// Classes by their own name; those of one name one after the other, through `next`.
    struct Classes
    {
        template <typename Class>
        explicit Classes(const std::vector<Class>& table)
            : next(table.size(), ClassDefinition::theNone)
        {
            first.reserve(table.size());
            for (std::size_t i = table.size(); i-- > 0;)
            {
                const auto index = static_cast<std::uint32_t>(i);
                const auto [place, isNew] = first.try_emplace(table[i].name, index);
                if (!isNew) next[i] = std::exchange(place->second, index);
            }
        }
        Names first;
        std::vector<std::uint32_t> next;
    };

    NameMap<Datatype> datatypes;
    Names notes;
    /// The notes of each module, where there are several modules.
    std::vector<Names> notesOfModule;
    Names dimensions;
    Names transportations;
    Classes objectClasses;
    Classes interactionClasses;
};

}  // namespace omt
