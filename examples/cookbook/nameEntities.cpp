// SPDX-License-Identifier: Apache-2.0
// Names DIS entity types out of a table, one by one and wherever they stand in a value.
#include "omtReader/datatypeManager.h"
#include "omtReader/disDictionary.h"
#include "omtReader/entityTypeDatatypeRep.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/xmlFileReader.h"

#include <iostream>

/// Entity types under the name that their record has in the Harbour models.
struct HarbourEntityType final : DtEntityTypeDatatypeRep
{
    using DtEntityTypeDatatypeRep::DtEntityTypeDatatypeRep;
    const char* datatype() const override { return "EntityTypeRecord"; }
};

int main()
{
    DtXMLFileReader reader;
    const DtOMTTreePtr tree(
        reader.readFiles({"models/HarbourBase.xml", "HLAstandardMIM.xml"}, nullptr));
    if (!tree) return 1;
    DtDisDictionary dictionary;
    dictionary.loadFromFile("entity-types.csv", false);
    const DtDisEntityTypeEntry* const entry =
        dictionary.findEntry(DtEntityMapperKey("1:3:999:1:1:2:0"));
    if (entry) std::cout << entry->strings().back() << '\n';

    DtDatatypeManager manager;
    manager.setImplicitPadding(true);
    manager.fillDefaultDatatypeRepList();
    manager.initOMTData(tree.get());
    manager.addDefinedDatatypeRep(new HarbourEntityType(true, &dictionary, " > "));

    for (const char specific : {'\x02', '\x09'})
    {
        const std::vector<char> octets = {1, 3, 3, '\xE7', 1, 1, specific, 0};
        int consumed = 0;
        std::cout << manager.getStringRep("EntityTypeRecord", octets.data(), 8, consumed) << '\n';
    }
    dictionary.deleteEnumerationEntries();
}
