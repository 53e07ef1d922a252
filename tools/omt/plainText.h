// SPDX-License-Identifier: Apache-2.0
// Texts out of files, made fit for a terminal: nothing in them that it would obey, and cut to size.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// The text with what a terminal might obey, or could not show, as an escape: control characters as
/// "\x1b", those of two octets and the ones that turn the direction of writing as "\u202e", octets
/// that are not UTF-8 as "\xff".
std::string visible(std::string_view text);

/// The visible text on one line: every run of blanks and line breaks is one blank, none at the
/// ends.
std::string oneLine(std::string_view text);

/// How many columns a visible text takes: one for each character.
std::size_t columnsOf(std::string_view text);

/// A visible text that takes at most so many columns; "..." stands for what was cut off.
std::string clipped(const std::string& text, std::size_t columns);

/// A visible text of one line, broken at blanks into lines of at most so many columns. A word that
/// is longer stays whole.
std::vector<std::string> wrapped(std::string_view text, std::size_t columns);

/// Texts in one, with a separator between them.
std::string joined(const std::vector<std::string>& texts, std::string_view separator);
