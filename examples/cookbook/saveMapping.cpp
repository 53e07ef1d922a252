// SPDX-License-Identifier: Apache-2.0
// Saves the mappings that a user chose and reads them into another manager.
#include "omtReader/datatypeManager.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/xmlFileReader.h"

#include <filesystem>
#include <iostream>

static void furnish(DtDatatypeManager& manager, DtOMTTree& tree, const DtString& mappings)
{
    manager.setImplicitPadding(true);
    manager.fillDefaultDatatypeRepList();
    manager.initOMTData(&tree);
    manager.readFile(mappings);
}

int main()
{
    DtXMLFileReader reader;
    const DtOMTTreePtr tree(
        reader.readFiles({"models/HarbourBase.xml", "HLAstandardMIM.xml"}, nullptr));
    if (!tree) return 1;
    DtDatatypeManager manager;
    furnish(manager, *tree, "harbour.map");
    std::cout << "changed: " << manager.isDirty() << '\n';
    manager.addRepMapping("TypeOctet", "hex");
    std::cout << "changed: " << manager.isDirty() << '\n';

    const std::filesystem::path path = std::filesystem::temp_directory_path() / "cookbook.map";
    manager.writeFile(path.string());
    if (!std::filesystem::exists(path)) return 1;  // what cannot be written is not told
    DtDatatypeManager other;
    furnish(other, *tree, path.string());
    std::filesystem::remove(path);

    int consumed = 0;
    const std::vector<char> type = {1, 3, 3, '\xE7', 1, 1, 2, 0};
    std::cout << other.getStringRep("EntityTypeRecord", type.data(), 8, consumed) << '\n';
}
