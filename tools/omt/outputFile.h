// SPDX-License-Identifier: Apache-2.0
// A result that goes to a file.
#pragma once

#include <string>
#include <string_view>

/// Writes a file whole or not at all: what was there before stays until all is written. Symbolic
/// links are followed, and a file that is replaced keeps its permissions. What is no regular file,
/// such as a device, is written straight.
///
/// Throws InputError where that fails.
void writeOutputFile(const std::string& name, std::string_view content);
