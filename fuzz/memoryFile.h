// SPDX-License-Identifier: Apache-2.0
// Octets under a name in the file system.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

/// A file that is on no disk. Ends the program where there is no memory for it.
class MemoryFile
{
public:
    MemoryFile(const std::uint8_t* data, std::size_t size) : myFile(memfd_create("input", 0))
    {
        if (myFile < 0 || write(myFile, data, size) != static_cast<ssize_t>(size)) std::abort();
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(myFile); }

    std::string name() const { return "/proc/self/fd/" + std::to_string(myFile); }

private:
    int myFile;
};
