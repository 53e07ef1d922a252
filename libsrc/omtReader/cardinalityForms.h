// SPDX-License-Identifier: Apache-2.0
// Names what getCardinalityType() of members, components and arrays gives.
#pragma once

#include <cstdint>

namespace omtreader
{

/// How many values an attribute or parameter has.
struct MemberForm
{
    enum : std::int32_t
    {
        theSingle = 0,
        theOpen = 1,  // a minimum and no maximum
        theRange = 2
    };
};

/// How many values a component of a complex datatype has.
struct ComponentForm
{
    enum : std::int32_t
    {
        theSingle = 0,
        theRange = 1,
        theConditionWithValue = 2,
        theOpen = 3,  // a minimum and no maximum
        theCondition = 5,
        thePadding = 6  // up to a multiple of the maximum
    };
};

/// How an array says how many elements it has.
struct ArrayForm
{
    enum : std::int32_t
    {
        theFixed = 1,
        theBounded = 2,
        theOpenComponent = 3,  // only a class of a host gives these two forms: no elements
        theZeroEnded = 4,
        thePadding = 5,  // up to a multiple of the maximum
        thePaddingComponent = 6,
        theBits = 7,
        theLengthless = 8,
        theDimensions = 9,
        theCounted = 10
    };
};

}  // namespace omtreader
