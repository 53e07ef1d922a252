// SPDX-License-Identifier: Apache-2.0
// XmlTags holds the tags of an edition's elements as they are written.
#pragma once

#include "omt/model/rows.h"

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// The start tag and the end tag of an element, of any length.
class XmlTag
{
public:
    /// How much more than a tag may be written in its place, so that short ones take one step.
    static constexpr std::size_t theSpare = 32;

    XmlTag() : XmlTag(std::string_view()) {}
    explicit XmlTag(std::string_view word);

    bool isThere() const { return mySize != 0; }
    std::string_view word() const { return {myOctets.data() + 1, mySize}; }
    /// Octets of "<word>".
    std::size_t startSize() const { return mySize + 2; }
    /// Octets of "</word>" and the end of its line.
    std::size_t endSize() const { return mySize + 4; }

    /// Writes the start tag and gives its end; the end of the line stands after it already.
    char* putStart(char* to) const { return put(to, myOctets.data(), mySize + 3) - 1; }
    /// Writes the end tag with the end of the line and gives its end.
    char* putEnd(char* to) const { return put(to, myOctets.data() + mySize + 3, mySize + 4); }

private:
    static char* put(char* to, const char* from, std::size_t size)
    {
        std::memcpy(to, from, size <= theSpare ? theSpare : size);
        return to + size;
    }

    /// Both tags, each with the end of a line, and what is read beyond them.
    std::string myOctets;
    std::size_t mySize;
};

/// A property as it is written.
struct WrittenRow
{
    const Row* row = nullptr;
    /// Its index among the rows of its kind.
    std::uint8_t index = 0;
    XmlTag tag;
    /// The element around its texts, where there is one.
    XmlTag around;
};

/// The elements of an edition, made once from the rows and the tables.
class XmlTags
{
public:
    /// For 1516-2010 and 1516-2025.
    static const XmlTags& of(Edition edition);

    /// What is written as XML attributes of a definition's element, and what within it, in the
    /// order of the schema. A property that the edition has no word for has that of the other one.
    const std::vector<WrittenRow>& attributes(Kind kind) const { return ofKind(kind).attributes; }
    const std::vector<WrittenRow>& elements(Kind kind) const { return ofKind(kind).elements; }

    /// The element of a table, an index of XmlWords::tables(), and that of one definition in it;
    /// not there where each is named by its own word.
    const XmlTag& table(std::size_t index) const { return myTables[index].table; }
    const XmlTag& definition(std::size_t index) const { return myTables[index].definition; }

private:
    explicit XmlTags(Edition edition);

    struct OfKind
    {
        std::vector<WrittenRow> attributes;
        std::vector<WrittenRow> elements;
    };
    struct OfTable
    {
        XmlTag table;
        XmlTag definition;
    };
    const OfKind& ofKind(Kind kind) const { return myKinds[static_cast<std::size_t>(kind)]; }

    std::vector<OfKind> myKinds;
    std::vector<OfTable> myTables;
};

}  // namespace omt
