// SPDX-License-Identifier: Apache-2.0
// Any octets as a table of entity types, and as records that are shown through it.
//
// The first 24 octets are the record, the rest is the table.
#include "checks.h"
#include "memoryFile.h"
#include "omtReader/altVelocityDatatypeRep.h"
#include "omtReader/datatypeManager.h"
#include "omtReader/disDictionary.h"
#include "omtReader/entityTypeDatatypeRep.h"
#include "omtReader/latLongCoordinatesDatatypeRep.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/stringTree.h"
#include "omtReader/topoCoordinateDatatypeRep.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

namespace
{

constexpr std::size_t theRecordSize = 24;

/// Every row that is not open in all places is found by a key of its own, and the list ends.
void checkList(DtDisDictionary& dictionary)
{
    const DtEntityMapperKey anything;
    const DtEntityMapperKey* last = nullptr;
    for (const auto& [key, entry] : dictionary.enumerationList())
    {
        require(entry && entry->exactMatch(key), "an entry stands under its key");
        require(entry->strings().size() == 6, "every level has a name");
        require(!last || *last < key, "the list is in order");
        last = &key;
        if (key.exactMatch(anything)) continue;
        const DtDisEntityTypeEntry* const found = dictionary.findEntry(key);
        require(found && *found == key, "a row is found");
    }
}

void decode(DtDisDictionary& dictionary, const std::vector<std::uint8_t>& record)
{
    const DtOMTTreePtr tree(new DtOMTTree);
    DtDatatypeManager manager;
    manager.fillDefaultDatatypeRepList();
    manager.initOMTData(tree.get());
    manager.addDefinedDatatypeRep(new DtEntityTypeDatatypeRep(true, &dictionary, ":"));
    manager.addDefinedDatatypeRep(new DtLatLongCoordinateDatatypeRep(true));
    manager.addDefinedDatatypeRep(new DtTopoCoordinateDatatypeRep(manager));
    manager.addDefinedDatatypeRep(new DtAltVelocityDatatypeRep(manager));
    const int length = static_cast<int>(record.size());
    for (const char* name : {"entityType-Defined", "geodedic", "topo-orientation", "alt-velocity"})
    {
        int consumed = 0;
        manager.getStringRep(name, record.data(), length, consumed);
        require(consumed >= 0, "a record is read");
        const std::unique_ptr<DtStringTree> decoded(manager.createStringTreeRep(
            name, record.data(), length, consumed, nullptr, 0, nullptr, nullptr));
        if (decoded) manager.convertStringTreeToString(decoded.get(), ";");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    beQuiet();
    const std::size_t recordSize = std::min(size, theRecordSize);
    const std::vector<std::uint8_t> record(data, data + recordSize);
    const MemoryFile table({reinterpret_cast<const char*>(data) + recordSize, size - recordSize});

    const std::size_t before = heldMemory();
    DtDisDictionary dictionary;
    dictionary.loadFromFile(table.name(), true);
    requireMemory(before + 65536 + 512 * size);
    dictionary.loadFromFile(table.name(), true);
    checkList(dictionary);
    decode(dictionary, record);
    dictionary.deleteEnumerationEntries();
    DtDisDictionary::countries().clear();
    return 0;
}
