// SPDX-License-Identifier: Apache-2.0
#include "messages.h"

#include "plainText.h"

#include <cstdio>
#include <utility>

namespace
{

std::string_view withoutLineBreak(std::string_view text)
{
    while (!text.empty() && text.back() == '\n') text.remove_suffix(1);
    return text;
}

}  // namespace

void writeMessage(std::string_view text)
{
    writeLine("omt: " + std::string(withoutLineBreak(text)));
}

void writeLine(std::string_view text)
{
    const std::string line = visible(text) + '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void showMessages(DtMessageLevel level)
{
    DtSetNotifyLevel(level);
    DtSetMessageSink([](DtMessageLevel, std::string_view message) { writeMessage(message); });
}

HeldWarnings::HeldWarnings() : myLevelBefore(DtNotifyLevel())
{
    DtSetNotifyLevel(DtMessageLevel::warn);
    mySinkBefore = DtSetMessageSink([this](DtMessageLevel, std::string_view message)
                                    { myWarnings.emplace_back(withoutLineBreak(message)); });
}

HeldWarnings::~HeldWarnings()
{
    DtSetMessageSink(std::move(mySinkBefore));
    DtSetNotifyLevel(myLevelBefore);
}
