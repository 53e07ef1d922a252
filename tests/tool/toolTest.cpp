// SPDX-License-Identifier: Apache-2.0
// Runs omt as a user does: what it prints, what it complains about, how it ends.
#include "toolRun.h"

#include <nlohmann/json.hpp>

#include <fstream>
#include <regex>
#include <set>
#include <sstream>

namespace
{

namespace fs = std::filesystem;
using nlohmann::json;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// Two object classes below the root, one interaction class, every kind of datatype.
constexpr const char* theSmallModel =
    R"(<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010">
<modelIdentification><name>Small %s</name><type>FOM</type><version>0.1</version>
<poc><pocType>Author</pocType><pocName>A. Body</pocName></poc></modelIdentification>
<objects><objectClass><name>HLAobjectRoot</name>
<objectClass><name>Car</name><sharing>Publish</sharing><attribute><name>Speed</name>
<dataType>Knots</dataType><order>Receive</order></attribute><attribute><name>Colour</name>
<dataType>Paint</dataType></attribute><objectClass><name>Van</name><attribute><name>Load</name>
<dataType>Box</dataType></attribute></objectClass></objectClass>
<objectClass><name>Road</name></objectClass></objectClass></objects>
<interactions><interactionClass><name>HLAinteractionRoot</name><interactionClass><name>Road</name>
<parameter><name>At</name><dataType>Box</dataType></parameter></interactionClass></interactionClass>
</interactions><dataTypes><basicDataRepresentations><basicData><name>B4</name><size>32</size>
</basicData></basicDataRepresentations><simpleDataTypes><simpleData><name>Knots</name>
<representation>B4</representation></simpleData></simpleDataTypes><enumeratedDataTypes>
<enumeratedData><name>Paint</name><representation>B4</representation><enumerator><name>Red</name>
<value>1</value></enumerator><enumerator><name>Blue</name><value>2</value></enumerator>
</enumeratedData></enumeratedDataTypes><arrayDataTypes><arrayData><name>Twice</name>
<dataType>Knots</dataType><cardinality>2</cardinality></arrayData></arrayDataTypes>
<fixedRecordDataTypes><fixedRecordData><name>Box</name><field><name>Width</name>
<dataType>Knots</dataType></field></fixedRecordData></fixedRecordDataTypes><variantRecordDataTypes>
<variantRecordData><name>Either</name><discriminant>Which</discriminant><dataType>Knots</dataType>
<alternative><enumerator>2, 3</enumerator><name>Boxed</name><dataType>Box</dataType></alternative>
<alternative><enumerator>4</enumerator><name>Other</name><dataType>Box</dataType></alternative>
</variantRecordData></variantRecordDataTypes></dataTypes>
<notes><note><label>n1</label><semantics>One
   note.</semantics></note></notes></objectModel>)";

class ToolTest : public ToolRun
{
protected:
    void SetUp() override
    {
        write("small.xml", theSmallModel);
        write("old.omd", theOldModel);
        write("open.xml",
              changed("<name>Other</name><dataType>Box", "<name>Other</name><dataType>Far"));
    }

    /// The small model with another text in one place.
    static std::string changed(std::string_view from, std::string_view to)
    {
        std::string model = theSmallModel;
        const std::size_t at = model.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        return at == std::string::npos ? model : model.replace(at, from.size(), to);
    }

    json showJson(const std::string& arguments)
    {
        const Outcome outcome = run("show --json " + arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return json::parse(outcome.out, nullptr, false);
    }

    /// What --help shows of omt itself, and of each of its commands.
    std::vector<std::string> helpTexts()
    {
        std::vector<std::string> texts = {run("--help").out};
        std::istringstream commands(texts[0].substr(texts[0].find("\nSubcommands:\n") + 14));
        for (std::string line; std::getline(commands >> std::ws, line) && line.find("Results");)
            texts.push_back(run(line.substr(0, line.find(' ')) + " --help").out);
        EXPECT_GE(texts.size(), 6U);
        return texts;
    }
};

std::set<std::string> optionsIn(const std::string& text)
{
    const std::regex option("--[a-z]+(-[a-z]+)*");
    std::set<std::string> options;
    for (std::sregex_iterator it(text.begin(), text.end(), option), end; it != end; ++it)
        options.insert(it->str());
    return options;
}

TEST_F(ToolTest, BadInputGetsOneMessageAndStatusOne)
{
    // Rows of several lines, which clang-format would run into each other.
    // clang-format off
    const struct
    {
        const char* what;
        const char* arguments;
        std::string content;  // of bad.xml
        const char* message;
    } cases[] = {
        {"missing", "none.xml", "", "none.xml: error: cannot be opened: No such file or directory ["},
        {"folder without models", "/proc/self/task", "", "holds no files .xml, .omd or .omt"},
        {"device", "/dev/zero", "", "omt: /dev/zero: a device"},
        {"odd octets in a name", "$(printf 'a\\033[31m\\377')", "", "a\\x1b[31m\\xff: error: "},
        {"empty", "bad.xml", "", "bad.xml: error: is empty ["},
        {"truncated", "bad.xml", "<objectModel>\n<objects>", "bad.xml:2:10: error: is no well-formed"},
        {"not UTF-8", "bad.xml", "<objectModel>\n<name>\xff</name></objectModel>", "bad.xml:2:"},
        {"percent signs", "bad.xml", "<h%s/>", "bad.xml:1:"},
        {"while quiet", "bad.xml --quiet", "<a>", "bad.xml:1:"},
        {"another document", "bad.xml", "<office/>", "bad.xml:1: error: is an XML document of another"},
        {"no 1.3 model", "bad.xml", " ; a comment\n(DIF)", "bad.xml: error: is no object model"},
        {"truncated 1.3", "bad.xml", "\n(ObjectModel", "bad.xml:2: error: ends before"},
        {"broken module", "small.xml bad.xml", "<objectModel>", "bad.xml:1:14: error: "},
        {"breaks off", "/proc/self/mem", "", "mem: error: cannot be read: Input/output error ["},
        {"from a pipe", "- <bad.xml 2>.err #", "<a>", "-:1:"},
        {"unknown class", "small.xml --class Cra", "", "no class \"Cra\"; did you mean Car"},
        {"unknown class of a path", "small.xml --class Car.Vna", "", "of Car \"Vna\"; did you mean Van"},
        {"unknown member", "small.xml --class Van.Sped", "", "\"Sped\"; did you mean Speed"},
        {"unknown class for JSON", "small.xml --json --class Cra", "", "did you mean Car"},
        {"a member for JSON", "small.xml --json --class Van.Speed", "", "name the class Van"},
        {"ambiguous class", "small.xml --class Road", "",
         "choose one of HLAobjectRoot.Road, HLAinteractionRoot.Road\n"},
        {"unknown datatype", "small.xml --datatype Paints", "", "did you mean Paint"},
        {"unknown datatype to be used", "small.xml --uses Paints", "", "did you mean Paint"},
    };
    // clang-format on
    for (const auto& one : cases)
    {
        SCOPED_TRACE(one.what);
        write("bad.xml", one.content);
        const Outcome outcome = run(std::string("-q show ") + one.arguments);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, HasSubstr(one.message));
        EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << outcome.err;
    }
}

TEST_F(ToolTest, OddButSoundInputIsRead)
{
    // Rows of several lines, which clang-format would run into each other.
    // clang-format off
    const struct
    {
        const char* what;
        const char* name;
        const char* shown;
    } cases[] = {
        {"percent signs", "%s%n", "%s%n\n"},
        {"what a terminal would obey", "A&#x9b;31m&#x202e;B", "A\\u009b31m\\u202eB\n"},
        {"blanks and line breaks", " A \n\t B ", "A B\n===\n"},
        {"more octets than columns", "B\xc3\xbchne", "B\xc3\xbchne\n=====\n"},
    };
    // clang-format on
    for (const auto& one : cases)
    {
        SCOPED_TRACE(one.what);
        write("odd.xml", "<objectModel><modelIdentification><name>" + std::string(one.name) +
                             "</name></modelIdentification>" +
                             "<dimensions><dimension><name>D</name></dimension></dimensions>" +
                             "<updateRates/></objectModel>");
        const Outcome outcome = run("show odd.xml");
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.err, "");
        EXPECT_THAT(outcome.out, StartsWith(one.shown));
    }
}

TEST_F(ToolTest, WrongUsageIsStatusTwo)
{
    for (const char* arguments :
         {"", "shwo", "show", "show small.xml --bogus", "show a --class", "show a --json --uses A",
          "show a --class A --datatype B", "show a -q -v", "show - - <small.xml"})
    {
        SCOPED_TRACE(arguments);
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, testing::ContainsRegex("[sS]ee omt( show)? --help\n"));
    }
    EXPECT_THAT(run("shwo a").err, HasSubstr("no command \"shwo\"; did you mean show?"));
    EXPECT_THAT(run("decode a.xml --mebmer B.C 00").err, HasSubstr("did you mean --member"));
    EXPECT_THAT(run("show a --clas B").err,
                HasSubstr("no option \"--clas\"; did you mean --class"));
    EXPECT_THAT(run("--version").out, testing::MatchesRegex("omt [0-9.]+, libomt [0-9.]+\n"));
}

TEST_F(ToolTest, ShowsAModel)
{
    const Outcome outcome = run("show small.xml");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    for (const char* part :
         {"Small %s\n========\n  Version           0.1\n", "  Point of contact  Author: A. Body\n",
          "      4 object classes                 3 attributes",
          "  HLAobjectRoot\n"
          "  +-- Car\n"
          "  |   |   Speed   Knots\n"
          "  |   |   Colour  Paint\n"
          "  |   +-- Van\n"
          "  |           Load  Box\n"
          "  +-- Road\n",
          "  Paint  B4              2       Red=1, Blue=2\n", "  Box\n      Width  Knots\n",
          "  n1     One note.\n"})
        EXPECT_THAT(outcome.out, HasSubstr(part));
}

TEST_F(ToolTest, ShowsOneClassOrDatatypeInFull)
{
    // Rows of several lines, which clang-format would run into each other.
    // clang-format off
    const struct
    {
        const char* arguments;
        std::vector<const char*> parts;
    } cases[] = {
        {"--class Van",
         {"HLAobjectRoot.Car.Van\n", "  From  Name    Datatype\n", "  Car   Speed   Knots\n",
          "        Colour  Paint\n  Van   Load    Box\n", "\nLoad\n  Datatype     Box (fixed)\n"}},
        {"--class Car.Van", {"HLAobjectRoot.Car.Van\n"}},
        {"--class HLAobjectRoot.Car",
         {"  Sharing        Publish\n", "  Child classes  Van\n", "  Order        Receive\n",
          "  Declared at    small.xml:"}},
        {"--class Van.Speed",
         {"HLAobjectRoot.Car.Van.Speed\n", "  From         Car\n", "  Datatype     Knots (simple)\n"}},
        {"--datatype Knots",
         {"  Kind            simple datatype\n", "  attribute  HLAobjectRoot.Car.Speed\n",
          "  array      Twice                    element\n",
          "  fixed      Box                      field Width\n",
          "  variant    Either                   discriminant Which\n"}},
        {"--datatype Box",
         {"  parameter  HLAinteractionRoot.Road.At\n", "Width  Knots (simple)\n",
          "alternative Boxed\n"}},
        {"open.xml --datatype Either",
         {"  2, 3        Boxed  Box (fixed)\n", "Far (not in this model)",
          "  Boxed    Box (fixed)\n    Width  Knots (simple)           B4\n"}},
        {"--datatype Paint", {"  1       Red\n", "  2       Blue\n"}},
        {"--datatype Twice", {"array datatype\n", "Nothing in the model"}},
        {"--uses Knots",
         {"  attribute  HLAobjectRoot.Car.Speed\n",
          "  attribute  HLAobjectRoot.Car.Van.Load  Box\n"}},
        {"old.omd --class ObjectRoot.Car", {"\n  Datatype     float (base)\n  Cardinality  0+\n"}},
        {"old.omd --datatype float", {"  Kind  base datatype", "  attribute  Car.Speed\n"}},
        {"old.omd --datatype Report",
         {"  Sizes  short (base)            1+ (Count)\n", "    X    double (base)\n"}},
    };
    // clang-format on
    for (const auto& one : cases)
    {
        SCOPED_TRACE(one.arguments);
        const bool isAnother = one.arguments[0] == 'o';
        const Outcome outcome =
            run(std::string("show ") + (isAnother ? "" : "small.xml ") + one.arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        for (const char* part : one.parts) EXPECT_THAT(outcome.out, HasSubstr(part));
    }
}

TEST_F(ToolTest, JsonHasNamesCountsAndKinds)
{
    const json expected = json::parse(R"({"name": "Small %s", "version": "0.1", "hlaVersion": 3,
        "counts": {"objectClasses": 4, "attributes": 3, "interactionClasses": 2, "parameters": 1,
            "basic": 1, "simple": 1, "enumerated": 1, "enumerators": 2, "array": 1, "fixed": 1,
            "variant": 1, "complex": 0, "notes": 1, "dimensions": 0, "transportations": 0,
            "switches": 0, "synchronizations": 0, "tags": 0, "updateRates": 0, "reference": 0,
            "directedInteractions": 0, "routingSpaces": 0, "services": 0},
        "objectClasses": ["HLAobjectRoot.Car.Van", "HLAobjectRoot.Car", "HLAobjectRoot.Road",
            "HLAobjectRoot"],
        "interactionClasses": ["HLAinteractionRoot.Road", "HLAinteractionRoot"],
        "datatypes": {"B4": "basic", "Knots": "simple", "Twice": "array", "Paint": "enumerated",
            "Box": "fixed", "Either": "variant"}})");
    const json shown = showJson("small.xml");
    for (const auto& [key, value] : expected.items()) EXPECT_EQ(shown[key], value) << key;
    EXPECT_EQ(showJson("small.xml --class Van")["attribute"][0]["class"], "HLAobjectRoot.Car");
    EXPECT_EQ(showJson("open.xml --datatype Either")["undefined"], json::parse(R"(["Far"])"));
}

TEST_F(ToolTest, FindingsGoToStandardErrorAndCountWhereTheyAreAskedFor)
{
    write("other.xml", changed("<size>32", "<size>64"));
    const std::string files = "show --json small.xml other.xml";
    for (const auto& [arguments, status] : {std::pair(files, 0), std::pair(files + " --strict", 1)})
    {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, status);
        EXPECT_THAT(outcome.err, testing::ContainsRegex("other.xml:[0-9]+: error: .*\\[conflict"));
        EXPECT_THAT(outcome.out, HasSubstr("\"objectClasses\""));
    }
    const Outcome open = run("show --strict open.xml --datatype Far");
    EXPECT_EQ(open.status, 1);
    EXPECT_THAT(open.err, HasSubstr("open.xml:23: error: "));
    EXPECT_THAT(open.err, HasSubstr("The model refers to it"));
}

TEST_F(ToolTest, ColoursAreForTerminals)
{
    const std::string show =
        "--version >.out; script -qec '" OMT_TOOL " show small.xml' .script >.out #";
    if (run(show).status != 0) GTEST_SKIP() << "there is no script";
    EXPECT_THAT(content(".script"), HasSubstr("\x1b[1mHLAobjectRoot\x1b[0m"));
    run(show, "export NO_COLOR=1;");
    EXPECT_THAT(content(".script"), HasSubstr("  HLAobjectRoot"));
    EXPECT_THAT(run("show small.xml").out, Not(HasSubstr("\x1b")));
}

TEST_F(ToolTest, TheMIMIsMergedInWhereverItsOptionStands)
{
    const json merged = showJson("small.xml --mim");
    EXPECT_EQ(merged["counts"]["objectClasses"], 4 + 3);
    EXPECT_EQ(merged["datatypes"]["HLAunicodeString"], "array");
    EXPECT_EQ(merged["datatypes"]["Paint"], "enumerated");

    EXPECT_EQ(showJson("--mim small.xml"), merged);

    write("HLAstandardMIM.xml", theSmallModel);  // a file of the user's, whatever it is called
    EXPECT_EQ(showJson("HLAstandardMIM.xml small.xml")["counts"]["objectClasses"], 4);
}

TEST_F(ToolTest, EveryExampleOfTheHelpRuns)
{
    for (const char* folder : {OMT_EXAMPLES, OMT_EXAMPLES "/.."})
        for (const fs::directory_entry& file : fs::directory_iterator(folder))
            if (file.is_regular_file()) fs::copy_file(file, path(file.path().filename()));
    fs::create_symlink(OMT_TOOL, path("omt"));
    fs::create_directory_symlink(OMT_EXAMPLES "/../check", path("check"));
    run("--version",
        "git init -q . && git add *.xml && "
        "git -c user.name=A -c user.email=a@b commit -qm one &&");
    for (const std::string& help : helpTexts())
    {
        const std::size_t begin = help.find("\nExamples:\n");
        ASSERT_NE(begin, std::string::npos) << help;
        const std::string examples = help.substr(begin + 11);
        write("examples.sh", examples.substr(0, examples.find("\n\n")));
        const Outcome outcome =
            run("--version", "PATH=.:$PATH bash -e -x -o pipefail examples.sh >.out 2>.err && env");
        EXPECT_EQ(outcome.status, 0) << outcome.err;
    }
}

TEST_F(ToolTest, TheManualPageNamesTheOptionsThatThereAre)
{
    std::string help;
    for (const std::string& text : helpTexts()) help += text;
    std::ostringstream manual;
    manual << std::ifstream(OMT_MANUAL).rdbuf();
    const std::string text = std::regex_replace(manual.str(), std::regex(R"(\\-)"), "-");
    EXPECT_EQ(optionsIn(text), optionsIn(help));
}

TEST_F(ToolTest, WhatCannotBeReadOrWrittenIsSaidInOneSentence)
{
    const std::string decode = "decode small.xml --type Knots ";
    const char* const full = "standard output: No space left on device";
    const char* const broken = "/proc/self/mem: Input/output error";
    const struct
    {
        const char* what;
        std::string arguments;
        std::string message;
    } cases[] = {
        {"full disk",              "show small.xml >/dev/full 2>.err #",        full                                 },
        {"full disk for JSON",     "show small.xml --json >/dev/full 2>.err #", full                                 },
        {"full disk for the help", "--help >/dev/full 2>.err #",                full                                 },
        {"closed standard output", "show small.xml >&- 2>.err #",
         "standard output: Bad file descriptor"                                                                      },
        {"closed standard input",  decode + "<&-",                              "standard input: Bad file descriptor"},
        {"directory for a list",   decode + "--lines <.",                       "standard input: Is a directory"     },
        {"octets that break off",  decode + "--file /proc/self/mem",            broken                               },
        {"directory for octets",   decode + "--file .",                         ".: Is a directory"                  },
    };
    for (const auto& one : cases)
    {
        SCOPED_TRACE(one.what);
        const Outcome outcome = run(one.arguments);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err, "omt: " + one.message + "\n");
    }
}

// The MIM is more than a pipe holds.
TEST_F(ToolTest, AReaderThatLeavesIsNoFailureToTalkAbout)
{
    for (const auto& [signal, status] : {std::pair("default", "141\n"), std::pair("ignore", "1\n")})
    {
        const Outcome outcome =
            run("-q convert small.xml --mim 2>.err; echo $? >.status) | true; cat .status >.out #",
                std::string("(env --") + signal + "-signal=PIPE");
        EXPECT_EQ(outcome.out, status);
        EXPECT_EQ(outcome.err, "");
    }
}

// Both the parser of XML and everything else; half of a model is never shown.
TEST_F(ToolTest, TheLackOfMemoryEndsIt)
{
    const std::string limited = "ulimit -v 150000; env";
    if (run("--version", limited).status != 0) GTEST_SKIP() << "it needs more to begin with";
    std::string notes;
    for (int i = 0; i < 400'000; ++i) notes += "<note><label>1</label></note>\n";
    write("large.xml", "<objectModel><notes>" + notes + "</notes></objectModel>");
    write("large.bin", "");
    fs::resize_file(path("large.bin"), 300'000'000);
    for (const char* arguments :
         {"show large.xml", "decode small.xml --type Knots --file large.bin"})
    {
        const Outcome outcome = run(arguments, limited);
        EXPECT_EQ(outcome.status, 1) << arguments;
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err, "omt: not enough memory\n");
    }
}

}  // namespace
