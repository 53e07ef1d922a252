// SPDX-License-Identifier: Apache-2.0
// What omt says on standard error.
#pragma once

#include <string_view>

/// How much is said.
enum class MessageLevel
{
    errors,
    usual,
    all
};

/// What holds for the whole program; usual at first.
MessageLevel messageLevel();
void setMessageLevel(MessageLevel level);

/// Writes one line "omt: text" to standard error, with nothing in it that a terminal would obey.
void writeMessage(std::string_view text);

/// Writes one line to standard error as it is, with nothing in it that a terminal would obey.
void writeLine(std::string_view text);

/// Writes a message unless errors alone are wanted.
void writeWarning(std::string_view text);
