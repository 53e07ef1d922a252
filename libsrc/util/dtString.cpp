// SPDX-License-Identifier: Apache-2.0
// Numbers to text and back without the locale, and the cutting of texts.
#include "util/dtString.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <ostream>

namespace
{

template <typename Number>
std::string textOf(Number number)
{
    char text[40];  // the longest, a double such as -2.2250738585072014e-308, takes 24
    return std::string(text, std::to_chars(text, text + sizeof text, number).ptr);
}

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// The text from its first character that can belong to a number: blanks and one "+" are skipped.
std::string_view numberIn(std::string_view text)
{
    std::size_t start = 0;
    while (start < text.size() && isBlank(text[start])) ++start;
    // from_chars takes "-" but no "+"; a "+-" is no number, so the "+" stays before it.
    if (start + 1 < text.size() && text[start] == '+' && text[start + 1] != '-') ++start;
    return text.substr(start);
}

template <typename Number, typename Limit>
Number readNumber(std::string_view text, bool* whole, Limit limitOf)
{
    const std::string_view number = numberIn(text);
    const char* const end = number.data() + number.size();
    Number value = 0;
    const auto [stop, error] = std::from_chars(number.data(), end, value);
    if (whole) *whole = error == std::errc() && stop == end;
    if (error == std::errc::result_out_of_range)
        return static_cast<Number>(
            limitOf(number.substr(0, static_cast<std::size_t>(stop - number.data()))));
    return error == std::errc() ? value : Number(0);
}

template <typename Integer>
Integer readInteger(std::string_view text, bool* whole)
{
    return readNumber<Integer>(text, whole,
                               [](std::string_view number)
                               {
                                   using Limits = std::numeric_limits<Integer>;
                                   return number.front() == '-' ? Limits::min() : Limits::max();
                               });
}

/// Whether a decimal number that no double holds is too large rather than too small: whether its
/// first digit that is not zero stands, with the exponent counted in, before the point.
bool isHuge(std::string_view number)
{
    const std::size_t e = number.find_first_of("eE");
    const std::string_view mantissa = number.substr(0, e);
    const std::size_t first = mantissa.find_first_of("123456789");
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::int64_t exponent =
        e == std::string_view::npos ? 0 : readInteger<std::int32_t>(number.substr(e + 1), nullptr);
    return static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first) + exponent > 0;
}

double doubleLimit(std::string_view number)
{
    const double size = isHuge(number) ? std::numeric_limits<double>::infinity() : 0.0;
    return number.front() == '-' ? -size : size;
}

}  // namespace

DtString::DtString(int number) : myText(textOf(number)) {}
DtString::DtString(unsigned int number) : myText(textOf(number)) {}
DtString::DtString(long number) : myText(textOf(number)) {}
DtString::DtString(unsigned long number) : myText(textOf(number)) {}
DtString::DtString(long long number) : myText(textOf(number)) {}
DtString::DtString(unsigned long long number) : myText(textOf(number)) {}
DtString::DtString(double number) : myText(textOf(number)) {}

const DtString& DtString::nullString()
{
    static const DtString* const theNullString = new DtString;  // outlives every other static
    return *theNullString;
}

char DtString::charAt(std::ptrdiff_t position) const
{
    const bool isInside = position >= 0 && static_cast<std::size_t>(position) < myText.size();
    return isInside ? myText[static_cast<std::size_t>(position)] : '\0';
}

bool DtString::startsWith(std::string_view head) const
{
    return view().substr(0, head.size()) == head;
}

bool DtString::endsWith(std::string_view tail) const
{
    return myText.size() >= tail.size() && view().substr(myText.size() - tail.size()) == tail;
}

std::int32_t DtString::toInt(bool* whole) const
{
    return readInteger<std::int32_t>(myText, whole);
}

std::int64_t DtString::toInt64(bool* whole) const
{
    return readInteger<std::int64_t>(myText, whole);
}

std::uint32_t DtString::toUInt(bool* whole) const
{
    return readInteger<std::uint32_t>(myText, whole);
}

float DtString::toFloat(bool* whole) const
{
    return readNumber<float>(myText, whole, doubleLimit);
}

double DtString::toDouble(bool* whole) const
{
    return readNumber<double>(myText, whole, doubleLimit);
}

std::vector<DtString> DtString::tokens(std::string_view separators) const
{
    std::vector<DtString> pieces;
    const std::string_view text = myText;
    for (std::size_t start = text.find_first_not_of(separators); start != std::string_view::npos;)
    {
        const std::size_t end = text.find_first_of(separators, start);
        pieces.emplace_back(text.substr(start, end - start));
        start = text.find_first_not_of(separators, end);
    }
    return pieces;
}

std::vector<DtString> DtString::sections(char separator) const
{
    std::vector<DtString> pieces;
    const std::string_view text = myText;
    std::size_t start = 0;
    for (std::size_t end = 0; end != std::string_view::npos; start = end + 1)
    {
        end = text.find(separator, start);
        pieces.emplace_back(text.substr(start, end - start));
    }
    return pieces;
}

DtString& DtString::operator+=(const DtString& tail)
{
    myText += tail.myText;
    return *this;
}

DtString& DtString::operator+=(const char* tail)
{
    if (tail) myText += tail;
    return *this;
}

DtString& DtString::operator+=(char tail)
{
    myText += tail;
    return *this;
}

std::ostream& operator<<(std::ostream& stream, const DtString& text)
{
    return stream << text.view();
}
