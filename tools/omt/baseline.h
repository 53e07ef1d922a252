// SPDX-License-Identifier: Apache-2.0
// Baselines: findings that are known, and so not shown again.
#pragma once

#include "checkSet.h"

#include <string>

/// Takes away the findings in published files that are known to hold them: a file is known by its
/// hash, a finding by rule and line. Gives how many were taken away.
std::size_t removeShipped(const CheckedSet& set, omt::Findings& findings);

/// Takes away the findings that a baseline of the user lists: by file, rule and text, lines left
/// out, each as often as it is listed. Gives how many. Throws InputError for a file that is none.
std::size_t removeListed(const std::string& file, omt::Findings& findings);

/// A baseline that lists all findings: a JSON document, one line for each.
std::string baselineOf(const omt::Findings& findings);
