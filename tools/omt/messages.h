// SPDX-License-Identifier: Apache-2.0
// What omt says on standard error.
#pragma once

#include "util/dtMessages.h"

#include <string>
#include <string_view>
#include <vector>

/// Writes one line "omt: text" to standard error, with nothing in it that a terminal would obey.
void writeMessage(std::string_view text);

/// Writes one line to standard error as it is, with nothing in it that a terminal would obey.
void writeLine(std::string_view text);

/// From now on the library's messages are written by writeMessage(), down to a level.
void showMessages(DtMessageLevel level);

/// While it lives, the library's warnings are collected here and not shown.
class HeldWarnings
{
public:
    HeldWarnings();
    HeldWarnings(const HeldWarnings&) = delete;
    HeldWarnings& operator=(const HeldWarnings&) = delete;
    ~HeldWarnings();

    /// In the order in which they were written.
    const std::vector<std::string>& list() const { return myWarnings; }

private:
    std::vector<std::string> myWarnings;
    DtMessageLevel myLevelBefore;
    DtMessageSink mySinkBefore;
};
