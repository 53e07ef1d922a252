// SPDX-License-Identifier: Apache-2.0
// Octets is a view of octets that somebody else owns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace omt
{

/// A row of octets, such as one received value. Owns nothing.
class Octets
{
public:
    constexpr Octets() = default;
    constexpr Octets(const std::uint8_t* data, std::size_t size) : myData(data), mySize(size) {}
    Octets(const void* data, std::size_t size)
        : myData(static_cast<const std::uint8_t*>(data)), mySize(size)
    {
    }
    Octets(const std::vector<std::uint8_t>& octets) : Octets(octets.data(), octets.size()) {}
    explicit Octets(std::string_view octets) : Octets(octets.data(), octets.size()) {}

    constexpr const std::uint8_t* data() const { return myData; }
    constexpr std::size_t size() const { return mySize; }
    constexpr bool empty() const { return mySize == 0; }
    constexpr const std::uint8_t* begin() const { return myData; }
    constexpr const std::uint8_t* end() const { return myData + mySize; }
    /// The octet at an index below size().
    constexpr std::uint8_t operator[](std::size_t index) const { return myData[index]; }

private:
    const std::uint8_t* myData = nullptr;
    std::size_t mySize = 0;
};

}  // namespace omt
