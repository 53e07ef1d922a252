// SPDX-License-Identifier: Apache-2.0
// omt check: what is wrong with models that are loaded together.
#pragma once

#include "command.h"

Command addCheckCommand(CLI::App& app);
