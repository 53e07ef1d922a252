// SPDX-License-Identifier: Apache-2.0
#include "util/dtFileOctets.h"

#include <cerrno>
#include <cstdio>
#include <memory>

namespace
{

struct CloseFile
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

}  // namespace

std::optional<std::string> omt::readFileOctets(const char* name, std::error_code& reason)
{
    reason.clear();
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(name, "rbe"));
    if (!file)
    {
        reason = lastError();
        return std::nullopt;
    }
    std::string octets;
    std::size_t step = std::size_t(1) << 20;
    for (std::size_t count = 0;; step *= 2)
    {
        octets.resize(count + step);
        count += std::fread(octets.data() + count, 1, step, file.get());
        if (std::ferror(file.get()))
        {
            reason = lastError();
            return std::nullopt;
        }
        if (count < octets.size())
        {
            octets.resize(count);
            return octets;
        }
        if (count > theLargestFile)
        {
            reason = std::make_error_code(std::errc::file_too_large);
            return std::nullopt;
        }
    }
}
