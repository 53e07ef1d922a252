// SPDX-License-Identifier: Apache-2.0
// Buffer is memory of one column: it grows, and holds zeros where nothing was written.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

namespace omt
{

class Buffer
{
public:
    Buffer() = default;
    Buffer(Buffer&& other) noexcept
        : myData(std::exchange(other.myData, nullptr)), mySize(std::exchange(other.mySize, 0))
    {
    }
    Buffer& operator=(Buffer&& other) noexcept
    {
        std::swap(myData, other.myData);
        std::swap(mySize, other.mySize);
        return *this;
    }
    ~Buffer() { std::free(myData); }

    std::uint8_t* data() const { return myData; }
    std::size_t size() const { return mySize; }
    bool isEmpty() const { return mySize == 0; }

    /// Room for this many octets; `expected` is how many there will be in the end, as it seems.
    template <typename Row = std::uint8_t>
    Row* need(std::size_t octets, std::size_t expected = 0)
    {
        if (octets > mySize) grow(octets, expected);
        return reinterpret_cast<Row*>(myData);
    }

    /// Writes at a place up to which there is something already.
    void put(std::size_t at, std::string_view text)
    {
        std::uint8_t* const room = need(at + text.size() + 1) + at;
        if (!text.empty()) std::memcpy(room, text.data(), text.size());
    }

private:
    // A guess may be wrong, so it counts up to a bound only. Fresh memory of the system is zero and
    // costs nothing until it is written, unlike what realloc() would give.
    void grow(std::size_t octets, std::size_t expected)
    {
        constexpr std::size_t theLeast = 64;
        constexpr std::size_t theMostAhead = 8;
        const std::size_t ahead = std::min(expected, theMostAhead * octets);
        const std::size_t size = std::max({octets, ahead, 2 * mySize, theLeast});
        auto* const data = static_cast<std::uint8_t*>(std::calloc(size, 1));
        if (!data) throw std::bad_alloc();
        if (mySize > 0) std::memcpy(data, myData, mySize);
        std::free(myData);
        myData = data;
        mySize = size;
    }

    std::uint8_t* myData = nullptr;
    std::size_t mySize = 0;
};

}  // namespace omt
