// SPDX-License-Identifier: Apache-2.0
// From the files that the user names to one object model.
#pragma once

#include "omtReader/omtTreePtr.h"

#include <CLI/CLI.hpp>

#include <stdexcept>
#include <string>
#include <vector>

/// What is wrong with the input, and where: one sentence for the user.
class InputError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// What a version of HLA is called.
const char* versionText(DtHLAProtocolVersion version);

/// Which files make up the model.
struct ModelChoice
{
    std::vector<std::string> files;
    bool withMIM = false;
};

/// Adds the arguments that fill the choice to a subcommand; gives the one for the files.
CLI::Option* addModelArguments(CLI::App& command, ModelChoice& choice);

/// Reads the model; several files are merged in the order given, and the standard MIM behind them.
///
/// The formats are told apart by content; only modules of IEEE 1516-2010 can be several. Throws
/// InputError for the first file that is no object model; warnings about one that is go to DtWarn.
DtOMTTreePtr readModel(const ModelChoice& choice);
