// SPDX-License-Identifier: Apache-2.0
#include "omtReader/disDictionary.h"

#include "omtReader/entityReader.h"

#include <memory>

namespace
{

constexpr int theLevels = 6;
constexpr int theCountry = 2;

DtDisEntityTypeEntry* findIn(const DtDisDictionary::EntryMap& entries, const DtEntityMapperKey& key)
{
    const auto found = entries.lower_bound(key);
    // The row in which everything is open is less than a key of that kind, which so finds nothing.
    const bool isFound = found != entries.end() && !(found->first < key) && found->first == key;
    return isFound ? found->second : nullptr;
}

}  // namespace

std::map<int, DtString> DtDisDictionary::gCountries;

DtDisDictionary::DtDisDictionary() = default;
DtDisDictionary::~DtDisDictionary() = default;

bool DtDisDictionary::loadFromFile(const DtString& fileName, bool)
{
    countLines(fileName.c_str());  // for hosts that override it; the count is not used here
    DtEntityReader reader(fileName.c_str());
    reader.readLine();
    DtEntityMapperKey key;
    std::vector<DtString> names(theLevels);
    auto last = myEntries.end();
    while (reader.readLine())
    {
        for (int level = 0; level < theLevels; ++level)
        {
            key[level] = reader.intVar(2 * level, nullptr);
            const bool isOpen = key[level] == DtEntityMapperKey::theAny;
            names[static_cast<std::size_t>(level)] =
                isOpen ? DtString("Any") : reader.stringVar(2 * level + 1, 2 * level + 1);
        }
        last = addRow(key, names, last);
    }
    return true;
}

/// Gives the place of the row in the list, which mostly is beside that of the row before.
DtDisDictionary::EntryMap::iterator DtDisDictionary::addRow(const DtEntityMapperKey& key,
                                                            const std::vector<DtString>& names,
                                                            EntryMap::iterator neighbour)
{
    auto entry = std::make_unique<DtDisEntityTypeEntry>(key);
    gCountries.try_emplace(key[theCountry], names[theCountry]);
    DtDisEntry* code = &myRoot;
    for (int level = 0; level < theLevels; ++level)
    {
        const DtString& name = names[static_cast<std::size_t>(level)];
        code = code->addDisEntry(key[level], name);
        entry->addString(name);
    }
    myMadeEntries.push_back(entry.get());
    DtDisEntityTypeEntry* const made = entry.release();
    const auto place = myEntries.emplace_hint(neighbour, *made, nullptr);
    place->second = made;
    return place;
}

const DtDisEntityTypeEntry* DtDisDictionary::findEntry(const DtEntityMapperKey& key) const
{
    return findIn(myEntries, key);
}

DtDisEntityTypeEntry* DtDisDictionary::findEntry(const DtEntityMapperKey& key)
{
    return findIn(myEntries, key);
}

DtString DtDisDictionary::findCountry(int code)
{
    return gCountries[code];
}

int DtDisDictionary::countLines(const char* fileName)
{
    DtEntityReader reader(fileName);
    reader.readLine();
    int count = 0;
    while (reader.readLine()) ++count;
    return count;
}

void DtDisDictionary::deleteEnumerationEntries()
{
    myEntries.clear();
    for (DtDisEntityTypeEntry* entry : myMadeEntries) delete entry;
    myMadeEntries.clear();
}
