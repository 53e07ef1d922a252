// SPDX-License-Identifier: Apache-2.0
// Positions as latitude, longitude and altitude.
#pragma once

#include "geometry/dtEllipsoid.h"
#include "geometry/dtVector64.h"

/// A position relative to an ellipsoid; on the equator at longitude 0 until it is set.
class OMTREADER_EXPORT DtGeodeticCoord
{
public:
    explicit DtGeodeticCoord(const DtEllipsoid& ellipsoid) : myEllipsoid(ellipsoid) {}

    /// Takes a geocentric position in metres: the first axis through latitude 0 and longitude 0,
    /// the third one through the north pole. Exact to nanometres anywhere near the earth; the
    /// centre itself counts as below the north pole. A component that is not a finite number gives
    /// results that are none.
    void setGeocentric(const DtVector64& position);

    /// The geodetic latitude in radians, north positive, from -pi/2 to pi/2.
    double lat() const { return myLatitude; }
    /// In radians, east positive, from -pi to pi.
    double lon() const { return myLongitude; }
    /// The height above the ellipsoid in metres.
    double alt() const { return myAltitude; }

private:
    DtEllipsoid myEllipsoid;
    double myLatitude = 0.0;
    double myLongitude = 0.0;
    double myAltitude = 0.0;
};
