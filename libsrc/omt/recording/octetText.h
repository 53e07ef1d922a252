// SPDX-License-Identifier: Apache-2.0
// OctetText turns hexadecimal digits, in the forms that traces have, into octets.
#pragma once

#include "omt/base/export.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// Replaces `octets` by those of a text: two digits each, with or without "0x" or "\x" before them,
/// and with nothing or blanks, commas, colons, semicolons or dashes between them. False where it is
/// none; `why` then says where.
OMT_EXPORT bool readOctets(std::string_view text, std::vector<std::uint8_t>& octets,
                           std::string& why);

}  // namespace omt
