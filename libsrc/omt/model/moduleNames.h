// SPDX-License-Identifier: Apache-2.0
// ModuleNames finds the modules that dependencies name.
#pragma once

#include "omt/base/nameHash.h"
#include "omt/model/model.h"

#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// The names of some modules. Letters and digits count, in either case. Takes time by the number of
/// modules and of dependencies, not by their product.
class ModuleNames
{
public:
    /// Names a module by a number of the caller's. The module has to stay.
    void add(const Module& module, std::size_t number);

    /// The numbers of the modules that a dependency names: by file or title, else by a part of it,
    /// as a version is left out or added. At most 100; valid as long as nothing is added.
    const std::vector<std::size_t>& find(std::string_view dependency);

private:
    struct Entry
    {
        std::string file;
        std::string title;
        std::size_t number = 0;
        bool isMim = false;
    };

    std::vector<std::size_t> look(const std::string& wanted);

    std::vector<Entry> myEntries;
    OwnNameMap<std::vector<std::size_t>> myExact;
    OwnNameMap<std::vector<std::size_t>> myFound;
    std::size_t myComparisons = 0;
};

/// Whether a reference says that its module depends on the one it names.
bool isDependency(const Reference& reference);

}  // namespace omt
