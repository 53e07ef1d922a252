// SPDX-License-Identifier: Apache-2.0
// The side of omt decode that takes a recording.
#pragma once

#include "command.h"
#include "valueTarget.h"

#include <string>

/// Which recording, and what becomes of it.
struct UpdatesChoice
{
    /// "-" for standard input; empty where values are decoded one by one.
    std::string file;
    bool asCsv = false;
    /// Threads; 0 for as many as there are processors.
    unsigned jobs = 0;
};

/// Adds --updates and what belongs to it to a subcommand.
void addUpdatesArguments(CLI::App& command, UpdatesChoice& choice);

/// Decodes to standard output; how many rows were what goes to standard error. Throws as
/// decodeRecording() and omt::UpdateDecoder do.
Result decodeUpdates(const UpdatesChoice& choice, const TargetChoice& target,
                     const std::optional<omt::EntityTable>& entityTypes, bool withGeodetics);
