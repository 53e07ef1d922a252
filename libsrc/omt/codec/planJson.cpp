// SPDX-License-Identifier: Apache-2.0
// The plan as JSON, so that a page or another language can decode values with it.
#include "omt/base/jsonWriter.h"
#include "omt/codec/codec.h"
#include "omt/codec/plan.h"

#include <map>

namespace omt
{

namespace
{

class PlanWriter
{
public:
    PlanWriter(const Plan& plan, std::string& text) : myPlan(plan), myOut(text) {}

    void write()
    {
        constexpr int theVersion = 1;
        myOut.beginObject();
        myOut.property("version", theVersion);
        myOut.key("types");
        myOut.beginArray();
        for (const Node& node : myPlan.nodes) write(node);
        myOut.endArray();
        myOut.key("names");
        myOut.beginObject();
        const std::map<std::string_view, std::uint32_t> names(myPlan.names.begin(),
                                                              myPlan.names.end());
        for (const auto& [name, id] : names)
            if (name.find('\n') == std::string_view::npos) myOut.property(name, id);
        myOut.endObject();
        myOut.endObject();
    }

private:
    void write(const Node& node)
    {
        constexpr const char* theForms[] = {"number", "record", "array", "variant", "octets"};
        myOut.beginObject();
        myOut.property("name", myPlan.text(node.name));
        myOut.property("form", theForms[static_cast<std::size_t>(node.form)]);
        myOut.property(node.isFixed ? "size" : "least", node.size);
        myOut.property("boundary", unsigned{node.boundary});
        if (node.units.size > 0) myOut.property("units", myPlan.text(node.units));
        if (node.form == Form::number) number(node);
        if (node.form == Form::record) fields(node);
        if (node.form == Form::array) array(node);
        if (node.form == Form::variant) variant(node);
        myOut.endObject();
    }

    void number(const Node& node)
    {
        constexpr const char* theScalars[] = {"signed", "unsigned", "floating"};
        myOut.property("scalar", theScalars[static_cast<std::size_t>(node.scalar)]);
        myOut.property("endian", node.isLittleEndian ? "little" : "big");
        if (node.table == theNone) return;
        myOut.key("enumerators");
        myOut.beginArray();
        for (const Enumeration::Entry& entry : myPlan.enumerations[node.table].entries)
        {
            myOut.beginArray();
            myOut.text(myPlan.text(entry.name));
            integer(entry.number, node.scalar);
            myOut.endArray();
        }
        myOut.endArray();
    }

    void integer(std::int64_t number, Scalar scalar)
    {
        if (scalar == Scalar::unsignedInteger)
            myOut.number(static_cast<std::uint64_t>(number));
        else
            myOut.number(number);
    }

    void fields(const Node& node)
    {
        if (node.phase != 0) myOut.property("phase", unsigned{node.phase});
        myOut.key("fields");
        myOut.beginArray();
        for (std::uint32_t i = 0; i < node.parts; ++i)
        {
            const Part& part = myPlan.parts[node.first + i];
            myOut.beginObject();
            myOut.property("name", myPlan.text(part.name));
            myOut.property("type", part.node);
            myOut.property("boundary", unsigned{part.boundary});
            if (part.offset != theNone) myOut.property("offset", part.offset);
            if (part.offset == theNone || !myPlan.nodes[part.node].isFixed)
                myOut.property("rest", part.rest);
            if (part.stepCount > 0) count(part);
            if (part.decider != theNone)
            {
                myOut.property("onlyIf", part.decider);
                myOut.property("is", part.decidingNumber);
            }
            myOut.endObject();
        }
        myOut.endArray();
    }

    // In reverse Polish notation: numbers, indices of fields as {"field"}, signs as texts.
    void count(const Part& part)
    {
        constexpr const char* theSigns[] = {"", "", "+", "-", "*"};
        myOut.key("count");
        myOut.beginArray();
        for (std::uint32_t i = 0; i < part.stepCount; ++i)
        {
            const Step& step = myPlan.steps[part.steps + i];
            if (step.what == Step::What::number)
                myOut.number(step.value);
            else if (step.what != Step::What::field)
                myOut.text(theSigns[static_cast<std::size_t>(step.what)]);
            else
            {
                myOut.beginObject();
                myOut.property("field", step.value);
                myOut.endObject();
            }
        }
        myOut.endArray();
    }

    void array(const Node& node)
    {
        constexpr const char* theExtents[] = {"fixed", "counted", "lengthless", "terminated",
                                              "padding"};
        constexpr const char* theLooks[] = {"elements", "latin1", "utf16", "hexadecimal", "text"};
        myOut.property("extent", theExtents[static_cast<std::size_t>(node.extent)]);
        myOut.property("look", theLooks[static_cast<std::size_t>(node.look)]);
        myOut.property("element", node.element);
        myOut.property("stride", node.stride);
        if (node.extent == Extent::fixed || node.extent == Extent::padding)
            return myOut.property("count", node.count);
        if (node.least > 0) myOut.property("atLeast", node.least);
        if (node.most != theNone) myOut.property("atMost", node.most);
    }

    void variant(const Node& node)
    {
        myOut.property("discriminant", myPlan.text(myPlan.parts[node.first].name));
        myOut.property("type", node.element);
        myOut.property("body", node.body);
        if (node.length != Length::none) myOut.property("lengthAt", node.lengthOffset);
        if (node.length == Length::extendable) myOut.property("mayBeAbsent", true);
        myOut.key("alternatives");
        myOut.beginArray();
        for (std::uint32_t i = 1; i < node.parts; ++i)
        {
            const Part& part = myPlan.parts[node.first + i];
            myOut.beginObject();
            myOut.property("name", myPlan.text(part.name));
            myOut.property("type", part.node);
            myOut.endObject();
        }
        myOut.endArray();
        choices(node);
    }

    // Pairs of a number and the index of an alternative, null where nothing follows.
    void choices(const Node& node)
    {
        const Choices& table = myPlan.choices[node.table];
        const auto index = [this](std::uint32_t alternative)
        {
            if (alternative >= theUnknown)
                myOut.null();
            else
                myOut.number(alternative - 1);
        };
        myOut.key("choices");
        myOut.beginArray();
        for (const Choices::Range& row : table.numbers)
        {
            myOut.beginArray();
            integer(row.number, myPlan.nodes[node.element].scalar);
            index(row.alternative);
            myOut.endArray();
        }
        myOut.endArray();
        if (table.other == theNone) return;
        myOut.key("other");
        index(table.other);
    }

    const Plan& myPlan;
    JsonWriter myOut;
};

}  // namespace

std::string Codec::json() const
{
    std::string text;
    PlanWriter(*myPlan, text).write();
    return text;
}

}  // namespace omt
