// SPDX-License-Identifier: Apache-2.0
// decodeRecording() runs a recording through decoders on several threads, and keeps its order.
#pragma once

#include "omt/recording/updateDecoder.h"

#include <string>

/// Decodes a recording, or standard input for "-", to standard output. What is in memory at a time
/// does not grow with the recording. On a terminal a long one shows how far it is. Throws
/// InputError for what cannot be read or is no recording, and where standard output takes no more.
omt::UpdateCounts decodeRecording(omt::UpdateDecoder decoder, const std::string& file,
                                  unsigned jobs);
