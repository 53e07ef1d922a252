// SPDX-License-Identifier: Apache-2.0
#include "omt/check/diffPairing.h"

#include "omt/base/nameHash.h"
#include "omt/model/parts.h"

#include <algorithm>
#include <string>

namespace omt
{

namespace
{

bool isClass(Kind kind)
{
    return kind == Kind::objectClass || kind == Kind::interactionClass;
}

/// Tables whose rows are known by something else than a name that somebody chose, or say too
/// little to be known by it.
bool isKnownByContent(Kind kind)
{
    return isDatatype(kind) || kind == Kind::dimension || kind == Kind::updateRate ||
           kind == Kind::routingSpace;
}

/// A name that stands for those that editions give to the class above all others.
constexpr std::string_view theRootName = "\n";

/// One number of several; never 0.
std::uint64_t mixed(std::uint64_t one, std::uint64_t two)
{
    std::uint64_t key = (one ^ (two + 0x9E3779B97F4A7C15 + (one << 6) + (one >> 2)));
    key *= 0xBF58476D1CE4E5B9;
    return (key ^ key >> 31) | 1;
}

std::uint64_t nameKey(const DiffItem& item)
{
    return NameHash()(item.name());
}

}  // namespace

DiffPairing::DiffPairing(const DiffItems& before, const DiffItems& after,
                         const IsSameWire& isSameWire)
    : myItemsBefore(before),
      myItemsAfter(after),
      myBefores(after.size(), theNoItem),
      myAfters(before.size(), theNoItem),
      myContentsBefore(before.size()),
      myContentsAfter(after.size())
{
    addContents(before, myContentsBefore);
    addContents(after, myContentsAfter);
    pairByName(true);
    pairByName(false);
    pairClasses();
    pairMembers();
    pairByUse(isSameWire);
    pairByContent();
}

void DiffPairing::pair(Id before, Id after)
{
    myBefores[after] = before;
    myAfters[before] = after;
}

/// What classes say is what they and their members say, and the names of the classes below.
void DiffPairing::addContents(const DiffItems& items, std::vector<std::uint64_t>& contents) const
{
    for (Id item = 0; item < items.size(); ++item)
    {
        contents[item] += contentOf(items[item]);
        const Id owner = items[item].owner;
        if (owner == theNoItem) continue;
        // Sums, as the order does not matter.
        contents[owner] += mixed(nameKey(items[item]), items[item].member ? contents[item] : 0);
    }
}

std::uint64_t DiffPairing::ownerKey(const DiffItems& items, Id item) const
{
    const Id owner = items.ownerBelowRoot(item);
    if (&items == &myItemsBefore || owner == theNoItem) return owner;
    return myBefores[owner] == theNoItem ? std::uint64_t{theNoItem} + 1 + owner : myBefores[owner];
}

bool DiffPairing::isInOtherClass(Id before, Id after) const
{
    return ownerKey(myItemsBefore, before) != ownerKey(myItemsAfter, after);
}

// Those that have one name several times are paired in their order.
void DiffPairing::pairByName(bool isOneKind)
{
    struct Key
    {
        std::uint64_t owner;
        Kind kind;
        std::string_view name;
        bool operator==(const Key& other) const
        {
            return owner == other.owner && kind == other.kind && name == other.name;
        }
    };
    const auto hash = [](const Key& key)
    {
        return static_cast<std::size_t>(
            mixed(NameHash()(key.name), mixed(key.owner, std::uint64_t(key.kind))));
    };
    const auto keyOf = [&](const DiffItems& items, Id item)
    {
        const DiffItem& one = items[item];
        const Kind kind = !isOneKind && isDatatype(one.kind) ? Kind::section : one.kind;
        return Key{ownerKey(items, item), kind, items.isRoot(item) ? theRootName : one.name()};
    };
    std::unordered_map<Key, std::pair<Id, Id>, decltype(hash)> firsts(myItemsBefore.size(), hash);
    std::vector<Id> nexts(myItemsBefore.size(), theNoItem);
    for (Id item = 0; item < myItemsBefore.size(); ++item)
    {
        if (myAfters[item] != theNoItem) continue;
        const auto [place, isNew] =
            firsts.try_emplace(keyOf(myItemsBefore, item), std::pair(item, item));
        if (isNew) continue;
        auto& [first, last] = place->second;
        if (first == theNoItem)
            first = item;
        else
            nexts[last] = item;
        last = item;
    }
    for (Id item = 0; item < myItemsAfter.size(); ++item)
    {
        if (myBefores[item] != theNoItem) continue;
        const auto found = firsts.find(keyOf(myItemsAfter, item));
        if (found == firsts.end() || found->second.first == theNoItem) continue;
        const Id before = found->second.first;
        found->second.first = nexts[before];
        pair(before, item);
    }
}

template <typename Key>
bool DiffPairing::pairUnique(const Key& key)
{
    struct Candidates
    {
        Id before = theNoItem;
        Id after = theNoItem;
        bool areMany = false;
    };
    std::unordered_map<std::uint64_t, Candidates> all;
    const auto add = [&](const DiffItems& items, Id item, Id Candidates::*side)
    {
        const std::uint64_t number = key(items, item);
        if (number == 0) return;
        Candidates& candidates = all[number];
        candidates.areMany = candidates.areMany || candidates.*side != theNoItem;
        candidates.*side = item;
    };
    for (Id item = 0; item < myItemsBefore.size(); ++item)
        if (myAfters[item] == theNoItem) add(myItemsBefore, item, &Candidates::before);
    for (Id item = 0; item < myItemsAfter.size(); ++item)
        if (myBefores[item] == theNoItem) add(myItemsAfter, item, &Candidates::after);
    bool isAny = false;
    for (const auto& [number, candidates] : all)
    {
        if (candidates.areMany || candidates.before == theNoItem || candidates.after == theNoItem)
            continue;
        pair(candidates.before, candidates.after);
        isAny = true;
    }
    return isAny;
}

void DiffPairing::pairClasses()
{
    const auto contents = [this](const DiffItems& items) -> const std::vector<std::uint64_t>&
    { return &items == &myItemsBefore ? myContentsBefore : myContentsAfter; };
    const auto renamed = [&](const DiffItems& items, Id item) -> std::uint64_t
    {
        const bool isCandidate = isClass(items[item].kind) && !items.isRoot(item) &&
                                 contents(items)[item] != contentOf(items[item]);
        return isCandidate ? mixed(ownerKey(items, item), contents(items)[item]) : 0;
    };
    const auto moved = [](const DiffItems& items, Id item) -> std::uint64_t
    {
        const bool isCandidate = isClass(items[item].kind) && !items.isRoot(item);
        return isCandidate ? mixed(std::uint64_t(items[item].kind), nameKey(items[item])) : 0;
    };
    // A class that was found shows what stands below it. Few levels are ever renamed at once.
    constexpr int theMostRounds = 8;
    for (int round = 0; round < theMostRounds && pairUnique(renamed); ++round) pairByName(true);
    for (int round = 0; round < theMostRounds && pairUnique(moved); ++round) pairByName(true);
}

void DiffPairing::pairMembers()
{
    const auto content = [this](const DiffItems& items, Id item)
    { return (&items == &myItemsBefore ? myContentsBefore : myContentsAfter)[item]; };
    pairUnique(
        [&](const DiffItems& items, Id item) -> std::uint64_t
        {
            if (!items[item].member) return 0;
            return mixed(ownerKey(items, item), content(items, item));
        });
    pairUnique(
        [&](const DiffItems& items, Id item) -> std::uint64_t
        {
            if (!items[item].member) return 0;
            return mixed(nameKey(items[item]), content(items, item));
        });
}

// Datatypes of members, then those of what these hold, as far as they belong together.
void DiffPairing::pairByUse(const IsSameWire& isSameWire)
{
    std::vector<std::pair<std::string_view, std::string_view>> left;
    for (Id item = myItemsAfter.size(); item-- > 0;)
        if (const Id before = myBefores[item]; before != theNoItem && myItemsAfter[item].member)
            left.emplace_back(myItemsBefore[before].member->dataType,
                              myItemsAfter[item].member->dataType);
    const auto addHeld = [&](Id before, Id after)
    {
        const auto names = [](const DiffItems& items, Id item)
        { return referredBy(items.model().findDatatype(items[item].name())); };
        const std::vector<Text> first = names(myItemsBefore, before);
        const std::vector<Text> second = names(myItemsAfter, after);
        if (first.size() != second.size()) return;
        for (std::size_t i = first.size(); i-- > 0;) left.emplace_back(first[i], second[i]);
    };
    for (Id item = myItemsAfter.size(); item-- > 0;)
        if (isDatatype(myItemsAfter[item].kind) && myBefores[item] != theNoItem)
            addHeld(myBefores[item], item);
    while (!left.empty())
    {
        const auto [first, second] = left.back();
        left.pop_back();
        const Id before = myItemsBefore.findDatatype(first);
        const Id after = myItemsAfter.findDatatype(second);
        if (before == theNoItem || after == theNoItem || myAfters[before] != theNoItem ||
            myBefores[after] != theNoItem || !isSameWire(first, second))
            continue;
        pair(before, after);
        addHeld(before, after);
    }
}

void DiffPairing::pairByContent()
{
    pairUnique(
        [this](const DiffItems& items, Id item)
        {
            const auto& contents = &items == &myItemsBefore ? myContentsBefore : myContentsAfter;
            return isKnownByContent(items[item].kind) ? contents[item] : 0;
        });
}

}  // namespace omt
