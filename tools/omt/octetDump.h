// SPDX-License-Identifier: Apache-2.0
// readDump() reads octets out of lines that begin with offsets, as xxd, hexdump -C, od, tcpdump,
// gdb and Wireshark print them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Why a text gives no octets, and at which of its characters.
struct OctetRefusal
{
    std::size_t at;
    std::string why;
};

inline constexpr std::string_view theBlanks = " \t\r\n\f\v";

/// The value of a hexadecimal digit, or -1.
int hexadecimalDigit(char c);

std::string_view trimmed(std::string_view text);

/// Whether a text is what dumps print beside octets: their letters, and dots for all else.
bool isTextOf(std::string_view text, const std::vector<std::uint8_t>& octets);

/// The octets of a dump, or nothing where the text is none. A column of their text is compared with
/// them and is never taken for octets. Throws OctetRefusal for lines that do not go together, and
/// for what may be a dump as well as plain octets.
std::optional<std::vector<std::uint8_t>> readDump(std::string_view text);
