// SPDX-License-Identifier: Apache-2.0
// Writes characters of values as UTF-8 into room that is large enough; each gives where it ends.
#pragma once

#include <cstddef>
#include <cstdint>

namespace omt
{

/// Octets as U+0000 to U+00FF, into room for twice as many.
std::uint8_t* putLatin1(std::uint8_t* to, const std::uint8_t* octets, std::size_t count);
/// Those before the first zero.
std::uint8_t* putText(std::uint8_t* to, const std::uint8_t* octets, std::size_t count);
/// Units of 16 bits, into room for three times as many octets. Half of a pair, which UTF-8 cannot
/// say, becomes U+FFFD.
std::uint8_t* putUtf16(std::uint8_t* to, const std::uint8_t* octets, std::size_t count,
                       bool isLittleEndian);

}  // namespace omt
