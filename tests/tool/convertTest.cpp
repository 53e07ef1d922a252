// SPDX-License-Identifier: Apache-2.0
// Runs omt convert and omt fmt: what they write, what is lost, and that no file is ever
// half-written.
#include "toolRun.h"

namespace
{

namespace fs = std::filesystem;

constexpr const char* theNewModel =
    R"(<objectModel xmlns="http://standards.ieee.org/IEEE1516-2025"><modelIdentification>
<name>New</name><copyright>C</copyright></modelIdentification><objects><objectClass><name>A</name>
</objectClass></objects></objectModel>)";

constexpr const char* the2000Model =
    R"(<objectModel name="Y2K" DTDversion="1516.2"><objects><objectClass name="ObjectRoot">
<attribute name="x" transportation="HLAreliable" sharing="Publish"/></objectClass></objects>
<notes><note name="1" semantics="S"/></notes></objectModel>)";

class ConvertTest : public ToolRun
{
protected:
    void SetUp() override
    {
        write("old.omd", theOldModel);
        write("new.xml", theNewModel);
        write("2000.xml", the2000Model);
    }
};

TEST_F(ConvertTest, WritesEitherEditionAndSaysWhatIsLost)
{
    const struct
    {
        const char* arguments;
        const char* text;
        const char* messages;
    } cases[] = {
        {"new.xml",                    "IEEE1516-2025",                                ""                                 },
        {"new.xml --to 2010",          "IEEE1516-2010",
         "new.xml:2: warning: copyright of identification `New` is lost: 1516-2010 has no place "
         "for it [lost]\n"                                                                                                },
        {"2000.xml",                   "<transportation>HLAreliable</transportation>",
         "2000.xml:3: note: the label of note `1` is written as `Note1` [changed]\n"                                      },
        {"2000.xml new.xml --to 2025", "<identification>New</identification>",         "2000.xml:3"                       },
        {"old.omd",                    "<ownership>DivestAcquire</ownership>",         "old.omd:3: warning: MOMVersion of"},
    };
    for (const auto& one : cases)
    {
        SCOPED_TRACE(one.arguments);
        const Outcome outcome = run(std::string("convert ") + one.arguments);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_THAT(outcome.out, testing::HasSubstr(one.text));
        EXPECT_THAT(outcome.err, testing::HasSubstr(one.messages));
        EXPECT_EQ(run(std::string("-q convert -o out.xml ") + one.arguments).err, "");
        EXPECT_EQ(content("out.xml"), outcome.out);
    }
}

TEST_F(ConvertTest, KnowsTheNamesOfTheMim)
{
    write("mim.xml", R"(<objectModel xmlns="http://standards.ieee.org/IEEE1516-2025"><dataTypes>
<simpleDataTypes><simpleData><name>A</name><representation>HLAcount</representation></simpleData>
<simpleData><name>B</name><representation>Mine</representation></simpleData></simpleDataTypes>
</dataTypes></objectModel>)");
    const std::string err = run("convert mim.xml").err;
    EXPECT_THAT(err, testing::HasSubstr("mim.xml:3: error: `Mine` is defined in no module given"));
    EXPECT_THAT(err, testing::Not(testing::HasSubstr("HLAcount")));
}

TEST_F(ConvertTest, EachModuleGoesToAFolder)
{
    fs::create_directory(path("folder"));
    EXPECT_EQ(run("convert old.omd new.xml --each --to 2010 -o folder").status, 0);
    EXPECT_EQ(content("folder/new.xml"), run("convert new.xml --to 2010").out);
    EXPECT_EQ(content("folder/old.xml"), run("convert old.omd --to 2010").out);
    for (const auto& [arguments, message] : {
             std::pair{"new.xml --each -o none",           "omt: none: no folder\n"      },
             {"new.xml new.xml --each -o folder",
                       "omt: folder/new.xml: two of the modules would be written there\n"}
    })
        EXPECT_EQ(run(std::string("convert ") + arguments).err, message);
    EXPECT_EQ(run("convert none.xml new.xml --each -o folder").status, 1);
    EXPECT_THAT(run("convert - --each -o folder").err, testing::HasSubstr("has no name"));
    EXPECT_EQ(run("convert none.xml new.xml").out, "");
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

TEST_F(ConvertTest, FmtKeepsWhatAModuleSays)
{
    write("a.xml", R"(<?xml version="1.0"?><!-- <?a?> --><objectModel
 xmlns="http://standards.ieee.org/IEEE1516-2010"><objects/><odd>1</odd>
 <modelIdentification><name> A <!--c--></name><applicationDomain/></modelIdentification>
</objectModel>)");
    write("pi.xml", "<?xml version='1.0'?><?a b?>" + std::string(theNewModel));
    const std::string canonical = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- <?a?> -->
<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010">
  <modelIdentification>
    <!--c-->
    <name>A</name>
    <applicationDomain/>
  </modelIdentification>
  <objects/>
  <odd>1</odd>
</objectModel>
)";
    const Outcome check = run("fmt --check a.xml");
    EXPECT_EQ(check.status, 1);
    EXPECT_EQ(check.out, "a.xml\n");
    EXPECT_EQ(run("fmt - < a.xml").out, canonical);
    for (int i = 0; i < 2; ++i)
    {
        EXPECT_EQ(run("fmt a.xml").status, 0);
        EXPECT_EQ(content("a.xml"), canonical);
    }
    EXPECT_EQ(run("fmt --check a.xml").status, 0);
    for (const char* const file : {"2000.xml", "old.omd", "pi.xml", "none.xml"})
    {
        const std::string before = content(file);
        EXPECT_EQ(run(std::string("fmt a.xml ") + file).status, 1) << file;
        EXPECT_EQ(content(file), before);
    }
}

}  // namespace
