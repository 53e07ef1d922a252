// SPDX-License-Identifier: Apache-2.0
// Any octets as an HLA 1.3 model: read, looked at and freed, or refused with a text.
#include "readModel.h"
#include "treeChecks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    beQuiet();
    const std::size_t before = heldMemory();
    const DtOMTTreePtr tree = readHla13({reinterpret_cast<const char*>(data), size});
    if (!tree) return 0;
    checkSize(*tree, before, size);
    check(*tree);
    return 0;
}
