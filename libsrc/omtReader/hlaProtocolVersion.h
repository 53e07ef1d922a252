// SPDX-License-Identifier: Apache-2.0
// Which generation of HLA an object model belongs to.
#pragma once

#include <cstdint>

enum DtHLAProtocolVersion : std::uint32_t
{
    DtHlaUnset = 0,      ///< not known
    DtHla13 = 1,         ///< HLA 1.3, the data interchange format
    DtHla1516_2000 = 2,  ///< IEEE 1516-2000
    DtHla1516_2010 = 3   ///< IEEE 1516-2010, "HLA Evolved"
};
