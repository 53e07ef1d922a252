// SPDX-License-Identifier: Apache-2.0
// Finds names that a model refers to and does not define, and modules that it depends on.
#pragma once

#include "omt/model/model.h"

#include <functional>

namespace omt
{

/// Adds the findings of checkReferences(). `readMim` gives the MIM that may be added, and is called
/// at most once, where a name is missing that a MIM could define.
void checkReferences(const Model& model, const std::function<Model()>& readMim, Findings& findings);

/// Whether a module is the one that a dependency names: by its file, with or without a version, or
/// by its title.
bool isNamedBy(std::string_view dependency, const Module& module);

/// Whether a reference says that its module depends on the one it names.
bool isDependency(const Reference& reference);

}  // namespace omt
