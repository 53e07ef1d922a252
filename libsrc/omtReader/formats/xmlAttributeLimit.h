// SPDX-License-Identifier: Apache-2.0
// Looks for elements with too many XML attributes before libxml2 gets to see them.
#pragma once

#include <cstddef>
#include <string_view>

namespace omtreader
{

/// Follows a text of XML as far as it takes to count the attributes of each element.
///
/// libxml2 compares every attribute of an element with all before it. No model has a reason for
/// more than a few, so an element with very many is refused.
///
/// Exact for every encoding in which ASCII characters are themselves, or themselves among zeros.
class XmlAttributeLimit
{
public:
    static constexpr int theMost = 1000;

    /// Takes the next piece of the text. False from the first element with more attributes on.
    bool accepts(std::string_view piece)
    {
        for (const char c : piece)
            if (c != '\0') step(c);
        return !myIsExceeded;
    }

    /// Where the reading stands: after the last piece, or where there were too many attributes.
    int line() const { return myLine; }
    int column() const { return myColumn; }

private:
    enum class State
    {
        content,
        open,         // after "<"
        exclamation,  // after "<!"
        startTag,
        endTag,
        comment,
        characters,  // of a CDATA section
        instruction,
        declaration
    };

    void step(char c)
    {
        if (myIsExceeded) return;
        ++myColumn;
        ++mySince;
        if (c == '\n')
        {
            ++myLine;
            myColumn = 0;
        }
        if (myQuote != '\0')
        {
            if (c == myQuote) myQuote = '\0';
            // An entity may hold elements.
            if (c == '=' && myState == State::declaration) myIsExceeded = ++myCount > theMost;
        }
        else
            stepUnquoted(c);
        myBeforeLast = myLast;
        myLast = c;
    }

    void stepUnquoted(char c)
    {
        switch (myState)
        {
            case State::content:
                if (c == '<') myState = State::open;
                if (c == ']' && myIsInSubset) leaveSubset();
                return;
            case State::open:
                enterMarkup(c);
                return;
            case State::exclamation:
                myState = c == '-'                    ? State::comment
                          : c == '[' && !myIsInSubset ? State::characters
                                                      : State::declaration;
                return;
            case State::startTag:
                if (c == '=') myIsExceeded = ++myCount > theMost;
                leaveMarkup(c);
                return;
            case State::declaration:
                if (c == '[' && !myIsInSubset)
                {
                    myIsInSubset = true;
                    myState = State::content;
                }
                leaveMarkup(c);
                return;
            case State::endTag:
                if (c == '>') myState = State::content;
                return;
            case State::comment:
                if (mySince > theShortestComment) leaveAfter('-', c);
                return;
            case State::characters:
                leaveAfter(']', c);
                return;
            case State::instruction:
                if (c == '>' && myLast == '?') myState = State::content;
                return;
        }
    }

    void enterMarkup(char c)
    {
        myCount = 0;
        mySince = 0;
        myState = c == '!'   ? State::exclamation
                  : c == '?' ? State::instruction
                  : c == '/' ? State::endTag
                             : State::startTag;
    }

    void leaveMarkup(char c)
    {
        if (c == '"' || c == '\'') myQuote = c;
        if (c == '>') myState = State::content;
    }

    void leaveAfter(char twice, char c)
    {
        if (c == '>' && myLast == twice && myBeforeLast == twice) myState = State::content;
    }

    void leaveSubset()
    {
        myIsInSubset = false;
        myState = State::declaration;
    }

    static constexpr std::size_t theShortestComment = 4;  // "----" between "<!" and ">"

    State myState = State::content;
    char myQuote = '\0';
    char myLast = '\0';
    char myBeforeLast = '\0';
    bool myIsInSubset = false;
    bool myIsExceeded = false;
    int myCount = 0;
    std::size_t mySince = 0;  // octets since the start of a piece of markup
    int myLine = 1;
    int myColumn = 0;
};

}  // namespace omtreader
