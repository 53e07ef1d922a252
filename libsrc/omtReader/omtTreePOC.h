// SPDX-License-Identifier: Apache-2.0
// A point of contact of an object model.
#pragma once

#include "util/dtString.h"

/// Whom to ask about a model. Every text is as written; a format that gives the name in one piece
/// has it in lastName.
struct DtOMTTreePOC
{
    DtString honorificName;
    DtString firstName;
    DtString lastName;
    DtString orgName;
    DtString phone;
    DtString email;
    DtString type;  ///< the part that the contact played, such as "Sponsor"
};
