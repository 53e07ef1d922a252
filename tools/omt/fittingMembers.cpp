// SPDX-License-Identifier: Apache-2.0
#include "fittingMembers.h"

#include "plainText.h"
#include "textTable.h"

#include <algorithm>

namespace
{

struct FittingMember
{
    bool isOdd;
    std::vector<std::string> cells;
};

/// Whether the enumerated numbers of a value all have names.
bool hasNames(const omt::Item& item)
{
    if (item.kind() == omt::ValueKind::enumerated) return item.label().has_value();
    bool hasAll = true;
    const bool mayHold = item.kind() == omt::ValueKind::record ||
                         item.kind() == omt::ValueKind::array ||
                         item.kind() == omt::ValueKind::variant;
    if (mayHold)
        item.forEach([&](std::string_view, const omt::Item& part)
                     { return hasAll = hasNames(part); });
    return hasAll;
}

std::optional<FittingMember> fitOf(const omt::Codec& codec, const omt::Member& member,
                                   omt::Octets octets)
{
    const std::optional<omt::Type> type = codec.findType(member.dataType);
    if (!type) return std::nullopt;
    const omt::Value value = type->decode(octets);
    if (!value.isWhole()) return std::nullopt;
    const bool isOdd =
        !value.notes().empty() || type->kind() == omt::ValueKind::octets || !hasNames(value.root());
    return FittingMember{
        isOdd, {member.name.str(), member.dataType.str(), visible(value.json())}
    };
}

}  // namespace

std::string fittingMembers(const omt::Codec& codec, const ClassRef& node, omt::Octets octets)
{
    constexpr std::size_t theNarrowestValue = 60;
    std::vector<FittingMember> fits;
    const auto look = [&](const auto&, const omt::Member& member)
    {
        if (std::optional<FittingMember> fit = fitOf(codec, member, octets))
            fits.push_back(std::move(*fit));
    };
    if (const auto* const object = std::get_if<const omt::ObjectClass*>(&node))
        codec.model().forEachAttribute(**object, look);
    else
        codec.model().forEachParameter(*std::get<const omt::InteractionClass*>(node), look);
    std::stable_sort(fits.begin(), fits.end(),
                     [](const FittingMember& one, const FittingMember& two)
                     { return one.isOdd < two.isOdd; });
    TextTable table({
        whole("Member"), whole("Datatype"), {"Value", Fit::clip, false, theNarrowestValue}
    });
    for (const FittingMember& fit : fits) table.add(fit.cells);
    return table.isEmpty() ? "" : table.text();
}
