// SPDX-License-Identifier: Apache-2.0
// Findings as texts: lines for people, JSON, SARIF and annotations for programs.
#pragma once

#include "omt/check/check.h"

#include <string>

/// What is shown of a check.
struct FindingReport
{
    omt::Findings findings;
    /// How many files were looked at, and how many findings a baseline knows.
    std::size_t files = 0;
    std::size_t known = 0;

    std::size_t count(omt::Severity severity) const;
};

/// Writes a line for each finding to standard error, in colours on a terminal.
void writeFindingLines(const FindingReport& report);
/// "2 errors, 1 warning and 3 notes in 4 files; 5 known ones are not shown".
std::string summaryOf(const FindingReport& report);
/// One JSON object: `findings` and `summary`.
std::string findingJson(const FindingReport& report);
/// SARIF 2.1.0, with all rules.
std::string findingSarif(const FindingReport& report);
/// A line for each finding, as workflows on GitHub show them beside the file.
std::string findingAnnotations(const FindingReport& report);
/// The rules as a table.
std::string ruleTable(bool asJson);
