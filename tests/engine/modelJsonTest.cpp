// SPDX-License-Identifier: Apache-2.0
// JSON: what is written reads back, whole models lose nothing, and hostile ones stay small. Names:
// the nearest ones, and that none are made to collide.
#include "omt/base/jsonWriter.h"
#include "omt/base/nameHash.h"
#include "omt/base/nearestNames.h"
#include "omt/model/modelBuilder.h"
#include "omt/model/modelJson.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <set>

namespace
{

using namespace std::string_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST(JsonWriter, EscapesWhatJsonOrATerminalWouldObey)
{
    const struct
    {
        const char* what;
        std::string text;
        std::string expected;
    } cases[] = {
        {"plain",         "a/b",                      R"("a/b")"                                 },
        {"quotes",        "\"\\",                     R"("\"\\")"                                },
        {"controls",      "\b\t\n\f\r\x1b\x7f\0"s,    R"("\b\t\n\f\r\u001b\u007f\u0000")"        },
        {"more controls", "\xC2\x9B\xE2\x80\xAE",     R"("\u009b\u202e")"                        },
        {"UTF-8",         "\xC3\xBC\xF0\x9F\x9A\xA2", "\"\xC3\xBC\xF0\x9F\x9A\xA2\""             },
        {"no UTF-8",      "\xFFz\xC0\x80",            "\"\xEF\xBF\xBDz\xEF\xBF\xBD\xEF\xBF\xBD\""},
        {"surrogate",     "\xED\xA0\x80",             "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\"" },
        {"cut short",     "\xE2\x82",                 "\"\xEF\xBF\xBD\xEF\xBF\xBD\""             },
    };
    for (const auto& one : cases)
    {
        std::string out;
        omt::JsonWriter(out).text(one.text);
        EXPECT_EQ(out, one.expected) << one.what;
    }
}

void writeNested(omt::JsonWriter& json)
{
    json.beginObject();
    json.key("a");
    json.beginArray();
    json.number(std::numeric_limits<std::int64_t>::min());
    json.number(0.1f);
    json.number(-0.0);
    json.number(std::nan(""));
    json.number(-std::numeric_limits<double>::infinity());
    json.beginArray();
    json.endArray();
    json.endArray();
    json.property("b", true);
    json.endObject();
}

TEST(JsonWriter, NestsOnOneLineAndIndented)
{
    std::string line;
    omt::JsonWriter json(line);
    writeNested(json);
    EXPECT_EQ(line, R"({"a":[-9223372036854775808,0.1,-0,"NaN","-Infinity",[]],"b":true})");
    std::string page;
    omt::JsonWriter indented(page, 1);
    writeNested(indented);
    EXPECT_THAT(page, HasSubstr("{\n \"a\": [\n  -9223372036854775808,\n  0.1,"));
    EXPECT_THAT(page, HasSubstr("\n  []\n ],\n \"b\": true\n}"));
}

// Names that meet under one key, as whoever knows it can make them, do not under that of the
// process.
TEST(NameHash, NamesCollideForWhoKnowsTheKeyOnly)
{
    constexpr std::uint64_t known = 65536;
    std::set<std::size_t> byKnown;
    std::set<std::size_t> byOwn;
    for (std::uint64_t i = 0; i < 100; ++i)
    {
        const std::uint64_t words[] = {i, known * (100 - i)};
        std::string name(14, '\0');
        std::memcpy(name.data(), &words[0], 7);
        std::memcpy(name.data() + 7, &words[1], 7);
        byKnown.insert(omt::NameHash{known}(name));
        byOwn.insert(omt::NameHash()(name));
    }
    EXPECT_EQ(byKnown.size(), 1u);
    EXPECT_EQ(byOwn.size(), 100u);
}

TEST(NearestNames, TheNearestAndOthersWhereTheyAreNear)
{
    EXPECT_THAT(omt::nearestNames("cra", {"Van", "Car", "Crane", "Car"}),
                ElementsAre("Car", "Crane"));
    EXPECT_THAT(omt::nearestNames("Location", {"Octet", "WorldLocationStruct"}),
                ElementsAre("WorldLocationStruct"));
    EXPECT_THAT(omt::nearestNames("Car", {"Car", "Cart"}), ElementsAre("Cart"));
    EXPECT_THAT(omt::nearestNames("Nope", {"Nice"}), ElementsAre("Nice"));
    EXPECT_THAT(omt::nearestNames("Nope", {"Octet", "IFF"}), testing::IsEmpty());
    EXPECT_EQ(omt::unknownName("class", "x", std::vector<std::string>()), "no class \"x\"");
    EXPECT_LT(
        omt::unknownName("class", "x", std::vector<std::string>{std::string(1000, 'y')}).size(),
        300U);
}

omt::ObjectClass makeClass(omt::ModelBuilder& builder, std::string_view name, std::uint32_t parent)
{
    omt::ObjectClass node;
    node.name = builder.text(name, 3);
    node.line = 3;
    node.parent = parent;
    return node;
}

/// A root, a class below it whose attribute has a note, and two records that hold each other.
omt::Model smallModel()
{
    using omt::Aside;
    omt::ModelBuilder builder;
    builder.addModule("small.xml", omt::Edition::ieee2025);
    omt::Tables& tables = builder.tables();
    tables.objectClasses = {makeClass(builder, "Root", omt::ClassDefinition::theNone),
                            makeClass(builder, "Car", 0)};
    omt::Attribute attribute;
    attribute.name = builder.text("Speed", 7);
    attribute.dataType = builder.text("A", 8);
    attribute.semantics = builder.text("");
    attribute.line = 6;
    attribute.asides = builder.list<Aside>({
        {Aside::What::notes,     1,               0, {},                  builder.text("n1 n2 none")},
        {Aside::What::comment,   Aside::theEnd,   0, {},                  builder.text(" last ")    },
        {Aside::What::attribute, Aside::theWhole, 0, builder.text("x:y"), builder.text("1")         },
    });
    tables.objectClasses[0].attributes = builder.list<omt::Attribute>({attribute});
    for (const auto& [name, other] : {std::pair("A", "B"), std::pair("B", "A")})
    {
        omt::RecordField field;
        field.name = builder.text("F");
        field.dataType = builder.text(other);
        omt::RecordField unknown = field;
        unknown.dataType = builder.text("Nowhere");
        omt::FixedRecord record;
        record.name = builder.text(name);
        record.fields = builder.list<omt::RecordField>({field, unknown});
        tables.fixedRecords.push_back(record);
    }
    for (const char* label : {"n1", "n2", "n3"})
    {
        omt::Note note;
        note.name = builder.text(label);
        tables.notes.push_back(note);
    }
    return builder.build();
}

TEST(ModelJson, HasEveryPropertyAndWhatStandsBesideIt)
{
    const std::string json = omt::modelJson(smallModel());
    for (const char* part :
         {R"("objectClasses":["Root.Car","Root"])", R"("datatypes":{"A":"fixed","B":"fixed"})",
          R"("modules":[{"file":"small.xml","edition":"1516-2025","identification":{)",
          R"({"name":"Car","parent":0,"module":0,"line":3})",
          R"([{"name":"Speed","dataType":"A","semantics":"","asides":[)",
          R"({"what":"notes","property":"dataType","text":"n1 n2 none"})",
          R"({"what":"comment","isAtEnd":true,"text":" last "})",
          R"({"what":"attribute","name":"x:y","text":"1"}],"line":6})"})
        EXPECT_THAT(json, HasSubstr(part));
}

TEST(ModelJson, OneClassOrDatatypeHasWhatItStandsOn)
{
    const omt::Model model = smallModel();
    const std::string car = omt::classJson(model, *model.findObjectClass("Car"));
    for (const char* part :
         {R"("fullName":"Root.Car")", R"("class":"Root","isInherited":true)",
          R"("file":"small.xml","line":6)", R"("label":"n1")", R"("label":"n2")"})
        EXPECT_THAT(car, HasSubstr(part));
    EXPECT_THAT(car, Not(HasSubstr("n3")));
    const std::string record = omt::datatypeJson(model, model.findDatatype("B"));
    EXPECT_THAT(record, HasSubstr(R"("datatypes":{"B":{"kind":"fixed","name":"B",)"));
    EXPECT_THAT(record, HasSubstr(R"("A":{"kind":"fixed","name":"A",)"));
    EXPECT_THAT(record, HasSubstr(R"("undefined":["Nowhere"])"));
}

// Full names of a chain of classes grow with the square of its length, unless they are cut.
TEST(ModelJson, GrowsWithTheModelOnly)
{
    const auto octets = [](std::size_t length)
    {
        omt::ModelBuilder builder;
        for (std::uint32_t i = 0; i < length; ++i)
            builder.tables().objectClasses.push_back(makeClass(builder, "Link", i - 1));
        return omt::modelJson(builder.build()).size();
    };
    EXPECT_LT(octets(5'000), 6 * octets(1'000));
}

}  // namespace
