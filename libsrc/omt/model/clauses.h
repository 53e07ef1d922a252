// SPDX-License-Identifier: Apache-2.0
// Clauses splits a document of HLA 1.3 into its clauses, strings, symbols, notes and comments.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// A piece of the text. What a clause holds follows it, up to the index `next`.
struct Clause
{
    enum class Form : std::uint8_t
    {
        /// `(Name "x")`. Its text is all of it.
        list,
        /// `"x"`, its text without the quotes and with its escapes.
        string,
        /// Anything between blanks, numbers included.
        symbol,
        /// `[6, 7]`, without the brackets.
        notes,
        /// From a semicolon to the end of the line, without the semicolons.
        comment
    };

    Form form = Form::symbol;
    /// From 1; where it begins.
    std::uint32_t line = 0;
    std::uint32_t next = 0;
    std::string_view text;
};

/// All clauses of a document, one after the other in the order of the text. Nesting costs neither
/// recursion nor memory beyond an index for each level.
class Clauses
{
public:
    /// Takes time by the length of the text, which must live as long as this.
    explicit Clauses(std::string_view text);

    /// What is badly formed, and on which line; empty where nothing is.
    const std::string& fault() const { return myFault; }
    std::uint32_t faultLine() const { return myFaultLine; }

    std::uint32_t size() const { return static_cast<std::uint32_t>(myClauses.size()); }
    const Clause& operator[](std::uint32_t index) const { return myClauses[index]; }

private:
    void addOne();
    void add(Clause::Form form, std::size_t begin, std::size_t end);
    void closeList();
    void addString();
    void addNotes();
    void addComment();
    void addSymbol();
    void fail(std::string fault, std::uint32_t line);

    std::string_view myText;
    std::size_t myAt = 0;
    std::uint32_t myLine = 1;
    std::vector<Clause> myClauses;
    std::vector<std::uint32_t> myOpen;
    std::string myFault;
    std::uint32_t myFaultLine = 0;
};

/// A string without its escapes: \" \' \\ \n \r \t and up to three octal digits, a number below 256
/// standing for the character of Latin-1. Any other backslash is kept.
std::string withoutEscapes(std::string_view text);

}  // namespace omt
