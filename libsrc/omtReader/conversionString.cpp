// SPDX-License-Identifier: Apache-2.0
#include "omtReader/conversionString.h"

#include <algorithm>
#include <charconv>

namespace
{

constexpr std::size_t theLongestText = 63;

/// No double has more digits than this, so that a higher precision changes nothing.
constexpr unsigned theHighestPrecision = 1100;

DtString textOf(double number, int precision)
{
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
