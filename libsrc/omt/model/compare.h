// SPDX-License-Identifier: Apache-2.0
// Compares definitions by their rows: which properties that bear on octets or behaviour differ.
#pragma once

#include "omt/model/rows.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace omt
{

/// Whether a property says something: it is there and neither empty nor `NA`.
bool saysSomething(std::string_view text);

/// Whether any property of a definition that bears on behaviour says something, besides its name.
/// Parts and, for classes, dimensions do not count.
bool saysSomething(const Definition& definition, Kind kind);

/// Whether two texts are equal but for the blanks and line ends within them.
bool isSameText(std::string_view left, std::string_view right);

/// A number as it is compared: decimal or hexadecimal (0x), without leading zeros; other text as it
/// is.
std::string comparableNumber(std::string_view text);

/// A text, cut to so many octets, between characters, and three periods where it is longer.
std::string cutText(std::string_view text, std::size_t most = 120);

/// What a property says, several texts with commas between them, as cutText() cuts it.
std::string valueOf(const Definition& definition, const Row& row);

/// Whether two definitions of a kind say the same by a row. Absent, empty and `NA` are equal.
bool isSame(const Definition& left, const Definition& right, Kind kind, const Row& row);

/// Whether a row of a kind is compared between these editions: it bears on behaviour and both have
/// it.
bool isCompared(Kind kind, const Row& row, Edition left, Edition right);

/// Whether two basic data representations of one name are one number in octets, whatever else their
/// prose says: size and endian are the same, and both are said to be a floating point number, to
/// have no sign, or neither.
bool isSameNumber(const BasicData& left, const BasicData& right);

}  // namespace omt
