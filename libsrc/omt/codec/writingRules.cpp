// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/writingRules.h"

#include "omt/base/nearestNames.h"
#include "omt/codec/jsonNumbers.h"

namespace omt
{

std::string rangeComplaint(const Plan& plan, const Node& node, std::int64_t number, bool isUnsigned)
{
    return (isUnsigned ? std::to_string(static_cast<std::uint64_t>(number))
                       : std::to_string(number)) +
           " is out of range of " + std::string(plan.text(node.name));
}

std::string nameComplaint(const Plan& plan, const Node& node, std::string_view name)
{
    std::vector<std::string_view> names;
    for (const Enumeration::Entry& entry : plan.enumerations[node.table].entries)
        names.push_back(plan.text(entry.name));
    return "\"" + std::string(name) + "\" is no enumerator of " +
           std::string(plan.text(node.name)) + didYouMean(name, names);
}

std::string alternativeComplaint(const Plan& plan, const Node& variant, std::int64_t number,
                                 std::uint32_t wanted, std::uint32_t given)
{
    if (wanted == theUnknown && variant.length == Length::none)
        return "no alternative for the number " + std::to_string(number);
    std::string name;
    if (wanted < theUnknown)
        name = '"' + std::string(plan.text(plan.parts[variant.first + wanted].name)) + '"';
    if (given == theNothing) return name + " is missing";
    return "another alternative goes with the discriminant" + (name.empty() ? name : ": " + name);
}

std::string countComplaint(const Node& array, std::size_t count, std::size_t place)
{
    const std::string text = std::to_string(count) + " elements, ";
    if (array.extent == Extent::fixed) return text + std::to_string(array.count) + " are needed";
    if (array.extent != Extent::padding) return text + "which is outside the cardinality";
    return text + std::to_string(aligned(place, array.count) - place) +
           " octets of padding are needed";
}

std::string statedComplaint(const Plan& plan, const Part& part, const Looked* looked,
                            std::size_t count)
{
    const std::optional<std::int64_t> stated = evaluate(plan, part, looked);
    if (stated && static_cast<std::uint64_t>(*stated) == count) return "";
    return std::to_string(count) + " elements, and other fields state " +
           (stated ? std::to_string(*stated) : std::string("too many"));
}

std::size_t closeMeasured(const Node& variant, std::uint8_t* start, std::size_t end)
{
    const std::size_t size = end - variant.body;
    const std::uint32_t length = __builtin_bswap32(static_cast<std::uint32_t>(size));
    std::memcpy(start + variant.lengthOffset, &length, sizeof length);
    const bool isDropped = variant.length == Length::extendable && size == 0;
    return isDropped ? variant.lengthOffset + sizeof length : end;
}

std::optional<ValueError> refusal(const Index& index, std::size_t size)
{
    if (!index.fault && index.octets == size) return std::nullopt;
    return ValueError{"the octets could not be read again" +
                          (index.fault ? ": " + index.fault->what : std::string()),
                      index.fault ? index.fault->path : std::string()};
}

}  // namespace omt
