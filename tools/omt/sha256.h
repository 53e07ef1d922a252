// SPDX-License-Identifier: Apache-2.0
// sha256() is the hash by which published files are known.
#pragma once

#include <string>
#include <string_view>

/// SHA-256 (FIPS 180-4) of some octets, as 64 hexadecimal digits.
std::string sha256(std::string_view octets);
