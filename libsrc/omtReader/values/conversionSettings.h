// SPDX-License-Identifier: Apache-2.0
// What a datatype manager was told: its tree, representations, mappings and flags.
#pragma once

#include "omtReader/datatypeManager.h"

#include <cstdint>
#include <set>

namespace omtreader
{

/// The state of one manager. Whatever resolved datatypes are made of is changed through the manager
/// only, which counts the change.
struct ConversionSettings
{
    DtOMTTree* tree = nullptr;  // not owned
    std::map<DtString, DtDatatypeManager::DtDatatypeEnum> kinds;
    DtDatatypeManager::NameMap mappings;  // datatype to representation
    DtDatatypeManager::NameMap attributeMappings;
    std::set<DtString> explicitlyMapped;
    DtDatatypeManager::NameRepMap registry;  // owned
    DtString defaultDelimiter = " ";
    DtDatatypeManager::NameMap delimiters;
    DtString wrapperOpen;
    DtString wrapperClose;
    DtString defaultBracket = DtString(1);
    DtDatatypeManager::BracketMap brackets;
    bool isPaddingImplicit = false;
    bool isDirty = false;
    int nodeLimit = 1000000;
    std::uint64_t changes = 0;
    /// Whether the manager is of a host's class, which may have replaced any operation. Then every
    /// step is asked for at the manager, and no answer is kept; else rooms go straight to each
    /// other.
    bool hasHost = false;

    /// The representation registered under a name; null for none and for a null entry.
    DtDatatypeRep* registered(const DtString& name) const
    {
        const auto entry = registry.find(name);
        return entry == registry.end() ? nullptr : entry->second;
    }
};

}  // namespace omtreader
