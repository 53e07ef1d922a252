// SPDX-License-Identifier: Apache-2.0
// What programs want to know of a model.
#pragma once

#include "omtReader/omtTree.h"

#include <string>

/// One JSON object: identification, counts, the full names of all classes and the kind of every
/// datatype. Everything outside ASCII is escaped, and octets that are not UTF-8 are replaced.
std::string jsonOf(DtOMTTree& tree);
