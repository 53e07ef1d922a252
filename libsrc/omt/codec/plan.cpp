// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/plan.h"

#include <algorithm>

namespace omt
{

Name Plan::add(std::string_view text)
{
    const Name name{static_cast<std::uint32_t>(pool.size()),
                    static_cast<std::uint32_t>(text.size())};
    pool += text;
    return name;
}

Name Plan::addQuoted(std::string_view text, std::string_view end, Name& name)
{
    constexpr std::string_view theDigits = "0123456789abcdef";
    pool += ',';
    Name quoted = add("\"");
    const std::size_t start = pool.size();
    for (const char letter : text)
    {
        const auto code = static_cast<unsigned char>(letter);
        if (letter == '"' || letter == '\\')
            pool += '\\';
        else if (code < 0x20)
        {
            pool += "\\u00";
            pool += theDigits[code >> 4];
            pool += theDigits[code & 15];
            continue;
        }
        pool += letter;
    }
    const bool isPlain = pool.size() - start == text.size();
    pool += '"';
    pool += end;
    quoted.size = static_cast<std::uint32_t>(pool.size()) - quoted.at;
    name = isPlain
               ? Name{static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(text.size())}
               : add(text);
    return quoted;
}

std::uint32_t Plan::findEntry(const Enumeration& table, std::int64_t number)
{
    if (static_cast<std::uint64_t>(number) < table.dense.size())
        return table.dense[static_cast<std::size_t>(number)];
    const auto place = std::lower_bound(table.byNumber.begin(), table.byNumber.end(), number,
                                        [&table](std::uint32_t entry, std::int64_t wanted)
                                        { return table.entries[entry].number < wanted; });
    if (place == table.byNumber.end() || table.entries[*place].number != number) return theNone;
    return *place;
}

std::uint32_t Plan::findEntry(const Enumeration& table, std::string_view name) const
{
    const auto place = std::lower_bound(table.byName.begin(), table.byName.end(), name,
                                        [&](std::uint32_t entry, std::string_view wanted)
                                        { return text(table.entries[entry].name) < wanted; });
    if (place == table.byName.end() || text(table.entries[*place].name) != name) return theNone;
    return *place;
}

Target Plan::findSparse(const Node& variant, std::int64_t number) const
{
    const Choices& table = choices[variant.table];
    // The last row that is not above the number, found without branches that cannot be foreseen.
    const Choices::Range* place = table.numbers.data();
    for (std::size_t size = table.numbers.size(); size > 1;)
    {
        const std::size_t half = size / 2;
        place = place[half].number <= number ? place + half : place;
        size -= half;
    }
    const bool isFound = !table.numbers.empty() && place->number == number;
    const std::uint32_t alternative = isFound                  ? place->alternative
                                      : table.other == theNone ? theUnknown
                                                               : table.other;
    if (alternative >= theUnknown) return {alternative, theNone};
    return {alternative, parts[variant.first + alternative].node};
}

std::uint32_t Plan::findPart(const Node& node, std::string_view name) const
{
    for (std::uint32_t i = 0; i < node.parts; ++i)
        if (text(parts[node.first + i].name) == name) return i;
    return theNone;
}

}  // namespace omt
