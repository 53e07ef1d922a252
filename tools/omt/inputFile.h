// SPDX-License-Identifier: Apache-2.0
// Files that the user names, and standard input: whether they can be read, and what they hold.
#pragma once

#include <cstdio>
#include <string>

/// Throws InputError for a file that is missing, is a directory, or may never end, and for one that
/// cannot be read to its end.
void checkReadable(const std::string& file);

/// All that a file holds. Throws InputError as checkReadable() does.
std::string contentOf(const std::string& file);

/// All that comes from a stream, which errors call by a name.
std::string contentOf(std::FILE* stream, const std::string& name);
