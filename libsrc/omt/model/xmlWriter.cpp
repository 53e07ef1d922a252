// SPDX-License-Identifier: Apache-2.0
#include "omt/model/xmlWriter.h"

#include "omt/base/xmlText.h"
#include "omt/model/parts.h"
#include "omt/model/xmlWords.h"

#include <algorithm>
#include <type_traits>

namespace omt
{

namespace
{

/// Blanks around a text do not count, and so are not written.
std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view theBlanks = " \t\r\n";
    if (!text.empty() && text.front() > ' ' && text.back() > ' ') return text;
    const std::size_t first = text.find_first_not_of(theBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(theBlanks) - first + 1);
}

/// Classes nest as deep as a document says; past this no line moves further to the right.
constexpr std::size_t theDeepest = 40;

/// Longer texts are written block by block.
constexpr std::size_t theLong = 1024;

/// How many octets the indentation and both tags of an element take while they are written.
std::size_t roomFor(const XmlTag& tag)
{
    return 2 * theDeepest + tag.startSize() + tag.endSize() + 2 * XmlTag::theSpare;
}

/// Calls `visit` with the table that holds definitions of a kind; not for Kind::section.
template <typename Visit>
void visitTable(const Tables& tables, Kind kind, const Visit& visit)
{
    if (kind == Kind::note) visit(tables.notes);
    forEachNamedTable(
        [&](auto table)
        {
            using T = typename std::decay_t<decltype(tables.*table)>::value_type;
            if (kind == T::theKind) visit(tables.*table);
        });
}

bool hasDefinitions(const Tables& tables, Kind kind)
{
    bool isThere = false;
    visitTable(tables, kind, [&](const auto& table) { isThere = !table.empty(); });
    return isThere;
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
    for (const Section* section : mySections[0]) collectAsides(*section);
    writeRoot();
    writeIdentification();
    const std::span<const TableWord> tables = XmlWords::tables();
    for (std::uint8_t i = 1; i < tables.size(); ++i)
        if (tables[i].parent == 0) writeTable(i);
    writeInner(asidesOf(Aside::theWhole, 0));
    writeComments(asidesOf(Aside::theEnd, 0));
    myOut += "</objectModel>\n";
    myOut.finish();
}

/// The XML declaration, comments before the root, and its start tag.
void XmlWriter::writeRoot()
{
    myOut += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    const Asides asides = asidesOf(Aside::theWhole, 0);
    writeComments(asides);
    myOut += "<objectModel xmlns=\"";
    myOut += namespaceOf(myEdition);
    myOut += '"';
    writeAsideAttributes(asides);
    myOut += ">\n";
    myDepth = 1;
    declarePrefixes(asides);
}

void XmlWriter::writeIdentification()
{
    static const XmlTag theTag("modelIdentification");
    const Identification none;
    const Identification& identification =
        myTables.modules.empty() ? none : myTables.modules.front().identification;
    const std::size_t before = myOut.size();
    const Opened opened = open(identification, Kind::identification, theTag);
    writeProperties(identification, Kind::identification);
    const bool isEmpty = myOut.size() == opened.mark && identification.asides.empty();
    close(theTag, opened);
    if (isEmpty) myOut.cut(before);
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

bool XmlWriter::isTableThere(std::uint8_t table) const
{
    const std::span<const TableWord> tables = XmlWords::tables();
    const auto isThere = [&](std::uint8_t each)
    { return !mySections[each].empty() || hasDefinitions(myTables, tables[each].holds); };
    if (isThere(table)) return true;
    for (std::uint8_t i = 1; i < tables.size(); ++i)
        if (tables[i].parent == table && isThere(i)) return true;
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
    const Opened opened = open(whole, Kind::section, myTags.table(table));
    writeRows(table);
    for (std::uint8_t i = 1; i < tables.size(); ++i)
        if (tables[i].parent == table) writeTable(i);
    close(myTags.table(table), opened);
}

void XmlWriter::writeRows(std::uint8_t table)
{
    const XmlTag& tag = myTags.definition(table);
    visitTable(myTables, XmlWords::tables()[table].holds,
               [&](const auto& definitions)
               {
                   using T = typename std::decay_t<decltype(definitions)>::value_type;
                   if constexpr (std::is_base_of_v<ClassDefinition, T>)
                       writeClasses(definitions, tag);
                   else
                       writeNamed(definitions, tag);
               });
}

/// Definitions by the element of their table, or by their own names where it has none.
template <typename T>
void XmlWriter::writeNamed(const std::vector<T>& definitions, const XmlTag& tag)
{
    if (tag.isThere())
        for (const T& definition : definitions) writeDefinition(definition, T::theKind, tag);
    else
        for (const T& definition : definitions)
            writeDefinition(definition, T::theKind, XmlTag(definition.name));
}

/// A hierarchy, without recursion, as a document may nest it as deep as it likes.
template <typename T>
void XmlWriter::writeClasses(const std::vector<T>& classes, const XmlTag& tag)
{
    struct Level
    {
        std::size_t node;
        std::uint32_t next;
        Opened opened;
    };
    const Children children(classes);
    std::vector<Level> levels = {
        {classes.size(), children.starts[classes.size()], {}}
    };
    while (!levels.empty())
    {
        Level& level = levels.back();
        if (level.next < children.starts[level.node + 1])
        {
            const std::uint32_t child = children.all[level.next++];
            const Opened opened = open(classes[child], T::theKind, tag);
            writeProperties(classes[child], T::theKind);
            levels.push_back({child, children.starts[child], opened});
            continue;
        }
        if (level.node < classes.size()) close(tag, level.opened);
        levels.pop_back();
    }
}

// Definitions
// -----------------------------------------------------------------------------------

void XmlWriter::writeDefinition(const Definition& definition, Kind kind, const XmlTag& tag)
{
    const Opened opened = open(definition, kind, tag);
    writeProperties(definition, kind);
    close(tag, opened);
}

/// The start tag and the comments before it.
XmlWriter::Opened XmlWriter::open(const Definition& definition, Kind kind, const XmlTag& tag)
{
    const std::size_t asidesAround = myFirstAside;
    myFirstAside = myAsides.size();
    collectAsides(definition);
    const Asides asides = asidesOf(Aside::theWhole, 0);
    writeComments(asides);
    myModule = definition.module;
    mark(definition.line);
    char* const end = tag.putStart(putIndentation(myOut.room(roomFor(tag))));
    if (asides.empty() && myTags.attributes(kind).empty())
        myOut.use(end + 1);
    else
    {
        myOut.use(end - 1);
        writeAttributes(definition, kind, tag);
        writeAsideAttributes(asides);
        myOut += ">\n";
    }
    ++myDepth;
    return {myOut.size(), asidesAround};
}

void XmlWriter::writeAttributes(const Definition& definition, Kind kind, const XmlTag& tag)
{
    for (const WrittenRow& row : myTags.attributes(kind))
    {
        const Text& text = definition.*row.row->oneText;
        if (!text.isThere()) continue;
        myOut += ' ';
        myOut += tag.word() == "automaticResignAction" ? "resignAction" : row.tag.word();
        myOut += "=\"";
        appendXmlValue(myOut, text);
        myOut += '"';
    }
}

void XmlWriter::close(const XmlTag& tag, const Opened& opened)
{
    writeInner(asidesOf(Aside::theWhole, 0));
    writeComments(asidesOf(Aside::theEnd, 0));
    myAsides.resize(myFirstAside);
    myFirstAside = opened.asidesAround;
    closeElement(tag, opened.mark);
}

void XmlWriter::closeElement(const XmlTag& tag, std::size_t mark)
{
    --myDepth;
    if (myOut.size() == mark)
    {
        myOut.cut(mark - 2);
        myOut += "/>\n";
        return;
    }
    myOut.use(tag.putEnd(putIndentation(myOut.room(roomFor(tag)))));
}

void XmlWriter::writeProperties(const Definition& definition, Kind kind)
{
    for (const WrittenRow& row : myTags.elements(kind))
    {
        switch (row.row->form)
        {
            case Row::Form::text:
                if (!(definition.*row.row->oneText).isThere()) break;
                writeText(definition.*row.row->oneText, row, 0);
                if (myFirstAside < myAsides.size()) writeRepeated(row);
                break;
            case Row::Form::texts:
                if ((definition.*row.row->someTexts).isThere())
                    writeTexts(definition.*row.row->someTexts, row);
                break;
            case Row::Form::content:
                if ((definition.*row.row->oneText).empty()) break;
                indent();
                writeContent(definition.*row.row->oneText);
                myOut += '\n';
                break;
            case Row::Form::parts:
                writeParts(definition, row);
                myModule = definition.module;
                break;
        }
    }
}

void XmlWriter::writeTexts(const List<Text>& texts, const WrittenRow& row)
{
    const bool isAround = row.around.isThere();
    std::size_t mark = 0;
    if (isAround)
    {
        const Asides asides = asidesOf(row.index, Aside::theAround);
        writeComments(asides);
        char* const end = row.around.putStart(putIndentation(myOut.room(roomFor(row.around))));
        myOut.use(end - 1);
        writeAsideAttributes(asides);
        myOut += ">\n";
        mark = myOut.size();
        ++myDepth;
    }
    for (std::uint32_t i = 0; i < texts.size(); ++i) writeText(texts[i], row, i);
    if (!isAround) return;
    writeInner(asidesOf(row.index, Aside::theAround));
    closeElement(row.around, mark);
}

void XmlWriter::writeText(const Text& text, const WrittenRow& row, std::uint32_t item)
{
    const Asides asides = asidesOf(row.index, item);
    writeComments(asides);
    mark(text.line());
    const std::string_view content = trimmed(text);
    if (!asides.empty() || content.empty() || content.size() > theLong)
        return writeTextWith(asides, content, row);
    char* end = row.tag.putStart(putIndentation(myOut.room(roomFor(row.tag) + content.size())));
    const std::size_t plain = copyPlainXml(end, content);
    end += plain;
    if (plain < content.size())
    {
        myOut.use(end);
        appendXmlContent(myOut, content.substr(plain));
        end = myOut.room(roomFor(row.tag));
    }
    myOut.use(row.tag.putEnd(end));
}

/// A text that may be empty, with the XML attributes and elements beside it.
void XmlWriter::writeTextWith(Asides asides, std::string_view text, const WrittenRow& row)
{
    myOut.use(row.tag.putStart(putIndentation(myOut.room(roomFor(row.tag)))) - 1);
    writeAsideAttributes(asides);
    const std::size_t mark = myOut.size();
    myOut += '>';
    writeContent(text);
    for (const Aside* aside : asides)
        if (aside->what == Aside::What::element && !isRepeated(*aside, *row.row))
            myOut += aside->text;
    if (myOut.size() == mark + 1)
    {
        myOut.cut(mark);
        myOut += "/>\n";
        return;
    }
    myOut.use(row.tag.putEnd(myOut.room(roomFor(row.tag))));
}

/// Elements of a property that the definition has already, as they were read.
void XmlWriter::writeRepeated(const WrittenRow& row)
{
    for (const Aside* aside : asidesOf(row.index, 0))
        if (isRepeated(*aside, *row.row)) writeLine(*aside);
}

void XmlWriter::writeParts(const Definition& definition, const WrittenRow& row)
{
    const XmlTag& tag = row.tag;
    switch (row.row->parts)
    {
        case Kind::keyword:
            return writeList(static_cast<const Identification&>(definition).keywords, tag);
        case Kind::contact:
            return writeList(static_cast<const Identification&>(definition).contacts, tag);
        case Kind::reference:
            return writeList(static_cast<const Identification&>(definition).references, tag);
        case Kind::glyph:
            return writeList(static_cast<const Identification&>(definition).glyphs, tag);
        case Kind::directedInteraction:
            return writeList(static_cast<const ObjectClass&>(definition).directedInteractions, tag);
        case Kind::attribute:
            return writeList(static_cast<const ObjectClass&>(definition).attributes, tag);
        case Kind::parameter:
            return writeList(static_cast<const InteractionClass&>(definition).parameters, tag);
        case Kind::enumerator:
            return writeList(static_cast<const EnumeratedData&>(definition).enumerators, tag);
        case Kind::field:
            return writeList(static_cast<const FixedRecord&>(definition).fields, tag);
        case Kind::alternative:
            return writeList(static_cast<const VariantRecord&>(definition).alternatives, tag);
        default:
            break;
    }
}

template <typename T>
void XmlWriter::writeList(const List<T>& parts, const XmlTag& tag)
{
    for (const T& part : parts) writeDefinition(part, T::theKind, tag);
}

// Texts
// ----------------------------------------------------------------------------------------

void XmlWriter::writeContent(std::string_view text)
{
    while (!text.empty())
    {
        const std::string_view block = text.substr(0, theLong);
        const std::size_t plain = copyPlainXml(myOut.room(block.size()), block);
        myOut.use(myOut.room(0) + plain);
        text.remove_prefix(plain);
        if (plain < block.size()) return appendXmlContent(myOut, text);
    }
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
    myOut.use(putIndentation(myOut.room(2 * theDeepest)));
}

char* XmlWriter::putIndentation(char* to) const
{
    // Nearly all lines are at most this deep, which is one step for the processor.
    constexpr std::size_t theUsual = 8;
    const std::size_t depth = std::min<std::size_t>(myDepth, theDeepest);
    std::memset(to, ' ', 2 * theUsual);
    if (depth > theUsual) std::memset(to + 2 * theUsual, ' ', 2 * (depth - theUsual));
    return to + 2 * depth;
}

}  // namespace omt
