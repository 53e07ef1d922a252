// SPDX-License-Identifier: Apache-2.0
#include "omt/check/partDiff.h"

#include "omt/base/nameHash.h"
#include "omt/model/compare.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

namespace omt
{

namespace
{

/// Two definitions, or parts, with what they are in their models.
struct Side
{
    Kind kind;
    Edition edition;
};

const Row* findRow(Kind kind, std::string_view key)
{
    for (const Row& row : rowsOf(kind))
        if (row.key == key) return &row;
    return nullptr;
}

/// All that a property says.
std::string textOf(const Definition& definition, const Row* row, bool isToday)
{
    const auto word = [&](const Text& text)
    { return isToday ? comparable(text, *row) : text.str(); };
    std::string all;
    if (row && row->oneText) all = word(definition.*row->oneText);
    if (row && row->someTexts)
        for (const Text& text : definition.*row->someTexts)
            all += (all.empty() ? "" : ", ") + word(text);
    return all;
}

bool hasRow(const Row& row, Kind kind, Edition edition)
{
    // The value of a switch has no word of its own in 1516-2000.
    return kind == Kind::switchSetting || !row.words.in(edition).empty();
}

class DetailFinder
{
public:
    DetailFinder(Side before, Side after) : myBefore(before), myAfter(after) {}

    std::vector<Detail> take() { return std::move(myDetails); }

    void compareKinds()
    {
        if (myBefore.kind != myAfter.kind)
            add({Change::changed, "", "", "kind", std::string(nameOf(myBefore.kind)),
                 std::string(nameOf(myAfter.kind))});
    }

    void compareRows(const Definition& before, Kind kindBefore, const Definition& after, Kind kind,
                     bool isPart)
    {
        for (const Row& row : rowsOf(kind))
        {
            const Row* const other = findRow(kindBefore, row.key);
            const bool isCompared =
                other && row.bearing == Bearing::behaviour && row.form != Row::Form::parts &&
                row.oneText != &Definition::name && hasRow(*other, kindBefore, myBefore.edition) &&
                hasRow(row, kind, myAfter.edition);
            if (!isCompared || (kindBefore == kind && isSame(before, after, kind, row))) continue;
            if (textOf(before, other, true) == textOf(after, &row, true)) continue;
            Detail detail = isPart ? called(after, kind) : Detail();
            detail.property = row.key;
            detail.before = textOf(before, other, false);
            detail.after = textOf(after, &row, false);
            add(std::move(detail));
        }
    }

    void compareParts(const PartView& before, const PartView& after);

private:
    static Detail called(const Definition& part, Kind kind)
    {
        Detail detail;
        detail.partKind = nameOf(kind);
        detail.part = part.name.str();
        return detail;
    }

    void add(Detail detail) { myDetails.push_back(std::move(detail)); }

    void addWhole(Change change, const Definition& part, Kind kind)
    {
        Detail detail = called(part, kind);
        detail.change = change;
        const Row* const said = findRow(kind, kind == Kind::enumerator    ? "value"
                                              : kind == Kind::alternative ? "enumerator"
                                                                          : "dataType");
        (change == Change::removed ? detail.before : detail.after) = textOf(part, said, false);
        add(std::move(detail));
    }

    Side myBefore;
    Side myAfter;
    std::vector<Detail> myDetails;
};

/// What tells parts of one kind apart if their name does not.
std::string otherKey(const PartView& parts, std::size_t i)
{
    switch (parts.kind())
    {
        case Kind::enumerator:
        {
            const auto& values = static_cast<const Enumerator&>(parts[i]).values;
            return values.empty() ? std::string() : comparableNumber(values[0]);
        }
        case Kind::alternative:
            return static_cast<const Alternative&>(parts[i]).enumerator.str();
        case Kind::field:
        case Kind::component:
            return std::to_string(i);
        default:
            return {};
    }
}

std::string nameKey(const PartView& parts, std::size_t i)
{
    const bool isNamed = saysSomething(parts[i].name.view());
    return isNamed ? parts[i].name.str() : '\n' + otherKey(parts, i);
}

constexpr std::size_t theNoPart = static_cast<std::size_t>(-1);

/// Pairs parts that have no partner yet and one key; equal keys in their order.
template <typename Key>
void pairParts(const PartView& before, const PartView& after, std::vector<std::size_t>& befores,
               std::vector<std::size_t>& afters, const Key& key)
{
    OwnNameMap<std::vector<std::size_t>> places;
    for (std::size_t i = before.size(); i-- > 0;)
        if (afters[i] == theNoPart) places[key(before, i)].push_back(i);
    for (std::size_t i = 0; i < after.size(); ++i)
    {
        if (befores[i] != theNoPart) continue;
        const auto found = places.find(key(after, i));
        if (found == places.end() || found->first.empty() || found->second.empty()) continue;
        befores[i] = found->second.back();
        afters[found->second.back()] = i;
        found->second.pop_back();
    }
}

/// Which of the numbers stay in order where as few as possible are taken out; theNoPart never does.
std::vector<bool> longestRise(const std::vector<std::size_t>& numbers)
{
    std::vector<std::size_t> ends;
    std::vector<std::size_t> previous(numbers.size(), theNoPart);
    for (std::size_t i = 0; i < numbers.size(); ++i)
    {
        if (numbers[i] == theNoPart) continue;
        const auto place =
            std::lower_bound(ends.begin(), ends.end(), numbers[i],
                             [&](std::size_t end, std::size_t n) { return numbers[end] < n; });
        if (place != ends.begin()) previous[i] = *(place - 1);
        if (place == ends.end())
            ends.push_back(i);
        else
            *place = i;
    }
    std::vector<bool> rises(numbers.size());
    for (std::size_t i = ends.empty() ? theNoPart : ends.back(); i != theNoPart; i = previous[i])
        rises[i] = true;
    return rises;
}

bool isField(Kind kind)
{
    return kind == Kind::field || kind == Kind::component;
}

void DetailFinder::compareParts(const PartView& before, const PartView& after)
{
    if (before.kind() != after.kind() && !(isField(before.kind()) && isField(after.kind()))) return;
    std::vector<std::size_t> befores(after.size(), theNoPart);
    std::vector<std::size_t> afters(before.size(), theNoPart);
    pairParts(before, after, befores, afters, nameKey);
    pairParts(before, after, befores, afters, otherKey);
    const bool isOrdered = isField(after.kind());
    const std::vector<bool> stays = longestRise(befores);
    for (std::size_t i = 0; i < after.size(); ++i)
    {
        const std::size_t old = befores[i];
        if (old == theNoPart)
        {
            addWhole(Change::added, after[i], after.kind());
            continue;
        }
        Detail detail = called(after[i], after.kind());
        if (before[old].name != after[i].name &&
            (saysSomething(before[old].name.view()) || saysSomething(after[i].name.view())))
        {
            detail.change = Change::renamed;
            detail.property = "name";
            detail.before = before[old].name.str();
            detail.after = after[i].name.str();
            add(detail);
        }
        if (isOrdered && !stays[i])
        {
            detail.change = Change::moved;
            detail.property = "place";
            detail.before = std::to_string(old + 1);
            detail.after = std::to_string(i + 1);
            add(detail);
        }
        compareRows(before[old], before.kind(), after[i], after.kind(), true);
    }
    for (std::size_t i = 0; i < before.size(); ++i)
        if (afters[i] == theNoPart) addWhole(Change::removed, before[i], before.kind());
}

}  // namespace

std::vector<Detail> detailsOf(const DiffItem& before, Edition editionBefore, const DiffItem& after,
                              Edition editionAfter)
{
    DetailFinder finder({before.kind, editionBefore}, {after.kind, editionAfter});
    finder.compareKinds();
    finder.compareRows(*before.definition, before.kind, *after.definition, after.kind, false);
    finder.compareParts(before.parts, after.parts);
    return finder.take();
}

}  // namespace omt
