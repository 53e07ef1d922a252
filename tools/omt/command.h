// SPDX-License-Identifier: Apache-2.0
// What every subcommand gives to main.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <vector>

/// What a subcommand made of its input.
struct Result
{
    /// For standard output.
    std::string text;
    /// What is wrong with the input, a sentence each; the text shows what could be read all the
    /// same.
    std::vector<std::string> complaints = {};
    /// Whether the input is wrong although there is no complaint left to write.
    bool isFailure = false;
    /// Whether the text has its control characters escaped already and may hold colours.
    bool isPainted = false;
};

/// Where what is wrong has been written already.
inline const Result theFailure = {"", {}, true};

/// One subcommand: its place on the command line, and what it does once it was chosen there.
///
/// A new one is a pair of files with a function that returns this, and a line in main.cpp.
struct Command
{
    CLI::App* app;
    /// Throws a std::exception whose message is for the user where there is no result: what is
    /// wrong and where.
    std::function<Result()> run;
    /// The exit status where there is no result.
    int statusWithoutResult = 1;
};
