// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/plan.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <numeric>

namespace omt
{

namespace
{

/// So many names are compared one after the other.
constexpr std::uint32_t theFewParts = 16;

}  // namespace

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

std::size_t Enumeration::slotOf(std::string_view name, std::size_t slots)
{
    constexpr std::uint64_t theFactor = 0x9E3779B97F4A7C15;
    std::uint64_t mixed = name.size();
    const auto mix = [&mixed](std::uint64_t word)
    {
        mixed = (mixed ^ word) * theFactor;
        mixed ^= mixed >> 32;
    };
    // In words that overlap at the end.
    const auto load = [&name](std::size_t at, std::size_t size)
    {
        std::uint64_t word = 0;
        std::memcpy(&word, name.data() + at, size);
        return word;
    };
    for (std::size_t at = 0; at + 8 < name.size(); at += 8) mix(load(at, 8));
    if (name.size() >= 8)
        mix(load(name.size() - 8, 8));
    else if (name.size() >= 4)
        mix(load(0, 4) << 32 | load(name.size() - 4, 4));
    else
        for (const char letter : name) mix(static_cast<unsigned char>(letter));
    return mixed & (slots - 1);
}

// An entry whose slot is taken is found by order, so that it takes no longer to fill them where
// many meet.
void Plan::addSlots(Enumeration& table) const
{
    const std::size_t size = std::bit_ceil(2 * table.entries.size());
    table.nameSlots.assign(size, theNone);
    for (const std::uint32_t entry : table.byName)
    {
        const std::string_view name = text(table.entries[entry].name);
        std::uint32_t& slot = table.nameSlots[Enumeration::slotOf(name, size)];
        if (slot == theNone) slot = entry;
    }
    for (const std::uint32_t entry : table.byNumber)
    {
        const std::int64_t number = table.entries[entry].number;
        if (static_cast<std::uint64_t>(number) < table.dense.size()) continue;
        if (table.numberSlots.empty()) table.numberSlots.assign(size, theNone);
        std::uint32_t& slot = table.numberSlots[slotOf(static_cast<std::uint64_t>(number), size)];
        if (slot == theNone) slot = entry;
    }
}

std::uint32_t Plan::findSparse(const Enumeration& table, std::int64_t number)
{
    if (table.numberSlots.empty()) return theNone;
    const std::uint32_t slot =
        table.numberSlots[slotOf(static_cast<std::uint64_t>(number), table.numberSlots.size())];
    if (slot == theNone || table.entries[slot].number == number) return slot;
    const auto place = std::lower_bound(table.byNumber.begin(), table.byNumber.end(), number,
                                        [&table](std::uint32_t entry, std::int64_t wanted)
                                        { return table.entries[entry].number < wanted; });
    if (place == table.byNumber.end() || table.entries[*place].number != number) return theNone;
    return *place;
}

std::uint32_t Plan::findEntry(const Enumeration& table, std::string_view name) const
{
    if (table.nameSlots.empty()) return theNone;
    const std::uint32_t slot = table.nameSlots[Enumeration::slotOf(name, table.nameSlots.size())];
    if (slot == theNone || text(table.entries[slot].name) == name) return slot;
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
    return targetOf(variant, alternative);
}

Target Plan::targetOf(const Node& variant, std::uint32_t alternative) const
{
    Target target;
    target.alternative = alternative;
    if (alternative >= theUnknown) return target;
    target.node = parts[variant.first + alternative].node;
    const Node& node = nodes[target.node];
    if (node.quick != QuickForm::plain) return target;
    target.size = node.size;
    target.gaps = node.gaps;
    target.gapCount = node.gapCount;
    return target;
}

void Plan::sortParts()
{
    for (const Node& node : nodes)
    {
        if (node.parts <= theFewParts) continue;
        partsByName.resize(parts.size());
        const auto first = partsByName.begin() + node.first;
        const auto end = first + node.parts;
        std::iota(first, end, 0U);
        const auto isBefore = [&](std::uint32_t one, std::uint32_t two)
        { return text(parts[node.first + one].name) < text(parts[node.first + two].name); };
        if (!std::is_sorted(first, end, isBefore)) std::sort(first, end, isBefore);
    }
}

std::uint32_t Plan::findPart(const Node& node, std::string_view name) const
{
    if (node.parts > theFewParts && !partsByName.empty())
    {
        const auto first = partsByName.begin() + node.first;
        const auto end = first + node.parts;
        const auto place = std::lower_bound(first, end, name,
                                            [&](std::uint32_t part, std::string_view wanted) {
                                                return text(parts[node.first + part].name) < wanted;
                                            });
        const bool isFound = place != end && text(parts[node.first + *place].name) == name;
        return isFound ? *place : theNone;
    }
    for (std::uint32_t i = 0; i < node.parts; ++i)
        if (text(parts[node.first + i].name) == name) return i;
    return theNone;
}

}  // namespace omt
