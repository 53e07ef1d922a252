// SPDX-License-Identifier: Apache-2.0
// Finds names that a model refers to and does not define.
#pragma once

#include "omt/model/model.h"

#include <functional>

namespace omt
{

/// Adds the findings of checkReferences(). `readMim` gives the MIM that may be added, and is called
/// at most once, where a name is missing that a MIM could define.
void checkReferences(const Model& model, const std::function<Model()>& readMim, Findings& findings);

}  // namespace omt
