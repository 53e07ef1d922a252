// SPDX-License-Identifier: Apache-2.0
// What of a model uses a datatype.
#pragma once

#include "omt/model/model.h"
#include "textTable.h"

#include <string>

/// Every place of the model that names the datatype.
TextTable directUses(const omt::Model& model, const std::string& name);

/// All that holds values of the datatype, through other datatypes up to attributes, parameters,
/// dimensions, tags, times and synchronization points, as a page. Throws InputError where nothing
/// in the model has the name.
std::string usesReport(const omt::Model& model, const std::string& name);
