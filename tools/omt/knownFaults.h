// SPDX-License-Identifier: Apache-2.0
// The known faults of published files, which the build embeds from data/knownFaults.json.
#pragma once

#include <cstdint>

extern const unsigned char omtKnownFaults[];
extern const std::int32_t omtKnownFaults_len;
