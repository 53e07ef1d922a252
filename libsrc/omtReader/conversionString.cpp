// SPDX-License-Identifier: Apache-2.0
#include "omtReader/conversionString.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>

namespace
{

constexpr std::size_t theLongestText = 63;

/// No double has more digits than this, so that a higher precision changes nothing.
constexpr unsigned theHighestPrecision = 1100;

// All are exact.
constexpr double thePowers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12};

/// Writes an integer with a point before its last digits.
DtString withPoint(bool isNegative, std::uint32_t number, int decimals)
{
    char digits[16];
    const char* const end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    const int count = static_cast<int>(end - digits);
    const int whole = std::max(count - decimals, 0);
    char text[32];
    char* at = text;
    const auto append = [&at](const char* from, int length) { at = std::copy_n(from, length, at); };
    if (isNegative) append("-", 1);
    append(whole > 0 ? digits : "0", std::max(whole, 1));
    if (decimals > 0) append(".", 1);
    append("000000000000", std::max(decimals - count, 0));
    append(digits + whole, count - whole);
    return std::string_view(text, static_cast<std::size_t>(at - text));
}

/// The text of a number of usual size, which most are, in a fraction of the time; nothing if it has
/// to be worked out digit by digit.
std::optional<DtString> textOfUsual(double number, unsigned precision)
{
    constexpr unsigned theMostDigits = 9;
    const int digits = static_cast<int>(std::clamp(precision, 1U, theMostDigits));
    const double size = std::abs(number);
    if (precision > theMostDigits || !(size >= 1e-3 && size < thePowers[digits])) return {};
    int decimals = digits - 1;
    if (size < 1)
        decimals += size >= 1e-1 ? 1 : size >= 1e-2 ? 2 : 3;
    else
        while (size >= thePowers[digits - decimals]) --decimals;
    // The product is off by less than the margin: outside of it, the way to round is certain.
    constexpr double theMargin = 1e-6;
    const double scaled = size * thePowers[decimals];
    auto rounded = static_cast<std::uint32_t>(scaled);
    const double fraction = scaled - rounded;
    if (std::abs(fraction - 0.5) < theMargin) return {};
    if (fraction > 0.5) ++rounded;
    if (rounded >= thePowers[digits]) return {};
    for (; decimals > 0 && rounded % 10 == 0; --decimals) rounded /= 10;
    return withPoint(number < 0, rounded, decimals);
}

DtString textOf(double number, int precision)
{
    if (auto text = textOfUsual(number, static_cast<unsigned>(precision))) return *std::move(text);
    // Room for every digit: what does not fit would not be written at all.
    char text[theHighestPrecision + 100];
    const unsigned digits = std::min(static_cast<unsigned>(precision), theHighestPrecision);
    const char* const end = std::to_chars(text, text + sizeof text, number,
                                          std::chars_format::general, static_cast<int>(digits))
                                .ptr;
    return std::string_view(text, std::min(static_cast<std::size_t>(end - text), theLongestText));
}

}  // namespace

DtConversionString::DtConversionString(double number, int precision)
    : DtString(textOf(number, precision))
{
}

DtConversionString::DtConversionString(float number, int precision)
    : DtConversionString(static_cast<double>(number), precision)
{
}

DtConversionString::DtConversionString(unsigned char number)
    : DtString(static_cast<unsigned int>(number))
{
}

DtConversionString::DtConversionString(long number) : DtString(number) {}
DtConversionString::DtConversionString(unsigned long number) : DtString(number) {}
DtConversionString::~DtConversionString() = default;

void DtConversionString::setString(double number, int precision)
{
    DtString::operator=(textOf(number, precision));
}

void DtConversionString::setString(float number, int precision)
{
    setString(static_cast<double>(number), precision);
}
