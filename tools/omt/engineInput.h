// SPDX-License-Identifier: Apache-2.0
// From the files that the user names to one model of libomt, and to the findings on standard error.
#pragma once

#include "omt/model/read.h"

#include <CLI/CLI.hpp>

#include <map>
#include <string>
#include <vector>

/// Which files make up the model, and what ends the program.
struct EngineChoice
{
    std::vector<std::string> files;
    bool withMim = false;
    /// Whether names of the standard MIM count as defined even without it.
    bool isMimKnown = false;
    /// Whether notes on the model are written with --verbose only, as its values are of interest.
    bool hidesNotes = false;
    /// Whether an error among the findings is a failure even where every file could be read.
    bool isStrict = false;
};

/// Adds the arguments that fill the choice to a subcommand: --mim alone, or all of them.
void addMimArgument(CLI::App& command, EngineChoice& choice);
void addEngineArguments(CLI::App& command, EngineChoice& choice);

/// Where a file is: here, or else in the folder that RTI_CONFIG names. Throws InputError for a
/// device, which may have no end, and for an empty name.
std::string placeOfModel(const std::string& name);

/// Throws UsageError where standard input would be read twice: as two files, or as a file and for
/// something else.
void checkStandardInput(const EngineChoice& choice, bool isTaken = false);

/// What came of reading, its findings written already.
struct EngineInput
{
    omt::Model model;
    /// Whether every file could be read; where not, the model is not what was asked for.
    bool isWhole = false;
    /// Whether the exit status is to be 1.
    bool isFailure = false;
};

/// Reads and merges the files in this order, those of folders and sets as filesOfSets() gives them,
/// standard input for "-"; a file that is not there is looked for in the folder that RTI_CONFIG
/// names. Findings go to standard error, a line each.
EngineInput readEngine(const EngineChoice& choice);

/// Reads one file on its own, whatever it refers to; findings as above.
EngineInput readModule(const std::string& name);

/// Lets the first thousand findings of each rule through: who reads them mends these first.
class FindingLimit
{
public:
    bool takes(const omt::Finding& finding);
    /// "and 5 more [conflict]" for each rule of which there were more.
    std::vector<std::string> rest() const;

private:
    std::map<std::string, std::size_t> myCounts;
};

/// Writes findings to standard error, a line each, a thousand of a rule; with --quiet errors only.
void writeFindings(const omt::Findings& findings);
bool hasError(const omt::Findings& findings);
