// SPDX-License-Identifier: Apache-2.0
#include "entityTable.h"

#include "entityTableCheck.h"

#include <algorithm>

namespace
{

/// A row that is open at every level, as the library makes one of an empty line, or has no name for
/// any code.
bool isNameless(const DtDisEntityTypeEntry& entry)
{
    const std::vector<DtString>& names = entry.strings();
    return std::all_of(names.begin(), names.end(),
                       [](const DtString& name)
                       { return name.empty() || name == "\r" || name == "Any"; });
}

bool hasCarriageReturn(const DtString& name)
{
    return name.endsWith("\r");
}

}  // namespace

EntityTable::EntityTable(const std::string& file)
{
    checkEntityTable(file);
    loadFromFile(file, false);
    leaveOutNamelessRows();
    leaveOutCarriageReturns();
}

EntityTable::~EntityTable()
{
    deleteEnumerationEntries();
}

void EntityTable::leaveOutNamelessRows()
{
    EntryMap& rows = enumerationList();
    for (auto it = rows.begin(); it != rows.end();)
        it = isNameless(*it->second) ? rows.erase(it) : std::next(it);
}

/// In a table with the line breaks of other systems they belong to the last names.
void EntityTable::leaveOutCarriageReturns()
{
    for (auto& [key, entry] : enumerationList())
    {
        const std::vector<DtString>& names = entry->strings();
        if (std::none_of(names.begin(), names.end(), hasCarriageReturn)) continue;
        auto repaired = std::make_unique<DtDisEntityTypeEntry>(key);
        for (const DtString& name : names)
            repaired->addString(hasCarriageReturn(name)
                                    ? DtString(name.view().substr(0, name.length() - 1))
                                    : name);
        entry = repaired.get();
        myRepaired.push_back(std::move(repaired));
    }
}

// Tries which levels are open, the last one first: what comes first in the order of the keys is
// the most particular.
const DtDisEntityTypeEntry* EntityTable::findEntry(const DtEntityMapperKey& key) const
{
    for (unsigned int open = 0; open < 1U << theNamedLevels; ++open)
    {
        DtEntityMapperKey pattern = key;
        pattern.setExtra(DtEntityMapperKey::theAny);
        for (int level = 0; level < theNamedLevels; ++level)
            if (open >> (theNamedLevels - 1 - level) & 1U)
                pattern[level] = DtEntityMapperKey::theAny;
        const auto row = enumerationList().find(pattern);
        if (row != enumerationList().end()) return row->second;
    }
    return nullptr;
}

DtDisEntityTypeEntry* EntityTable::findEntry(const DtEntityMapperKey& key)
{
    return const_cast<DtDisEntityTypeEntry*>(std::as_const(*this).findEntry(key));
}
