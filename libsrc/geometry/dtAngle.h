// SPDX-License-Identifier: Apache-2.0
// Units of angles.
#pragma once

/// An angle in radians as degrees.
constexpr double DtRad2Deg(double radians)
{
    constexpr double theDegreesPerRadian = 180.0 / 3.14159265358979323846;
    return radians * theDegreesPerRadian;
}

/// An angle in degrees as radians.
constexpr double DtDeg2Rad(double degrees)
{
    constexpr double theRadiansPerDegree = 3.14159265358979323846 / 180.0;
    return degrees * theRadiansPerDegree;
}
