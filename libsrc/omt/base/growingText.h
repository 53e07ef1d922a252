// SPDX-License-Identifier: Apache-2.0
// GrowingText appends small pieces to a text, which grows in few steps.
#pragma once

#include <cstring>
#include <string>
#include <string_view>

namespace omt
{

/// Appends to a text of its owner, which is longer than what was appended until finish().
class GrowingText
{
public:
    /// `expected` octets will be appended, more or less.
    explicit GrowingText(std::string& text, std::size_t expected = 0)
        : myText(text), myEnd(text.data() + text.size()), myLimit(myEnd)
    {
        if (expected > 0) grow(expected);
    }

    GrowingText& operator+=(std::string_view piece)
    {
        char* const end = room(piece.size());
        if (!piece.empty()) std::memcpy(end, piece.data(), piece.size());
        myEnd = end + piece.size();
        return *this;
    }
    GrowingText& operator+=(char piece)
    {
        *room(1) = piece;
        ++myEnd;
        return *this;
    }

    /// The end of what was appended, where this many octets may be written.
    char* room(std::size_t octets)
    {
        if (static_cast<std::size_t>(myLimit - myEnd) < octets) grow(octets);
        return myEnd;
    }
    /// Appends what was written into the room, up to here.
    void use(char* end) { myEnd = end; }

    /// What was appended so far.
    std::size_t size() const { return static_cast<std::size_t>(myEnd - myText.data()); }
    /// Takes back what was appended after a size.
    void cut(std::size_t size) { myEnd = myText.data() + size; }
    /// Gives the text its length.
    void finish()
    {
        myText.resize(size());
        myLimit = myEnd;
    }

private:
    void grow(std::size_t needed)
    {
        constexpr std::size_t theLeast = 256;
        const std::size_t used = size();
        myText.resize(2 * used + needed + theLeast);
        myEnd = myText.data() + used;
        myLimit = myText.data() + myText.size();
    }

    std::string& myText;
    char* myEnd;
    char* myLimit;
};

}  // namespace omt
