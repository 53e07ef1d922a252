// SPDX-License-Identifier: Apache-2.0
// omt layout: where the octets of a datatype stand.
#pragma once

#include "command.h"

Command addLayoutCommand(CLI::App& app);
