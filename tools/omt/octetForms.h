// SPDX-License-Identifier: Apache-2.0
// readOctets() reads octets as people and traces write them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The octets of a text: two hexadecimal digits each, with or without blanks, commas, colons or
/// dashes between them; `0x01` and lists of such numbers as in C; lists of decimal numbers in
/// brackets; `\x01`; `b'A\x01'` of Python; lines of a dump (see octetDump.h). Throws InputError,
/// with the place, for any other text and for one that can be read in two ways.
std::vector<std::uint8_t> readOctets(std::string_view text);

/// A text that readOctets() takes: "00 2A FF".
std::string hexadecimalText(const std::uint8_t* octets, std::size_t count);
