// SPDX-License-Identifier: Apache-2.0
#include "omt/model/clauses.h"

#include <algorithm>
#include <utility>

namespace omt
{

Clauses::Clauses(std::string_view text) : myText(text)
{
    while (myFault.empty() && myAt < myText.size()) addOne();
    if (myFault.empty() && !myOpen.empty())
        fail("ends before the clause that begins here is closed", myClauses[myOpen.back()].line);
}

void Clauses::addOne()
{
    switch (myText[myAt])
    {
        case '\n':
            ++myLine;
            ++myAt;
            return;
        case ' ':
        case '\t':
        case '\r':
        case '\f':
        case '\v':
            ++myAt;
            return;
        case '(':
            myOpen.push_back(size());
            add(Clause::Form::list, myAt, myAt);
            ++myAt;
            return;
        case ')':
            return closeList();
        case '"':
            return addString();
        case '[':
            return addNotes();
        case ';':
            return addComment();
        default:
            return addSymbol();
    }
}

void Clauses::add(Clause::Form form, std::size_t begin, std::size_t end)
{
    myClauses.push_back({form, myLine, size() + 1, myText.substr(begin, end - begin)});
}

void Clauses::closeList()
{
    if (myOpen.empty()) return fail("has a closing parenthesis without an opening one", myLine);
    ++myAt;
    Clause& list = myClauses[myOpen.back()];
    const char* const begin = list.text.data();
    list.text = {begin, static_cast<std::size_t>(myText.data() + myAt - begin)};
    list.next = size();
    myOpen.pop_back();
}

void Clauses::addString()
{
    const std::size_t begin = myAt + 1;
    std::size_t end = begin;
    while (end < myText.size() && myText[end] != '"') end += myText[end] == '\\' ? 2U : 1U;
    if (end >= myText.size()) return fail("ends within the string that begins here", myLine);
    add(Clause::Form::string, begin, end);
    myLine += static_cast<std::uint32_t>(
        std::count(myText.begin() + static_cast<std::ptrdiff_t>(begin),
                   myText.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
    myAt = end + 1;
}

void Clauses::addNotes()
{
    const std::size_t end = myText.find(']', myAt);
    if (end == std::string_view::npos) return fail("ends within the notes that begin here", myLine);
    add(Clause::Form::notes, myAt + 1, end);
    myLine += static_cast<std::uint32_t>(
        std::count(myText.begin() + static_cast<std::ptrdiff_t>(myAt),
                   myText.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
    myAt = end + 1;
}

void Clauses::addComment()
{
    const std::size_t end = std::min(myText.find('\n', myAt), myText.size());
    std::size_t begin = std::min(myText.find_first_not_of(';', myAt), end);
    std::size_t last = end;
    while (begin < last && (myText[begin] == ' ' || myText[begin] == '\t')) ++begin;
    while (last > begin && (myText[last - 1] == ' ' || myText[last - 1] == '\r')) --last;
    add(Clause::Form::comment, begin, last);
    myAt = end;
}

void Clauses::addSymbol()
{
    const std::size_t end =
        std::min(myText.find_first_of(" \t\r\n\f\v()\"[", myAt + 1), myText.size());
    add(Clause::Form::symbol, myAt, end);
    myAt = end;
}

void Clauses::fail(std::string fault, std::uint32_t line)
{
    myFault = std::move(fault);
    myFaultLine = line;
}

namespace
{

bool isOctalDigit(char c)
{
    return c >= '0' && c <= '7';
}

void appendLatin1(unsigned code, std::string& text)
{
    if (code < 0x80U)
    {
        text += static_cast<char>(code);
        return;
    }
    text += static_cast<char>(0xC0U | (code >> 6U));
    text += static_cast<char>(0x80U | (code & 0x3FU));
}

}  // namespace

std::string withoutEscapes(std::string_view text)
{
    constexpr std::string_view theLetters = "\"'\\nrt";
    constexpr std::string_view theMeanings = "\"'\\\n\r\t";
    std::string plain;
    for (std::size_t at = 0; at < text.size();)
    {
        const std::size_t backslash = std::min(text.find('\\', at), text.size());
        plain += text.substr(at, backslash - at);
        at = backslash + 1;
        if (at >= text.size())
        {
            if (backslash < text.size()) plain += '\\';
            break;
        }
        const std::size_t letter = theLetters.find(text[at]);
        unsigned code = 0;
        std::size_t digits = 0;
        for (; digits < 3 && at + digits < text.size() && isOctalDigit(text[at + digits]); ++digits)
            code = code * 8 + static_cast<unsigned>(text[at + digits] - '0');
        if (letter != std::string_view::npos)
        {
            plain += theMeanings[letter];
            ++at;
        }
        else if (digits > 0 && code < 256)
        {
            appendLatin1(code, plain);
            at += digits;
        }
        else
            plain += '\\';
    }
    return plain;
}

}  // namespace omt
