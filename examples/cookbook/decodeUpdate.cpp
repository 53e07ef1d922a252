// SPDX-License-Identifier: Apache-2.0
// Decodes the octets of one update to a tree of names and values.
#include "omtReader/datatypeManager.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/stringTree.h"
#include "omtReader/xmlFileReader.h"

#include <iostream>

static void print(const DtStringTree* field, const std::string& indent = "")
{
    for (; field; field = field->nextSibling())
        for (const DtStringTree* node = field; node; node = node->nextElement())
        {
            std::cout << indent << node->key() << '=' << node->value() << '\n';
            print(node->firstChild(), indent + "  ");
        }
}

int main()
{
    DtXMLFileReader reader;
    const DtOMTTreePtr tree(reader.readFiles(
        {"models/HarbourBase.xml", "models/HarbourTraffic.xml", "HLAstandardMIM.xml"}, nullptr));
    if (!tree) return 1;
    DtDatatypeManager manager;
    manager.setImplicitPadding(true);
    manager.fillDefaultDatatypeRepList();
    manager.initOMTData(tree.get());
    manager.readFile("harbour.map");

    const DtObjectClassFedNode* const vessel =
        tree->getObjectClassNode("HLAobjectRoot.PortEntity.Vessel");
    const DtAttributeFedNode* const cargo = vessel ? vessel->findAttribute("Cargo") : nullptr;
    if (!cargo) return 1;
    const std::vector<char> octets = {0, 1, 0, 0,      0, 0, 1, '\x9C',
                                      0, 0, 2, '\x60', 0, 0, 0, '\x25'};
    for (const int length : {16, 14})  // the second time cut short
    {
        int consumed = 0;
        const std::unique_ptr<DtStringTree> value(
            manager.createStringTreeRep(cargo, octets.data(), length, consumed, 0, nullptr));
        print(value.get());
        std::cout << "took " << consumed << " of " << length << " octets\n";
    }
}
