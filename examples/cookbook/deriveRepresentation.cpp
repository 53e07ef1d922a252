// SPDX-License-Identifier: Apache-2.0
// Shows headings as points of the compass, and reads them back.
#include "omtReader/datatypeManager.h"
#include "omtReader/floatDatatypeRep.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/xmlFileReader.h"

#include <cmath>
#include <iostream>

/// "compass": a number of degrees in 32 bits as the nearest of eight points.
class Compass final : public DtFloatDatatypeRep
{
public:
    using DtFloatDatatypeRep::DtFloatDatatypeRep;
    const char* datatype() const override { return "compass"; }
    DtString stringRep(const void* position, int* consumed) const override
    {
        const double degrees = numberRep(position, consumed);
        if (!position || !std::isfinite(degrees)) return "?";
        return thePoints[std::lround(std::fmod(degrees, 360.0) / 45.0) & 7];
    }
    std::vector<char> valueFromStringRep(const DtString& text) const override
    {
        int degrees = 0;  // also for a text that is none
        for (int point = 0; point < 8; ++point)
            if (text == thePoints[point]) degrees = 45 * point;
        return DtFloatDatatypeRep::valueFromStringRep(DtString(degrees));
    }

private:
    static constexpr const char* thePoints[] = {"N", "NE", "E", "SE", "S", "SW", "W", "NW"};
};

int main()
{
    DtXMLFileReader reader;
    const DtOMTTreePtr tree(reader.readFiles(
        {"models/HarbourBase.xml", "models/HarbourTraffic.xml", "HLAstandardMIM.xml"}, nullptr));
    if (!tree) return 1;
    DtDatatypeManager manager;
    manager.setImplicitPadding(true);
    manager.fillDefaultDatatypeRepList();
    manager.addDatatypeRep(new Compass(manager.isImplicitPaddingEnabled()));
    manager.initOMTData(tree.get());
    manager.readFile("harbour.map");
    manager.addRepMapping("Degrees", "compass");

    const std::vector<char> heading = {0x42, 0x3E, 0, 0};  // 47.5
    int consumed = 0;
    std::cout << manager.getStringRep("Degrees", heading.data(), 4, consumed) << '\n';
    std::vector<char> octets;
    manager.getValueFromStringRep("Degrees", "SW", octets);
    manager.addRepMapping("Degrees", "float");  // as a number again
    std::cout << manager.getStringRep("Degrees", octets.data(), 4, consumed) << '\n';
}
