// SPDX-License-Identifier: Apache-2.0
// omt diff: what changed between two models, and whether octets did.
#pragma once

#include "command.h"

#include <optional>
#include <string>
#include <vector>

/// The words after "--", which the parser of arguments takes for itself; nothing without one.
using WordsAfter = std::optional<std::vector<std::string>>;

/// Cuts "--" and what follows off the arguments where the subcommand is diff.
WordsAfter takeWordsAfter(int& argumentCount, char** arguments);

Command addDiffCommand(CLI::App& app, WordsAfter wordsAfter);
