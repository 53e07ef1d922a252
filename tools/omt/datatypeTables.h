// SPDX-License-Identifier: Apache-2.0
// All datatypes of a model in tables.
#pragma once

#include "omt/model/model.h"

#include <string>

/// One table for each kind of datatype that the model has, records with their parts.
std::string datatypeTables(const omt::Model& model);
