// SPDX-License-Identifier: Apache-2.0
#include "octetForms.h"

#include "errors.h"
#include "octetDump.h"
#include "plainText.h"

#include <algorithm>

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
    Octets listed();

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
        const bool isPrefix = here() == 'b' && isAmong(next(), "'\"");
        const bool isLineEnd = here() == '\\' && isAmong(next(), "\r\n");
        if (isPrefix || isLineEnd || isBlank(here()) || isAmong(here(), "'\","))
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

Octets OctetText::listed()
{
    cutList();
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

Octets readForm(std::string_view text)
{
    if (std::optional<Octets> octets = readDump(text)) return std::move(*octets);
    OctetText form(text);
    form.refuseWhatIsNoText();
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
        throw InputError(
            "octets: " + (isOneLine ? "" : "line " + std::to_string(lines + 1) + ", ") +
            "character " + std::to_string(column + 1) + ": " + refusal.why);
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
