// SPDX-License-Identifier: Apache-2.0
// What is wrong with a table of entity types.
#pragma once

#include <string>

/// The levels of an entity type that a table has a code and a name for, and the highest codes.
struct EntityLevel
{
    const char* name;
    int highest;
};
inline constexpr EntityLevel theEntityLevels[] = {
    {"Kind",        255  },
    {"Domain",      255  },
    {"Country",     65535},
    {"Category",    255  },
    {"Subcategory", 255  },
    {"Specific",    255  },
    {"Extra",       255  }, // which no table names
};
inline constexpr int theNamedLevels = 6;

/// Throws InputError for a file that is no table of entity types; warns of lines that say something
/// else than their writer may have meant, in one sentence for each kind of mistake.
void checkEntityTable(const std::string& file);
