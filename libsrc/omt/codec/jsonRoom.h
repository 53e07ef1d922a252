// SPDX-License-Identifier: Apache-2.0
// JsonRoom is room at the end of a text of JSON, written through a pointer.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace omt
{

/// Appends to a text that the caller owns. The text is made longer first, by what is asked for or
/// by as much as was written so far, and cut to what was written by finish(). Nothing is copied a
/// second time: reading at once what was just written in other pieces would take longer than the
/// zeros that the text gets first.
class JsonRoom
{
public:
    /// The most octets that can be asked for at once.
    static constexpr std::size_t theMost = 8192;
    /// How many octets copy() reads and writes past the end.
    static constexpr std::size_t theSlack = 32;

    /// With room for this many octets.
    JsonRoom(std::string& text, std::size_t size) : myText(text), myStart(text.size())
    {
        myAt = enlarge(myText, size);
        myEnd = myAt + size;
    }
    JsonRoom(const JsonRoom&) = delete;
    JsonRoom& operator=(const JsonRoom&) = delete;

    /// Where this many octets may be written, and theSlack more; tell the end by moveTo().
    char* at(std::size_t size)
    {
        if (static_cast<std::size_t>(myEnd - myAt) < size) grow(size);
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
    /// Drops what was not written.
    void finish() { myText.erase(static_cast<std::size_t>(myAt - myText.data())); }

    /// Appends what `write(at)` writes to where there is room for so many octets; it gives the end.
    template <typename Write>
    static void append(std::string& text, std::size_t size, const Write& write)
    {
        const char* const end = write(enlarge(text, size));
        text.erase(static_cast<std::size_t>(end - text.data()));
    }

    /// In blocks of 32 that may pass the end; gives the end. Most texts are one of them.
    static char* copy(char* to, const char* from, std::size_t size)
    {
        std::memcpy(to, from, 32);
        for (std::size_t i = 32; i < size; i += 32) std::memcpy(to + i, from + i, 32);
        return to + size;
    }

private:
    /// Not inlined, as compilers that know how few zeros there are write them by a slow loop.
    [[gnu::noinline]] static char* enlarge(std::string& text, std::size_t size)
    {
        const std::size_t start = text.size();
        text.append(size + theSlack, '\0');
        return text.data() + start;
    }
    void grow(std::size_t size)
    {
        const auto used = static_cast<std::size_t>(myAt - myText.data());
        const std::size_t more = std::max(size, std::min(used - myStart, theMost));
        myText.resize(used + more + theSlack);
        myAt = myText.data() + used;
        myEnd = myAt + more;
    }

    std::string& myText;
    std::size_t myStart;
    char* myAt;
    char* myEnd;
};

}  // namespace omt
