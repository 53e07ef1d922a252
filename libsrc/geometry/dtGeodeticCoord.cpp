// SPDX-License-Identifier: Apache-2.0
#include "geometry/dtGeodeticCoord.h"

#include "geometry/dtAngle.h"

#include <GeographicLib/Geocentric.hpp>

void DtGeodeticCoord::setGeocentric(const DtVector64& position)
{
    const GeographicLib::Geocentric earth(myEllipsoid.equatorialRadius(), myEllipsoid.flattening());
    double latitude = 0.0;
    double longitude = 0.0;
    earth.Reverse(position[0], position[1], position[2], latitude, longitude, myAltitude);
    myLatitude = DtDeg2Rad(latitude);
    myLongitude = DtDeg2Rad(longitude);
}
