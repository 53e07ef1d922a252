// SPDX-License-Identifier: Apache-2.0
#include "geometry/dtCoordTransform.h"

#include "geometry/dtAngle.h"
#include "geometry/dtEllipsoid.h"

#include <GeographicLib/Geocentric.hpp>

#include <cstddef>
#include <vector>

namespace
{

double product(const DtVector64& a, const DtVector64& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

}  // namespace

DtVector64 DtCoordTransform::coordTrans(const DtVector64& position) const
{
    const DtVector64 shifted = position - myOrigin;
    return {product(myAxes[0], shifted), product(myAxes[1], shifted), product(myAxes[2], shifted)};
}

void DtGeocToTopoTransform(double latitude, double longitude, DtCoordTransform& transform)
{
    const DtEllipsoid& ellipsoid = DtGlobalEllipsoid();
    const GeographicLib::Geocentric earth(ellipsoid.equatorialRadius(), ellipsoid.flattening());
    DtVector64 origin;
    std::vector<double> rotation(9);  // by rows; its columns are the axes east, north and up
    earth.Forward(DtRad2Deg(latitude), DtRad2Deg(longitude), 0.0, origin[0], origin[1], origin[2],
                  rotation);
    const auto column = [&rotation](std::size_t place)
    { return DtVector64(rotation[place], rotation[place + 3], rotation[place + 6]); };
    const DtVector64 down = DtVector64() - column(2);
    transform = DtCoordTransform(origin, column(1), column(0), down);
}
