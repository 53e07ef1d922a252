// SPDX-License-Identifier: Apache-2.0
// One datatype as a page.
#pragma once

#include "omt/model/model.h"

#include <string>

/// The datatype of a name. Throws InputError where the model has none, with the nearest names; says
/// so where it refers to one that it does not define.
omt::Datatype findDatatype(const omt::Model& model, const std::string& name);

/// Its properties, what it is made of down to the representations, and what names it. Throws
/// InputError as findDatatype() does.
std::string datatypeReport(const omt::Model& model, const std::string& name);
