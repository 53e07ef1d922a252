// SPDX-License-Identifier: Apache-2.0
// List is a row of values in a model's arena: a view of fixed length that owns nothing.
#pragma once

#include <cstddef>
#include <cstdint>

namespace omt
{

/// The parts of a definition, such as the fields of a record.
///
/// Copied as a view; the values belong to the model's arena and live as long as any copy of that
/// model. Through a const list its values are const.
template <typename T>
class List
{
public:
    constexpr List() = default;
    /// A view of `size` values that live elsewhere. At most 2^32 - 1 values.
    constexpr List(T* data, std::size_t size)
        : myData(data), mySize(static_cast<std::uint32_t>(size))
    {
    }

    /// Whether the document has this list at all; one without values counts.
    constexpr bool isThere() const { return myData != nullptr; }
    constexpr std::size_t size() const { return mySize; }
    constexpr bool empty() const { return mySize == 0; }

    constexpr const T* begin() const { return myData; }
    constexpr const T* end() const { return myData + mySize; }
    constexpr T* begin() { return myData; }
    constexpr T* end() { return myData + mySize; }
    /// The value at an index below size().
    constexpr const T& operator[](std::size_t index) const { return myData[index]; }
    constexpr T& operator[](std::size_t index) { return myData[index]; }

private:
    T* myData = nullptr;
    std::uint32_t mySize = 0;
};

}  // namespace omt
