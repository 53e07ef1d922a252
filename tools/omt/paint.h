// SPDX-License-Identifier: Apache-2.0
// Marks parts of a page for colours, and turns the marks into what a terminal understands.
#pragma once

#include <string>
#include <string_view>

/// The text as a heading or a name that stands out. The marks are control characters, which no
/// visible text has.
std::string bold(std::string_view text);
/// The text as something beside the point.
std::string dim(std::string_view text);
/// The text as an error, or as a warning.
std::string red(std::string_view text);
std::string yellow(std::string_view text);

/// The page with colours where standard output is a terminal and NO_COLOR does not forbid them, and
/// without any marks elsewhere.
std::string painted(std::string_view page);
/// The same for a page that goes to standard error.
std::string paintedForErrors(std::string_view page);
