// SPDX-License-Identifier: Apache-2.0
// The two class hierarchies, drawn.
#pragma once

#include "omtReader/omtTree.h"

#include <string>

/// Every class below its parent, with its attributes or parameters and their datatypes.
std::string classTrees(DtOMTTree& tree);
