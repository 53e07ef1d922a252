// SPDX-License-Identifier: Apache-2.0
// One datatype in full.
#pragma once

#include "omtReader/omtTree.h"

#include <string>

/// The datatype of a name with all its properties and parts, and every place of the model that
/// refers to it. A name in more than one table is shown from each. Throws InputError for one in
/// none.
std::string datatypeReport(DtOMTTree& tree, const std::string& name);
