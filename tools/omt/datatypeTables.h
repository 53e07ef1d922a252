// SPDX-License-Identifier: Apache-2.0
// All datatypes of a model, one table for each kind.
#pragma once

#include "omtReader/omtTree.h"

#include <string>

/// The kinds of which there are any. Long texts are cut off; datatypeReport() has them in full.
std::string datatypeTables(DtOMTTree& tree);
