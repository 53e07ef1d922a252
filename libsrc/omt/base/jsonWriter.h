// SPDX-License-Identifier: Apache-2.0
// JsonWriter appends JSON to a text, value by value.
#pragma once

#include <charconv>
#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>

namespace omt
{

/// Writes one JSON document, in the order of the calls.
///
/// Appends to a string that the caller owns and may keep for the next document, so that nothing is
/// allocated once it has grown. Calls must nest as JSON does; in an object each value follows its
/// key().
class JsonWriter
{
public:
    /// With an indentation of 0 everything stands on one line, without blanks.
    explicit JsonWriter(std::string& out, unsigned indentation = 0)
        : myOut(out), myIndentation(indentation)
    {
    }

    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }

    /// The key of the next value.
    void key(std::string_view name)
    {
        separate();
        quote(name);
        myOut += ':';
        if (myIndentation != 0) myOut += ' ';
        myFollowsKey = true;
    }

    /// A text in UTF-8. Controls are escaped, also those of Unicode and those that turn the
    /// direction of writing; each octet that is not UTF-8 becomes U+FFFD.
    void text(std::string_view value)
    {
        separate();
        quote(value);
    }
    template <std::integral Number>
        requires(!std::same_as<Number, bool>)
    void number(Number value)
    {
        char digits[24];
        raw({digits, std::to_chars(digits, digits + sizeof digits, value).ptr});
    }
    /// The shortest number that reads back exactly; NaN and the infinities, which JSON does not
    /// have, as the texts "NaN", "Infinity" and "-Infinity".
    void number(double value);
    void number(float value);
    void boolean(bool value) { raw(value ? "true" : "false"); }
    void null() { raw("null"); }
    /// A value that is JSON already.
    void raw(std::string_view value)
    {
        separate();
        myOut += value;
    }

    /// A key and its text.
    void property(std::string_view name, std::string_view value)
    {
        key(name);
        text(value);
    }
    template <std::integral Number>
    void property(std::string_view name, Number value)
    {
        key(name);
        if constexpr (std::same_as<Number, bool>)
            boolean(value);
        else
            number(value);
    }

    std::string& out() { return myOut; }

private:
    void begin(char bracket)
    {
        separate();
        myOut += bracket;
        ++myDepth;
        myHasBefore = false;
    }
    void end(char bracket)
    {
        --myDepth;
        if (myHasBefore) breakLine();
        myOut += bracket;
        myHasBefore = true;
    }
    /// What stands between the last value and the next.
    void separate()
    {
        if (myFollowsKey)
        {
            myFollowsKey = false;
            return;
        }
        if (myHasBefore) myOut += ',';
        if (myDepth != 0) breakLine();
        myHasBefore = true;
    }
    void breakLine()
    {
        if (myIndentation == 0) return;
        myOut += '\n';
        myOut.append(std::size_t{myDepth} * myIndentation, ' ');
    }
    void quote(std::string_view value);
    template <typename Number>
    void floatingPoint(Number value);

    std::string& myOut;
    unsigned myIndentation;
    std::uint32_t myDepth = 0;
    bool myHasBefore = false;
    bool myFollowsKey = false;
};

}  // namespace omt
