// SPDX-License-Identifier: Apache-2.0
// SeenNames tells which names were there before, without memory of its own for each.
#pragma once

#include "omt/base/nameHash.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace omt
{

/// The names of one group of definitions after another. They are views, which live elsewhere.
class SeenNames
{
public:
    /// Forgets all names; `most` of them will come.
    void start(std::size_t most)
    {
        std::size_t size = 8;
        while (size < 2 * most) size *= 2;
        mySlots.assign(size, {});
    }

    /// Whether a name, below an owner, is there for the first time.
    bool add(std::string_view name, std::uint32_t owner = 0)
    {
        const std::size_t mask = mySlots.size() - 1;
        std::size_t at = NameHash()(name) + owner * 0x9E3779B97F4A7C15U;
        for (;; ++at)
        {
            Slot& slot = mySlots[at & mask];
            if (!slot.isTaken)
            {
                slot = {name, owner, true};
                return true;
            }
            if (slot.owner == owner && slot.name == name) return false;
        }
    }

private:
    struct Slot
    {
        std::string_view name;
        std::uint32_t owner = 0;
        bool isTaken = false;
    };
    std::vector<Slot> mySlots;
};

}  // namespace omt
