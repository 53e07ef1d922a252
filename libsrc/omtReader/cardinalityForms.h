// SPDX-License-Identifier: Apache-2.0
// Names what getCardinalityType() of members, components and arrays gives.
#pragma once

#include <cstdint>

/// How many values an attribute or parameter has.
struct DtMemberForm
{
    enum : std::int32_t
    {
        theSingle = 0,  ///< one number
        theOpen = 1,    ///< a minimum and no maximum
        theRange = 2
    };
};

/// How many values a component of a complex datatype has.
struct DtComponentForm
{
    enum : std::int32_t
    {
        theSingle = 0,  ///< one number
        theRange = 1,
        theConditionWithValue = 2,  ///< the other component has the conditional value
        theOpen = 3,                ///< a minimum and no maximum
        theCondition = 5,           ///< a condition that names no value
        thePadding = 6              ///< up to a multiple of the maximum, in octets
    };
};

/// How an array says how many elements it has; 0 where nothing is known.
struct DtArrayForm
{
    enum : std::int32_t
    {
        theFixed = 1,
        theBounded = 2,        ///< a number within bounds
        theOpenComponent = 3,  ///< only a class of a host gives this and thePaddingComponent
        theZeroEnded = 4,      ///< up to a zero element
        thePadding = 5,        ///< up to a multiple of the maximum, in octets
        thePaddingComponent = 6,
        theBits = 7,        ///< a count of bits before them
        theLengthless = 8,  ///< up to the end of the value
        theDimensions = 9,  ///< several dimensions
        theCounted = 10     ///< a count before them
    };
};
