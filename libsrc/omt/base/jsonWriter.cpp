// SPDX-License-Identifier: Apache-2.0
#include "omt/base/jsonWriter.h"

#include "omt/base/character.h"

#include <array>
#include <cmath>

namespace omt
{

namespace
{

/// Octets that stand for themselves, whatever is around them.
constexpr std::array<bool, 256> thePlain = []
{
    std::array<bool, 256> plain{};
    for (std::size_t c = 0x20; c < 0x7F; ++c) plain[c] = c != '"' && c != '\\';
    return plain;
}();

/// Escapes a character below U+10000.
void escape(std::uint32_t code, std::string& out)
{
    constexpr std::string_view theLetters = "\"\\\b\f\n\r\t";
    constexpr std::string_view theEscapes = "\"\\bfnrt";
    const std::size_t at =
        code < 0x80 ? theLetters.find(static_cast<char>(code)) : std::string_view::npos;
    out += '\\';
    if (at != std::string_view::npos)
    {
        out += theEscapes[at];
        return;
    }
    out += 'u';
    for (unsigned shift = 16; shift > 0; shift -= 4)
        out += "0123456789abcdef"[code >> (shift - 4) & 0xFU];
}

}  // namespace

void JsonWriter::quote(std::string_view value)
{
    myOut += '"';
    while (!value.empty())
    {
        std::size_t plain = 0;
        while (plain < value.size() && thePlain[static_cast<unsigned char>(value[plain])]) ++plain;
        myOut.append(value.substr(0, plain));
        value.remove_prefix(plain);
        if (value.empty()) break;
        const Character first = firstCharacter(value);
        if (first.octets == 0)
            myOut += "\xEF\xBF\xBD";
        else if (first.octets == 1 || isControl(first.code))
            escape(first.code, myOut);
        else
            myOut.append(value.substr(0, first.octets));
        value.remove_prefix(first.octets == 0 ? 1 : first.octets);
    }
    myOut += '"';
}

template <typename Number>
void JsonWriter::floatingPoint(Number value)
{
    if (std::isnan(value)) return raw("\"NaN\"");
    if (std::isinf(value)) return raw(value < 0 ? "\"-Infinity\"" : "\"Infinity\"");
    char digits[32];
    raw({digits, std::to_chars(digits, digits + sizeof digits, value).ptr});
}

void JsonWriter::number(double value)
{
    floatingPoint(value);
}

void JsonWriter::number(float value)
{
    floatingPoint(value);
}

}  // namespace omt
