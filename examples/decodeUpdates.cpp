// SPDX-License-Identifier: Apache-2.0
// Prints recorded attribute updates, rows of CSV that end with class, attribute and octets, as a
// mapping shows them.
#include "omtReader/datatypeManager.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/stringTree.h"
#include "omtReader/xmlFileReader.h"

#include <fstream>
#include <iostream>
#include <sstream>

static const DtAttributeFedNode* findAttribute(DtOMTTree& tree, const DtString& name)
{
    for (auto it = tree.getObjectClassNodeBegin(); it != tree.getObjectClassNodeEnd(); ++it)
        for (const DtAttributeFedNode* attribute : (*it)->getAttributes())
            if (attribute->getFullName().endsWith("." + name.str())) return attribute;
    return nullptr;
}

static void print(DtDatatypeManager& manager, const std::string& update)
{
    std::istringstream line(update);
    std::string cells[7];
    for (std::string& cell : cells) std::getline(line, cell, ',');
    const std::string name = cells[4] + '.' + cells[5];
    std::istringstream digits(cells[6]);
    std::vector<char> octets;
    digits >> std::hex;
    for (unsigned octet; digits >> octet;) octets.push_back(static_cast<char>(octet));
    const DtAttributeFedNode* const attribute = findAttribute(*manager.omtTree(), name);
    if (!attribute) return;
    int consumed = 0;
    const std::unique_ptr<DtStringTree> value(manager.createStringTreeRep(
        attribute, octets.data(), static_cast<int>(octets.size()), consumed, 0, nullptr));
    const DtString& delimiter = manager.getDelimiterMap(attribute->getDatatype(), nullptr);
    std::cout << name << " = " << manager.convertStringTreeToString(value.get(), delimiter) << '\n';
}

int main(int argc, char* argv[])
{
    if (argc < 4)
    {
        std::cerr << "usage: decodeUpdates UPDATES MAPPING MODULE.xml...\n";
        return 2;
    }
    std::vector<DtFilename> names(argv + 3, argv + argc);
    names.emplace_back("HLAstandardMIM.xml");  // just this name stands for the built-in MIM
    const DtOMTTreePtr tree(DtXMLFileReader().readFiles(names, nullptr));
    if (!tree) return 1;
    DtDatatypeManager manager;
    manager.setImplicitPadding(true);
    manager.fillDefaultDatatypeRepList();
    manager.initOMTData(tree.get());
    manager.readFile(argv[2]);
    std::ifstream updates(argv[1]);
    for (std::string update; std::getline(updates, update);) print(manager, update);
}
