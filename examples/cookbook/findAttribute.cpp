// SPDX-License-Identifier: Apache-2.0
// Finds an attribute by class and name, in the class or in one above it.
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/xmlFileReader.h"

#include <iostream>

static const DtAttributeFedNode* findAttribute(const DtFedNode* node, const char* name)
{
    for (; node; node = node->getParentObject())
    {
        // What stands above an object class is an object class.
        const auto* const objectClass = static_cast<const DtObjectClassFedNode*>(node);
        if (const DtAttributeFedNode* const found = objectClass->findAttribute(name)) return found;
    }
    return nullptr;
}

int main()
{
    DtXMLFileReader reader;
    const DtOMTTreePtr tree(
        reader.readFiles({"models/HarbourBase.xml", "models/HarbourTraffic.xml"}, nullptr));
    if (!tree) return 1;
    const DtObjectClassFedNode* const tug =
        tree->getObjectClassNode("HLAobjectRoot.PortEntity.Vessel.Tug");
    if (!tug) return 1;
    for (const char* name : {"BollardPull", "Heading", "Position", "Mast"})
    {
        if (const DtAttributeFedNode* const attribute = findAttribute(tug, name))
            std::cout << attribute->getFullName() << ": " << attribute->getDatatype() << ", "
                      << attribute->getUpdateType() << '\n';
        else
            std::cout << "a tug has no " << name << '\n';
    }
}
