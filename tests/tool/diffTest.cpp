// SPDX-License-Identifier: Apache-2.0
// Runs omt diff as a user does: its page, its JSON, its exit status, and files out of git.
#include "toolRun.h"

#include <nlohmann/json.hpp>

namespace
{

using nlohmann::json;
using testing::HasSubstr;

std::string modelOf(const std::string& enumerators, const std::string& classes)
{
    return "<objectModel xmlns=\"http://standards.ieee.org/IEEE1516-2010\">\n<objects>"
           "<objectClass><name>HLAobjectRoot</name>\n" +
           classes +
           "</objectClass></objects>\n<dataTypes><enumeratedDataTypes><enumeratedData>"
           "<name>Kind</name><representation>HLAinteger32BE</representation>" +
           enumerators + "</enumeratedData></enumeratedDataTypes></dataTypes></objectModel>\n";
}

std::string enumerator(const std::string& name, const std::string& value)
{
    return "<enumerator><name>" + name + "</name><value>" + value + "</value></enumerator>";
}

std::string car(const std::string& name, const std::string& datatype)
{
    return "<objectClass><name>" + name + "</name><attribute><name>At</name><dataType>" + datatype +
           "</dataType></attribute></objectClass>\n";
}

class DiffTest : public ToolRun
{
protected:
    void SetUp() override
    {
        write("old.xml", modelOf(enumerator("A", "1"), car("Car", "HLAoctet")));
        write("new.xml", modelOf(enumerator("A", "257") + enumerator("B", "2"),
                                 car("Car", "HLAinteger16BE") + car("Van", "Kind")));
        write("more.xml", modelOf(enumerator("A", "1") + enumerator("B", "2"),
                                  car("Car", "HLAoctet") + car("Van", "Kind")));
        write("bad.xml", "<notAModel/>");
    }
};

TEST_F(DiffTest, thePageIsGroupedAndSaysOldAndNewValues)
{
    const Outcome outcome = run("diff old.xml -- new.xml");
    EXPECT_EQ(
        outcome.out,
        "Object classes, added\n"
        "  object class Van (new.xml:4)\n"
        "      with At\n"
        "\n"
        "Object classes, changed\n"
        "  attribute Car.At (new.xml:3)\n"
        "      dataType `HLAinteger16BE`, was `HLAoctet`\n"
        "      octets: different from octet 0 on: it is a signed number of 16 bits, and was an "
        "unsigned number of 8 bits\n"
        "\n"
        "Datatypes, changed\n"
        "  enumerated datatype Kind (new.xml:6)\n"
        "      enumerator `A`: value `257`, was `1`\n"
        "      enumerator `B` added: `2`\n"
        "      octets: different from octet 2 on: the enumerator `A` is 257, and was 1\n"
        "\n"
        "2 added, 0 removed, 0 renamed, 0 moved, 2 changed\n"
        "octets of attributes, parameters and datatypes in both: 0 same, 0 compatible, "
        "0 unknown, 2 different\n");
    EXPECT_EQ(outcome.err, "");
}

TEST_F(DiffTest, theExitStatusIsThatOfDiff)
{
    const struct
    {
        const char* arguments;
        int status;
    } cases[] = {
        {"diff old.xml -- old.xml",                    0},
        {"diff old.xml -- new.xml",                    1},
        {"diff -q --wire old.xml -- new.xml",          1},
        {"diff --wire old.xml -- more.xml",            0},
        {"diff --wire more.xml -- old.xml",            1},
        {"diff - -- new.xml <old.xml",                 1},
        {"diff old.xml -- bad.xml",                    2},
        {"diff old.xml -- gone.xml",                   2},
        {"diff old.xml -- --json",                     2},
        {"diff old.xml --",                            2},
        {"diff -- old.xml",                            2},
        {"diff old.xml",                               2},
        {"diff - -- -",                                2},
        {"diff --against HEAD old.xml",                2},
        {"diff --against git:HEAD old.xml -- new.xml", 2},
        {"diff --against git:--output=stolen old.xml", 2},
        {"diff --against git:HEAD old.xml 2>.err",     2},
    };
    for (const auto& one : cases)
        EXPECT_EQ(run(one.arguments, "GIT_DIR=nowhere").status, one.status) << one.arguments;
    EXPECT_FALSE(std::filesystem::exists(path("stolen")));
}

TEST_F(DiffTest, programsGetJson)
{
    const json all = json::parse(run("diff --json old.xml -- new.xml").out);
    EXPECT_EQ(all["summary"]["added"], 2);
    EXPECT_EQ(all["summary"]["octets"]["different"], 2);
    const json& row = all["differences"].back();
    EXPECT_EQ(row["change"], "changed");
    EXPECT_EQ(row["details"][0], json::parse(R"({"change": "changed", "partKind": "enumerator",
        "part": "A", "property": "value", "before": "1", "after": "257"})"));
    EXPECT_EQ(row["octets"]["octet"], 2);
    EXPECT_EQ(row["after"]["line"], 6);
    const json wire = json::parse(run("diff --json --wire old.xml -- more.xml").out);
    EXPECT_EQ(wire["differences"].size(), 1U);
    EXPECT_EQ(wire["differences"][0]["octets"]["change"], "compatible");
}

TEST_F(DiffTest, filesAreComparedWithARevision)
{
    const std::string commit =
        "git init -q . && git add old.xml && git -c user.name=A -c user.email=a@b commit -qm one "
        "&& "
        "cp new.xml old.xml &&";
    const Outcome outcome = run("diff --against git:HEAD old.xml more.xml", commit);
    EXPECT_EQ(outcome.status, 1) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr("more.xml is not in HEAD"));
    EXPECT_THAT(outcome.out, HasSubstr("enumerator `A`: value `257`, was `1`"));
    write("omt.json", R"({"modules": ["old.xml"]})");
    EXPECT_EQ(run("diff --against git:HEAD").status, 1);
    EXPECT_EQ(run("diff --against git:HEAD old.xml", "git checkout -q old.xml &&").status, 0);
    EXPECT_THAT(run("diff --against git:gone old.xml").err, HasSubstr("revision \"gone\""));
}

}  // namespace
