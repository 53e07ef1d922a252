// SPDX-License-Identifier: Apache-2.0
// omt decode: what the octets of a value say.
#pragma once

#include "command.h"

Command addDecodeCommand(CLI::App& app);
