// SPDX-License-Identifier: Apache-2.0
// A decoded value as a table for people.
#pragma once

#include "omtReader/datatypeManager.h"
#include "omtReader/stringTree.h"

#include <string>

/// One row for every part: where it begins, its name, datatype, value and units. An array of
/// characters is one text in quotes. `octets` are those that the value was decoded from.
std::string valueTable(DtDatatypeManager& manager, const std::string& name,
                       const DtStringTree& value, const DtDatatypeManager::Octets& octets);
