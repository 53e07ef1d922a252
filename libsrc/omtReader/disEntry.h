// SPDX-License-Identifier: Apache-2.0
// The codes of entity types as a tree.
#pragma once

#include "util/dtString.h"

#include <map>

/// One code at one level of the entity types, with the codes of the level below.
class OMTREADER_EXPORT DtDisEntry
{
public:
    DtDisEntry() = default;
    explicit DtDisEntry(const DtString& name) : myName(name) {}
    DtDisEntry(const DtDisEntry&) = delete;
    DtDisEntry& operator=(const DtDisEntry&) = delete;
    /// Deletes all entries below.
    virtual ~DtDisEntry();

    /// The entry of a code, which is made if there is none; one that is there keeps its first name.
    /// It belongs to this one.
    virtual DtDisEntry* addDisEntry(int code, const DtString& name);
    /// The entry of a code, or null; looking for a code leaves an empty place for it, kept for
    /// compatibility.
    virtual DtDisEntry* find(int code);

    const DtString& name() const { return myName; }
    /// The entries below by their codes; null for a code that was only looked for.
    const std::map<int, DtDisEntry*>& entries() const { return myEntries; }

private:
    std::map<int, DtDisEntry*> myEntries;
    DtString myName;
};
