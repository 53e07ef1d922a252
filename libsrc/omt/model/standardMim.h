// SPDX-License-Identifier: Apache-2.0
// The texts of the standard MIMs that the library carries, as the build embeds them.
#pragma once

#include <cstdint>

extern const unsigned char omtStandardMim2010[];
extern const std::int32_t omtStandardMim2010_len;
extern const unsigned char omtStandardMim2025[];
extern const std::int32_t omtStandardMim2025_len;
