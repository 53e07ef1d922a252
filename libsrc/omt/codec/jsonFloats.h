// SPDX-License-Identifier: Apache-2.0
// Writes floating point numbers with the fewest digits that read back exactly.
#pragma once

#include <cstddef>

namespace omt
{

/// How many octets writeShortest() may write, those past the end that it gives included.
constexpr std::size_t theShortestRoom = 40;

/// Writes a finite number as std::to_chars() does, which takes about twice as long; gives the end.
char* writeShortest(char* at, double number);
char* writeShortest(char* at, float number);

}  // namespace omt
