// SPDX-License-Identifier: Apache-2.0
// Reading numbers and words out of the short texts of a model, by the rules of a C++ text stream.
#pragma once

#include "util/dtString.h"

#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <locale>
#include <sstream>

namespace omtreader
{

/// A text stream over a short text. White space before a number or word is skipped; what
/// cannot be read leaves 0, and from then on nothing more is found.
class TextScan
{
public:
    explicit TextScan(const DtString& text) : myStream(text.str())
    {
        myStream.imbue(std::locale::classic());
    }

    std::int32_t integer()
    {
        std::int32_t value = 0;
        myStream >> value;
        return value;
    }

    DtString word()
    {
        std::string text;
        myStream >> text;
        return text;
    }

    /// Whether this character comes next.
    bool isAt(char c) { return myStream.peek() == std::char_traits<char>::to_int_type(c); }

    void skipBlanks() { myStream >> std::ws; }

    /// Steps over this character if it comes next.
    bool takes(char c)
    {
        if (!isAt(c)) return false;
        myStream.get();
        return true;
    }

private:
    std::istringstream myStream;
};

/// The integer at the start of a text by the C rule for base 0: "0x" for hexadecimal, a leading "0"
/// for octal, else decimal. Beyond 32 bits it is the nearest limit, without a number 0.
inline std::int32_t integerOfAnyBase(const DtString& text)
{
    using Limits = std::numeric_limits<std::int32_t>;
    const long value = std::strtol(text.c_str(), nullptr, 0);
    if (value < Limits::min()) return Limits::min();
    if (value > Limits::max()) return Limits::max();
    return static_cast<std::int32_t>(value);
}

/// The "C" locale, which lives as long as the process.
inline locale_t plainLocale()
{
    static const locale_t theLocale = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return theLocale;
}

/// The number at the start of a text by the rule of C's atoi on this platform: one beyond 32 bits
/// wraps, so that an enumerator of 4294967295 stands for the octets FF FF FF FF.
inline std::int32_t integerAsAtoi(const DtString& text)
{
    return static_cast<std::int32_t>(::strtol_l(text.c_str(), nullptr, 10, plainLocale()));
}

/// The number at the start of a text by the rule of C's atof, which knows hexadecimal ones too.
inline double numberAsAtof(const DtString& text)
{
    return ::strtod_l(text.c_str(), nullptr, plainLocale());
}

}  // namespace omtreader
