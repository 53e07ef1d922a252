// SPDX-License-Identifier: Apache-2.0
// Grammar:
//   form    = "(" form* ")" | string | number | symbol
//   string  = '"' (octet | escape)* '"'
//   number  = ["+" | "-"] digit+
//   symbol  = any other octets up to a blank, "(", ")", '"' or ";"
//   comment = ";" up to the end of the line
#include "sexp/dtlReader.h"

#include "sexp/dtcList.h"
#include "sexp/dtlStorage.h"
#include "util/dtException.h"

#include <algorithm>
#include <array>
#include <utility>

namespace
{

constexpr int theEnd = DtlInputStream::theEnd;

/// Which octets are one of these.
class OctetSet
{
public:
    constexpr explicit OctetSet(std::string_view octets)
    {
        for (const char octet : octets) myHas[static_cast<unsigned char>(octet)] = true;
    }
    constexpr bool has(char octet) const { return myHas[static_cast<unsigned char>(octet)]; }

private:
    std::array<bool, 256> myHas = {};
};

constexpr OctetSet theBlanks(" \t\n\v\f\r");
constexpr OctetSet theAtomEnds(" \t\n\v\f\r()\";");

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
    : myStream(stream), myStorage(*environment.myStorage)
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
            return myStorage.reference(myStorage.intern("eof"));
        else
            report("the list that begins here does not end", myOpenLists.back().line);
    } while (!myOpenLists.empty());
    return myStorage.reference(myElements.back());
}

/// Takes the octets up to the first that does not match, or as many as are at hand: without any,
/// all have been taken.
template <typename Matches>
std::string_view DtlReader::takeWhile(Matches matches)
{
    const std::string_view octets = myStream.ahead();
    const auto end = std::find_if_not(octets.begin(), octets.end(), matches);
    const auto length = static_cast<std::size_t>(end - octets.begin());
    myStream.take(length);
    return octets.substr(0, length);
}

/// The first octet that is neither blank nor in a comment, not taken.
int DtlReader::skipBlanks()
{
    const auto isBlank = [](char octet) { return theBlanks.has(octet); };
    const auto isComment = [](char octet) { return octet != '\n' && octet != '\r'; };
    while (true)
    {
        while (!takeWhile(isBlank).empty()) continue;
        const int octet = myStream.peek();
        if (octet != ';') return octet;
        while (!takeWhile(isComment).empty()) continue;
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

    const DtlObj* list = nullptr;
    for (; myElements.size() > myOpenLists.back().firstElement; myElements.pop_back())
        list = myStorage.makePair(myElements.back(), list);
    myElements.push_back(list);
    myOpenLists.pop_back();
}

const DtlObj* DtlReader::readString()
{
    const std::size_t line = myStream.line();
    const int escape = DtSexpReadEscapeChar ? *DtSexpReadEscapeChar : '"';
    const auto isPlain = [escape](char octet) { return octet != '"' && octet != escape; };
    myText.clear();
    myStream.get();
    while (true)
    {
        for (auto text = takeWhile(isPlain); !text.empty(); text = takeWhile(isPlain))
            myText += text;
        const int octet = myStream.get();
        if (octet == '"') break;
        if (octet == theEnd) report("the string that begins here does not end", line);
        myText += readEscape(static_cast<char>(octet));
    }
    return myStorage.makeAtom(DtlObj::Kind::string, std::string_view(myText));
}

/// What stands after the escape character, which is taken.
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

const DtlObj* DtlReader::readAtom()
{
    const auto isInside = [](char octet) { return !theAtomEnds.has(octet); };
    myText.clear();
    for (auto text = takeWhile(isInside); !text.empty(); text = takeWhile(isInside)) myText += text;
    if (!isNumber(myText)) return myStorage.intern(myText);
    return myStorage.makeAtom(DtlObj::Kind::fixnum, DtString(DtString(myText).toInt64()));
}
