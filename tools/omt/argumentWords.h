// SPDX-License-Identifier: Apache-2.0
// The words of a command that belong to no option: the files of a model, and what follows them.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

/// Words as they were typed: CLI11 takes one in brackets for a list.
struct ArgumentWords
{
    std::vector<std::string> parsed;
    std::vector<std::string> typed;
};

/// Adds the words to a subcommand, whose help calls them MODEL.
void addWords(CLI::App& command, ArgumentWords& words, const std::string& description);

/// The files of a model, and the words after them.
struct SplitWords
{
    std::vector<std::string> files;
    std::vector<std::string> others;
};

/// Whether a word has a dot or a slash or is "-", which is standard input.
bool isFileName(const std::string& word);

/// Words are files up to the first that is none by its form, or is `isOther`. What is on the disk
/// does not count. Throws UsageError where that is the first word of all.
SplitWords splitWords(const ArgumentWords& words, bool (*isOther)(const std::string& word));
