// SPDX-License-Identifier: Apache-2.0
// A named entity type.
#pragma once

#include "omtReader/entityMapperKey.h"

#include <vector>

// As for the key: an entry is deleted as what it is, and nothing can derive from it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// One row of a table of entity types: its key, and the names of kind, domain, country, category,
/// subcategory and specific in this order. A level that the row leaves open is named "Any".
class OMTREADER_EXPORT DtDisEntityTypeEntry final : public DtEntityMapperKey
{
public:
    explicit DtDisEntityTypeEntry(const DtEntityMapperKey& key);
    ~DtDisEntityTypeEntry();

    /// Adds the name of the next level.
    void addString(const DtString& name) { myStrings.push_back(name); }
    const std::vector<DtString>& strings() const { return myStrings; }

private:
    std::vector<DtString> myStrings;
};

#pragma GCC diagnostic pop
