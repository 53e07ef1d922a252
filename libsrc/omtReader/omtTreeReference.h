// SPDX-License-Identifier: Apache-2.0
// A reference from an object model to something else.
#pragma once

#include "util/dtString.h"

/// One reference of the model identification.
struct DtOMTTreeReference
{
    DtString type;            ///< the kind of reference, such as "Composed_From"
    DtString identification;  ///< what is referred to
};
