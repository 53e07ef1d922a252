// SPDX-License-Identifier: Apache-2.0
// XmlWriter writes tables of definitions as an XML document, by the rows that also read it.
#pragma once

#include "omt/base/growingText.h"
#include "omt/model/model.h"
#include "omt/model/write.h"
#include "omt/model/xmlTags.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// The namespace of an edition's documents.
std::string_view namespaceOf(Edition edition);

/// Writes in the order of the schema, two blanks for each level. What stands beside properties is
/// written where it belongs: comments before their element, what no row knows at the end of the
/// definition or within its property.
class XmlWriter
{
public:
    /// Appends to `out`, about as many octets as expected. A property that the edition has no word
    /// for is written by the word of the other edition of XML that has one, so that nothing is
    /// dropped here.
    XmlWriter(std::string& out, std::size_t expected, const Tables& tables, Edition edition,
              bool hasOrigins = false)
        : myOut(out, expected),
          myTables(tables),
          myTags(XmlTags::of(edition)),
          myEdition(edition),
          myHasOrigins(hasOrigins)
    {
    }

    void write();

    /// The origin of each line of the text that was written.
    std::vector<LineOrigin> origins(std::string_view text) const;

private:
    /// Asides that belong to one element, in the order of the document.
    using Asides = std::span<const Aside* const>;

    /// A definition whose element is open.
    struct Opened
    {
        /// Where what it holds begins.
        std::size_t mark;
        /// Where the asides of the definition around it begin in myAsides.
        std::size_t asidesAround;
    };

    void writeRoot();
    void writeIdentification();
    void writeTable(std::uint8_t table);
    void writeRows(std::uint8_t table);
    template <typename T>
    void writeNamed(const std::vector<T>& definitions, const XmlTag& tag);
    template <typename T>
    void writeClasses(const std::vector<T>& classes, const XmlTag& tag);
    bool isTableThere(std::uint8_t table) const;
    void findSections();

    void writeDefinition(const Definition& definition, Kind kind, const XmlTag& tag);
    Opened open(const Definition& definition, Kind kind, const XmlTag& tag);
    void close(const XmlTag& tag, const Opened& opened);
    /// Ends an element that began at a mark; short where nothing was written into it.
    void closeElement(const XmlTag& tag, std::size_t mark);
    void writeAttributes(const Definition& definition, Kind kind, const XmlTag& tag);
    void writeProperties(const Definition& definition, Kind kind);
    void writeTexts(const List<Text>& texts, const WrittenRow& row);
    void writeText(const Text& text, const WrittenRow& row, std::uint32_t item);
    void writeTextWith(Asides asides, std::string_view text, const WrittenRow& row);
    void writeRepeated(const WrittenRow& row);
    void writeParts(const Definition& definition, const WrittenRow& row);
    template <typename T>
    void writeList(const List<T>& parts, const XmlTag& tag);

    // What stands beside properties, in xmlAsides.cpp.
    void collectAsides(const Definition& definition);
    Asides asidesOf(std::uint8_t property, std::uint32_t item) const;
    void writeComments(Asides asides);
    void writeAsideAttributes(Asides asides);
    void writeInner(Asides asides);
    void writeLine(const Aside& aside);
    void writeElement(std::string_view xml);
    void declarePrefixes(Asides asides);

    void writeContent(std::string_view text);
    void mark(std::uint32_t line);
    void indent();
    char* putIndentation(char* to) const;

    /// The element that begins at an offset.
    struct Mark
    {
        std::size_t offset;
        LineOrigin origin;
    };

    GrowingText myOut;
    const Tables& myTables;
    const XmlTags& myTags;
    Edition myEdition;
    bool myHasOrigins;
    std::uint32_t myDepth = 0;
    /// The module whose properties are being written.
    std::uint32_t myModule = 0;
    std::vector<Mark> myMarks;
    /// The asides of all definitions whose elements are open; those of the innermost begin at
    /// myFirstAside, by property and item.
    std::vector<const Aside*> myAsides;
    std::size_t myFirstAside = 0;
    /// The prefixes that the root declares, as they stand in its start tag.
    std::vector<std::string> myDeclarations;
    /// For each table the elements that there were of it.
    std::vector<std::vector<const Section*>> mySections;
};

/// Whether an aside is one more element of a property that has its text already.
bool isRepeated(const Aside& aside, const Row& row);

}  // namespace omt
