// SPDX-License-Identifier: Apache-2.0
// omt fmt: object models in their canonical form.
#pragma once

#include "command.h"

Command addFmtCommand(CLI::App& app);
