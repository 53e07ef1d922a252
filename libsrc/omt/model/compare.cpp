// SPDX-License-Identifier: Apache-2.0
#include "omt/model/compare.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <vector>

namespace omt
{

namespace
{

/// Takes the next word off a text; empty at its end.
std::string_view takeWord(std::string_view& text)
{
    constexpr std::string_view theBlanks = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(theBlanks), text.size()));
    const std::string_view word = text.substr(0, text.find_first_of(theBlanks));
    text.remove_prefix(word.size());
    return word;
}

bool isSilent(const List<Text>& texts)
{
    return texts.empty() || (texts.size() == 1 && !saysSomething(texts[0].view()));
}

std::vector<std::string_view> sortedTexts(const List<Text>& texts)
{
    std::vector<std::string_view> sorted;
    for (const Text& text : texts) sorted.push_back(text);
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

/// Several texts are compared without their order, numbers of an enumerator with it: the first is
/// the one that is written.
bool isSameTexts(const List<Text>& left, const List<Text>& right, Kind kind)
{
    if (left.size() != right.size()) return isSilent(left) && isSilent(right);
    if (kind == Kind::enumerator)
        return std::equal(left.begin(), left.end(), right.begin(),
                          [](const Text& a, const Text& b)
                          { return a == b || comparableNumber(a) == comparableNumber(b); });
    return std::equal(left.begin(), left.end(), right.begin(),
                      [](const Text& a, const Text& b) { return isSameText(a, b); }) ||
           sortedTexts(left) == sortedTexts(right);
}

/// A sentence without blanks and its full stop, which documents set as they like:
/// `[-2^7, 2^7 - 1].` and `[-2^7,2^7-1]`.
std::string withoutBlanks(std::string_view sentence)
{
    std::string rest;
    for (const char c : sentence)
        if (c != ' ' && c != '\t' && c != '\r' && c != '\n') rest += c;
    if (!rest.empty() && rest.back() == '.') rest.pop_back();
    return rest;
}

/// One meaning of the words that editions have for the two states of a switch.
std::string_view switchState(std::string_view value)
{
    if (value == "1" || value == "Enabled" || value == "True") return "true";
    if (value == "0" || value == "Disabled" || value == "False") return "false";
    return value;
}

/// Dimensions of a class come together from all modules, and so are parts of it.
bool isPart(Kind kind, const Row& row)
{
    return row.form == Row::Form::parts || (kind == Kind::objectClass && row.someTexts) ||
           (kind == Kind::interactionClass && row.someTexts);
}

}  // namespace

bool saysSomething(std::string_view text)
{
    return !(text.empty() || text == "NA" || text == "N/A");
}

bool saysSomething(const Definition& definition, Kind kind)
{
    for (const Row& row : rowsOf(kind))
    {
        if (row.bearing != Bearing::behaviour || isPart(kind, row)) continue;
        if (row.oneText == &Definition::name) continue;
        if (row.oneText && saysSomething((definition.*row.oneText).view())) return true;
        if (row.someTexts && !isSilent(definition.*row.someTexts)) return true;
    }
    return false;
}

bool isSameText(std::string_view left, std::string_view right)
{
    if (left == right) return true;
    while (true)
    {
        const std::string_view word = takeWord(left);
        if (word != takeWord(right)) return false;
        if (word.empty()) return true;
    }
}

std::string comparableNumber(std::string_view text)
{
    const bool isNegative = text.starts_with('-');
    std::string_view digits = text;
    if (isNegative || text.starts_with('+')) digits.remove_prefix(1);
    const bool isHexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
    if (isHexadecimal) digits.remove_prefix(2);
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number,
                                              isHexadecimal ? 16 : 10);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::string(text);
    return (isNegative && number != 0 ? "-" : "") + std::to_string(number);
}

std::string cutText(std::string_view text, std::size_t most)
{
    if (text.size() <= most) return std::string(text);
    std::size_t end = most;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
    return std::string(text.substr(0, end)) + "...";
}

std::string valueOf(const Definition& definition, const Row& row)
{
    if (row.oneText) return cutText(definition.*row.oneText);
    constexpr std::size_t theEnough = 100;
    std::string value;
    if (!row.someTexts) return value;
    for (const Text& text : definition.*row.someTexts)
    {
        if (!value.empty()) value += ", ";
        if (value.size() > theEnough) return value + "...";
        value += cutText(text);
    }
    return value;
}

bool isSame(const Definition& left, const Definition& right, Kind kind, const Row& row)
{
    if (row.someTexts) return isSameTexts(left.*row.someTexts, right.*row.someTexts, kind);
    const std::string_view leftText = left.*row.oneText;
    const std::string_view rightText = right.*row.oneText;
    if (leftText == rightText) return true;
    if (kind == Kind::switchSetting) return switchState(leftText) == switchState(rightText);
    if (!saysSomething(leftText) || !saysSomething(rightText))
        return saysSomething(leftText) == saysSomething(rightText);
    if (kind == Kind::basicData) return withoutBlanks(leftText) == withoutBlanks(rightText);
    return isSameText(leftText, rightText);
}

bool isSameNumber(const BasicData& left, const BasicData& right)
{
    const auto says = [](const BasicData& data, std::string_view word)
    {
        const auto isOne = [](char a, char b) { return (a | 0x20) == (b | 0x20); };
        for (const std::string_view text : {data.interpretation.view(), data.encoding.view()})
            if (std::search(text.begin(), text.end(), word.begin(), word.end(), isOne) !=
                text.end())
                return true;
        return false;
    };
    constexpr std::string_view theWords[] = {"float", "unsigned", "octet", "[0,"};
    return isSameText(left.size, right.size) && isSameText(left.endian, right.endian) &&
           std::all_of(std::begin(theWords), std::end(theWords),
                       [&](std::string_view word)
                       { return says(left, word) == says(right, word); });
}

bool isCompared(Kind kind, const Row& row, Edition left, Edition right)
{
    if (row.bearing != Bearing::behaviour || isPart(kind, row)) return false;
    // The value of a switch has no word of its own in 1516-2000.
    if (kind == Kind::switchSetting || left == right) return true;
    return !row.words.in(left).empty() && !row.words.in(right).empty();
}

}  // namespace omt
