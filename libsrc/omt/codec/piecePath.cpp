// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/piecePath.h"

#include "omt/base/nearestNames.h"

#include <algorithm>
#include <charconv>

namespace omt
{

std::optional<PathStep> takeStep(std::string_view& path, bool& isWrong)
{
    isWrong = false;
    if (path.empty()) return std::nullopt;
    if (path.front() == '[')
    {
        PathStep step;
        const std::size_t end = path.find(']');
        const char* const last = path.data() + std::min(end, path.size());
        const auto [stop, error] = std::from_chars(path.data() + 1, last, step.index);
        isWrong = end == std::string_view::npos || error != std::errc() || stop != last ||
                  step.index == theNone;
        if (isWrong) return std::nullopt;
        path.remove_prefix(end + 1);
        if (!path.empty() && path.front() == '.') path.remove_prefix(1);
        return step;
    }
    const std::size_t end = std::min(path.find_first_of(".["), path.size());
    const PathStep step{path.substr(0, end)};
    isWrong = end == 0;
    path.remove_prefix(end < path.size() && path[end] == '.' ? end + 1 : end);
    return isWrong ? std::nullopt : std::optional(step);
}

namespace
{

/// The paths on which parts of parts have this name.
std::vector<std::string> waysDown(const Plan& plan, const Node& node, std::string_view name)
{
    constexpr std::size_t theMost = 3;
    std::vector<std::string> ways;
    for (std::uint32_t i = 0; i < node.parts && ways.size() < theMost; ++i)
    {
        const Part& part = plan.parts[node.first + i];
        const Node& below = plan.nodes[part.node];
        const bool isNested = below.form == Form::record || below.form == Form::variant;
        if (isNested && plan.findPart(below, name) != theNone)
            ways.push_back(std::string(plan.text(part.name)) + '.' + std::string(name));
    }
    return ways;
}

std::string whyNoPart(const Plan& plan, const Node& node, std::string_view name)
{
    const char* const kind = node.form == Form::variant ? "alternative" : "field";
    const std::vector<std::string> ways = waysDown(plan, node, name);
    if (!ways.empty())
    {
        std::string text = "no " + std::string(kind) + " \"" + std::string(name) + "\"; it is at ";
        for (const std::string& way : ways) text += (&way == &ways.front() ? "" : " or ") + way;
        return text;
    }
    std::vector<std::string_view> names;
    for (std::uint32_t i = 0; i < node.parts; ++i)
        names.push_back(plan.text(plan.parts[node.first + i].name));
    return unknownName(kind, name, names);
}

}  // namespace

std::string whyNoPiece(const Plan& plan, std::uint32_t node, std::string_view path)
{
    bool isWrong = false;
    while (const std::optional<PathStep> step = takeStep(path, isWrong))
    {
        const Node& from = plan.nodes[node];
        const bool isIndex = step->index != theNone;
        if (from.form == Form::array)
        {
            if (!isIndex) return "elements of an array have an index, such as [0]";
            if (from.extent == Extent::fixed && step->index >= from.count)
                return "the array has " + std::to_string(from.count) + " elements";
            node = from.element;
            continue;
        }
        const std::string datatype = '"' + std::string(plan.text(from.name)) + '"';
        if (isIndex) return datatype + " is no array";
        if (from.form != Form::record && from.form != Form::variant)
            return datatype + " has no parts";
        const std::uint32_t part = plan.findPart(from, step->name);
        if (part == theNone) return whyNoPart(plan, from, step->name);
        node = plan.parts[from.first + part].node;
    }
    return isWrong ? "this is no path" : "this value has no such piece";
}

}  // namespace omt
