// SPDX-License-Identifier: Apache-2.0
#include "omtReader/datatypeRep.h"

#include <cstdint>

void DtDatatypeRep::release(DtDatatypeRep* rep)
{
    if (rep && rep->myDelete) rep->myDelete(rep);
}

const void* DtDatatypeRep::readPosition(const void* position, unsigned int alignment,
                                        unsigned int size, int* consumed) const
{
    unsigned int gap = 0;
    if (myIsAligned)  // of the address in memory, not of a place within the value
    {
        const auto beyond =
            static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(position) % alignment);
        gap = beyond ? alignment - beyond : 0;
    }
    if (consumed) *consumed = position ? static_cast<int>(gap + size) : 0;
    return position ? static_cast<const char*>(position) + gap : nullptr;
}
