// SPDX-License-Identifier: Apache-2.0
// Writes what stands beside properties: comments, references to notes, and what no row knows.
#include "omt/base/xmlText.h"
#include "omt/model/xmlWriter.h"

#include <algorithm>
#include <utility>

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

}  // namespace

bool isRepeated(const Aside& aside, const Row& row)
{
    const std::string_view name = aside.name.view().substr(aside.name.view().find(':') + 1);
    return aside.what == Aside::What::element && row.oneText &&
           (name == row.words.in2010 || name == row.words.in2025);
}

/// Adds the asides of a definition to those of the innermost one.
void XmlWriter::collectAsides(const Definition& definition)
{
    if (definition.asides.empty()) return;
    for (const Aside& aside : definition.asides) myAsides.push_back(&aside);
    const auto first = myAsides.begin() + static_cast<std::ptrdiff_t>(myFirstAside);
    if (!std::is_sorted(first, myAsides.end(), isBefore))
        std::stable_sort(first, myAsides.end(), isBefore);
}

/// Those of the innermost definition that belong to one element.
XmlWriter::Asides XmlWriter::asidesOf(std::uint8_t property, std::uint32_t item) const
{
    if (myFirstAside == myAsides.size()) return {};
    Aside sought;
    sought.property = property;
    sought.item = property >= Aside::theEnd ? 0 : item;
    const auto first = myAsides.begin() + static_cast<std::ptrdiff_t>(myFirstAside);
    const auto [begin, end] = std::equal_range(first, myAsides.end(), &sought, isBefore);
    return {begin, end};
}

void XmlWriter::writeComments(Asides asides)
{
    for (const Aside* aside : asides)
    {
        if (aside->what != Aside::What::comment) continue;
        indent();
        myOut += "<!--";
        appendXmlComment(myOut, aside->text);
        myOut += "-->\n";
    }
}

/// The references to notes as one XML attribute, and all that no property has.
void XmlWriter::writeAsideAttributes(Asides asides)
{
    bool isFirst = true;
    for (const Aside* aside : asides)
    {
        if (aside->what != Aside::What::notes) continue;
        myOut += !isFirst                         ? " "
                 : myEdition == Edition::ieee2025 ? " noteReferences=\""
                                                  : " notes=\"";
        appendXmlValue(myOut, aside->text);
        isFirst = false;
    }
    if (!isFirst) myOut += '"';
    for (const Aside* aside : asides)
    {
        if (aside->what != Aside::What::attribute) continue;
        ((myOut += ' ') += aside->name) += "=\"";
        appendXmlValue(myOut, aside->text);
        myOut += '"';
    }
}

/// Elements and texts that no row knows, a line each.
void XmlWriter::writeInner(Asides asides)
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

void XmlWriter::declarePrefixes(Asides asides)
{
    for (const Aside* aside : asides)
    {
        if (aside->what != Aside::What::attribute || aside->name.view().substr(0, 6) != "xmlns:")
            continue;
        GrowingText declaration(myDeclarations.emplace_back());
        ((declaration += ' ') += aside->name) += "=\"";
        appendXmlValue(declaration, aside->text);
        declaration += '"';
        declaration.finish();
    }
}

}  // namespace omt
