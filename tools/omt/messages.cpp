// SPDX-License-Identifier: Apache-2.0
#include "messages.h"

#include "plainText.h"

#include <cstdio>

namespace
{

MessageLevel theLevel = MessageLevel::usual;

std::string_view withoutLineBreak(std::string_view text)
{
    while (!text.empty() && text.back() == '\n') text.remove_suffix(1);
    return text;
}

}  // namespace

MessageLevel messageLevel()
{
    return theLevel;
}

void setMessageLevel(MessageLevel level)
{
    theLevel = level;
}

void writeMessage(std::string_view text)
{
    writeLine("omt: " + std::string(withoutLineBreak(text)));
}

void writeLine(std::string_view text)
{
    const std::string line = visible(text) + '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void writeWarning(std::string_view text)
{
    if (theLevel != MessageLevel::errors) writeMessage(text);
}
