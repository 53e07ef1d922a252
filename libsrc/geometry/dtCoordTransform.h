// SPDX-License-Identifier: Apache-2.0
// Positions in another frame.
#pragma once

#include "geometry/dtVector64.h"

/// A change of frame: a shift of the origin, and then a rotation. Changes nothing until it is set.
class OMTREADER_EXPORT DtCoordTransform
{
public:
    DtCoordTransform() = default;
    /// The new origin in the old frame, and the new axes as unit vectors of the old frame.
    DtCoordTransform(const DtVector64& origin, const DtVector64& first, const DtVector64& second,
                     const DtVector64& third)
        : myOrigin(origin), myAxes{first, second, third}
    {
    }

    /// A position of the old frame in the new one, in the same unit.
    DtVector64 coordTrans(const DtVector64& position) const;

private:
    DtVector64 myOrigin;
    DtVector64 myAxes[3] = {
        {1.0, 0.0, 0.0},
        {0.0, 1.0, 0.0},
        {0.0, 0.0, 1.0}
    };
};

/// Fills the transform from geocentric coordinates to the topographic ones of a place on the global
/// ellipsoid, both in metres. The place, given by latitude and longitude in radians, is the origin;
/// the axes point north, east and down.
OMTREADER_EXPORT void DtGeocToTopoTransform(double latitude, double longitude,
                                            DtCoordTransform& transform);
