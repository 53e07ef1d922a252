// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/layout.h"

#include "omt/codec/valueParts.h"

#include <algorithm>
#include <map>
#include <vector>

namespace omt
{

/// Reads a plan for layout().
class Layout
{
public:
    explicit Layout(const Type& type) : myPlan(*type.myPlan), myRoot(type.myNode) {}

    std::vector<LayoutRow> rows()
    {
        LayoutRow row;
        row.offset = row.padding = 0;
        add(myRoot, std::move(row));
        return std::move(myRows);
    }

private:
    void add(std::uint32_t id, LayoutRow row)
    {
        constexpr std::size_t theMostRows = 100000;
        const Node& node = myPlan.nodes[id];
        row.type = myPlan.text(node.name);
        row.kind = kind(node);
        row.boundary = node.boundary;
        row.leastSize = node.size;
        row.greatestSize = greatest(id);
        const std::string more = remark(node);
        row.remark += (row.remark.empty() || more.empty() ? "" : "; ") + more;
        const bool isKnown = std::find(myOpen.begin(), myOpen.end(), id) != myOpen.end();
        const unsigned depth = row.depth + 1;
        if (isKnown) row.remark = "holds itself";
        myRows.push_back(std::move(row));
        if (isKnown || myOpen.size() > theDeepest || myRows.size() > theMostRows) return;
        myOpen.push_back(id);
        if (node.form == Form::record) addFields(node, depth);
        if (node.form == Form::variant) addAlternatives(node, depth);
        if (node.form == Form::array && node.look == Look::elements)
        {
            LayoutRow element;
            element.depth = depth;
            element.name = "[]";
            element.padding = 0;
            if (node.extent == Extent::counted)
                element.padding = aligned(4, myPlan.nodes[node.element].boundary) - 4;
            element.offset = node.extent == Extent::counted ? 4 + *element.padding : 0;
            add(node.element, std::move(element));
        }
        myOpen.pop_back();
    }

    void addFields(const Node& node, unsigned depth)
    {
        std::size_t end = 0;
        for (std::uint32_t i = 0; i < node.parts; ++i)
        {
            const Part& part = myPlan.parts[node.first + i];
            LayoutRow row;
            row.depth = depth;
            row.name = myPlan.text(part.name);
            if (part.offset != theNone)
            {
                row.offset = part.offset;
                row.padding = part.offset - end;
                end = part.offset + myPlan.nodes[part.node].size;
            }
            if (part.stepCount > 0) row.remark = "its count is stated by other fields";
            if (part.decider != theNone)
                row.remark =
                    "only where " +
                    std::string(myPlan.text(myPlan.parts[node.first + part.decider].name)) +
                    " is " + std::to_string(part.decidingNumber);
            add(part.node, std::move(row));
        }
    }

    void addAlternatives(const Node& node, unsigned depth)
    {
        const std::uint32_t size = myPlan.nodes[node.element].size;
        const std::uint32_t before = node.length == Length::none ? size : node.lengthOffset + 4;
        // By alternative; those of one alternative stay in their order.
        std::vector<Choices::Range> choices = myPlan.choices[node.table].numbers;
        std::stable_sort(choices.begin(), choices.end(), isEarlier);
        for (std::uint32_t i = 0; i < node.parts; ++i)
        {
            const Part& part = myPlan.parts[node.first + i];
            LayoutRow row;
            row.depth = depth;
            row.name = myPlan.text(part.name);
            row.offset = i == 0 ? 0 : node.body;
            row.padding = i == 0 ? 0 : node.body - before;
            if (i == 0)
                row.remark = "discriminant";
            else
                row.remark = "alternative of " + numbers(node, i, choices);
            add(part.node, std::move(row));
        }
    }

    static bool isEarlier(const Choices::Range& one, const Choices::Range& other)
    {
        return one.alternative < other.alternative;
    }

    std::string numbers(const Node& node, std::uint32_t alternative,
                        const std::vector<Choices::Range>& choices) const
    {
        constexpr std::size_t theLongest = 200;
        const std::uint32_t table = myPlan.nodes[node.element].table;
        Choices::Range sought = {};
        sought.alternative = alternative;
        std::string text;
        auto row = std::lower_bound(choices.begin(), choices.end(), sought, isEarlier);
        for (; row != choices.end() && row->alternative == alternative; ++row)
        {
            if (text.size() > theLongest) return text + ", ...";
            const std::uint32_t entry =
                table == theNone ? theNone
                                 : Plan::findEntry(myPlan.enumerations[table], row->number);
            text += text.empty() ? "" : ", ";
            text += entry == theNone
                        ? std::to_string(row->number)
                        : std::string(myPlan.text(myPlan.enumerations[table].entries[entry].name));
        }
        if (myPlan.choices[node.table].other == alternative)
            text += text.empty() ? "all others" : " and all others";
        return text;
    }

    std::string kind(const Node& node) const
    {
        constexpr const char* theKinds[] = {"number", "enumerated", "text",   "octets",
                                            "record", "array",      "variant"};
        return theKinds[static_cast<std::size_t>(kindOf(myPlan, node))];
    }

    std::string remark(const Node& node) const
    {
        if (node.form == Form::number)
        {
            const std::string size = std::to_string(8 * node.size) + " bits";
            return (node.scalar == Scalar::floating        ? "floating point, "
                    : node.scalar == Scalar::signedInteger ? "signed, "
                                                           : "unsigned, ") +
                   size + (node.isLittleEndian && node.size > 1 ? ", little-endian" : "");
        }
        if (node.form == Form::variant && node.length != Length::none)
            return "the length of the alternative at " + std::to_string(node.lengthOffset);
        if (node.form != Form::array) return "";
        switch (node.extent)
        {
            case Extent::fixed:
                return std::to_string(node.count) + " elements";
            case Extent::counted:
                return "a count of 32 bits, then elements";
            case Extent::lengthless:
                return "elements to the end";
            case Extent::terminated:
                return "elements up to one of zeros";
            case Extent::padding:
                return "up to a multiple of " + std::to_string(node.count) + " octets";
        }
        return "";
    }

    /// The greatest size, or nothing where there is none; worked out once for each node.
    std::optional<std::size_t> greatest(std::uint32_t id)
    {
        const Node& node = myPlan.nodes[id];
        if (node.isFixed) return node.size;
        const auto [place, isNew] = myGreatest.try_emplace(id, std::nullopt);
        if (!isNew || myDepth > theDeepest) return place->second;
        ++myDepth;
        std::optional<std::size_t> most = open(node);
        --myDepth;
        if (most && *most > theLargestSize) most.reset();
        return myGreatest[id] = most;
    }

    std::optional<std::size_t> open(const Node& node)
    {
        std::size_t end = 0;
        if (node.form == Form::octets) return std::nullopt;
        if (node.form == Form::array) return array(node);
        std::size_t most = node.size;
        if (node.form == Form::record) most = 0;
        for (std::uint32_t i = node.form == Form::variant ? 1 : 0; i < node.parts; ++i)
        {
            const Part& part = myPlan.parts[node.first + i];
            const std::optional<std::size_t> size = greatest(part.node);
            if (!size) return std::nullopt;
            end = node.form == Form::variant
                      ? node.body + *size
                      : aligned(node.phase + most, part.boundary) - node.phase + *size;
            most = std::max(most, end);
        }
        return most;
    }

    std::optional<std::size_t> array(const Node& node)
    {
        if (node.extent == Extent::padding) return node.count - 1;
        const std::uint64_t count = node.extent == Extent::fixed ? node.count : node.most;
        const std::optional<std::size_t> size = greatest(node.element);
        if (!size || count > theLargestSize) return std::nullopt;
        const std::uint32_t boundary = myPlan.nodes[node.element].boundary;
        const std::size_t stride = aligned(*size, boundary);
        const std::size_t before = node.extent == Extent::counted ? aligned(4, boundary) : 0;
        const std::size_t after = node.extent == Extent::terminated ? *size : 0;
        if (count == 0) return (node.extent == Extent::counted ? 4 : 0) + after;
        if (stride > theLargestSize / count) return std::nullopt;
        return before + stride * (count - 1) + *size + (after > 0 ? stride : 0);
    }

    const Plan& myPlan;
    const std::uint32_t myRoot;
    std::vector<LayoutRow> myRows;
    std::vector<std::uint32_t> myOpen;
    std::map<std::uint32_t, std::optional<std::size_t>> myGreatest;
    std::uint32_t myDepth = 0;
};

std::vector<LayoutRow> layout(const Type& type)
{
    return Layout(type).rows();
}

}  // namespace omt
