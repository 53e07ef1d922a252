// SPDX-License-Identifier: Apache-2.0
// Any octets as an HLA 1.3 model: read, looked at, written as XML and freed, or refused with a
// text.
#include "omtReader/omtFileReader.h"
#include "treeChecks.h"
#include "util/dtMessages.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <string>

namespace
{

/// Octets under a name in the file system, without a file on any disk.
class MemoryFile
{
public:
    MemoryFile(const std::uint8_t* data, std::size_t size) : myFile(memfd_create("model", 0))
    {
        require(myFile >= 0 && write(myFile, data, size) == static_cast<ssize_t>(size),
                "memory holds the input");
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(myFile); }

    std::string name() const { return "/proc/self/fd/" + std::to_string(myFile); }

private:
    int myFile;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool isQuiet = (DtSetMessageSink([](auto, auto) {}), true);
    require(isQuiet, "messages go nowhere");
    const MemoryFile file(data, size);
    DtOMTFileReader reader;
    try
    {
        const DtOMTTreePtr tree(reader.readFile(file.name(), nullptr));
        require(tree && tree->objectClassRoot() && tree->interactionClassRoot(), "there are roots");
        check(*tree);
    }
    catch (const DtOMTReadException& problem)
    {
        require(!problem.message().empty() && problem.message() == reader.getLastError(),
                "what was thrown is the last error");
    }
    return 0;
}
