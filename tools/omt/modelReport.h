// SPDX-License-Identifier: Apache-2.0
// A whole model as a person wants to read it.
#pragma once

#include "omt/model/model.h"

#include <string>

/// Identification, modules, counts, both class trees, and one table for each kind of entry that
/// there is.
std::string modelReport(const omt::Model& model);
