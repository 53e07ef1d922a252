// SPDX-License-Identifier: Apache-2.0
// Runs omt convert: what it writes, what it says is lost, and that no file is ever half-written.
#include "toolRun.h"

#include <nlohmann/json.hpp>

#include <cstdlib>

namespace
{

namespace fs = std::filesystem;
using nlohmann::json;

constexpr const char* theNewModel =
    R"(<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010"><modelIdentification>
<name>New</name><useHistory>Once</useHistory><poc><pocName>A</pocName></poc>
<poc><pocName>B</pocName></poc></modelIdentification><synchronizations><synchronizationPoint>
<label>Go</label><dataType>T</dataType></synchronizationPoint></synchronizations><dataTypes>
<variantRecordDataTypes><variantRecordData><name>V</name><discriminant>D</discriminant>
<dataType>E</dataType><alternative><enumerator>1</enumerator><name>A</name><dataType>B</dataType>
<semantics>S</semantics></alternative><encoding>HLAvariantRecord</encoding>
<semantics>M</semantics></variantRecordData></variantRecordDataTypes></dataTypes></objectModel>)";

// Its interaction classes do not begin with the root.
constexpr const char* the2000Model =
    R"(<objectModel name="Y2K" sponsor="Club" reference="R" other="O"><objects>
<objectClass name="HLAobjectRoot"/></objects><interactions><interactionClass name="A">
<interactionClass name="B"/></interactionClass></interactions></objectModel>)";

class ConvertTest : public ToolRun
{
protected:
    void SetUp() override
    {
        write("old.omd", theOldModel);
        write("new.xml", theNewModel);
        write("2000.xml", the2000Model);
    }

    json showJson(const std::string& file)
    {
        return json::parse(run("show --json " + file).out, nullptr, false);
    }
};

TEST_F(ConvertTest, ListsWhatIsLost)
{
    const struct
    {
        const char* file;
        const char* messages;
    } cases[] = {
        {"old.omd",
         "omt: the roots \"ObjectRoot\" and \"InteractionRoot\" are written as \"HLAobjectRoot\" "
         "and \"HLAinteractionRoot\"\n"
         "omt: ownership: the letters of 1 attribute are written as words\n"
         "omt: the name \"Old\" is written as \"OldValid FDD\"\n"
         "omt: lost: 1 point of contact: not written\n"
         "omt: lost: 1 sponsor: IEEE 1516-2010 has no place for it\n"
         "omt: lost: 1 MOM version: IEEE 1516-2010 has no place for it\n"
         "omt: lost: 1 attribute or parameter with a cardinality: IEEE 1516-2010 has arrays "
         "instead\n"
         "omt: lost: 1 attribute or parameter with an accuracy: simple datatypes have it in IEEE "
         "1516-2010\n"
         "omt: lost: 2 complex datatypes: HLA 1.3 alone has them\n"
         "omt: lost: 3 datatype names: attributes and parameters refer to what the written model "
         "does not define\n"                                           },
        {"new.xml",
         "omt: the name \"New\" is written as \"NewValid FDD\"\n"
         "omt: lost: 2 points of contact: not written\n"
         "omt: lost: 1 use history: not written\n"
         "omt: lost: 1 encoding of a variant record: not written\n"
         "omt: lost: 1 meaning of a variant record: not written\n"
         "omt: lost: 1 meaning of an alternative: not written\n"
         "omt: lost: 1 datatype of a synchronization point: written as \"datatype\", a word that "
         "readers do not know\n"                                       },
        {"new.xml new.xml",
         "omt: the name \"\" is written as \"Valid FDD\"\n"
         "omt: lost: 2 identifications of modules: merging keeps their names alone, as "
         "references\n"
         "omt: lost: 1 encoding of a variant record: not written\n"
         "omt: lost: 1 meaning of a variant record: not written\n"
         "omt: lost: 1 meaning of an alternative: not written\n"
         "omt: lost: 1 datatype of a synchronization point: written as \"datatype\", a word that "
         "readers do not know\n"                                       },
        {"2000.xml",
         "omt: the name \"Y2K\" is written as \"Y2KValid FDD\"\n"
         "omt: lost: 1 sponsor: IEEE 1516-2010 has no place for it\n"
         "omt: lost: 1 free reference: IEEE 1516-2010 has no place for it\n"
         "omt: lost: 1 other text of the identification: not written\n"
         "omt: lost: 2 classes: not below a root, and so not written\n"},
    };
    for (const auto& one : cases)
    {
        SCOPED_TRACE(one.file);
        const Outcome outcome = run(std::string("convert ") + one.file);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_THAT(outcome.err, testing::EndsWith(one.messages));
        EXPECT_EQ(run(std::string("-q convert -o out.xml ") + one.file).err, "");
        EXPECT_EQ(content("out.xml"), outcome.out);
    }
    EXPECT_THAT(run("convert old.omd").out,
                testing::AllOf(testing::HasSubstr("<ownership>DivestAcquire</ownership>"),
                               testing::HasSubstr("<ownership>Any</ownership>")));
}

TEST_F(ConvertTest, AnOldModelReadsBackInTodaysFormat)
{
    EXPECT_EQ(run("-q convert old.omd -o old.omd").status, 0);
    const json shown = showJson("old.omd");
    EXPECT_EQ(shown["objectClasses"], json::parse(R"(["HLAobjectRoot.Car", "HLAobjectRoot"])"));
    EXPECT_EQ(shown["interactionClasses"][0], "HLAinteractionRoot.Crash");
    EXPECT_EQ(shown["datatypes"], json::parse(R"({"KindEnum8": "enumerated"})"));
}

TEST_F(ConvertTest, AllButComplexDatatypesOfALargeModelReadsBack)
{
    const char* const models = std::getenv("OMT_MODELS");
    if (!models) GTEST_SKIP() << "OMT_MODELS is not set";
    const std::string file = std::string(models) + "/hla13/RPR2-D17.omd";
    json counts = showJson(file)["counts"];
    EXPECT_EQ(counts["objectClasses"], 64);
    EXPECT_EQ(counts["complex"], 95);
    counts["complex"] = 0;
    run("-q convert " + file + " -o rpr.xml");
    EXPECT_EQ(showJson("rpr.xml")["counts"], counts);
}

TEST_F(ConvertTest, AFileIsWrittenWholeOrNotAtAll)
{
    write("kept.xml", "kept");
    fs::create_symlink("ring", path("ring"));
    const auto before = std::distance(fs::directory_iterator(path("")), {});
    const std::string limited = "ulimit -f 1; env";  // half a kilobyte, or a whole one
    const struct
    {
        std::string shell;
        const char* target;
        const char* reason;
    } cases[] = {
        {limited, "kept.xml",     "File too large"                   },
        {limited, "out.xml",      "File too large"                   },
        {"env",   "none/out.xml", "No such file or directory"        },
        {"env",   ".",            "Is a directory"                   },
        {"env",   "ring",         "Too many levels of symbolic links"},
        {"env",   "/dev/full",    "No space left on device"          },
    };
    for (const auto& one : cases)
    {
        SCOPED_TRACE(one.target);
        const Outcome outcome = run(std::string("-q convert old.omd -o ") + one.target, one.shell);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err, std::string("omt: ") + one.target + ": " + one.reason + "\n");
        EXPECT_EQ(content("kept.xml"), "kept");
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(path("")), {}), before + 2);  // .out and .err
}

TEST_F(ConvertTest, AFileThatIsReplacedKeepsItsPlaceAndItsPermissions)
{
    const auto mode = [this](const char* name)
    { return static_cast<unsigned>(fs::status(path(name)).permissions()); };
    write("old.xml", "old");
    fs::permissions(path("old.xml"), fs::perms(0640));
    fs::create_directory(path("sub"));
    fs::create_symlink("../old.xml", path("sub/link"));
    EXPECT_EQ(run("-q convert old.omd -o sub/link", "umask 077; env").status, 0);
    EXPECT_TRUE(fs::is_symlink(path("sub/link")));
    EXPECT_THAT(content("old.xml"), testing::StartsWith("<?xml"));
    EXPECT_EQ(mode("old.xml"), 0640U);

    run("-q convert old.omd -o new.out", "umask 027; env");
    EXPECT_EQ(mode("new.out"), 0640U);
    EXPECT_EQ(run("-q convert old.omd -o /dev/stdout").out, content("new.out"));
}

}  // namespace
