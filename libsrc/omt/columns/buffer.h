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
        : myData(std::exchange(other.myData, nullptr)),
          mySize(std::exchange(other.mySize, 0)),
          myWritten(std::exchange(other.myWritten, 0))
    {
    }
    Buffer& operator=(Buffer&& other) noexcept
    {
        std::swap(myData, other.myData);
        std::swap(mySize, other.mySize);
        std::swap(myWritten, other.myWritten);
        return *this;
    }
    ~Buffer() { std::free(myData); }

    std::uint8_t* data() const { return myData; }
    /// Octets that are written, or zero.
    std::size_t size() const { return myWritten; }
    bool isEmpty() const { return mySize == 0; }

    /// Room up to `octets`, zero where nothing was written; `expected` is how many there will be in
    /// the end, as it seems.
    std::uint8_t* need(std::size_t octets, std::size_t expected = 0)
    {
        return room(octets, octets, expected);
    }
    /// The same, where all from `start` on is going to be written.
    std::uint8_t* room(std::size_t start, std::size_t octets, std::size_t expected)
    {
        if (octets > mySize) grow(octets, expected);
        if (start > myWritten) std::memset(myData + myWritten, 0, start - myWritten);
        myWritten = std::max(myWritten, octets);
        return myData;
    }

    /// Writes at a place up to which there is something already.
    void put(std::size_t at, std::string_view text)
    {
        std::uint8_t* const to = room(at, at + text.size() + 1, 0) + at;
        if (!text.empty()) std::memcpy(to, text.data(), text.size());
        to[text.size()] = 0;
    }

private:
    // A guess may be wrong, so that it counts up to a bound only.
    void grow(std::size_t octets, std::size_t expected)
    {
        constexpr std::size_t theLeast = 64;
        constexpr std::size_t theMostAhead = std::size_t{1} << 22;
        const std::size_t ahead = std::min(expected, std::max(8 * octets, theMostAhead));
        const std::size_t size = std::max({octets, ahead, 2 * mySize, theLeast});
        auto* const data = static_cast<std::uint8_t*>(std::realloc(myData, size));
        if (!data) throw std::bad_alloc();
        myData = data;
        mySize = size;
    }

    std::uint8_t* myData = nullptr;
    std::size_t mySize = 0;
    std::size_t myWritten = 0;
};

}  // namespace omt
