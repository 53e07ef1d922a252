// SPDX-License-Identifier: Apache-2.0
// The class trees of a model with all members, as a page.
#pragma once

#include "omt/model/model.h"

#include <string>

/// Both trees, under headings; nothing for a tree without classes.
std::string classTrees(const omt::Model& model);
