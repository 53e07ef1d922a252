// SPDX-License-Identifier: Apache-2.0
// XmlReader builds the definitions of an object model from an XML document of any edition.
#pragma once

#include "omt/model/openDefinitions.h"
#include "omt/model/xmlParser.h"
#include "omt/model/xmlWords.h"

#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// Reads one document into a builder. What no row knows becomes an aside of the definition it
/// stands in; nothing of the document is dropped but processing instructions.
class XmlReader : private XmlHandler
{
public:
    /// `text` is UTF-8. Findings name the document by `name`.
    XmlReader(std::string_view name, std::string_view text, ModelBuilder& builder,
              Findings& findings);

    /// False, and an error among the findings, where the document is no object model in XML; the
    /// builder then holds part of it.
    bool read();

private:
    enum class Mode : std::uint8_t
    {
        /// In an element that holds definitions or tables.
        table,
        /// In the element of a definition.
        definition,
        /// In an element around the texts of a row.
        around,
        /// In the element of a property.
        property,
        /// In an element that no row knows.
        unknown
    };
    /// Where a property is open, only the kind of the definition around it counts.
    struct Frame : OpenDefinition
    {
        Mode mode = Mode::table;
        /// The table, or the row.
        std::uint8_t index = 0;
        std::uint32_t line = 0;
        std::size_t offset = 0;
        /// Where its asides and texts begin in the stacks below.
        std::uint32_t asides = 0;
        std::uint32_t texts = 0;
        /// An element whose property the definition has already; kept as an unknown one is.
        bool isRepeated = false;
        /// The place in the schema of what it held last, and which tables it held (bits).
        std::uint8_t last = 0;
        std::uint32_t tables = 0;
    };
    struct RowText
    {
        std::uint8_t row = 0;
        std::uint32_t item = 0;
        Text text;
    };

    bool startRoot(const XmlElement& root, std::string_view namespaceName) override;
    void startElement(const XmlElement& element) override;
    void endElement(std::size_t end) override;
    void addText(std::string_view piece) override;
    void addComment(std::string_view comment) override;
    void skipEntity(std::string_view name) override;
    void skipDoctype() override;

    void startInTable(const XmlElement& element);
    void startInDefinition(const XmlElement& element);
    void startTable(std::uint8_t table, const XmlElement& element);
    void startDefinition(Kind kind, const XmlElement& element);
    void startProperty(Mode mode, std::uint8_t row, const XmlElement& element);
    void startUnknown(const XmlElement& element);
    XmlWords::Use findUse(Kind kind, const XmlElement& element, WordNumber word);

    void readAttributes(const XmlElement& element);
    void readRootAttributes(const XmlElement& root);
    void readAttribute(Kind kind, std::string_view name, std::string_view value,
                       std::uint32_t line);
    void readPropertyAttributes(const XmlElement& element, std::uint8_t row, std::uint32_t item);
    std::uint8_t noteRow(Kind kind, std::string_view attribute) const;

    void endProperty(const Frame& frame);
    void endUnknown(const Frame& frame, std::size_t end);
    void finishDefinition(const Frame& frame);
    void finishTexts(const Frame& frame, Definition& definition);
    std::string whatIsOpen();
    void checkOrder(std::uint8_t place, const XmlElement& element);
    void checkTable(std::uint8_t table, const XmlElement& element);
    std::string declaredText(std::string_view xml) const;

    void setText(Kind kind, std::uint8_t row, Definition& definition, std::string_view value,
                 std::uint32_t line);
    void addOneOf(std::uint8_t row, std::string_view value, std::uint32_t line);
    void addAside(Aside::What what, std::uint8_t property, std::string_view name,
                  std::string_view text, std::uint32_t line, std::uint32_t item = 0);
    void attachComments(std::uint8_t property, std::uint32_t item = 0);
    void attachStray();
    std::uint32_t nextItem(std::uint8_t row, const Frame& frame) const;
    Frame& owner();
    Frame& pushDefinition(const OpenDefinition& open, std::uint32_t line);
    void report(Severity severity, const char* name, std::string text, std::uint32_t line);

    std::string myName;
    XmlParser myParser;
    ModelBuilder& myBuilder;
    OpenDefinitions myOpen;
    Findings& myFindings;
    const XmlWords& myWords;
    Edition myEdition = Edition::ieee2010;
    std::uint32_t myModule = 0;
    bool isRefused = false;

    std::vector<Frame> myFrames;
    std::uint32_t myUnknownDepth = 0;
    std::string myText;
    std::uint32_t myStrayLine = 0;
    std::vector<Text> myComments;

    // What open definitions have so far; each frame knows where its own begin.
    std::vector<Aside> myAsides;
    std::vector<RowText> myTexts;
    std::vector<Text> mySome;
};

}  // namespace omt
