// SPDX-License-Identifier: Apache-2.0
// What came of decoding, as JSON for programs.
#pragma once

#include "omt/codec/overlay.h"

#include <string>

/// Appends `{"value", "overlays", "octets", "left", "faults", "notes"}`: the value as far as it was
/// decoded, absent where nothing was; overlays where they are not null; how many octets were
/// decoded, and how many are left; what stopped decoding; what is odd. No end of line.
void appendEnvelope(const omt::Value& value, const std::vector<omt::Overlay>* overlays,
                    std::string& text);
