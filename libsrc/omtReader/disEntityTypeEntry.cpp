// SPDX-License-Identifier: Apache-2.0
#include "omtReader/disEntityTypeEntry.h"

DtDisEntityTypeEntry::DtDisEntityTypeEntry(const DtEntityMapperKey& key) : DtEntityMapperKey(key)
{
    constexpr std::size_t theLevels = 6;
    myStrings.reserve(theLevels);
}

DtDisEntityTypeEntry::~DtDisEntityTypeEntry() = default;
