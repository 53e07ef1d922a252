// SPDX-License-Identifier: Apache-2.0
#include "inputFile.h"

#include "errors.h"

#include <cerrno>
#include <filesystem>
#include <memory>
#include <system_error>

namespace
{

struct CloseFile
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

[[noreturn]] void refuse(const std::string& file, int reason)
{
    throw InputError(file + ": " + std::generic_category().message(reason));
}

/// Throws unless a file is there and comes to an end; tells whether it may be read twice.
bool checkKind(const std::string& file)
{
    if (file.empty()) throw InputError("the name of a file is empty");
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(file, ignored);
    if (!std::filesystem::exists(status)) refuse(file, ENOENT);
    if (std::filesystem::is_directory(status)) refuse(file, EISDIR);
    if (std::filesystem::is_character_file(status) || std::filesystem::is_block_file(status))
        throw InputError(file + ": a device, which may have no end");
    return std::filesystem::is_regular_file(status);
}

std::string readWhole(const std::string& file)
{
    const std::unique_ptr<std::FILE, CloseFile> stream(std::fopen(file.c_str(), "rbe"));
    if (!stream) refuse(file, errno);
    return contentOf(stream.get(), file);
}

}  // namespace

void checkReadable(const std::string& file)
{
    // A pipe gives its octets once, to who comes next; of a file only the reading tells.
    if (checkKind(file)) readWhole(file);
}

std::string contentOf(const std::string& file)
{
    checkKind(file);
    return readWhole(file);
}

std::string contentOf(std::FILE* stream, const std::string& name)
{
    std::string content;
    char piece[4096];
    for (std::size_t got = 0; (got = std::fread(piece, 1, sizeof piece, stream)) > 0;)
        content.append(piece, got);
    if (std::ferror(stream)) refuse(name, errno);
    return content;
}
