// SPDX-License-Identifier: Apache-2.0
// What every subcommand gives to main.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <string>

/// One subcommand: its place on the command line, and what it does once it was chosen there.
///
/// A new one is a pair of files with a function that returns this, and a line in main.cpp.
struct Command
{
    CLI::App* app;
    /// Gives the text for standard output, or throws a std::exception whose message is for the
    /// user: what is wrong and where.
    std::function<std::string()> run;
};
