// SPDX-License-Identifier: Apache-2.0
// JsonRoom is room before the end of a text of JSON, written through a pointer.
#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace omt
{

/// Appends to a text that the caller owns, in large pieces: what is written stands in a buffer that
/// is never set to zero, and is added to the text when this is full.
class JsonRoom
{
public:
    /// The most octets that can be asked for at once.
    static constexpr std::size_t theMost = 8192;
    /// How many octets copy() reads and writes past the end.
    static constexpr std::size_t theSlack = 16;

    explicit JsonRoom(std::string& text) : myText(text) {}
    JsonRoom(const JsonRoom&) = delete;
    JsonRoom& operator=(const JsonRoom&) = delete;

    /// Where this many octets may be written, and theSlack more; tell the end by moveTo().
    char* at(std::size_t size)
    {
        if (static_cast<std::size_t>(myRoom + theMost - myAt) < size) flush();
        return myAt;
    }
    void moveTo(char* at) { myAt = at; }
    void put(char letter)
    {
        char* const place = at(1);
        *place = letter;
        myAt = place + 1;
    }
    template <std::size_t size>
    void put(const char (&literal)[size])
    {
        char* const place = at(size);
        std::memcpy(place, literal, size - 1);
        myAt = place + size - 1;
    }
    /// A text of any length with theSlack octets after it that may be read.
    void put(std::string_view text)
    {
        for (; text.size() > theMost; text.remove_prefix(theMost))
            moveTo(copy(at(theMost), text.data(), theMost));
        moveTo(copy(at(text.size()), text.data(), text.size()));
    }
    /// Adds what was written to the text.
    void flush()
    {
        myText.append(myRoom, static_cast<std::size_t>(myAt - myRoom));
        myAt = myRoom;
    }

    /// In blocks of 16 that may pass the end; gives the end. Most texts are one or two of them.
    static char* copy(char* to, const char* from, std::size_t size)
    {
        std::memcpy(to, from, 16);
        if (size > 16) std::memcpy(to + 16, from + 16, 16);
        for (std::size_t i = 32; i < size; i += 16) std::memcpy(to + i, from + i, 16);
        return to + size;
    }

private:
    std::string& myText;
    char* myAt = myRoom;
    char myRoom[theMost + theSlack];
};

}  // namespace omt
