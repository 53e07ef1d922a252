// SPDX-License-Identifier: Apache-2.0
// The octets of a value with zeros all around, so that nothing outside the value is ever read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace omtreader
{

/// A copy of a value's octets at an address that has the alignment of the original's.
///
/// Representations are given an address and no length. Zeros stand before and after the copy, far
/// enough for every representation that reads less than theReach octets.
class ValueOctets
{
public:
    static constexpr std::int64_t theReach = 1024;

    /// Copies `length` octets, none if it is negative.
    void copy(const void* data, int length);

    /// The first octet of the copy.
    const char* begin() const { return myBegin; }
    std::int64_t length() const { return myLength; }

    /// Whether an address is one that this object gave.
    bool holds(const void* address) const;

    /// The address `count` octets after one that this object gave. Beyond the margins there are
    /// only zeros anyway, so that the address comes out nearer, of the same alignment.
    const char* advance(const void* from, std::int64_t count) const;

private:
    std::unique_ptr<char[]> myMemory;
    std::size_t myCapacity = 0;
    const char* myBegin = nullptr;
    std::int64_t myLength = 0;
};

}  // namespace omtreader
