// SPDX-License-Identifier: Apache-2.0
// The string value of every interface of this library.
#pragma once

#include "util/dtExport.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A text of any octets, copied by value.
///
/// A null C string is the empty text. Comparison is exact, octet by octet, and tells upper from
/// lower case. Nothing here depends on the process's locale.
class OMTREADER_EXPORT DtString
{
public:
    DtString() = default;
    DtString(const char* text) : myText(text ? text : "") {}
    DtString(std::string text) : myText(std::move(text)) {}
    DtString(std::string_view text) : myText(text) {}

    /// The number in decimal.
    explicit DtString(int number);
    explicit DtString(unsigned int number);
    explicit DtString(long number);
    explicit DtString(unsigned long number);
    explicit DtString(long long number);
    explicit DtString(unsigned long long number);

    /// The shortest text that reads back as exactly this number; "inf", "-inf" and "nan" beyond.
    explicit DtString(double number);

    /// The empty text, alive as long as the process.
    static const DtString& nullString();

    /// The octets with a zero after them; valid until this text is changed.
    const char* c_str() const { return myText.c_str(); }
    std::string_view view() const { return myText; }
    const std::string& str() const { return myText; }

    bool empty() const { return myText.empty(); }
    /// Length in octets.
    std::size_t length() const { return myText.size(); }
    /// The octet at a position counted from 0; a zero octet for any position outside the text.
    char charAt(std::ptrdiff_t position) const;

    bool contains(std::string_view part) const { return myText.find(part) != std::string::npos; }
    bool startsWith(std::string_view head) const;
    bool endsWith(std::string_view tail) const;

    /// The value of the decimal integer at the start, after blanks and with an optional sign.
    ///
    /// Reading stops at the first character that does not fit; without a digit the result is 0,
    /// beyond the range it is the nearest limit. `whole` becomes true only when the text is a
    /// number in range and nothing else.
    std::int32_t toInt(bool* whole = nullptr) const;
    std::int64_t toInt64(bool* whole = nullptr) const;
    /// As toInt; a negative number is no number, and so 0.
    std::uint32_t toUInt(bool* whole = nullptr) const;
    /// As toInt, for a decimal floating-point number; beyond the range it is an infinity or zero.
    double toDouble(bool* whole = nullptr) const;
    float toFloat(bool* whole = nullptr) const;

    /// The pieces between any of the separators, empty ones left out.
    std::vector<DtString> tokens(std::string_view separators = " \t\r\n") const;
    /// The pieces between single separators, empty ones kept; an empty text is one empty piece.
    std::vector<DtString> sections(char separator) const;

    DtString& operator+=(const DtString& tail);
    DtString& operator+=(const char* tail);
    DtString& operator+=(char tail);

    friend DtString operator+(const DtString& head, const DtString& tail)
    {
        return DtString(head) += tail;
    }
    friend DtString operator+(const DtString& head, const char* tail)
    {
        return DtString(head) += tail;
    }
    friend DtString operator+(const char* head, const DtString& tail)
    {
        return DtString(head) += tail;
    }

    friend bool operator==(const DtString& a, const DtString& b) { return a.myText == b.myText; }
    friend bool operator==(const DtString& a, const char* b) { return a.myText == (b ? b : ""); }
    friend bool operator==(const char* a, const DtString& b) { return b == a; }
    friend bool operator!=(const DtString& a, const DtString& b) { return !(a == b); }
    friend bool operator!=(const DtString& a, const char* b) { return !(a == b); }
    friend bool operator!=(const char* a, const DtString& b) { return !(b == a); }
    friend bool operator<(const DtString& a, const DtString& b) { return a.myText < b.myText; }

private:
    std::string myText;
};

OMTREADER_EXPORT std::ostream& operator<<(std::ostream& stream, const DtString& text);

/// So that a text may be the key of an unordered container.
template <>
struct std::hash<DtString>
{
    std::size_t operator()(const DtString& text) const noexcept
    {
        return std::hash<std::string_view>()(text.view());
    }
};
