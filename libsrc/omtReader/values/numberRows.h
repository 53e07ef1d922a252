// SPDX-License-Identifier: Apache-2.0
// What sets one class of numbers apart from the others, a row for each.
#pragma once

#include "omtReader/values/scalarOctets.h"

namespace omtreader
{

/// The names of a class of numbers; what it reads and writes, `Octets` says.
template <typename Number, std::endian Order>
struct NumberRow
{
    using Octets = ScalarOctets<Number, Order>;
    const char* name;
    const char* unsignedName = nullptr;  // where values without a sign have another
};

template <typename Number>
using BigRow = NumberRow<Number, std::endian::big>;
template <typename Number>
using LittleRow = NumberRow<Number, std::endian::little>;

inline constexpr BigRow<std::int16_t> theShortRow = {"short", "unsigned-short"};
inline constexpr BigRow<std::int32_t> theIntRow = {"int", "unsigned-int"};
inline constexpr BigRow<std::int64_t> theLongRow = {"long", "unsigned-long"};
inline constexpr BigRow<float> theFloatRow = {"float"};
inline constexpr BigRow<double> theDoubleRow = {"double"};

inline constexpr LittleRow<std::int16_t> theShortLERow = {"short-LE", "unsigned-short-LE"};
inline constexpr LittleRow<std::int32_t> theIntLERow = {"int-LE", "unsigned-int-LE"};
inline constexpr LittleRow<std::int64_t> theLongLERow = {"long-LE", "unsigned-long-LE"};
inline constexpr LittleRow<float> theFloatLERow = {"float-LE"};
inline constexpr LittleRow<double> theDoubleLERow = {"double-LE"};

}  // namespace omtreader
