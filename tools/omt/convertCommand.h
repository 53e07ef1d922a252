// SPDX-License-Identifier: Apache-2.0
// omt convert: an object model in today's format.
#pragma once

#include "command.h"

Command addConvertCommand(CLI::App& app);
