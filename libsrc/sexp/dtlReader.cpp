// SPDX-License-Identifier: Apache-2.0
// Grammar:
//   form    = "(" form* ")" | string | number | symbol
//   string  = '"' (octet | escape)* '"'
//   number  = ["+" | "-"] digit+
//   symbol  = any other octets up to a blank, "(", ")", '"' or ";"
//   comment = ";" up to the end of the line
#include "sexp/dtlReader.h"

#include "sexp/dtcList.h"
#include "util/dtException.h"

#include <string>
#include <utility>

namespace
{

constexpr int theEnd = DtlInputStream::theEnd;

bool isBlank(int octet)
{
    return octet == ' ' || (octet >= '\t' && octet <= '\r');
}

bool endsAtom(int octet)
{
    return octet == theEnd || isBlank(octet) || octet == '(' || octet == ')' || octet == '"' ||
           octet == ';';
}

bool isNumber(std::string_view text)
{
    if (text.front() == '+' || text.front() == '-') text.remove_prefix(1);
    return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
}

[[noreturn]] void report(const char* fault, std::size_t line)
{
    throw DtException(fault, "line " + DtString(line));
}

}  // namespace

DtlReader::DtlReader(DtlInputStream& stream, DtSexpEnvironment& environment)
    : myStream(stream), myEnvironment(environment)
{
}

DtlObjPtr DtlReader::read()
{
    do
    {
        const int first = skipBlanks();
        if (first != theEnd)
            readNext(first);
        else if (myOpenLists.empty())
            return myEnvironment.intern("eof");
        else
            report("the list that begins here does not end", myOpenLists.back().line);
    } while (!myOpenLists.empty());
    return std::move(myElements.back());
}

/// The first octet that is neither blank nor in a comment, not taken.
int DtlReader::skipBlanks()
{
    bool isComment = false;
    while (true)
    {
        const int octet = myStream.peek();
        if (octet == ';')
            isComment = true;
        else if (octet == '\n' || octet == '\r')
            isComment = false;
        else if (octet == theEnd || (!isComment && !isBlank(octet)))
            return octet;
        myStream.get();
    }
}

void DtlReader::readNext(int first)
{
    if (first == '(')
    {
        myOpenLists.push_back({myElements.size(), myStream.line()});
        myStream.get();
    }
    else if (first == ')')
        closeList();
    else
        myElements.push_back(first == '"' ? readString() : readAtom());
}

void DtlReader::closeList()
{
    myStream.get();
    if (myOpenLists.empty()) report("a \")\" without its \"(\"", myStream.line());

    DtlObjPtr list;
    for (; myElements.size() > myOpenLists.back().firstElement; myElements.pop_back())
        list = DtlObj::makePair(std::move(myElements.back()), std::move(list));
    myElements.push_back(std::move(list));
    myOpenLists.pop_back();
}

DtlObjPtr DtlReader::readString()
{
    const std::size_t line = myStream.line();
    std::string text;
    myStream.get();
    for (int octet = myStream.get(); octet != '"'; octet = myStream.get())
    {
        if (octet == theEnd) report("the string that begins here does not end", line);
        const char character = static_cast<char>(octet);
        const bool isEscape = DtSexpReadEscapeChar && character == *DtSexpReadEscapeChar;
        text += isEscape ? readEscape(character) : character;
    }
    return DtlObj::makeString(std::move(text));
}

/// What stands behind the escape character, which is taken.
char DtlReader::readEscape(char escape)
{
    const int octet = myStream.peek();
    if (octet >= '0' && octet <= '7') return readOctal();

    constexpr std::string_view theLetters = "nrt\"'";
    constexpr std::string_view theMeanings = "\n\r\t\"'";
    const char character = static_cast<char>(octet);  // the end of the stream gives no letter
    const std::size_t place = theLetters.find(character);
    if (place == theLetters.npos && character != escape) return escape;
    myStream.get();
    return place == theLetters.npos ? escape : theMeanings[place];
}

/// Takes the digits as far as they make one octet.
char DtlReader::readOctal()
{
    constexpr int theMostDigits = 3;
    int value = 0;
    for (int digits = 0; digits < theMostDigits; ++digits)
    {
        const int octet = myStream.peek();
        const int longer = value * 8 + octet - '0';
        if (octet < '0' || octet > '7' || longer > 255) break;
        value = longer;
        myStream.get();
    }
    return static_cast<char>(value);
}

DtlObjPtr DtlReader::readAtom()
{
    std::string text;
    while (!endsAtom(myStream.peek())) text += static_cast<char>(myStream.get());
    const DtString atom(std::move(text));
    return isNumber(atom.view()) ? DtlObj::makeFixnum(atom.toInt64()) : myEnvironment.intern(atom);
}
