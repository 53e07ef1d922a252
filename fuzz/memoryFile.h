// SPDX-License-Identifier: Apache-2.0
// Octets under a name in the file system.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>

/// A file that is on no disk. Ends the program where there is no memory for it.
class MemoryFile
{
public:
    explicit MemoryFile(std::string_view text) : myFile(memfd_create("input", 0))
    {
        const auto size = static_cast<ssize_t>(text.size());
        if (myFile < 0 || write(myFile, text.data(), text.size()) != size) std::abort();
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(myFile); }

    std::string name() const { return "/proc/self/fd/" + std::to_string(myFile); }

private:
    int myFile;
};
