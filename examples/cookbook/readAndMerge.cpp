// SPDX-License-Identifier: Apache-2.0
// Reads two modules and the standard MIM into one tree.
#include "omtReader/omtTreePtr.h"
#include "omtReader/xmlFileReader.h"

#include <iostream>
#include <iterator>

int main()
{
    DtXMLFileReader reader;
    const std::vector<DtFilename> modules = {"models/HarbourBase.xml", "models/HarbourTraffic.xml",
                                             "HLAstandardMIM.xml"};
    const DtOMTTreePtr tree(reader.readFiles(modules, nullptr));
    if (!tree)
    {
        std::cerr << "Not read, or not a 1516-2010 model. " << reader.getLastError() << '\n';
        return 1;
    }
    for (const DtOMTTreeReference& reference : tree->getReferences())
        std::cout << reference.type << ": " << reference.identification << '\n';
    std::cout << std::distance(tree->getObjectClassNodeBegin(), tree->getObjectClassNodeEnd())
              << " object classes, "
              << std::distance(tree->getFixedDatatypeNodeList(), tree->getFixedDatatypeEndNode())
              << " fixed records\n";

    // One that is not there gives null; the reader keeps what went wrong, and stays usable.
    const DtOMTTreePtr none(reader.readFiles({"models/Harbor.xml"}, nullptr));
    std::cout << (none ? "read" : "not read: ") << reader.getLastError() << '\n';
}
