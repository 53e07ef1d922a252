// SPDX-License-Identifier: Apache-2.0
// readWhole() reads a file, a pipe or standard input into memory.
#pragma once

#include <cstddef>
#include <string>

namespace omt
{

/// What came of reading: the octets, or why there are none.
struct InputFile
{
    std::string octets;
    /// Empty where all went well; else a clause such as "cannot be opened: No such file or
    /// directory".
    std::string fault;
};

/// Reads all of a file, "-" being standard input; refuses one of more than `mostOctets`.
InputFile readWhole(const std::string& name, std::size_t mostOctets);

}  // namespace omt
