// SPDX-License-Identifier: Apache-2.0
// How many entries of every sort a model has.
#pragma once

#include "omtReader/omtTree.h"

#include <cstddef>
#include <vector>

/// The number of entries of one sort, as the tree's lists hold them.
struct Count
{
    const char* key;   ///< for programs, such as "updateRates"
    const char* name;  ///< for people, such as "update rates"
    std::size_t number;
};

std::vector<Count> countsOf(DtOMTTree& tree);
