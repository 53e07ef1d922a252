// SPDX-License-Identifier: Apache-2.0
// The text of the hints that the library carries, as the build embeds it.
#pragma once

#include <cstdint>

extern const unsigned char omtRprHints[];
extern const std::int32_t omtRprHints_len;
