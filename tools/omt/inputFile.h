// SPDX-License-Identifier: Apache-2.0
// Whether a file that the user names can be read.
#pragma once

#include <string>

/// Throws InputError for a file that is missing, is a directory, or may never end.
void checkReadable(const std::string& file);
