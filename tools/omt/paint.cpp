// SPDX-License-Identifier: Apache-2.0
#include "paint.h"

#include <unistd.h>

#include <cstdlib>

namespace
{

constexpr char theBold = '\x01';
constexpr char theDim = '\x02';
constexpr char theEnd = '\x03';
constexpr char theRed = '\x04';
constexpr char theYellow = '\x05';

std::string marked(char mark, std::string_view text)
{
    return mark + std::string(text) + theEnd;
}

std::string_view variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

bool hasColours(int stream)
{
    return variable("NO_COLOR").empty() && variable("TERM") != "dumb" && ::isatty(stream) == 1;
}

/// What a terminal understands in the place of a mark; empty for any other character.
std::string_view sequenceOf(char mark)
{
    switch (mark)
    {
        case theBold:
            return "\x1b[1m";
        case theDim:
            return "\x1b[2m";
        case theEnd:
            return "\x1b[0m";
        case theRed:
            return "\x1b[1;31m";
        case theYellow:
            return "\x1b[1;33m";
        default:
            return {};
    }
}

std::string paintedFor(int stream, std::string_view page)
{
    const bool isColoured = hasColours(stream);
    std::string text;
    text.reserve(page.size());
    for (const char c : page)
    {
        const std::string_view sequence = sequenceOf(c);
        if (sequence.empty())
            text += c;
        else if (isColoured)
            text += sequence;
    }
    return text;
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

std::string red(std::string_view text)
{
    return marked(theRed, text);
}

std::string yellow(std::string_view text)
{
    return marked(theYellow, text);
}

std::string painted(std::string_view page)
{
    return paintedFor(STDOUT_FILENO, page);
}

std::string paintedForErrors(std::string_view page)
{
    return paintedFor(STDERR_FILENO, page);
}
