// SPDX-License-Identifier: Apache-2.0
#include "paint.h"

#include <unistd.h>

#include <cstdlib>

namespace
{

constexpr char theBold = '\x01';
constexpr char theDim = '\x02';
constexpr char theEnd = '\x03';

std::string marked(char mark, std::string_view text)
{
    return mark + std::string(text) + theEnd;
}

std::string_view variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

bool hasColours()
{
    return variable("NO_COLOR").empty() && variable("TERM") != "dumb" &&
           ::isatty(STDOUT_FILENO) == 1;
}

}  // namespace

std::string bold(std::string_view text)
{
    return marked(theBold, text);
}

std::string dim(std::string_view text)
{
    return marked(theDim, text);
}

std::string painted(std::string_view page)
{
    const bool isColoured = hasColours();
    std::string text;
    text.reserve(page.size());
    for (const char c : page)
    {
        if (c != theBold && c != theDim && c != theEnd)
            text += c;
        else if (isColoured)
            text += c == theBold ? "\x1b[1m" : c == theDim ? "\x1b[2m" : "\x1b[0m";
    }
    return text;
}
