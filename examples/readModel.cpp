// SPDX-License-Identifier: Apache-2.0
// Reads 1516-2010 modules, merges them with the standard MIM and prints the object classes.
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/xmlFileReader.h"

#include <iostream>
#include <string>
#include <vector>

namespace
{

void print(const DtObjectClassFedNode& node, std::size_t depth = 0)
{
    const std::string indent(2 * depth, ' ');
    std::cout << indent << node.getName() << '\n';
    for (const DtAttributeFedNode* attribute : node.getAttributes())
        std::cout << indent << "  " << attribute->getName() << ": " << attribute->getDatatype()
                  << '\n';
    for (const DtObjectClassFedNode* child : node.getChildObjects()) print(*child, depth + 1);
}

}  // namespace

int main(int argc, char* argv[])
{
    if (argc < 2)
    {
        std::cerr << "usage: readModel MODULE.xml...\n";
        return 2;
    }
    std::vector<DtFilename> names(argv + 1, argv + argc);
    names.emplace_back("HLAstandardMIM.xml");  // just this name stands for the built-in MIM

    DtXMLFileReader reader;
    const DtOMTTreePtr tree(reader.readFiles(names, nullptr));
    if (!tree)
    {
        std::cerr << "Not read, or not a 1516-2010 model. " << reader.getLastError() << '\n';
        return 1;
    }
    if (const DtObjectClassFedNode* root = tree->objectClassRoot()) print(*root);
}
