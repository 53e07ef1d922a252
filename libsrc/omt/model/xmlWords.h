// SPDX-License-Identifier: Apache-2.0
// XmlWords finds the row of an element or XML attribute, and the table that an element begins.
#pragma once

#include "omt/model/rows.h"

#include <cstdint>
#include <string_view>

namespace omt
{

/// A table of a document: an element that holds definitions or further tables.
struct TableWord
{
    /// Index of the table around it; the root is the first.
    std::uint8_t parent = 0;
    std::string_view word;
    /// What its elements define; Kind::section where it holds tables only.
    Kind holds = Kind::section;
    /// The element of one definition; empty where every element is one, named by its own word
    /// (switches, tags, services).
    std::string_view element = {};
    std::string_view path = {};
};

/// A word as a number, the same for all tables; theUnknown for one that no row has.
using WordNumber = std::uint16_t;

/// The vocabularies of the three editions in XML, made once from the rows.
class XmlWords
{
public:
    static constexpr WordNumber theUnknown = 0;
    static constexpr std::uint8_t theNone = 255;

    static const XmlWords& instance();

    WordNumber number(std::string_view word) const;

    /// What a word begins as an element within a definition of a kind: the row, or the row of the
    /// texts that it stands around.
    struct Use
    {
        std::uint8_t row = theNone;
        bool isAround = false;
    };
    Use element(Kind kind, Edition edition, WordNumber word) const;
    /// The row of an XML attribute of a definition's element.
    std::uint8_t attribute(Kind kind, Edition edition, WordNumber word) const;

    /// The tables; the first is the root.
    static std::span<const TableWord> tables();
    /// The table that an element begins within another table, an index of tables().
    std::uint8_t table(std::uint8_t parent, WordNumber word) const;

private:
    XmlWords();
    WordNumber add(std::string_view word);
    void addRows(Kind kind, Edition edition);

    static constexpr std::size_t theKinds = static_cast<std::size_t>(Kind::section) + 1;
    static constexpr std::size_t theEditions = 4;
    static constexpr std::size_t theMostWords = 256;
    static constexpr std::size_t theSlots = 1024;

    struct Known
    {
        std::string_view word;
        WordNumber number = theUnknown;
    };
    static std::size_t slot(std::string_view word);

    std::array<Known, theSlots> mySlots = {};
    WordNumber myCount = 0;
    std::array<std::array<std::array<Use, theMostWords>, theEditions>, theKinds> myElements = {};
    std::array<std::array<std::array<std::uint8_t, theMostWords>, theEditions>, theKinds>
        myAttributes = {};
    std::array<WordNumber, 32> myTableWords = {};
};

}  // namespace omt
