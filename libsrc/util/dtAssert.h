// SPDX-License-Identifier: Apache-2.0
// The assertion that stays active in every build.
#pragma once

#include "util/dtExport.h"

/// Reports "file:line: assertion failed: expression" and aborts.
[[noreturn]] OMTREADER_EXPORT void DtAssertionFailed(const char* expression, const char* file,
                                                     int line);

/// Stops the program when a caller broke a rule that no input can break.
///
/// Expression, file and line are part of the message's contract: programs that watch for crashes
/// know them, so they are written out and do not follow the source as it moves.
inline void DtAssert(bool holds, const char* expression, const char* file, int line)
{
    if (!holds) DtAssertionFailed(expression, file, line);
}
