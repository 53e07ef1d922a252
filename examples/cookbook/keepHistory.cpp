// SPDX-License-Identifier: Apache-2.0
// Keeps the last values of an attribute and decodes those that somebody looks at.
#include "omtReader/attributeHistory.h"
#include "omtReader/datatypeManager.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/stringTree.h"
#include "omtReader/xmlFileReader.h"

#include <iostream>

int main()
{
    DtXMLFileReader reader;
    const DtOMTTreePtr tree(reader.readFiles(
        {"models/HarbourBase.xml", "models/HarbourTraffic.xml", "HLAstandardMIM.xml"}, nullptr));
    if (!tree) return 1;
    const DtObjectClassFedNode* const vessel =
        tree->getObjectClassNode("HLAobjectRoot.PortEntity.Vessel");
    const DtAttributeFedNode* const heading = vessel ? vessel->findAttribute("Heading") : nullptr;
    if (!heading) return 1;
    DtDatatypeManager manager;
    manager.setImplicitPadding(true);
    manager.fillDefaultDatatypeRepList();
    manager.initOMTData(tree.get());
    manager.readFile("harbour.map");

    DtAttributeHistory history(manager);
    const char* const updates[] = {"\x41\x20\0\0", "\x41\xA0\0\0", "\x41\xF0\0\0",
                                   "\x42\x20\0\0", "\x42\x48\0\0", "\x42\x70\0\0"};
    for (const char* const octets : updates) history.setByteStream(octets, 4);
    std::cout << "updated: " << history.updatedFlag() << '\n';
    history.resetUpdateFlag();
    for (int age = 0; age < 5; ++age)
        if (const DtStringTree* const value = history.createStringTree(heading, age))
            std::cout << value->key() << ' ' << value->value() << '\n';
    std::cout << "updated: " << history.updatedFlag() << '\n';
}
