// SPDX-License-Identifier: Apache-2.0
// The table of entity types that the user names.
#pragma once

#include "omtReader/disDictionary.h"

#include <memory>
#include <string>
#include <vector>

/// The names of entity types out of one file, without the rows that name nothing.
class EntityTable final : public DtDisDictionary
{
public:
    /// Throws InputError for a file that is no such table; warns, once for each kind of mistake, of
    /// lines that say something else than their writer may have meant.
    explicit EntityTable(const std::string& file);
    ~EntityTable() override;

    /// The row that says most of an entity type: one that is open at a level only if none has the
    /// number of that level. The base gives it only where no other row stands in front of it.
    const DtDisEntityTypeEntry* findEntry(const DtEntityMapperKey& key) const override;
    DtDisEntityTypeEntry* findEntry(const DtEntityMapperKey& key) override;

private:
    void leaveOutNamelessRows();
    void leaveOutCarriageReturns();

    std::vector<std::unique_ptr<DtDisEntityTypeEntry>> myRepaired;
};
