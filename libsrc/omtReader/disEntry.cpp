// SPDX-License-Identifier: Apache-2.0
#include "omtReader/disEntry.h"

DtDisEntry::~DtDisEntry()
{
    for (const auto& [code, entry] : myEntries) delete entry;
}

DtDisEntry* DtDisEntry::addDisEntry(int code, const DtString& name)
{
    DtDisEntry*& entry = myEntries[code];
    if (!entry) entry = new DtDisEntry(name);
    return entry;
}

DtDisEntry* DtDisEntry::find(int code)
{
    return myEntries[code];
}
