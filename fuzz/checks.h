// SPDX-License-Identifier: Apache-2.0
// What all targets share: rules that end the program, silence, and what is held in memory.
#pragma once

#include "util/dtMessages.h"

#include <malloc.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string_view>

/// Ends the program, which is a finding, for a rule that does not hold.
inline void require(bool holds, const char* rule)
{
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", rule);
    std::abort();
}

/// Whether a conversion was stopped at a bound, since this was last set to false.
inline bool isStopped = false;

/// Messages go nowhere from the first call on.
inline void beQuiet()
{
    static const DtMessageSink theSinkBefore = DtSetMessageSink(
        [](auto, std::string_view message) { isStopped |= message.substr(0, 7) == "Stopped"; });
}

/// Null where no sanitizer counts memory.
extern "C" [[gnu::weak]] std::size_t __sanitizer_get_current_allocated_bytes();

/// The octets of the heap that are in use.
inline std::size_t heldMemory()
{
    if (__sanitizer_get_current_allocated_bytes) return __sanitizer_get_current_allocated_bytes();
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

inline void requireMemory(std::size_t atMost)
{
    require(heldMemory() <= atMost, "memory grows with the input and no faster");
}
