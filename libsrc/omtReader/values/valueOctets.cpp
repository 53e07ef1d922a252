// SPDX-License-Identifier: Apache-2.0
// The octets of a value with zeros all around, so that nothing outside the value is ever read.
#include "omtReader/values/valueOctets.h"

#include <algorithm>
#include <cstring>

namespace omtreader
{
namespace
{

constexpr std::int64_t theAlignment = 64;
// Room to step back from an address that came out nearer, without reaching the value again.
constexpr std::int64_t theGap = 2 * theAlignment;
constexpr std::int64_t theTail = theGap + theAlignment + ValueOctets::theReach;
constexpr std::size_t theLargestToKeep = 1 << 20;

std::int64_t misalignment(const void* address)
{
    return static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(address) % theAlignment);
}

}  // namespace

void ValueOctets::copy(const void* data, int length)
{
    myLength = std::max(length, 0);
    const auto needed = static_cast<std::size_t>(3 * theAlignment + myLength + theTail);
    if (needed > myCapacity || myCapacity > theLargestToKeep)
    {
        // The capacity is that of the memory at any time, whether or not there is more of it.
        myMemory.reset(new char[needed]);
        myCapacity = needed;
    }
    const std::int64_t toAligned = theAlignment - misalignment(myMemory.get());
    char* const begin = myMemory.get() + theAlignment + toAligned + misalignment(data);
    std::memset(begin - theAlignment, 0, static_cast<std::size_t>(theAlignment));
    std::memcpy(begin, data, static_cast<std::size_t>(myLength));
    std::memset(begin + myLength, 0, static_cast<std::size_t>(theTail));
    myBegin = begin;
}

bool ValueOctets::holds(const void* address) const
{
    const auto at = reinterpret_cast<std::uintptr_t>(address);
    const auto first = reinterpret_cast<std::uintptr_t>(myMemory.get());
    return at - first < myCapacity;
}

const char* ValueOctets::advance(const void* from, std::int64_t count) const
{
    const std::int64_t offset = static_cast<const char*>(from) - myBegin + count;
    if (offset >= -theAlignment && offset <= myLength + theGap) return myBegin + offset;
    const std::int64_t first = myLength + theGap;
    const std::int64_t ahead = ((offset - first) % theAlignment + theAlignment) % theAlignment;
    return myBegin + first + ahead;
}

}  // namespace omtreader
