// SPDX-License-Identifier: Apache-2.0
// Rules on octets that are right by the standard and that implementations disagree about.
#include "omt/check/checkRun.h"
#include "omt/codec/typeText.h"

#include <algorithm>

namespace omt
{

namespace
{

std::size_t aligned(std::size_t at, std::size_t boundary)
{
    return (at + boundary - 1) / boundary * boundary;
}

/// Calls `visit` for each variant record of an encoding that could be compiled.
template <typename Visit>
void eachVariant(CheckRun& run, Encoding wanted, const Visit& visit)
{
    run.each(&Tables::variantRecords,
             [&](const VariantRecord& record)
             {
                 const Encoding how =
                     record.encoding.empty() ? Encoding::variantRecord : encoding(record.encoding);
                 if (how != wanted) return;
                 const std::optional<Type> type = run.codec().findType(record.name);
                 if (type && type->kind() == ValueKind::variant) visit(record, *type);
             });
}

/// Padding before an alternative goes by the widest of all; who looks at the one alternative alone
/// pads less.
void findWidest(CheckRun& run)
{
    eachVariant(run, Encoding::variantRecord,
                [&](const VariantRecord& record, const Type& type)
                {
                    const std::size_t size = type.partType(0).size().value_or(0);
                    unsigned widest = 1;
                    for (std::size_t i = 1; i < type.partCount(); ++i)
                        widest = std::max(widest, type.partType(i).boundary());
                    const std::size_t offset = aligned(size, widest);
                    for (std::size_t i = 1; i < type.partCount(); ++i)
                    {
                        const std::size_t own = aligned(size, type.partType(i).boundary());
                        if (own == offset) continue;
                        run.report(record, record.name,
                                   "alternative " + quoted(type.partName(i)) + " of " +
                                       called(record) + " begins at octet " +
                                       std::to_string(offset) +
                                       " because of the widest alternative; alone it would at " +
                                       std::to_string(own));
                        return;
                    }
                });
}

/// The alternative stands at once after the length; who counts padding from the start of the whole
/// value finds other octets in it.
void findShifted(CheckRun& run)
{
    eachVariant(run, Encoding::extendedVariant,
                [&](const VariantRecord& record, const Type& type)
                {
                    const std::size_t offset = type.partType(0).size().value_or(0) + 4;
                    for (std::size_t i = 1; i < type.partCount(); ++i)
                    {
                        const unsigned boundary = type.partType(i).boundary();
                        if (offset % boundary == 0) continue;
                        run.report(record, record.name,
                                   "alternative " + quoted(type.partName(i)) + " of " +
                                       called(record) + " begins at octet " +
                                       std::to_string(offset) + " and has a boundary of " +
                                       std::to_string(boundary) +
                                       "; padding in it depends on where it is counted from");
                        return;
                    }
                });
}

/// After a count of 0 nothing follows; some write the padding that elements would need.
void findPaddedCounts(CheckRun& run)
{
    run.each(&Tables::arrayData,
             [&](const ArrayData& array)
             {
                 if (encoding(array.encoding) != Encoding::variableArray) return;
                 const std::optional<Type> type = run.codec().findType(array.name);
                 if (!type || type->kind() != ValueKind::array || type->boundary() <= 4) return;
                 run.report(array, array.name,
                            called(array) +
                                " has elements with a boundary of 8: without elements it is 4 "
                                "octets, and 8 for some");
             });
}

constexpr Severity note = Severity::note;
constexpr std::string_view theGroup = "layouts";

constexpr RuleRow theRules[] = {
    rule("widest-alternative", note, theGroup,
         "an alternative whose place depends on the widest of all", findWidest),
    rule("shifted-alternative", note, theGroup,
         "an alternative whose padding depends on where it is counted from", findShifted),
    rule("empty-array-padding", note, theGroup, "an array that some pad without elements",
         findPaddedCounts),
};

}  // namespace

std::span<const RuleRow> layoutRules()
{
    return theRules;
}

}  // namespace omt
