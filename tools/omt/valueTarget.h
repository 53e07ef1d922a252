// SPDX-License-Identifier: Apache-2.0
// Which value the user means: that of an attribute, of a parameter, or of a datatype alone.
#pragma once

#include "omtReader/datatypeFedNode.h"
#include "omtReader/datatypeManager.h"

#include <CLI/CLI.hpp>

#include <string>

/// What the user named; one of them is not empty.
struct TargetChoice
{
    std::string attribute;
    std::string parameter;
    std::string datatype;
};

/// What was meant by it.
struct ValueTarget
{
    /// What messages and tables call the value.
    std::string name;
    DtString datatype;
    /// The attribute or parameter; null for a datatype alone.
    const DtDatatypeFedNode* member = nullptr;
};

/// Adds --attribute, --parameter and --type to a subcommand, of which it then takes one.
void addTargetArguments(CLI::App& command, TargetChoice& choice);

/// Adds --type alone, which is needed.
void addDatatypeArgument(CLI::App& command, TargetChoice& choice);

/// Looks up what was named in the manager's tree. Throws InputError, with the nearest names, where
/// there is no such thing.
ValueTarget findTarget(DtDatatypeManager& manager, const TargetChoice& choice);
