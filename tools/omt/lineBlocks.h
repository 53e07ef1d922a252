// SPDX-License-Identifier: Apache-2.0
// LineBlocks reads a file in blocks of whole lines.
#pragma once

#include <cstdint>
#include <string>

/// Reads as far as there is something, so that lines of a pipe are not waited for longer than they
/// take; a block holds some megabytes at most, but for a line that is longer.
class LineBlocks
{
public:
    /// Standard input for "-". Throws InputError for what cannot be opened.
    explicit LineBlocks(const std::string& file);
    LineBlocks(const LineBlocks&) = delete;
    LineBlocks& operator=(const LineBlocks&) = delete;
    ~LineBlocks();

    /// The next lines; of the last one the end may be missing. False after the last. Throws
    /// InputError where reading fails, and for a line of more than 64 MB.
    bool next(std::string& block);

    /// How much of a file was read, from 0 to 1; negative where its size is not known.
    double progress() const;

private:
    std::string myName;
    int myFile;
    std::uint64_t mySize = 0;
    std::uint64_t myRead = 0;
    std::string myRest;
    bool myIsAtEnd = false;
};
