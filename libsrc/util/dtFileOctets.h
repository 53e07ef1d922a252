// SPDX-License-Identifier: Apache-2.0
// A file's octets in memory.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <system_error>

namespace omt
{

/// Larger files are refused: no object model comes near, and what has no end would never be read.
constexpr std::size_t theLargestFile = std::size_t(512) << 20;

/// The whole file, or nothing and the reason (file_too_large for one above theLargestFile).
std::optional<std::string> readFileOctets(const char* name, std::error_code& reason);

}  // namespace omt
