// SPDX-License-Identifier: Apache-2.0
// The figure of the earth.
#pragma once

#include "util/dtExport.h"

/// An ellipsoid of revolution around the third axis, with its centre at the origin of geocentric
/// coordinates.
class OMTREADER_EXPORT DtEllipsoid
{
public:
    /// The equatorial radius in metres, and the flattening, a number without unit: how much shorter
    /// the polar radius is, as a part of the equatorial one.
    DtEllipsoid(double equatorialRadius, double flattening)
        : myEquatorialRadius(equatorialRadius), myFlattening(flattening)
    {
    }

    /// In metres.
    double equatorialRadius() const { return myEquatorialRadius; }
    double flattening() const { return myFlattening; }

private:
    double myEquatorialRadius;
    double myFlattening;
};

/// The reference ellipsoid of all positions: that of WGS 84.
OMTREADER_EXPORT const DtEllipsoid& DtGlobalEllipsoid();
