// SPDX-License-Identifier: Apache-2.0
// One class in full.
#pragma once

#include "omtReader/omtTree.h"

#include <string>

/// The class of a name with all that it has of its own and inherits: a full name, or the end of one
/// from a class name on, as long as it is the only such class. Throws InputError otherwise.
std::string classReport(DtOMTTree& tree, const std::string& name);
