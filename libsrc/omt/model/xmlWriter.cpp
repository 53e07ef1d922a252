// SPDX-License-Identifier: Apache-2.0
#include "omt/model/xmlWriter.h"

#include "omt/base/xmlText.h"
#include "omt/model/xmlWords.h"

#include <algorithm>
#include <tuple>

namespace omt
{

namespace
{

/// Where an aside belongs, in the order of writing.
std::pair<std::uint8_t, std::uint32_t> targetOf(const Aside& aside)
{
    return {aside.property, aside.item};
}

bool isBefore(const Aside* left, const Aside* right)
{
    return targetOf(*left) < targetOf(*right);
}

/// Blanks around a text do not count, and so are not written.
std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view theBlanks = " \t\r\n";
    if (!text.empty() && text.front() > ' ' && text.back() > ' ') return text;
    const std::size_t first = text.find_first_not_of(theBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(theBlanks) - first + 1);
}

/// Whether an aside is one more element of a property that has its text already.
bool isRepeated(const Aside& aside, const Row& row)
{
    const std::string_view name = aside.name.view().substr(aside.name.view().find(':') + 1);
    return aside.what == Aside::What::element && row.oneText &&
           (name == row.words.in2010 || name == row.words.in2025);
}

/// The classes directly below each class, in the order of their table; the roots last.
struct Children
{
    template <typename T>
    explicit Children(const std::vector<T>& table) : starts(table.size() + 2, 0), all(table.size())
    {
        const auto slot = [&](const T& node)
        { return node.parent == T::theNone ? table.size() : std::size_t{node.parent}; };
        for (const T& node : table) ++starts[slot(node) + 1];
        for (std::size_t i = 1; i < starts.size(); ++i) starts[i] += starts[i - 1];
        std::vector<std::uint32_t> filled(starts.begin(), starts.end());
        for (std::uint32_t i = 0; i < table.size(); ++i) all[filled[slot(table[i])]++] = i;
    }

    std::vector<std::uint32_t> starts;
    std::vector<std::uint32_t> all;
};

}  // namespace

std::string_view namespaceOf(Edition edition)
{
    return edition == Edition::ieee2025 ? "http://standards.ieee.org/IEEE1516-2025"
                                        : "http://standards.ieee.org/IEEE1516-2010";
}

// The document
// -----------------------------------------------------------------------------------

void XmlWriter::write()
{
    findSections();
    writeRoot();
    const Identification none;
    const Identification& identification =
        myTables.modules.empty() ? none : myTables.modules.front().identification;
    const std::size_t before = myOut.size();
    const std::size_t mark = open(identification, Kind::identification, "modelIdentification");
    writeProperties(identification, Kind::identification);
    const bool isEmpty = myOut.size() == mark && identification.asides.empty();
    close(identification, "modelIdentification", mark);
    if (isEmpty) myOut.cut(before);
    const std::span<const TableWord> tables = XmlWords::tables();
    for (std::uint8_t i = 1; i < tables.size(); ++i)
        if (tables[i].parent == 0) writeTable(i);
    myAll.clear();
    for (const Section* section : mySections[0]) collectAsides(*section);
    pickAsides(Aside::theWhole, 0);
    writeInner(myPicked);
    pickAsides(Aside::theEnd, 0);
    writeComments(myPicked);
    myOut += "</objectModel>\n";
    myOut.finish();
}

/// The XML declaration, comments before the root, and its start tag.
void XmlWriter::writeRoot()
{
    myOut += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    myAll.clear();
    for (const Section* section : mySections[0]) collectAsides(*section);
    pickAsides(Aside::theWhole, 0);
    writeComments(myPicked);
    myOut += "<objectModel xmlns=\"";
    myOut += namespaceOf(myEdition);
    myOut += '"';
    writeAsideAttributes(myPicked);
    myOut += ">\n";
    myDepth = 1;
    for (const Aside* aside : myPicked)
    {
        if (aside->what != Aside::What::attribute || aside->name.view().substr(0, 6) != "xmlns:")
            continue;
        std::string& declaration = myDeclarations.emplace_back(" " + aside->name.str() + "=\"");
        appendXmlValue(declaration, aside->text);
        declaration += '"';
    }
}

void XmlWriter::findSections()
{
    const std::span<const TableWord> tables = XmlWords::tables();
    mySections.assign(tables.size(), {});
    for (const Module& module : myTables.modules)
        for (const Section& section : module.sections)
            for (std::size_t i = 0; i < tables.size(); ++i)
                if (section.name == tables[i].path) mySections[i].push_back(&section);
}

bool XmlWriter::hasDefinitions(std::uint8_t table) const
{
    const Tables& t = myTables;
    switch (XmlWords::tables()[table].holds)
    {
        case Kind::service:
            return !t.services.empty();
        case Kind::objectClass:
            return !t.objectClasses.empty();
        case Kind::interactionClass:
            return !t.interactionClasses.empty();
        case Kind::dimension:
            return !t.dimensions.empty();
        case Kind::time:
            return !t.times.empty();
        case Kind::tag:
            return !t.tags.empty();
        case Kind::synchronizationPoint:
            return !t.synchronizationPoints.empty();
        case Kind::transportation:
            return !t.transportations.empty();
        case Kind::switchSetting:
            return !t.switches.empty();
        case Kind::updateRate:
            return !t.updateRates.empty();
        case Kind::basicData:
            return !t.basicData.empty();
        case Kind::simpleData:
            return !t.simpleData.empty();
        case Kind::referenceData:
            return !t.referenceData.empty();
        case Kind::enumeratedData:
            return !t.enumeratedData.empty();
        case Kind::arrayData:
            return !t.arrayData.empty();
        case Kind::fixedRecord:
            return !t.fixedRecords.empty();
        case Kind::variantRecord:
            return !t.variantRecords.empty();
        case Kind::note:
            return !t.notes.empty();
        default:
            return false;
    }
}

bool XmlWriter::isTableThere(std::uint8_t table) const
{
    if (!mySections[table].empty() || hasDefinitions(table)) return true;
    const std::span<const TableWord> tables = XmlWords::tables();
    for (std::uint8_t i = 1; i < tables.size(); ++i)
        if (tables[i].parent == table && (!mySections[i].empty() || hasDefinitions(i))) return true;
    return false;
}

void XmlWriter::writeTable(std::uint8_t table)
{
    if (!isTableThere(table)) return;
    const std::span<const TableWord> tables = XmlWords::tables();
    Section whole;
    std::vector<Aside> asides;
    for (const Section* section : mySections[table])
        asides.insert(asides.end(), section->asides.begin(), section->asides.end());
    whole.asides = List<Aside>(asides.data(), asides.size());
    const std::size_t mark = open(whole, Kind::section, tables[table].word);
    writeRows(table);
    for (std::uint8_t i = 1; i < tables.size(); ++i)
        if (tables[i].parent == table) writeTable(i);
    close(whole, tables[table].word, mark);
}

void XmlWriter::writeRows(std::uint8_t table)
{
    const std::string_view word = XmlWords::tables()[table].element;
    switch (XmlWords::tables()[table].holds)
    {
        case Kind::service:
            return writeNamed(myTables.services, word);
        case Kind::objectClass:
            return writeClasses(myTables.objectClasses, word);
        case Kind::interactionClass:
            return writeClasses(myTables.interactionClasses, word);
        case Kind::dimension:
            return writeNamed(myTables.dimensions, word);
        case Kind::time:
            return writeNamed(myTables.times, word);
        case Kind::tag:
            return writeNamed(myTables.tags, word);
        case Kind::synchronizationPoint:
            return writeNamed(myTables.synchronizationPoints, word);
        case Kind::transportation:
            return writeNamed(myTables.transportations, word);
        case Kind::switchSetting:
            return writeNamed(myTables.switches, word);
        case Kind::updateRate:
            return writeNamed(myTables.updateRates, word);
        case Kind::basicData:
            return writeNamed(myTables.basicData, word);
        case Kind::simpleData:
            return writeNamed(myTables.simpleData, word);
        case Kind::referenceData:
            return writeNamed(myTables.referenceData, word);
        case Kind::enumeratedData:
            return writeNamed(myTables.enumeratedData, word);
        case Kind::arrayData:
            return writeNamed(myTables.arrayData, word);
        case Kind::fixedRecord:
            return writeNamed(myTables.fixedRecords, word);
        case Kind::variantRecord:
            return writeNamed(myTables.variantRecords, word);
        case Kind::note:
            return writeNamed(myTables.notes, word);
        default:
            break;
    }
}

/// Definitions by the word of their table, or by their own names where it has none.
template <typename T>
void XmlWriter::writeNamed(const std::vector<T>& definitions, std::string_view word)
{
    for (const T& definition : definitions)
        writeDefinition(definition, T::theKind, word.empty() ? definition.name.view() : word);
}

/// A hierarchy, without recursion, as a document may nest it as deep as it likes.
template <typename T>
void XmlWriter::writeClasses(const std::vector<T>& classes, std::string_view word)
{
    struct Level
    {
        std::size_t node;
        std::uint32_t next;
        std::size_t mark;
    };
    const Children children(classes);
    std::vector<Level> levels = {
        {classes.size(), children.starts[classes.size()], 0}
    };
    while (!levels.empty())
    {
        Level& level = levels.back();
        if (level.next < children.starts[level.node + 1])
        {
            const std::uint32_t child = children.all[level.next++];
            const std::size_t mark = open(classes[child], T::theKind, word);
            writeProperties(classes[child], T::theKind);
            levels.push_back({child, children.starts[child], mark});
            continue;
        }
        if (level.node < classes.size()) close(classes[level.node], word, level.mark);
        levels.pop_back();
    }
}

// Definitions
// -----------------------------------------------------------------------------------

void XmlWriter::writeDefinition(const Definition& definition, Kind kind, std::string_view word)
{
    const std::size_t mark = open(definition, kind, word);
    writeProperties(definition, kind);
    close(definition, word, mark);
}

/// The start tag and the comments before it; where what it holds begins.
std::size_t XmlWriter::open(const Definition& definition, Kind kind, std::string_view word)
{
    const bool hasAsides = !definition.asides.empty();
    if (hasAsides)
    {
        myAll.clear();
        collectAsides(definition);
        pickAsides(Aside::theWhole, 0);
        writeComments(myPicked);
    }
    myModule = definition.module;
    mark(definition.line);
    indent();
    myOut += '<';
    myOut += word;
    for (const Row& row : rowsOf(kind))
    {
        if (!row.isXmlAttribute || !row.oneText || !(definition.*row.oneText).isThere()) continue;
        myOut += ' ';
        myOut += wordOf(row, word);
        myOut += "=\"";
        writeValue(definition.*row.oneText);
        myOut += '"';
    }
    if (hasAsides) writeAsideAttributes(myPicked);
    myOut += ">\n";
    ++myDepth;
    return myOut.size();
}

void XmlWriter::close(const Definition& definition, std::string_view word, std::size_t mark)
{
    if (!definition.asides.empty())
    {
        myAll.clear();
        collectAsides(definition);
        pickAsides(Aside::theWhole, 0);
        writeInner(myPicked);
        pickAsides(Aside::theEnd, 0);
        writeComments(myPicked);
    }
    close(word, mark);
}

void XmlWriter::close(std::string_view word, std::size_t mark)
{
    --myDepth;
    if (myOut.size() == mark)
    {
        myOut.cut(mark - 2);
        myOut += "/>\n";
        return;
    }
    indent();
    myOut += "</";
    myOut += word;
    myOut += ">\n";
}

void XmlWriter::writeProperties(const Definition& definition, Kind kind)
{
    const std::span<const Row> rows = rowsOf(kind);
    myModule = definition.module;
    myAll.clear();
    collectAsides(definition);
    for (std::uint8_t i = 0; i < rows.size(); ++i)
    {
        const Row& row = rows[i];
        if (row.form == Row::Form::parts)
        {
            writeParts(definition, row, wordOf(row));
            myModule = definition.module;
            myAll.clear();
            collectAsides(definition);
        }
        else if (row.form == Row::Form::content)
        {
            if ((definition.*row.oneText).empty()) continue;
            indent();
            writeContent(definition.*row.oneText);
            myOut += '\n';
        }
        else if (!row.isXmlAttribute)
            writeProperty(definition, row, i);
    }
}

void XmlWriter::writeProperty(const Definition& definition, const Row& row, std::uint8_t index)
{
    if (row.oneText)
    {
        const Text& text = definition.*row.oneText;
        if (!text.isThere() || wordOf(row).empty()) return;
        writeText(row, text, index, 0);
        if (!myAll.empty()) writeRepeated(row, index);
        return;
    }
    const List<Text>& texts = definition.*row.someTexts;
    if (!texts.isThere() || wordOf(row).empty()) return;
    const std::string_view around = row.around(myEdition);
    std::size_t mark = 0;
    if (!around.empty())
    {
        pickAsides(index, Aside::theAround);
        writeComments(myPicked);
        indent();
        (myOut += '<') += around;
        writeAsideAttributes(myPicked);
        myOut += ">\n";
        mark = myOut.size();
        ++myDepth;
    }
    for (std::uint32_t i = 0; i < texts.size(); ++i) writeText(row, texts[i], index, i);
    if (around.empty()) return;
    pickAsides(index, Aside::theAround);
    writeInner(myPicked);
    close(around, mark);
}

void XmlWriter::writeText(const Row& row, const Text& text, std::uint8_t index, std::uint32_t item)
{
    const std::string_view word = wordOf(row);
    if (!myAll.empty())
    {
        pickAsides(index, item);
        writeComments(myPicked);
    }
    mark(text.line());
    indent();
    myOut += '<';
    myOut += word;
    const bool hasAsides = !myAll.empty() && !myPicked.empty();
    if (hasAsides) writeAsideAttributes(myPicked);
    const std::size_t mark = myOut.size();
    myOut += '>';
    writeContent(trimmed(text));
    if (hasAsides)
        for (const Aside* aside : myPicked)
            if (aside->what == Aside::What::element && !isRepeated(*aside, row))
                myOut += aside->text;
    if (myOut.size() == mark + 1)
    {
        myOut.cut(mark);
        myOut += "/>\n";
        return;
    }
    myOut += "</";
    myOut += word;
    myOut += ">\n";
}

/// Elements of a property that the definition has already, as they were read.
void XmlWriter::writeRepeated(const Row& row, std::uint8_t index)
{
    pickAsides(index, 0);
    for (const Aside* aside : myPicked)
        if (isRepeated(*aside, row)) writeLine(*aside);
}

void XmlWriter::writeParts(const Definition& definition, const Row& row, std::string_view word)
{
    switch (row.parts)
    {
        case Kind::keyword:
            return writeList(static_cast<const Identification&>(definition).keywords, word);
        case Kind::contact:
            return writeList(static_cast<const Identification&>(definition).contacts, word);
        case Kind::reference:
            return writeList(static_cast<const Identification&>(definition).references, word);
        case Kind::glyph:
            return writeList(static_cast<const Identification&>(definition).glyphs, word);
        case Kind::directedInteraction:
            return writeList(static_cast<const ObjectClass&>(definition).directedInteractions,
                             word);
        case Kind::attribute:
            return writeList(static_cast<const ObjectClass&>(definition).attributes, word);
        case Kind::parameter:
            return writeList(static_cast<const InteractionClass&>(definition).parameters, word);
        case Kind::enumerator:
            return writeList(static_cast<const EnumeratedData&>(definition).enumerators, word);
        case Kind::field:
            return writeList(static_cast<const FixedRecord&>(definition).fields, word);
        case Kind::alternative:
            return writeList(static_cast<const VariantRecord&>(definition).alternatives, word);
        default:
            break;
    }
}

template <typename T>
void XmlWriter::writeList(const List<T>& parts, std::string_view word)
{
    for (const T& part : parts) writeDefinition(part, T::theKind, word);
}

/// The word of a row, that of the other edition of XML where this one has none. `name` is what the
/// definition is named by.
std::string_view XmlWriter::wordOf(const Row& row, std::string_view name) const
{
    if (name == "automaticResignAction") return "resignAction";
    const std::string_view word = row.words.in(myEdition);
    if (!word.empty()) return word;
    return myEdition == Edition::ieee2025 ? row.words.in2010 : row.words.in2025;
}

// Asides
// ---------------------------------------------------------------------------------------

/// Adds the asides of a definition to those that are picked from.
void XmlWriter::collectAsides(const Definition& definition)
{
    if (definition.asides.empty()) return;
    for (const Aside& aside : definition.asides) myAll.push_back(&aside);
    std::stable_sort(myAll.begin(), myAll.end(), isBefore);
}

void XmlWriter::pickAsides(std::uint8_t property, std::uint32_t item)
{
    Aside sought;
    sought.property = property;
    sought.item = property >= Aside::theEnd ? 0 : item;
    const auto [first, last] = std::equal_range(myAll.begin(), myAll.end(), &sought, isBefore);
    myPicked.assign(first, last);
}

void XmlWriter::writeComments(const Asides& asides)
{
    for (const Aside* aside : asides)
    {
        if (aside->what != Aside::What::comment) continue;
        indent();
        myOut += "<!--";
        std::string comment;
        appendXmlComment(comment, aside->text);
        myOut += comment;
        myOut += "-->\n";
    }
}

/// The references to notes as one XML attribute, and all that no property has.
void XmlWriter::writeAsideAttributes(const Asides& asides)
{
    bool isFirst = true;
    for (const Aside* aside : asides)
    {
        if (aside->what != Aside::What::notes) continue;
        myOut += !isFirst                         ? " "
                 : myEdition == Edition::ieee2025 ? " noteReferences=\""
                                                  : " notes=\"";
        writeValue(aside->text);
        isFirst = false;
    }
    if (!isFirst) myOut += '"';
    for (const Aside* aside : asides)
    {
        if (aside->what != Aside::What::attribute) continue;
        ((myOut += ' ') += aside->name) += "=\"";
        writeValue(aside->text);
        myOut += '"';
    }
}

/// Elements and texts that no row knows, a line each.
void XmlWriter::writeInner(const Asides& asides)
{
    for (const Aside* aside : asides)
        if (aside->what == Aside::What::element || aside->what == Aside::What::text)
            writeLine(*aside);
}

void XmlWriter::writeLine(const Aside& aside)
{
    indent();
    if (aside.what == Aside::What::text)
        writeContent(aside.text);
    else
        writeElement(aside.text);
    myOut += '\n';
}

/// An element as it was read, without the prefixes that the root declares all the same.
void XmlWriter::writeElement(std::string_view xml)
{
    const std::size_t end = std::min(xml.find_first_of(" \t\r\n/>"), xml.size());
    myOut += xml.substr(0, end);
    xml.remove_prefix(end);
    for (std::size_t i = 0; i < myDeclarations.size(); ++i)
    {
        if (xml.substr(0, myDeclarations[i].size()) != myDeclarations[i]) continue;
        xml.remove_prefix(myDeclarations[i].size());
        i = static_cast<std::size_t>(-1);
    }
    myOut += xml;
}

void XmlWriter::writeContent(std::string_view text)
{
    if (isPlainXml(text))
    {
        myOut += text;
        return;
    }
    std::string content;
    appendXmlContent(content, text);
    myOut += content;
}

void XmlWriter::writeValue(std::string_view text)
{
    std::string value;
    appendXmlValue(value, text);
    myOut += value;
}

void XmlWriter::mark(std::uint32_t line)
{
    if (myHasOrigins)
        myMarks.push_back({
            myOut.size(), {myModule, line}
        });
}

std::vector<LineOrigin> XmlWriter::origins(std::string_view text) const
{
    std::vector<LineOrigin> origins(
        static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')));
    std::size_t line = 0;
    std::size_t at = 0;
    for (const Mark& mark : myMarks)
    {
        // Of an identification that turned out to be empty nothing is written.
        if (mark.offset < at || mark.offset >= text.size()) continue;
        line += static_cast<std::size_t>(
            std::count(text.begin() + static_cast<std::ptrdiff_t>(at),
                       text.begin() + static_cast<std::ptrdiff_t>(mark.offset), '\n'));
        at = mark.offset;
        origins[line] = mark.origin;
    }
    return origins;
}

void XmlWriter::indent()
{
    // Classes nest as deep as a document says; past this no line moves further to the right.
    constexpr std::size_t theDeepest = 40;
    static constexpr std::string_view theBlanks =
        "                                                                                ";
    static_assert(theBlanks.size() == 2 * theDeepest);
    myOut += theBlanks.substr(0, 2 * std::min<std::size_t>(myDepth, theDeepest));
}

}  // namespace omt
