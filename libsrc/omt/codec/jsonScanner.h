// SPDX-License-Identifier: Apache-2.0
// JsonScanner finds the parts of a text of JSON: blanks, words, texts.
#pragma once

#include "omt/codec/jsonLetters.h"

#include <string>
#include <string_view>
#include <utility>

namespace omt
{

/// A text of JSON without its quotes, escapes as they stand.
struct RawText
{
    std::string_view letters;
    bool hasEscapes = false;
};

class JsonScanner
{
public:
    explicit JsonScanner(std::string_view text)
        : myStart(text.data()), myAt(text.data()), myEnd(text.data() + text.size())
    {
    }

    const char* place() const { return myAt; }
    void goTo(const char* place) { myAt = place; }
    const char* end() const { return myEnd; }
    /// Whether a number or word may end before this letter.
    bool isEndOfWord(const char* at) const
    {
        return at == myEnd || *at == ',' || *at == '}' || *at == ']' || *at == ' ' || *at == '\n' ||
               *at == '\r' || *at == '\t' || *at == ':';
    }

    /// The next letter that is no blank; 0 at the end.
    char peek()
    {
        while (myAt != myEnd && (*myAt == ' ' || *myAt == '\n' || *myAt == '\t' || *myAt == '\r'))
            ++myAt;
        return myAt == myEnd ? '\0' : *myAt;
    }
    bool takes(char letter)
    {
        if (peek() != letter || myAt == myEnd) return false;
        ++myAt;
        return true;
    }
    /// Exactly these letters, after blanks.
    bool takes(std::string_view text)
    {
        peek();
        if (!isText(myAt, myEnd, text)) return false;
        myAt += text.size();
        return true;
    }
    bool isAtEnd() { return peek() == '\0' && myAt == myEnd; }

    /// Whether exactly these letters stand there.
    static bool isText(const char* at, const char* end, std::string_view text)
    {
        const std::size_t size = text.size();
        if (static_cast<std::size_t>(end - at) < size) return false;
        if (size < 8) return std::memcmp(at, text.data(), size) == 0;
        const auto isSame = [&](std::size_t i)
        { return loadWord<std::uint64_t>(at + i) == loadWord<std::uint64_t>(text.data() + i); };
        for (std::size_t i = 0; i + 8 < size; i += 8)
            if (!isSame(i)) return false;
        return isSame(size - 8);
    }
    /// The quote that ends the text that begins there; null where there is none.
    static const char* endOfText(const char* at, const char* end, bool& hasEscapes);

    /// False where no text stands there, or one that does not end.
    bool raw(RawText& text);
    /// A number or word, up to what cannot belong to it.
    std::string_view word();
    /// Passes over a value; what it holds is checked when it is read.
    bool skip();
    /// From 1.
    std::pair<std::size_t, std::size_t> lineAndColumn() const;

private:
    const char* myStart;
    const char* myAt;
    const char* myEnd;
};

/// The characters of a text of JSON, one code point after the other.
class JsonCharacters
{
public:
    explicit JsonCharacters(std::string_view raw) : myText(raw) {}
    bool isAtEnd() const { return myText.empty(); }
    std::string_view rest() const { return myText; }
    void skip(std::size_t octets) { myText.remove_prefix(octets); }

    /// False where there is no UTF-8, or an escape that JSON does not have. Halves of a pair of
    /// surrogates come one by one where they were escaped.
    bool next(std::uint32_t& code);

private:
    bool escape(std::uint32_t& code);

    std::string_view myText;
};

/// The value of a hexadecimal digit, or more than 15.
constexpr unsigned digitOf(char letter)
{
    if (letter >= '0' && letter <= '9') return static_cast<unsigned>(letter - '0');
    if (letter >= 'a' && letter <= 'f') return static_cast<unsigned>(letter - 'a' + 10);
    if (letter >= 'A' && letter <= 'F') return static_cast<unsigned>(letter - 'A' + 10);
    return 16;
}

/// Appends a code point, a lone surrogate as three octets.
void appendUtf8(std::string& text, std::uint32_t code);

}  // namespace omt
