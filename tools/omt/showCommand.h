// SPDX-License-Identifier: Apache-2.0
// omt show: what a model holds.
#pragma once

#include "command.h"

Command addShowCommand(CLI::App& app);
