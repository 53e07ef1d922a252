// SPDX-License-Identifier: Apache-2.0
// Entity types as the user writes and reads them.
#pragma once

#include "omtReader/entityMapperKey.h"

#include <string>

/// Reads up to seven numbers with ":", "." or blanks between them, where "*", "any" and -1 stand
/// for any number, and so does each that is missing. Throws InputError for anything else.
DtEntityMapperKey readEntityKey(const std::string& text);

/// The numbers with ":" between them, "any" for one that is open.
std::string textOf(const DtEntityMapperKey& key);

/// Whether at least one of the numbers is open.
bool isOpen(const DtEntityMapperKey& key);
