// SPDX-License-Identifier: Apache-2.0
// Gives files as they were in a revision of the repository of git that they lie in.
#pragma once

#include <optional>
#include <string>

/// What a file held in a revision; nothing where the revision does not have it. Runs git, without a
/// shell. Throws InputError where git is not there, or there is no such revision.
std::optional<std::string> contentInGit(const std::string& revision, const std::string& file);
