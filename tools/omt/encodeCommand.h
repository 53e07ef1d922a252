// SPDX-License-Identifier: Apache-2.0
// omt encode: the octets of a text.
#pragma once

#include "command.h"

Command addEncodeCommand(CLI::App& app);
