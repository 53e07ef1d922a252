// SPDX-License-Identifier: Apache-2.0
#include "omt/model/xmlReader.h"

#include "omt/model/compare.h"
#include "omt/model/xmlEdition.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

namespace omt
{

namespace
{

/// After all rows.
constexpr std::uint8_t theLastPlace = 250;

bool isBlank(char c)
{
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

/// Mostly an indentation: one blank, or one blank again and again.
bool isBlank(std::string_view text)
{
    if (text.empty()) return true;
    if (!isBlank(text.front())) return false;
    if (std::memcmp(text.data(), text.data() + 1, text.size() - 1) == 0) return true;
    return std::all_of(text.begin(), text.end(), [](char c) { return isBlank(c); });
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

/// The default namespace is that of the edition; what prefixes stand for is kept.
bool isDeclaration(std::string_view attribute)
{
    return attribute == "xmlns";
}

bool isNotes(std::string_view attribute)
{
    return attribute == "notes" || attribute == "noteReferences";
}

/// Calls `visit` for each of the words that 1516-2000 puts into one XML attribute.
template <typename Visit>
void forEachWord(std::string_view text, Visit&& visit)
{
    constexpr std::string_view theSeparators = ", \t\r\n";
    for (std::size_t at = 0; (at = text.find_first_not_of(theSeparators, at)) < text.size();)
    {
        const std::size_t end = std::min(text.find_first_of(theSeparators, at), text.size());
        visit(text.substr(at, end - at));
        at = end;
    }
}

/// Kinds whose elements have no property "name", but names of their own.
bool isNamedByElement(Kind kind)
{
    return kind == Kind::service || kind == Kind::time || kind == Kind::tag ||
           kind == Kind::switchSetting;
}

}  // namespace

XmlReader::XmlReader(std::string_view name, std::string_view text, ModelBuilder& builder,
                     Findings& findings)
    : myName(name),
      myParser(text, *this),
      myBuilder(builder),
      myOpen(builder),
      myFindings(findings),
      myWords(XmlWords::instance())
{
}

bool XmlReader::read()
{
    Finding fault;
    if (!myParser.parse(fault))
    {
        if (isRefused) return false;
        fault.place.file = myName;
        myFindings.push_back(std::move(fault));
        return false;
    }
    attachComments(Aside::theEnd);
    finishDefinition(myFrames.back());
    myOpen.finish(myBuilder.tables().modules[myModule]);
    return true;
}

void XmlReader::report(Severity severity, const char* name, std::string text, std::uint32_t line)
{
    myFindings.push_back({
        severity, name, std::move(text), {myName, line, 0}
    });
}

// Frames
// --------------------------------------------------------------------------------------------

/// The innermost table or definition: properties and what stands around them have none of their
/// own.
XmlReader::Frame& XmlReader::owner()
{
    auto frame = myFrames.rbegin();
    while (frame->mode != Mode::table && frame->mode != Mode::definition) ++frame;
    return *frame;
}

XmlReader::Frame& XmlReader::pushDefinition(const OpenDefinition& open, std::uint32_t line)
{
    Frame frame{open};
    frame.mode = open.kind == Kind::section ? Mode::table : Mode::definition;
    frame.line = line;
    frame.asides = static_cast<std::uint32_t>(myAsides.size());
    frame.texts = static_cast<std::uint32_t>(myTexts.size());
    myFrames.push_back(frame);
    Definition& definition = myOpen.definition(frame);
    definition.module = myModule;
    definition.line = line;
    attachComments(Aside::theWhole);
    return myFrames.back();
}

// Starts
// --------------------------------------------------------------------------------------------

bool XmlReader::startRoot(const XmlElement& root, std::string_view namespaceName)
{
    if (root.name != XmlWords::tables()[0].word)
    {
        const bool isHtml = root.name == "html" || root.name == "HTML";
        report(Severity::error, "no-object-model",
               isHtml ? "is an HTML page, no object model"
                      : "is an XML document of another kind: its root is `" +
                            std::string(root.name) + "`, not `objectModel`",
               root.line);
        isRefused = true;
        return false;
    }
    const DocumentEdition document = editionOfDocument(namespaceName, myParser.text());
    myEdition = document.edition;
    if (!document.isKnown)
        report(Severity::warning, "unknown-namespace",
               "the namespace `" + std::string(namespaceName) +
                   "` is none of an edition; read as " + std::string(nameOf(myEdition)),
               root.line);
    myModule = myBuilder.addModule(myName, myEdition);
    myBuilder.tables().modules[myModule].identification.line = root.line;
    pushDefinition(myOpen.start(Kind::section, myModule), root.line);
    readRootAttributes(root);
    return true;
}

void XmlReader::startElement(const XmlElement& element)
{
    switch (myFrames.back().mode)
    {
        case Mode::unknown:
            ++myUnknownDepth;
            return;
        case Mode::table:
            attachStray();
            return startInTable(element);
        case Mode::definition:
            attachStray();
            return startInDefinition(element);
        case Mode::around:
        {
            attachStray();
            const Row& row = rowsOf(owner().kind)[myFrames.back().index];
            if (element.isForeign ||
                (element.name != row.words.in2010 && element.name != row.words.in2025))
                return startUnknown(element);
            return startProperty(Mode::property, myFrames.back().index, element);
        }
        case Mode::property:
            return startUnknown(element);
    }
}

void XmlReader::startInTable(const XmlElement& element)
{
    const std::uint8_t around = myFrames.back().index;
    const TableWord& table = XmlWords::tables()[around];
    if (element.isForeign) return startUnknown(element);
    if (around == 0 && element.name == "modelIdentification")
    {
        checkTable(0, element);
        return startDefinition(Kind::identification, element);
    }
    const std::uint8_t inner = myWords.table(around, myWords.number(element.name));
    if (inner != XmlWords::theNone) return startTable(inner, element);
    const bool isDefinition =
        table.element.empty() || table.element == element.name ||
        (table.holds == Kind::synchronizationPoint && element.name == "synchronization");
    if (table.holds == Kind::section || !isDefinition) return startUnknown(element);
    startDefinition(table.holds, element);
}

void XmlReader::startTable(std::uint8_t table, const XmlElement& element)
{
    checkTable(table, element);
    Frame& frame = pushDefinition(myOpen.start(Kind::section, myModule), element.line);
    frame.index = table;
    myOpen.definition(frame).name = Text(XmlWords::tables()[table].path, element.line);
    readAttributes(element);
}

void XmlReader::startDefinition(Kind kind, const XmlElement& element)
{
    Frame& frame = pushDefinition(myOpen.start(kind, myModule), element.line);
    if (isNamedByElement(kind))
        myOpen.definition(frame).name = myBuilder.text(element.name, element.line);
    if (*element.attributes) readAttributes(element);
}

/// The row that an element of a definition fills. A word that only the other edition has is taken
/// as what it means there.
XmlWords::Use XmlReader::findUse(Kind kind, const XmlElement& element, WordNumber word)
{
    XmlWords::Use use = myWords.element(kind, myEdition, word);
    if (use.row != XmlWords::theNone) return use;
    for (const Edition other : {Edition::ieee2010, Edition::ieee2025})
    {
        use = myWords.element(kind, other, word);
        if (use.row == XmlWords::theNone) continue;
        report(Severity::warning, "other-edition",
               "`" + std::string(element.name) + "` of " + std::string(nameOf(kind)) +
                   " is a word of " + std::string(nameOf(other)) + " in a document of " +
                   std::string(nameOf(myEdition)),
               element.line);
        break;
    }
    return use;
}

void XmlReader::startInDefinition(const XmlElement& element)
{
    const Kind kind = myFrames.back().kind;
    if (element.isForeign) return startUnknown(element);
    if ((kind == Kind::objectClass && element.name == "objectClass") ||
        (kind == Kind::interactionClass && element.name == "interactionClass"))
    {
        checkOrder(theLastPlace, element);
        return startDefinition(kind, element);
    }
    const XmlWords::Use use = findUse(kind, element, myWords.number(element.name));
    if (use.row == XmlWords::theNone) return startUnknown(element);
    checkOrder(use.row, element);
    const Row& row = rowsOf(kind)[use.row];
    if (row.form == Row::Form::parts) return startDefinition(row.parts, element);
    startProperty(use.isAround ? Mode::around : Mode::property, use.row, element);
}

void XmlReader::startProperty(Mode mode, std::uint8_t row, const XmlElement& element)
{
    const Frame& around = owner();
    const Row& property = rowsOf(around.kind)[row];
    if (property.oneText && (myOpen.definition(around).*property.oneText).isThere())
    {
        startUnknown(element);
        myFrames.back().kind = around.kind;
        myFrames.back().index = row;
        myFrames.back().isRepeated = true;
        return;
    }
    const std::uint32_t item = mode == Mode::around ? Aside::theAround : nextItem(row, around);
    attachComments(row, item);
    Frame frame;
    frame.mode = mode;
    frame.kind = around.kind;
    frame.index = row;
    frame.line = element.line;
    frame.offset = element.offset;
    myText.clear();
    myFrames.push_back(frame);
    if (*element.attributes) readPropertyAttributes(element, row, item);
}

void XmlReader::startUnknown(const XmlElement& element)
{
    attachComments(myFrames.back().mode == Mode::property ? myFrames.back().index
                                                          : Aside::theWhole);
    Frame frame;
    frame.mode = Mode::unknown;
    frame.line = element.line;
    frame.offset = element.offset;
    myFrames.push_back(frame);
    myUnknownDepth = 0;
}

/// How many texts of a row the definition has so far.
std::uint32_t XmlReader::nextItem(std::uint8_t row, const Frame& frame) const
{
    for (std::size_t i = myTexts.size(); i > frame.texts; --i)
        if (myTexts[i - 1].row == row) return myTexts[i - 1].item + 1;
    return 0;
}

// XML attributes
// ------------------------------------------------------------------------------------

/// The row whose notes an XML attribute of 1516-2000 refers to: "nameNotes",
/// "updateConditionNotes".
std::uint8_t XmlReader::noteRow(Kind kind, std::string_view attribute) const
{
    constexpr std::string_view theEnding = "Notes";
    if (attribute.size() <= theEnding.size() ||
        attribute.substr(attribute.size() - theEnding.size()) != theEnding)
        return XmlWords::theNone;
    attribute.remove_suffix(theEnding.size());
    return myWords.attribute(kind, myEdition, myWords.number(attribute));
}

void XmlReader::readAttribute(Kind kind, std::string_view name, std::string_view value,
                              std::uint32_t line)
{
    Frame& frame = myFrames.back();
    const std::uint8_t row = myWords.attribute(kind, myEdition, myWords.number(name));
    if (row != XmlWords::theNone) return setText(kind, row, myOpen.definition(frame), value, line);
    if (kind == Kind::switchSetting && name == "resignAction")
        return setText(kind, 0, myOpen.definition(frame), value, line);
    if (isNotes(name)) return addAside(Aside::What::notes, Aside::theWhole, {}, value, line);
    const std::uint8_t noted =
        myEdition == Edition::ieee2000 ? noteRow(kind, name) : XmlWords::theNone;
    if (noted != XmlWords::theNone) return addAside(Aside::What::notes, noted, {}, value, line);
    addAside(Aside::What::attribute, Aside::theWhole, name, value, line);
}

void XmlReader::readAttributes(const XmlElement& element)
{
    // In 2000 each switch is an XML attribute of their table.
    const bool isSwitches = myEdition == Edition::ieee2000 && myFrames.back().mode == Mode::table &&
                            XmlWords::tables()[myFrames.back().index].holds == Kind::switchSetting;
    for (const char* const* at = element.attributes; *at; at += 2)
    {
        const std::string_view name = at[0];
        if (isDeclaration(name)) continue;
        if (!isSwitches || name.find(':') != std::string_view::npos)
        {
            readAttribute(myFrames.back().kind, name, at[1], element.line);
            continue;
        }
        Switch setting;
        setting.module = myModule;
        setting.line = element.line;
        setting.name = myBuilder.text(name, element.line);
        setting.value = myBuilder.text(trimmed(at[1]), element.line);
        myBuilder.tables().switches.push_back(setting);
    }
}

/// In 2000 the root's XML attributes are the identification, its point of contact and its
/// references.
void XmlReader::readRootAttributes(const XmlElement& root)
{
    for (const char* const* at = root.attributes; *at; at += 2)
    {
        const std::string_view name = at[0];
        if (isDeclaration(name)) continue;
        Kind owner = Kind::section;
        if (myEdition == Edition::ieee2000)
            for (const Kind kind : {Kind::identification, Kind::contact, Kind::reference})
                if (owner == Kind::section &&
                    (myWords.attribute(kind, myEdition, myWords.number(name)) !=
                         XmlWords::theNone ||
                     noteRow(kind, name) != XmlWords::theNone))
                    owner = kind;
        if (owner == Kind::section)
        {
            readAttribute(Kind::section, name, at[1], root.line);
            continue;
        }
        // One contact and one reference take all that is said of them.
        pushDefinition(myOpen.startOrGoOn(owner, myModule), root.line);
        readAttribute(owner, name, at[1], root.line);
        finishDefinition(myFrames.back());
        myFrames.pop_back();
    }
}

void XmlReader::readPropertyAttributes(const XmlElement& element, std::uint8_t row,
                                       std::uint32_t item)
{
    for (const char* const* at = element.attributes; *at; at += 2)
    {
        const std::string_view name = at[0];
        if (isDeclaration(name)) continue;
        if (isNotes(name))
            addAside(Aside::What::notes, row, {}, at[1], element.line, item);
        else
            addAside(Aside::What::attribute, row, name, at[1], element.line, item);
    }
}

// Ends
// ----------------------------------------------------------------------------------------------

void XmlReader::endElement(std::size_t end)
{
    const Frame frame = myFrames.back();
    if (frame.mode == Mode::unknown)
    {
        if (myUnknownDepth > 0)
            --myUnknownDepth;
        else
            endUnknown(frame, end);
        return;
    }
    if (frame.mode == Mode::property) return endProperty(frame);
    attachStray();
    if (frame.mode == Mode::around)
    {
        attachComments(frame.index, Aside::theAround);
        // A list that is there without texts is kept apart from one that is not.
        List<Text>& list = myOpen.definition(owner()).*rowsOf(frame.kind)[frame.index].someTexts;
        if (!list.isThere()) list = List<Text>(myBuilder.list(std::vector<Text>(1)).begin(), 0);
        myFrames.pop_back();
        return;
    }
    if (myFrames.size() == 1) return;  // The root stays open for what stands after it.
    attachComments(Aside::theEnd);
    finishDefinition(frame);
    myFrames.pop_back();
}

void XmlReader::endProperty(const Frame& frame)
{
    myFrames.pop_back();
    Definition& definition = myOpen.definition(owner());
    setText(frame.kind, frame.index, definition, myText, frame.line);
    myText.clear();
}

void XmlReader::setText(Kind kind, std::uint8_t row, Definition& definition, std::string_view value,
                        std::uint32_t line)
{
    const Row& property = rowsOf(kind)[row];
    value = trimmed(value);
    if (property.oneText)
        definition.*property.oneText = myBuilder.text(value, line);
    else if (myEdition == Edition::ieee2000 && property.bearing == Bearing::behaviour)
        forEachWord(value, [&](std::string_view word) { addOneOf(row, word, line); });
    else
        addOneOf(row, value, line);
}

void XmlReader::addOneOf(std::uint8_t row, std::string_view value, std::uint32_t line)
{
    myTexts.push_back({row, nextItem(row, owner()), myBuilder.text(value, line)});
}

/// The markup of an element, with the prefixes that it uses and that are declared around it.
std::string XmlReader::declaredText(std::string_view xml) const
{
    std::string text(xml);
    if (xml.find(':') == std::string_view::npos) return text;
    const std::size_t end = xml.find_first_of(" \t\r\n/>");
    for (auto known = myParser.prefixes().rbegin(); known != myParser.prefixes().rend(); ++known)
    {
        const std::string declaration = "xmlns:" + known->prefix + "=";
        if (known->prefix.empty() || xml.find(known->prefix + ":") == std::string_view::npos ||
            text.substr(0, text.find('>')).find(declaration) != std::string_view::npos)
            continue;
        std::string value;
        for (const char c : known->name)
            value += c == '&'   ? "&amp;"
                     : c == '<' ? "&lt;"
                     : c == '"' ? "&quot;"
                                : std::string(1, c);
        text.insert(end, " " + declaration + "\"" + value + "\"");
    }
    return text;
}

/// The schemas of 2010 and 2025 give the elements of a definition one order, which is that of the
/// rows; classes within a class come last.
void XmlReader::checkOrder(std::uint8_t place, const XmlElement& element)
{
    Frame& frame = myFrames.back();
    if (place >= frame.last)
    {
        frame.last = place;
        return;
    }
    if (myEdition != Edition::ieee2010 && myEdition != Edition::ieee2025) return;
    report(Severity::warning, "element-order",
           "`" + std::string(element.name) + "` of " + whatIsOpen() +
               " stands after elements that it has to precede",
           element.line);
}

/// A table stands once, and those of 2010 and 2025 in one order. The identification is the first.
void XmlReader::checkTable(std::uint8_t table, const XmlElement& element)
{
    Frame& frame = myFrames.back();
    const std::uint32_t bit = 1U << table;
    if ((frame.tables & bit) != 0)
        report(Severity::warning, "repeated-section",
               "`" + std::string(element.name) + "` is there twice; both count", element.line);
    else
        checkOrder(table, element);
    frame.tables |= bit;
}

/// What findings call the innermost element that a row or a table knows.
std::string XmlReader::whatIsOpen()
{
    const Frame& frame = myFrames.back();
    if (frame.mode == Mode::property || frame.mode == Mode::around)
        return "`" + std::string(rowsOf(frame.kind)[frame.index].key) + "`";
    if (frame.mode == Mode::table)
        return "`" + std::string(XmlWords::tables()[frame.index].word) + "`";
    return std::string(nameOf(frame.kind));
}

void XmlReader::endUnknown(const Frame& frame, std::size_t end)
{
    myFrames.pop_back();
    const std::string_view xml = myParser.text().substr(frame.offset, end - frame.offset);
    const std::string_view name = xml.substr(1, xml.find_first_of(" \t\r\n/>") - 1);
    if (frame.isRepeated)
    {
        report(Severity::warning, "repeated-property",
               "`" + std::string(rowsOf(frame.kind)[frame.index].key) + "` of " +
                   std::string(nameOf(frame.kind)) + " `" + myOpen.definition(owner()).name.str() +
                   "` is there twice; the first counts",
               frame.line);
        return addAside(Aside::What::element, frame.index, name, declaredText(xml), frame.line);
    }
    const Frame& around = myFrames.back();
    const bool isInProperty = around.mode == Mode::property || around.mode == Mode::around;
    const std::uint32_t item = around.mode == Mode::around ? Aside::theAround
                               : isInProperty              ? nextItem(around.index, owner())
                                                           : 0;
    if (name.find(':') == std::string_view::npos)
        report(Severity::warning, "unknown-element",
               "`" + std::string(name) + "` is no element of " + whatIsOpen() +
                   "; it is kept as it is",
               frame.line);
    addAside(Aside::What::element, isInProperty ? around.index : Aside::theWhole, name,
             declaredText(xml), frame.line, item);
}

void XmlReader::finishDefinition(const Frame& frame)
{
    Definition& definition = myOpen.definition(frame);
    finishTexts(frame, definition);
    myOpen.finish(frame);
    if (myAsides.size() == frame.asides) return;
    std::vector<Aside> all(definition.asides.begin(), definition.asides.end());
    all.insert(all.end(), myAsides.begin() + frame.asides, myAsides.end());
    definition.asides = myBuilder.list(all);
    myAsides.erase(myAsides.begin() + frame.asides, myAsides.end());
}

void XmlReader::finishTexts(const Frame& frame, Definition& definition)
{
    if (myTexts.size() == frame.texts) return;
    const std::span<const Row> rows = rowsOf(frame.kind);
    for (std::size_t row = 0; row < rows.size(); ++row)
    {
        if (!rows[row].someTexts) continue;
        List<Text>& list = definition.*rows[row].someTexts;
        mySome.assign(list.begin(), list.end());
        for (std::size_t i = frame.texts; i < myTexts.size(); ++i)
            if (myTexts[i].row == row) mySome.push_back(myTexts[i].text);
        if (!mySome.empty()) list = myBuilder.list(mySome);
    }
    myTexts.erase(myTexts.begin() + frame.texts, myTexts.end());
}

// Texts and comments
// --------------------------------------------------------------------------------

void XmlReader::addText(std::string_view piece)
{
    if (myFrames.empty()) return;
    switch (myFrames.back().mode)
    {
        case Mode::unknown:
            return;
        case Mode::property:
            myText += piece;
            return;
        case Mode::definition:
        case Mode::table:
        case Mode::around:
            break;
    }
    if (myText.empty())
    {
        if (isBlank(piece)) return;
        myStrayLine = myParser.line();
    }
    myText += piece;
}

/// Text outside of properties is that of a glyph, or one that no edition has.
void XmlReader::attachStray()
{
    if (myText.empty()) return;
    const Frame& frame = myFrames.back();
    const std::string_view text = trimmed(myText);
    if (frame.kind == Kind::glyph && frame.mode == Mode::definition)
    {
        auto& content = static_cast<Glyph&>(myOpen.definition(frame)).content;
        content = myBuilder.text(content.str() + std::string(text), myStrayLine);
    }
    else
    {
        report(Severity::warning, "stray-text",
               "text stands where " + whatIsOpen() + " has none; it is kept as it is", myStrayLine);
        const bool isAround = frame.mode == Mode::around;
        addAside(Aside::What::text, isAround ? frame.index : Aside::theWhole, {}, text, myStrayLine,
                 isAround ? Aside::theAround : 0);
    }
    myText.clear();
}

void XmlReader::addComment(std::string_view comment)
{
    const std::uint32_t line = myParser.line();
    if (!myFrames.empty() && myFrames.back().mode == Mode::unknown) return;
    if (!myFrames.empty() && myFrames.back().mode == Mode::property)
    {
        const std::uint8_t row = myFrames.back().index;
        return addAside(Aside::What::comment, row, {}, comment, line, nextItem(row, owner()));
    }
    myComments.push_back(myBuilder.text(comment, line));
}

void XmlReader::attachComments(std::uint8_t property, std::uint32_t item)
{
    for (const Text& comment : myComments)
    {
        Aside aside;
        aside.what = Aside::What::comment;
        aside.property = property;
        aside.item = item;
        aside.text = comment;
        myAsides.push_back(aside);
    }
    myComments.clear();
}

void XmlReader::skipEntity(std::string_view name)
{
    const std::string text = "&" + std::string(name) + ";";
    report(Severity::warning, "unknown-entity",
           "`" + text + "` is explained by nothing in the document; it is kept as it is",
           myParser.line());
    addText(text);
}

void XmlReader::skipDoctype()
{
    report(Severity::note, "doctype", "the document type is not looked at", myParser.line());
}

void XmlReader::addAside(Aside::What what, std::uint8_t property, std::string_view name,
                         std::string_view text, std::uint32_t line, std::uint32_t item)
{
    Aside aside;
    aside.what = what;
    aside.property = property;
    aside.item = item;
    aside.name = name.empty() ? Text() : myBuilder.text(name, line);
    aside.text = myBuilder.text(text, line);
    myAsides.push_back(aside);
}

}  // namespace omt
