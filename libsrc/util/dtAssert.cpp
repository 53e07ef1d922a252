// SPDX-License-Identifier: Apache-2.0
#include "util/dtAssert.h"

#include "util/dtMessages.h"

#include <cstdlib>

void DtAssertionFailed(const char* expression, const char* file, int line)
{
    DtMessageStream(DtMessageLevel::fatal)
        << file << ':' << line << ": assertion failed: " << expression << '\n';
    std::abort();
}
