// SPDX-License-Identifier: Apache-2.0
// Shows geocentric positions in degrees, and as seen from a place.
#include "geometry/dtAngle.h"
#include "geometry/dtCoordTransform.h"
#include "geometry/dtGeodeticCoord.h"
#include "omtReader/datatypeManager.h"
#include "omtReader/latLongCoordinatesDatatypeRep.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/xmlFileReader.h"

#include <iostream>

/// Positions under the name that their record has in the Harbour models.
struct HarbourPosition final : DtLatLongCoordinateDatatypeRep
{
    using DtLatLongCoordinateDatatypeRep::DtLatLongCoordinateDatatypeRep;
    const char* datatype() const override { return "GeocentricPosition"; }
};

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
    manager.addDefinedDatatypeRep(new HarbourPosition(true));

    const std::vector<char> octets = {0x41, 0x4C, '\x81', 0x14,   0x60, 0, 0, 0,
                                      0x41, 0x1D, 2,      0x72,   0,    0, 0, 0,
                                      0x41, 0x53, '\x91', '\xF5', 8,    0, 0, 0};
    int consumed = 0;
    std::cout << manager.getStringRep("GeocentricPosition", octets.data(), 24, consumed) << '\n';

    // The same without a manager, and a ship nearby, in metres north, east and down of it.
    DtGeodeticCoord harbour(DtGlobalEllipsoid());
    harbour.setGeocentric({3736104.75, 475292.5, 5130196.125});
    std::cout << DtRad2Deg(harbour.lat()) << ' ' << DtRad2Deg(harbour.lon()) << '\n';
    DtCoordTransform seenFromHarbour;
    DtGeocToTopoTransform(harbour.lat(), harbour.lon(), seenFromHarbour);
    const DtVector64 ship = seenFromHarbour.coordTrans({3735300.0, 475800.0, 5130740.0});
    std::cout << ship[0] << " m north, " << ship[1] << " m east\n";
}
