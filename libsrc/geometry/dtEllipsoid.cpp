// SPDX-License-Identifier: Apache-2.0
#include "geometry/dtEllipsoid.h"

#include <GeographicLib/Constants.hpp>

const DtEllipsoid& DtGlobalEllipsoid()
{
    using WGS84 = GeographicLib::Constants;
    static const DtEllipsoid theEllipsoid(WGS84::WGS84_a(), WGS84::WGS84_f());
    return theEllipsoid;
}
