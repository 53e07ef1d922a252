// SPDX-License-Identifier: Apache-2.0
// Any octets as an HLA 1.3 model: read, looked at, written as XML and freed, or refused with a
// text.
#include "memoryFile.h"
#include "omtReader/omtFileReader.h"
#include "treeChecks.h"
#include "util/dtMessages.h"

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
