// SPDX-License-Identifier: Apache-2.0
// GrowingText appends small pieces to a text by way of a buffer.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace omt
{

/// Appends to a text of its owner, which has all of it from finish() on. What is appended goes
/// through a buffer that stays in the cache of the processor, so that each page of the text is
/// touched once and none before it is needed.
class GrowingText
{
public:
    /// How many octets can be taken back.
    static constexpr std::size_t theKept = 64;

    /// About as many octets as expected will be appended.
    explicit GrowingText(std::string& text, std::size_t expected = 0) : myText(text)
    {
        if (expected > 0) text.reserve(text.size() + expected);
        makeRoom(theLeast);
    }

    GrowingText& operator+=(std::string_view piece)
    {
        if (piece.size() > theLeast) piece = appendFirst(piece);
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
        if (static_cast<std::size_t>(myLimit - myEnd) < octets) makeRoom(octets);
        return myEnd;
    }
    /// Appends what was written into the room, up to here.
    void use(char* end) { myEnd = end; }

    /// What was appended so far.
    std::size_t size() const { return myText.size() + used(); }
    /// Takes back what was appended after a size, at most theKept octets.
    void cut(std::size_t size) { myEnd -= this->size() - size; }
    /// Gives the text all that was appended.
    void finish() { flush(0); }

private:
    static constexpr std::size_t theLeast = 4096;

    std::size_t used() const { return static_cast<std::size_t>(myEnd - myBuffer.get()); }

    /// Empties the buffer into the text but for its last octets.
    void flush(std::size_t kept)
    {
        if (used() <= kept) return;
        char* const first = myEnd - kept;
        myText.append(myBuffer.get(), first);
        std::memmove(myBuffer.get(), first, kept);
        myEnd = myBuffer.get() + kept;
    }

    /// Appends a long piece to the text itself; what is left of it for the buffer.
    std::string_view appendFirst(std::string_view piece)
    {
        flush(0);
        myText.append(piece, 0, piece.size() - theKept);
        return piece.substr(piece.size() - theKept);
    }

    void makeRoom(std::size_t needed)
    {
        if (myBuffer) flush(theKept);
        if (static_cast<std::size_t>(myLimit - myEnd) >= needed) return;
        const std::size_t size = theKept + needed + theLeast;
        std::unique_ptr<char[]> larger(new char[size]);
        const std::size_t kept = myBuffer ? used() : 0;
        if (kept > 0) std::memcpy(larger.get(), myBuffer.get(), kept);
        myBuffer = std::move(larger);
        myEnd = myBuffer.get() + kept;
        myLimit = myBuffer.get() + size;
    }

    std::string& myText;
    std::unique_ptr<char[]> myBuffer;
    char* myEnd = nullptr;
    char* myLimit = nullptr;
};

}  // namespace omt
