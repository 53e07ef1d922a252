// SPDX-License-Identifier: Apache-2.0
// The names of DIS entity types.
#pragma once

#include "omtReader/disEntityTypeEntry.h"
#include "omtReader/disEntry.h"

#include <map>
#include <vector>

/// Entity types and countries by their codes, out of comma-separated tables.
///
/// The first line of a file is a header. Every other one is a row of twelve columns: code and name
/// of kind, domain, country, category, subcategory and specific. An empty code stands for any, and
/// the name of that level is "Any"; further columns are ignored. Nothing fails: a file that is not
/// there has no rows, a short row has empty names and open codes, and a code that is no number is
/// 0.
///
/// Kept for compatibility: a file that ends with a line break has one last row in which everything
/// is open: a key that nothing else matches finds that.
class OMTREADER_EXPORT DtDisDictionary
{
public:
    using EntryMap = std::map<DtEntityMapperKey, DtDisEntityTypeEntry*>;

    DtDisDictionary();
    DtDisDictionary(const DtDisDictionary&) = delete;
    DtDisDictionary& operator=(const DtDisDictionary&) = delete;
    /// Deletes the tree of codes. The entries of the list are left undeleted, as hosts
    /// keep them beyond the dictionary; see deleteEnumerationEntries().
    virtual ~DtDisDictionary();

    /// Adds the rows of a file to those that are there; always true. In the list a later row of a
    /// key takes the place of an earlier one; in the tree and among the countries the first name of
    /// a code stays. The flag is not used.
    virtual bool loadFromFile(const DtString& fileName, bool unused);

    /// One entry for each row, in the order of the keys.
    virtual const EntryMap& enumerationList() const { return myEntries; }
    virtual EntryMap& enumerationList() { return myEntries; }

    /// The codes as a tree: kinds, then domains, countries, categories, subcategories, specifics.
    virtual const DtDisEntry& disEntries() const { return myRoot; }
    virtual DtDisEntry& disEntries() { return myRoot; }

    /// The first entry whose key is not less than this one, if the two match as patterns; else
    /// null. It stays the dictionary's.
    virtual const DtDisEntityTypeEntry* findEntry(const DtEntityMapperKey& key) const;
    virtual DtDisEntityTypeEntry* findEntry(const DtEntityMapperKey& key);

    /// The name of a country; empty for an unknown code, which is noted without a name.
    virtual DtString findCountry(int code);

    /// How many lines a file has after its header.
    virtual int countLines(const char* fileName);

    /// The names of countries by code, of all dictionaries of the process. Not guarded: one thread
    /// at a time loads dictionaries and asks for countries.
    static std::map<int, DtString>& countries() { return gCountries; }

    /// Deletes all entries, also those whose place another took, and empties the list. Nobody may
    /// use them any more.
    void deleteEnumerationEntries();

private:
    EntryMap::iterator addRow(const DtEntityMapperKey& key, const std::vector<DtString>& names,
                              EntryMap::iterator neighbour);

    DtDisEntry myRoot;
    EntryMap myEntries;
    std::vector<DtDisEntityTypeEntry*> myMadeEntries;  // all that were ever in the list

    static std::map<int, DtString> gCountries;
};
