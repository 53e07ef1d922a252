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
    explicit GrowingText(std::string& text) : myText(text), mySize(text.size()) {}

    GrowingText& operator+=(std::string_view piece)
    {
        if (myText.size() - mySize < piece.size()) grow(piece.size());
        if (!piece.empty()) std::memcpy(myText.data() + mySize, piece.data(), piece.size());
        mySize += piece.size();
        return *this;
    }
    GrowingText& operator+=(char piece)
    {
        if (myText.size() == mySize) grow(1);
        myText[mySize++] = piece;
        return *this;
    }

    /// What was appended so far.
    std::size_t size() const { return mySize; }
    /// Takes back what was appended after a size.
    void cut(std::size_t size) { mySize = size; }
    /// Gives the text its length.
    void finish() { myText.resize(mySize); }

private:
    void grow(std::size_t needed)
    {
        constexpr std::size_t theLeast = 4096;
        myText.resize(2 * mySize + needed + theLeast);
    }

    std::string& myText;
    std::size_t mySize;
};

}  // namespace omt
