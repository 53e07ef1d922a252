// SPDX-License-Identifier: Apache-2.0
// From the files that the user names to one object model.
#pragma once

#include "omtReader/omtTree.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

/// What is wrong with the input, and where: one sentence for the user.
class InputError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Which files make up the model.
struct ModelChoice
{
    std::vector<std::string> files;
    bool withMIM = false;
};

/// Adds the arguments that fill the choice to a subcommand.
void addModelArguments(CLI::App& command, ModelChoice& choice);

/// Deletes a tree together with the four tables that it leaves alone.
struct DeleteTree
{
    void operator()(DtOMTTree* tree) const;
};
using TreePtr = std::unique_ptr<DtOMTTree, DeleteTree>;

/// Reads the model; several files are merged in the order given, and the standard MIM behind them.
///
/// The formats are told apart by content. Throws InputError for the first file that is no object
/// model; warnings about one that is go to DtWarn.
TreePtr readModel(const ModelChoice& choice);
