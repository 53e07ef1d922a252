// SPDX-License-Identifier: Apache-2.0
// Arena keeps the texts and lists of a model in a few large pieces of memory, freed together.
#pragma once

#include "omt/base/list.h"
#include "omt/base/text.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>
#include <vector>

namespace omt
{

/// Memory that only grows, for values that need no destructor. Not for two threads at a time.
/// Throws std::bad_alloc when memory is short, and keeps what it has.
class Arena
{
public:
    Arena() = default;
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;

    /// A copy of a text.
    Text text(std::string_view octets, std::uint32_t line = 0)
    {
        char* const copy = static_cast<char*>(allocate(octets.size(), 1));
        if (!octets.empty()) std::memcpy(copy, octets.data(), octets.size());
        return Text({copy, octets.size()}, line);
    }

    /// A copy of a row of values.
    template <typename T>
    List<T> list(const T* values, std::size_t count)
    {
        static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);
        if (count == 0) return {};
        if (count > static_cast<std::size_t>(-1) / sizeof(T)) throw std::bad_alloc();
        T* const copy = static_cast<T*>(allocate(count * sizeof(T), alignof(T)));
        std::uninitialized_copy_n(values, count, copy);
        return {copy, count};
    }
    template <typename T>
    List<T> list(const std::vector<T>& values)
    {
        return list(values.data(), values.size());
    }

    /// How many octets the arena holds, for measurements.
    std::size_t octetsHeld() const { return myHeld; }

private:
    void* allocate(std::size_t size, std::size_t alignment)
    {
        const std::size_t padding = (alignment - myUsed % alignment) % alignment;
        if (myPieces.empty() || padding > mySize - myUsed || size > mySize - myUsed - padding)
            return addPiece(size);
        std::byte* const place = myPieces.back().get() + myUsed + padding;
        myUsed += padding + size;
        return place;
    }

    void* addPiece(std::size_t size)
    {
        constexpr std::size_t theSmallest = 4096;
        constexpr std::size_t theLargest = 262144;
        std::size_t room = myHeld / 2;
        room = room < theSmallest ? theSmallest : room > theLargest ? theLargest : room;
        if (room < size) room = size;
        myPieces.reserve(myPieces.size() + 1);
        myPieces.emplace_back(new std::byte[room]);
        mySize = room;
        myUsed = size;
        myHeld += room;
        return myPieces.back().get();
    }

    std::vector<std::unique_ptr<std::byte[]>> myPieces;
    std::size_t myUsed = 0;
    std::size_t mySize = 0;
    std::size_t myHeld = 0;
};

}  // namespace omt
