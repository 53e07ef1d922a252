// SPDX-License-Identifier: Apache-2.0
// A whole model as a person wants to read it.
#pragma once

#include "omtReader/omtTree.h"

#include <string>

/// Identification, counts, both class trees, and one table for each kind of entry that there is.
std::string modelReport(DtOMTTree& tree);
