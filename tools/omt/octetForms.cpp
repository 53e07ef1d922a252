// SPDX-License-Identifier: Apache-2.0
#include "octetForms.h"

#include "errors.h"
#include "octetDump.h"
#include "plainText.h"

#include <algorithm>
#include <cctype>

namespace
{

using Octets = std::vector<std::uint8_t>;

constexpr std::string_view theMarks = ",:-";

bool isAmong(char c, std::string_view characters)
{
    return characters.find(c) != std::string_view::npos;
}

bool isBlank(char c)
{
    return isAmong(c, theBlanks);
}

/// Goes through a text that is no dump. What it refuses it throws as OctetRefusal.
class OctetText
{
public:
    explicit OctetText(std::string_view text) : myText(text) {}

    void refuseWhatIsNoText();
    Octets plain();
    Octets escaped();
    Octets literal();
    Octets listed();
    Octets decimals();

private:
    bool isAtEnd() const { return myAt >= myText.size(); }
    char here() const { return myText[myAt]; }
    char next() const { return myAt + 1 < myText.size() ? myText[myAt + 1] : '\n'; }
    bool begins(std::string_view word) const { return myText.substr(myAt, word.size()) == word; }
    [[noreturn]] void refuse(const std::string& why) const { throw OctetRefusal{myAt, why}; }
    [[noreturn]] void refuseHere(const std::string& why) const
    {
        refuse('"' + visible(std::string_view(&myText[myAt], 1)) + "\" " + why);
    }

    void readOctet();
    void passMark();
    void passBlanks();
    void passColumn();
    void passTo(std::string_view end);
    void cutList();
    void readNumber();
    void readDigits();
    int readDecimal();

    std::string_view myText;
    std::size_t myAt = 0;
    Octets myOctets;
    std::size_t myLineStart = 0;  // among the octets
    bool myHasMark = false;
    bool myIsLong = false;
    bool myIsInList = false;
};

/// Octets that were given as they are; in those, braces and quotes would mislead.
void OctetText::refuseWhatIsNoText()
{
    for (myAt = 0; !isAtEnd(); ++myAt)
        if (static_cast<unsigned char>(here()) < 0x20U && !isBlank(here()))
            refuseHere("is no hexadecimal digit; --file takes octets as they are");
    myAt = 0;
}

// Digits ----------------------------------------------------------------------------------------

void OctetText::readOctet()
{
    const int high = hexadecimalDigit(here());
    if (high < 0) refuseHere("is no hexadecimal digit");
    if (isBlank(next()) || isAmong(next(), theMarks))
        refuse("an odd number of digits; an octet has two");
    ++myAt;
    const int low = hexadecimalDigit(here());
    if (low < 0) refuseHere("is no hexadecimal digit");
    ++myAt;
    myOctets.push_back(static_cast<std::uint8_t>(high << 4 | low));
    myHasMark = false;
}

void OctetText::passMark()
{
    if (myHasMark || myOctets.empty()) refuseHere("has no octet before it");
    if (here() == ':' && isBlank(next())) refuseHere("ends an offset, and these lines are no dump");
    myHasMark = true;
    ++myAt;
}

void OctetText::passBlanks()
{
    std::size_t width = 0;
    for (; !isAtEnd() && isBlank(here()); ++myAt)
    {
        width += here() == '\t' ? 8 : 1;
        if (here() == '\n') myLineStart = myOctets.size();
    }
    if (width > 1) passColumn();
}

/// The text of the octets on a line may stand beside them.
void OctetText::passColumn()
{
    constexpr std::size_t theMostOctets = 256;
    const std::size_t count = myOctets.size() - myLineStart;
    if (count == 0 || count > theMostOctets) return;
    const std::string_view line =
        myText.substr(myAt, std::min(myText.find('\n', myAt), myText.size()) - myAt);
    if (line.size() > 4 * theMostOctets) return;
    const Octets octets(myOctets.end() - static_cast<std::ptrdiff_t>(count), myOctets.end());
    if (!isTextOf(trimmed(line), octets)) return;
    const bool mayBeOctets = std::all_of(
        line.begin(), line.end(), [](char c) { return isBlank(c) || hexadecimalDigit(c) >= 0; });
    if (mayBeOctets) refuse("this may be octets, or the text of those before it");
    myAt += line.size();
}

Octets OctetText::plain()
{
    while (!isAtEnd())
        if (isBlank(here()))
            passBlanks();
        else if (isAmong(here(), theMarks))
            passMark();
        else
            readOctet();
    return std::move(myOctets);
}

// \x01 ------------------------------------------------------------------------------------------

Octets OctetText::escaped()
{
    while (!isAtEnd())
    {
        const bool isLineEnd = here() == '\\' && isAmong(next(), "\r\n");
        if (isLineEnd || isBlank(here()) || isAmong(here(), "'\","))
            ++myAt;
        else if (begins("\\x"))
        {
            myAt += 2;
            if (isAtEnd()) refuse("the digits are missing");
            readOctet();
        }
        else
            refuseHere("stands among octets such as \\x01; write it like them");
    }
    return std::move(myOctets);
}

/// b'A\x01' of Python, where letters are octets too; readForm() has seen how it begins.
Octets OctetText::literal()
{
    constexpr std::string_view theLetters = "nrt\\'\"";
    constexpr std::string_view theirOctets = "\n\r\t\\'\"";
    myAt = myText.find_first_of("'\"");
    const char quote = here();
    for (++myAt; !isAtEnd() && here() != quote;)
        if (begins("\\x"))
        {
            myAt += 2;
            if (isAtEnd()) refuse("the digits are missing");
            readOctet();
        }
        else
        {
            const std::size_t letter =
                here() == '\\' ? theLetters.find(next()) : std::string_view::npos;
            if (here() == '\\' && letter == std::string_view::npos)
                refuse("no escape that Python prints");
            const char octet = here() == '\\' ? theirOctets[letter] : here();
            myAt += here() == '\\' ? 2 : 1;
            myOctets.push_back(static_cast<std::uint8_t>(octet));
        }
    if (isAtEnd()) refuse("the quote does not end");
    ++myAt;
    const std::string_view after = trimmed(myText.substr(myAt));
    if (!after.empty() && after != ")") refuse("the quote has ended before this");
    return std::move(myOctets);
}

// 0x01 ------------------------------------------------------------------------------------------

/// Leaves what stands in the braces or brackets of a list.
void OctetText::cutList()
{
    const bool hasBraces = myText.find('{') != std::string_view::npos;
    const std::size_t open = myText.find(hasBraces ? '{' : '[');
    if (open == std::string_view::npos) return;
    const std::size_t close = myText.rfind(hasBraces ? '}' : ']');
    const std::string_view before = trimmed(myText.substr(0, open));
    if (!before.empty() && !isAmong(before.back(), "=](")) refuse("a list begins after this");
    myAt = open + 1;
    myIsInList = true;
    if (close == std::string_view::npos || close < open) refuse("the list does not end");
    const std::string_view after = trimmed(myText.substr(close + 1));
    myText = myText.substr(0, close);
    if (after.empty() || isAmong(after.front(), ";)")) return;
    myAt = close + 1;
    refuse("the list has ended before this");
}

void OctetText::passTo(std::string_view end)
{
    const std::size_t found = myText.find(end, myAt + 2);
    if (found == std::string_view::npos) refuse("the comment does not end");
    myAt = found + end.size();
}

void OctetText::readDigits()
{
    const std::size_t begin = myAt;
    while (!isAtEnd() && hexadecimalDigit(here()) >= 0) ++myAt;
    const std::size_t count = myAt - begin;
    const bool isWhole = isAtEnd() || isBlank(here()) || isAmong(here(), ",}/");
    if (!isWhole) refuseHere("is no hexadecimal digit");
    myAt = begin;
    if (count == 0) refuse("the digits are missing");
    if (count > 2 && count % 2 != 0) refuse("an odd number of digits; an octet has two");
    if (myIsLong || (count > 2 && !myOctets.empty()))
        refuse("numbers of several octets; which of these comes first is not said");
    myIsLong = count > 2;
    if (count == 1)
        myOctets.push_back(static_cast<std::uint8_t>(hexadecimalDigit(myText[myAt++])));
    else
        while (myAt < begin + count) readOctet();
}

void OctetText::readNumber()
{
    if (begins("0x") || begins("0X"))
    {
        myAt += 2;
        return readDigits();
    }
    const bool isDigit = myIsInList && here() >= '0' && here() <= '9';
    if (isDigit && (isBlank(next()) || isAmong(next(), ",}"))) return readDigits();
    refuseHere("begins a number without 0x, which may be decimal");
}

// 1 -2 --------------------------------------------------------------------------------------------

int OctetText::readDecimal()
{
    const std::size_t begin = myAt;
    const bool isNegative = here() == '-';
    if (isNegative) ++myAt;
    int number = 0;
    const std::size_t first = myAt;
    for (; !isAtEnd() && here() >= '0' && here() <= '9'; ++myAt)
        number = std::min(10 * number + (here() - '0'), 1000);
    if (!isAtEnd() && !isBlank(here()) && here() != ',') refuseHere("is no decimal digit");
    const bool isPadded = myAt > first + 1 && myText[first] == '0';
    const bool isOctet = myAt > first && !isPadded && number <= (isNegative ? 128 : 255);
    const std::string_view shown = myText.substr(begin, myAt - begin);
    if (!isOctet) myAt = begin;
    if (!isOctet) refuse('"' + visible(shown) + "\" is no octet as decimal lists have them");
    return isNegative ? -number : number;
}

/// What Java and Python print of octets. A number with a sign, or of three digits, says that all of
/// them are decimal.
Octets OctetText::decimals()
{
    const std::size_t begin = myAt;
    int least = 0;
    int greatest = 0;
    while (!isAtEnd())
        if (isBlank(here()) || here() == ',')
            ++myAt;
        else
        {
            const int number = readDecimal();
            least = std::min(least, number);
            greatest = std::max(greatest, number);
            myOctets.push_back(static_cast<std::uint8_t>(number));
        }
    myAt = begin;
    if (least < 0 && greatest > 127)
        refuse("octets are numbers from -128 to 127 or from 0 to 255, and here is " +
               std::to_string(least) + " as well as " + std::to_string(greatest));
    if (least == 0 && greatest > 9 && greatest < 100)
        refuse("these numbers may be decimal or hexadecimal; write hexadecimal ones with 0x");
    return std::move(myOctets);
}

Octets OctetText::listed()
{
    cutList();
    const std::string_view list = myText.substr(myAt);
    const bool isDecimal =
        myIsInList && list.find_first_not_of(" \t\r\n,-0123456789") == std::string_view::npos;
    if (isDecimal) return decimals();
    while (!isAtEnd())
        if (isBlank(here()) || isAmong(here(), ",{}"))
            ++myAt;
        else if (begins("/*"))
            passTo("*/");
        else if (begins("//"))
            passTo("\n");
        else
            readNumber();
    return std::move(myOctets);
}

/// Whether a text that is no hexadecimal may be octets in base64.
bool isBase64(std::string_view text)
{
    const std::string_view all = trimmed(text);
    std::size_t count = 0;
    for (const char c : all)
        if (std::isalnum(static_cast<unsigned char>(c)) != 0 || isAmong(c, "+/="))
            ++count;
        else if (!isAmong(c, "\r\n"))
            return false;
    const std::size_t end = all.find_last_not_of('=') + 1;
    return count >= 4 && count % 4 == 0 && all.find('=') >= end && all.size() - end < 3;
}

Octets readForm(std::string_view text)
{
    if (std::optional<Octets> octets = readDump(text)) return std::move(*octets);
    OctetText form(text);
    form.refuseWhatIsNoText();
    const std::string_view start = trimmed(text).substr(0, 12);
    for (const std::string_view prefix : {"b'", "b\"", "bytearray(b'", "bytearray(b\""})
        if (start.substr(0, prefix.size()) == prefix) return form.literal();
    if (text.find("\\x") != std::string_view::npos) return form.escaped();
    const bool isList = text.find_first_of("{[") != std::string_view::npos ||
                        text.find("0x") != std::string_view::npos ||
                        text.find("0X") != std::string_view::npos;
    return isList ? form.listed() : form.plain();
}

}  // namespace

std::vector<std::uint8_t> readOctets(std::string_view text)
{
    try
    {
        return readForm(text);
    }
    catch (const OctetRefusal& refusal)
    {
        const std::string_view before = text.substr(0, refusal.at);
        const auto lines = std::count(before.begin(), before.end(), '\n');
        const std::size_t column = refusal.at - (before.rfind('\n') + 1);
        const bool isOneLine = trimmed(text).find('\n') == std::string_view::npos;
        const bool isBase =
            refusal.why.find("is no hexadecimal digit") != std::string::npos && isBase64(text);
        throw InputError(
            "octets: " + (isOneLine ? "" : "line " + std::to_string(lines + 1) + ", ") +
            "character " + std::to_string(column + 1) + ": " + refusal.why +
            (isBase ? "; if this is base64, `base64 -d` and --file - take it" : ""));
    }
}

std::string hexadecimalText(const std::uint8_t* octets, std::size_t count)
{
    constexpr char theDigits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(3 * count);
    for (std::size_t i = 0; i < count; ++i)
    {
        if (i > 0) text += ' ';
        text += theDigits[octets[i] >> 4];
        text += theDigits[octets[i] & 0xF];
    }
    return text;
}
