// SPDX-License-Identifier: Apache-2.0
// XmlWriter writes tables of definitions as an XML document, by the rows that also read it.
#pragma once

#include "omt/base/growingText.h"
#include "omt/model/model.h"
#include "omt/model/rows.h"
#include "omt/model/write.h"

#include <cstdint>
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
    /// Appends to `out`. A property that the edition has no word for is written by the word of the
    /// other edition of XML that has one, so that nothing is dropped here.
    XmlWriter(std::string& out, const Tables& tables, Edition edition, bool hasOrigins = false)
        : myOut(out), myTables(tables), myEdition(edition), myHasOrigins(hasOrigins)
    {
    }

    void write();

    /// The origin of each line of the text that was written.
    std::vector<LineOrigin> origins(std::string_view text) const;

private:
    /// Asides that belong to one element, in the order of the document.
    using Asides = std::vector<const Aside*>;

    void writeRoot();
    void writeTable(std::uint8_t table);
    void writeRows(std::uint8_t table);
    template <typename T>
    void writeNamed(const std::vector<T>& definitions, std::string_view word);
    template <typename T>
    void writeClasses(const std::vector<T>& classes, std::string_view word);
    bool isTableThere(std::uint8_t table) const;
    bool hasDefinitions(std::uint8_t table) const;
    void findSections();

    void writeDefinition(const Definition& definition, Kind kind, std::string_view word);
    std::size_t open(const Definition& definition, Kind kind, std::string_view word);
    void close(const Definition& definition, std::string_view word, std::size_t mark);
    /// Ends an element that began at a mark; short where nothing was written into it.
    void close(std::string_view word, std::size_t mark);
    void writeProperties(const Definition& definition, Kind kind);
    void writeProperty(const Definition& definition, const Row& row, std::uint8_t index);
    void writeText(const Row& row, const Text& text, std::uint8_t index, std::uint32_t item);
    void writeRepeated(const Row& row, std::uint8_t index);
    void writeParts(const Definition& definition, const Row& row, std::string_view word);
    template <typename T>
    void writeList(const List<T>& parts, std::string_view word);

    std::string_view wordOf(const Row& row, std::string_view name = {}) const;
    void collectAsides(const Definition& definition);
    void pickAsides(std::uint8_t property, std::uint32_t item);
    void writeComments(const Asides& asides);
    void writeAsideAttributes(const Asides& asides);
    void writeInner(const Asides& asides);
    void writeLine(const Aside& aside);
    void writeElement(std::string_view xml);
    void writeContent(std::string_view text);
    void writeValue(std::string_view text);
    void mark(std::uint32_t line);
    void indent();

    /// The element that begins at an offset.
    struct Mark
    {
        std::size_t offset;
        LineOrigin origin;
    };

    GrowingText myOut;
    const Tables& myTables;
    Edition myEdition;
    bool myHasOrigins;
    std::uint32_t myDepth = 0;
    /// The module whose properties are being written.
    std::uint32_t myModule = 0;
    std::vector<Mark> myMarks;
    /// The asides of the definition that is being written, by property and item; those of one
    /// element, picked from them.
    Asides myAll;
    Asides myPicked;
    /// The prefixes that the root declares, as they stand in its start tag.
    std::vector<std::string> myDeclarations;
    /// For each table the elements that there were of it.
    std::vector<std::vector<const Section*>> mySections;
};

}  // namespace omt
