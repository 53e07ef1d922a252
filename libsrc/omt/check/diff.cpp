// SPDX-License-Identifier: Apache-2.0
#include "omt/check/diff.h"

#include "omt/base/nameHash.h"
#include "omt/check/diffItems.h"
#include "omt/check/diffPairing.h"
#include "omt/check/partDiff.h"
#include "omt/check/wireCompare.h"
#include "omt/check/wirePlan.h"
#include "omt/codec/compile.h"
#include "omt/model/compare.h"
#include "omt/model/parts.h"

namespace omt
{

namespace
{

/// Without hints, which say how octets are shown and not which ones there are.
Plan compiled(const Model& model)
{
    CodecOptions options;
    options.hasBuiltInHints = false;
    Findings ignored;
    Plan plan = Compiler(model, options, ignored).compile();
    toOctets(plan);
    return plan;
}

/// The octets of datatypes and members of two models.
class WireFinder
{
public:
    WireFinder(const DiffItems& before, const DiffItems& after)
        : myItemsBefore(before),
          myItemsAfter(after),
          myBefore(compiled(before.model())),
          myAfter(compiled(after.model())),
          myCompare(myBefore, myAfter, [this](std::string_view name) { return undecoded(name); })
    {
    }

    WireChange compare(std::string_view before, std::string_view after)
    {
        return compare(nodeOf(myBefore, before), before, nodeOf(myAfter, after), after);
    }

    /// Nothing for what has no octets.
    std::optional<WireChange> compare(std::uint32_t before, std::uint32_t after)
    {
        const DiffItem& first = myItemsBefore[before];
        const DiffItem& second = myItemsAfter[after];
        if (first.member && second.member)
        {
            const std::string_view one = first.member->dataType;
            const std::string_view two = second.member->dataType;
            if (!saysSomething(one) && !saysSomething(two)) return WireChange();
            return compare(nodeOf(myBefore, *first.member), one, nodeOf(myAfter, *second.member),
                           two);
        }
        // Of several datatypes of one name one counts.
        const bool areMeant = isDatatype(first.kind) && isDatatype(second.kind) &&
                              myItemsBefore.findDatatype(first.name()) == before &&
                              myItemsAfter.findDatatype(second.name()) == after;
        return areMeant ? std::optional(compare(first.name(), second.name())) : std::nullopt;
    }

private:
    static std::uint32_t nodeOf(const Plan& plan, std::string_view name)
    {
        const auto found = plan.names.find(std::string(name));
        return found == plan.names.end() ? theNone : found->second;
    }

    /// A member of HLA 1.3 that occurs several times is an array.
    static std::uint32_t nodeOf(const Plan& plan, const Member& member)
    {
        const std::uint32_t repeated =
            member.cardinality.empty()
                ? theNone
                : nodeOf(plan, Compiler::repeatedName(member.dataType, member.cardinality));
        return repeated != theNone ? repeated : nodeOf(plan, member.dataType);
    }

    WireChange compare(std::uint32_t before, std::string_view nameBefore, std::uint32_t after,
                       std::string_view nameAfter)
    {
        // What neither model defines is the same by its name.
        if (before == theNone && after == theNone && nameBefore == nameAfter) return {};
        return myCompare.compare(before, after);
    }

    Undecoded undecoded(std::string_view name) const
    {
        const std::uint32_t before = myItemsBefore.findDatatype(name);
        const std::uint32_t after = myItemsAfter.findDatatype(name);
        if (before == theNoItem || after == theNoItem) return {before == after};
        Undecoded found;
        found.isSame = detailsOf(myItemsBefore[before], myItemsBefore.edition(before),
                                 myItemsAfter[after], myItemsAfter.edition(after))
                           .empty();
        const std::vector<Text> first = referredBy(myItemsBefore.model().findDatatype(name));
        const std::vector<Text> second = referredBy(myItemsAfter.model().findDatatype(name));
        if (first.size() != second.size()) return {false};
        for (std::size_t i = 0; i < first.size(); ++i)
            if (saysSomething(first[i].view()) || saysSomething(second[i].view()))
                found.held.emplace_back(first[i].str(), second[i].str());
        return found;
    }

    const DiffItems& myItemsBefore;
    const DiffItems& myItemsAfter;
    const Plan myBefore;
    const Plan myAfter;
    WireCompare myCompare;
};

/// Which module of one model is which of another: by the name of its identification, else by that
/// of its file; the only ones are the same anyway.
class ModulePairs
{
public:
    ModulePairs(const Model& before, const Model& after)
        : myBefores(after.modules().size(), theNoItem), myAfters(before.modules().size(), theNoItem)
    {
        if (myBefores.size() == 1 && myAfters.size() == 1) myBefores[0] = myAfters[0] = 0;
        for (const bool isByFile : {false, true})
        {
            NameMap<std::uint32_t> places;
            for (std::uint32_t i = 0; i < myAfters.size(); ++i)
                if (myAfters[i] == theNoItem) places.try_emplace(key(before, i, isByFile), i);
            for (std::uint32_t i = 0; i < myBefores.size(); ++i)
            {
                const auto found = places.find(key(after, i, isByFile));
                if (found == places.end() || found->first.empty() || myBefores[i] != theNoItem)
                    continue;
                myBefores[i] = found->second;
                myAfters[found->second] = i;
                places.erase(found);
            }
        }
    }

    /// Whether a definition left a module that is still there, or came into one that was there.
    bool isOther(std::uint32_t before, std::uint32_t after) const
    {
        if (before >= myAfters.size() || after >= myBefores.size()) return false;
        const bool isKnown = myAfters[before] != theNoItem || myBefores[after] != theNoItem;
        return isKnown && myBefores[after] != before;
    }

    static std::string_view file(const Model& model, std::uint32_t module)
    {
        const std::string_view name = model.modules()[module].file;
        return name.substr(name.rfind('/') + 1);
    }

private:
    static std::string_view key(const Model& model, std::uint32_t module, bool isByFile)
    {
        return isByFile ? file(model, module) : model.modules()[module].identification.name.view();
    }

    std::vector<std::uint32_t> myBefores;
    std::vector<std::uint32_t> myAfters;
};

/// Compares two models.
class Differ
{
public:
    Differ(const Model& before, const Model& after)
        : myBefore(before),
          myAfter(after),
          myWires(myBefore, myAfter),
          myPairing(myBefore, myAfter,
                    [this](std::string_view one, std::string_view two)
                    { return myWires.compare(one, two).wire <= Wire::compatible; }),
          myModules(before, after)
    {
    }

    Differences run()
    {
        std::uint32_t gone = 0;
        for (std::uint32_t item = 0; item < myAfter.size(); ++item)
        {
            addGone(gone, myAfter[item].kind);
            if (myPairing.before(item) != theNoItem)
                compare(myPairing.before(item), item);
            else if (!isOnlyRoot(myAfter, item, myBefore))
                addWhole(Change::added, myAfter, item);
        }
        addGone(gone, Kind::section);
        return std::move(myDifferences);
    }

private:
    /// In which order kinds stand among the rows.
    static int group(Kind kind)
    {
        if (kind == Kind::objectClass || kind == Kind::attribute) return 0;
        if (kind == Kind::interactionClass || kind == Kind::parameter) return 1;
        if (isDatatype(kind)) return 2;
        return kind == Kind::section ? 1000 : 3 + static_cast<int>(kind);
    }

    /// Adds what is gone of the groups before that of a kind.
    void addGone(std::uint32_t& next, Kind kind)
    {
        for (; next < myBefore.size() && group(myBefore[next].kind) < group(kind); ++next)
            if (myPairing.after(next) == theNoItem && !isOnlyRoot(myBefore, next, myAfter))
                addWhole(Change::removed, myBefore, next);
    }

    /// HLA 1.3 has no word for the root of its classes.
    static bool isOnlyRoot(const DiffItems& items, std::uint32_t item, const DiffItems& others)
    {
        return items.isRoot(item) && others.model().edition() == Edition::hla13;
    }

    Difference& addRow(Change change, const DiffItem& item, std::string name)
    {
        Difference& row = myDifferences.rows.emplace_back();
        row.change = change;
        row.kind = nameOf(item.kind);
        row.name = std::move(name);
        return row;
    }

    void addWhole(Change change, const DiffItems& items, std::uint32_t item)
    {
        Difference& row = addRow(change, items[item], items.fullName(item));
        (change == Change::added ? row.after : row.before) =
            items.model().place(*items[item].definition);
    }

    void compare(std::uint32_t before, std::uint32_t after)
    {
        std::optional<WireChange> wire = myWires.compare(before, after);
        if (wire) ++myDifferences.octets[static_cast<std::size_t>(wire->wire)];
        std::vector<Detail> details = detailsOf(myBefore[before], myBefore.edition(before),
                                                myAfter[after], myAfter.edition(after));
        const bool isMoved = addMoves(before, after, details);
        const bool isRenamed =
            myBefore[before].name() != myAfter[after].name() && !myAfter.isRoot(after);
        const bool isSameWire = !wire || wire->wire == Wire::same;
        if (details.empty() && !isRenamed && isSameWire) return;
        const Change change = isRenamed ? Change::renamed
                              : isMoved ? Change::moved
                                        : Change::changed;
        Difference& row = addRow(change, myAfter[after], myAfter.fullName(after));
        if (change != Change::changed) row.nameBefore = myBefore.fullName(before);
        if (row.nameBefore == row.name) row.nameBefore.clear();
        row.details = std::move(details);
        row.wire = std::move(wire);
        row.before = myBefore.model().place(*myBefore[before].definition);
        row.after = myAfter.model().place(*myAfter[after].definition);
    }

    bool addMoves(std::uint32_t before, std::uint32_t after, std::vector<Detail>& details) const
    {
        const std::size_t count = details.size();
        const auto add = [&](const char* property, std::string one, std::string two) {
            details.push_back({Change::moved, "", "", property, std::move(one), std::move(two)});
        };
        const auto ownerName = [](const DiffItems& items, std::uint32_t item)
        {
            const std::uint32_t owner = items.ownerBelowRoot(item);
            return owner == theNoItem ? std::string() : items.fullName(owner);
        };
        if (myPairing.isInOtherClass(before, after))
            add("class", ownerName(myBefore, before), ownerName(myAfter, after));
        const std::uint32_t first = myBefore[before].definition->module;
        const std::uint32_t second = myAfter[after].definition->module;
        if (myModules.isOther(first, second))
            add("module", std::string(ModulePairs::file(myBefore.model(), first)),
                std::string(ModulePairs::file(myAfter.model(), second)));
        return details.size() > count;
    }

    const DiffItems myBefore;
    const DiffItems myAfter;
    WireFinder myWires;
    const DiffPairing myPairing;
    const ModulePairs myModules;
    Differences myDifferences;
};

}  // namespace

std::string_view name(Wire wire)
{
    constexpr std::string_view theNames[] = {"same", "compatible", "unknown", "different"};
    return theNames[static_cast<std::size_t>(wire)];
}

std::string_view name(Change change)
{
    constexpr std::string_view theNames[] = {"added", "removed", "renamed", "moved", "changed"};
    return theNames[static_cast<std::size_t>(change)];
}

Differences diff(const Model& before, const Model& after)
{
    return Differ(before, after).run();
}

}  // namespace omt
