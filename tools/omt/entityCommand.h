// SPDX-License-Identifier: Apache-2.0
// omt entity: the names of an entity type.
#pragma once

#include "command.h"

Command addEntityCommand(CLI::App& app);
