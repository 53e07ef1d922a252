// SPDX-License-Identifier: Apache-2.0
// Changes a model, adding an attribute and renaming a datatype, and writes it.
#include "omt/model/modelBuilder.h"
#include "omt/model/write.h"
#include "omt/omt.h"

#include <iostream>

int main()
{
    const omt::Reading fom = omt::read({"models/HarbourBase.xml"});
    omt::ModelBuilder builder(fom.model);
    for (omt::ObjectClass& node : builder.tables().objectClasses)
    {
        if (node.name != "Berth") continue;
        omt::Attribute depth;
        depth.name = builder.text("Depth");
        depth.dataType = builder.text("Metres");
        node.attributes = builder.appended(node.attributes, depth);
    }
    std::cout << builder.renameDatatype("BerthNumber", "NumberOfBerth") << " places\n";

    const omt::Writing written = omt::writeXml(builder.build(), omt::Edition::ieee2025);
    for (const omt::Finding& finding : written.findings) std::cout << finding << '\n';
    omt::Findings findings;
    const omt::Model again = omt::readModule({"changed", written.text}, findings);
    std::cout << again.findMembers("Berth.Depth").size() << " attribute, "
              << (again.findDatatype("NumberOfBerth") ? "renamed" : "lost") << '\n';
}
