// SPDX-License-Identifier: Apache-2.0
#include "inputFile.h"

#include "modelInput.h"

#include <filesystem>
#include <fstream>
#include <system_error>

void checkReadable(const std::string& file)
{
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(file, ignored);
    const auto refuse = [&file](std::errc why)
    { throw InputError(file + ": " + std::make_error_code(why).message()); };
    if (!std::filesystem::exists(status)) refuse(std::errc::no_such_file_or_directory);
    if (std::filesystem::is_directory(status)) refuse(std::errc::is_a_directory);
    if (std::filesystem::is_character_file(status) || std::filesystem::is_block_file(status))
        throw InputError(file + ": a device, which may have no end");
    // A pipe must not be opened twice.
    if (std::filesystem::is_regular_file(status) && !std::ifstream(file))
        refuse(std::errc::permission_denied);
}
