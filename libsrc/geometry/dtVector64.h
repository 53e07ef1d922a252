// SPDX-License-Identifier: Apache-2.0
// Vectors in space.
#pragma once

#include "util/dtExport.h"

/// Three double-precision numbers: a position or a velocity. The unit is that of the user.
class OMTREADER_EXPORT DtVector64
{
public:
    /// The zero vector.
    DtVector64() = default;
    DtVector64(double x, double y, double z) : myComponents{x, y, z} {}

    /// The component along the axis 0, 1 or 2.
    double& operator[](int axis) { return myComponents[axis]; }
    double operator[](int axis) const { return myComponents[axis]; }

    friend DtVector64 operator+(const DtVector64& a, const DtVector64& b)
    {
        return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
    }
    friend DtVector64 operator-(const DtVector64& a, const DtVector64& b)
    {
        return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
    }

private:
    double myComponents[3] = {0.0, 0.0, 0.0};
};
