// SPDX-License-Identifier: Apache-2.0
// Text is a piece of UTF-8 text as a document wrote it, together with the line it stood on.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace omt
{

/// A text of a model: a view, and the line where it was found.
///
/// Owns nothing. The octets belong to the model (its arena) and live as long as any copy of that
/// model. A text that was not there differs from one that was there and empty: see isThere().
class Text
{
public:
    constexpr Text() = default;
    /// A view of octets that live elsewhere, for instance a literal. At most 2^32 - 1 octets.
    constexpr explicit Text(std::string_view octets, std::uint32_t line = 0)
        : myData(octets.data() ? octets.data() : ""),
          mySize(static_cast<std::uint32_t>(octets.size())),
          myLine(line)
    {
    }

    constexpr operator std::string_view() const { return view(); }
    constexpr std::string_view view() const { return {myData ? myData : "", mySize}; }
    std::string str() const { return std::string(view()); }

    /// Whether the document has this property at all; an empty one counts.
    constexpr bool isThere() const { return myData != nullptr; }
    constexpr bool empty() const { return mySize == 0; }
    constexpr std::size_t size() const { return mySize; }
    /// The line of the property in its document, from 1; 0 where no document says it.
    constexpr std::uint32_t line() const { return myLine; }

private:
    const char* myData = nullptr;
    std::uint32_t mySize = 0;
    std::uint32_t myLine = 0;
};

inline bool operator==(const Text& left, const Text& right)
{
    return left.view() == right.view();
}
inline bool operator!=(const Text& left, const Text& right)
{
    return left.view() != right.view();
}
inline bool operator==(const Text& left, std::string_view right)
{
    return left.view() == right;
}
inline bool operator!=(const Text& left, std::string_view right)
{
    return left.view() != right;
}
inline std::ostream& operator<<(std::ostream& out, const Text& text)
{
    return out << text.view();
}

}  // namespace omt
