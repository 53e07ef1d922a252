// SPDX-License-Identifier: Apache-2.0
// Writes a file whole or not at all.
#pragma once

#include <string>
#include <string_view>
#include <system_error>

namespace files
{

/// Replaces the content of a file, or makes the file. What was there before stays until all is
/// written and on the disk; nothing else is left in its folder when writing fails or the process
/// ends meanwhile.
///
/// Symbolic links are followed. A file that is replaced keeps its permissions, a new one gets those
/// of any new file; until then nobody else can read it. What is no regular file, such as a device,
/// is written straight. The result is what the system says, such as a full disk; none is success.
/// A process with a limit on the size of files ignores SIGXFSZ, or is ended by it.
std::error_code writeWholeFile(const std::string& name, std::string_view content) noexcept;

}  // namespace files
