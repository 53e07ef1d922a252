// SPDX-License-Identifier: Apache-2.0
// Shows values in several ways: by mappings, a delimiter and the number of digits.
#include "omtReader/datatypeManager.h"
#include "omtReader/doubleDatatypeRep.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/xmlFileReader.h"

#include <iostream>

static void print(DtDatatypeManager& manager)
{
    const std::vector<char> place = {0x41, 0x4C, '\x81', 0x14,   0x60, 0, 0, 0,
                                     0x41, 0x1D, 2,      0x72,   0,    0, 0, 0,
                                     0x41, 0x53, '\x91', '\xF5', 8,    0, 0, 0};
    const std::vector<char> type = {1, 3, 3, '\xE7', 1, 1, 2, 0};
    int consumed = 0;
    std::cout << manager.getStringRep("GeocentricPosition", place.data(), 24, consumed) << '\n';
    std::cout << manager.getStringRep("EntityTypeRecord", type.data(), 8, consumed) << '\n';
}

int main()
{
    DtXMLFileReader reader;
    const DtOMTTreePtr tree(
        reader.readFiles({"models/HarbourBase.xml", "HLAstandardMIM.xml"}, nullptr));
    if (!tree) return 1;
    DtDatatypeManager manager;
    manager.setImplicitPadding(true);
    manager.fillDefaultDatatypeRepList();
    manager.initOMTData(tree.get());
    manager.readStandardMappings();
    manager.addRepMapping("HarbourUnsignedInteger16BE", "unsigned-short");  // the model's own
    print(manager);

    DtDoubleDatatypeRep::defaultFloatPrecision = 10;  // of the whole process
    manager.addDelimiterMap("GeocentricPosition", " / ");
    manager.addDelimiterMap("EntityTypeRecord", ".");
    manager.addAttributeMapping("EntityKind", "hex");
    print(manager);
}
