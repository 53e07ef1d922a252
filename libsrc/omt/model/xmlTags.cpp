// SPDX-License-Identifier: Apache-2.0
#include "omt/model/xmlTags.h"

#include "omt/model/xmlWords.h"

namespace omt
{

XmlTag::XmlTag(std::string_view word) : mySize(word.size())
{
    myOctets.reserve(2 * mySize + 7 + theSpare);
    ((myOctets += '<') += word) += ">\n";
    ((myOctets += "</") += word) += ">\n";
    myOctets.append(theSpare, ' ');
}

const XmlTags& XmlTags::of(Edition edition)
{
    static const XmlTags the2010(Edition::ieee2010);
    static const XmlTags the2025(Edition::ieee2025);
    return edition == Edition::ieee2025 ? the2025 : the2010;
}

XmlTags::XmlTags(Edition edition) : myKinds(static_cast<std::size_t>(Kind::section) + 1)
{
    for (std::size_t kind = 0; kind < myKinds.size(); ++kind)
    {
        const std::span<const Row> rows = rowsOf(static_cast<Kind>(kind));
        for (std::size_t i = 0; i < rows.size(); ++i)
        {
            const Row& row = rows[i];
            std::string_view word = row.words.in(edition);
            if (word.empty())
                word = edition == Edition::ieee2025 ? row.words.in2010 : row.words.in2025;
            if (word.empty() && row.form != Row::Form::content) continue;
            (row.isXmlAttribute ? myKinds[kind].attributes : myKinds[kind].elements)
                .push_back({&row, static_cast<std::uint8_t>(i), XmlTag(word),
                            XmlTag(row.around(edition))});
        }
    }
    for (const TableWord& table : XmlWords::tables())
        myTables.push_back({XmlTag(table.word), XmlTag(table.element)});
}

}  // namespace omt
