// SPDX-License-Identifier: Apache-2.0
// The way into XML models: where files are looked for, which dialect they are in, modules, bad
// input.
#include "omtReader/xml1516FileReader.h"
#include "omtReader/xmlEvolvedFileReader.h"
#include "omtReader/xmlFileReader.h"
#include "support.h"
#include "xmlDocument.h"

#include <libxml/tree.h>
#include <libxml/xmlmemory.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>

namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using Texts = std::vector<std::string>;

/// The document of a text, which lies in a buffer of just its size; null if it is none.
Document parse(const std::string& text)
{
    const std::unique_ptr<char[]> buffer(new char[text.size()]);
    std::copy(text.begin(), text.end(), buffer.get());
    xmlDoc* opened = nullptr;
    DtString error;
    const DtFedReadStatus status =
        DtXMLFileReader::openStream(buffer.get(), static_cast<int>(text.size()), &opened, error);
    EXPECT_EQ(status, opened ? DtFedReadSuccess : DtFedReadBadFile);
    EXPECT_EQ(error, "");
    return Document(opened);
}

constexpr char theNamespace[] = R"(xmlns="http://standards.ieee.org/IEEE1516-2010")";
constexpr char theUnbound[] = "RTI_CONFIG environment variable unbound\n";

/// A 1516-2010 model with a name, or with other content too.
std::string model(const std::string& name, const std::string& content = "")
{
    return std::string("<objectModel ") + theNamespace + "><modelIdentification><name>" + name +
           "</name></modelIdentification>" + content + "</objectModel>";
}

/// Runs in a folder of its own, at first without RTI_CONFIG.
class FrontEndTest : public testing::Test
{
protected:
    FrontEndTest()
    {
        unsetenv("RTI_CONFIG");
        std::filesystem::current_path(folder.path());
    }
    ~FrontEndTest() override
    {
        unsetenv("RTI_CONFIG");
        std::filesystem::current_path(folderBefore);
    }

    TreePtr read(const char* name) { return TreePtr(reader.readFile(name, nullptr)); }
    TreePtr readAll(const std::vector<DtFilename>& names)
    {
        return TreePtr(reader.readFiles(names, nullptr));
    }
    /// The names of what a tree was merged from.
    static Texts sources(const TreePtr& tree)
    {
        Texts result;
        for (const DtOMTTreeReference& each : tree->getReferences())
            result.push_back(each.type.str() + " " + each.identification.str());
        return result;
    }

    std::filesystem::path folderBefore = std::filesystem::current_path();
    TemporaryFolder folder;
    DtXMLFileReader reader;
};

TEST_F(FrontEndTest, OpenFileLooksInTheConfiguredFolder)
{
    folder.write("here.xml", model("Here"));
    folder.write("broken.xml", "<objectModel>");
    folder.write("conf/here.xml", model("Other"));
    folder.write("conf/there.xml", model("There"));
    folder.write("conf/broken.xml", model("Whole"));
    const std::string no = "No such FED file: ";
    const std::string unbound = theUnbound + no;
    const std::string wrong = "broken.xml:1:14: ";
    struct Case
    {
        const char* what;
        const char* config;
        const char* name;
        std::string error;  // none for success
        Texts messages = {};
    };
    const std::vector<Case> cases = {
        {"at hand", nullptr, "here.xml", "", {"Reading FED file: here.xml\n"}},
        {"at hand comes first", "conf", "here.xml", "", {"Reading FED file: here.xml\n"}},
        {"no variable", nullptr, "there.xml", unbound + "there.xml"},
        {"empty", "", "there.xml", no + "there.xml"},
        {"only a separator", "/", "there.xml", no + "there.xml"},
        {"found", "conf", "there.xml", "", {"Reading FED file: conf/there.xml\n"}},
        {"separator", "conf/", "there.xml", "", {"Reading FED file: conf/there.xml\n"}},
        {"two: one goes", "conf//", "there.xml", "", {"Reading FED file: conf//there.xml\n"}},
        {"not there either", "conf", "%s.xml", no + "%s.xml"},
        {"broken", nullptr, "broken.xml", unbound + "broken.xml", {wrong}},
        {"retried", "conf", "broken.xml", "", {wrong, "Reading FED file: conf/broken.xml\n"}},
        {"a folder", nullptr, "conf", unbound + "conf", {"conf: "}},
    };
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.what);
        if (c.config)
            setenv("RTI_CONFIG", c.config, 1);
        else
            unsetenv("RTI_CONFIG");
        const Messages messages(DtMessageLevel::verbose);
        xmlDoc* opened = nullptr;
        DtString error = "before;";
        const DtFedReadStatus status = DtXMLFileReader::openFile(c.name, &opened, error);
        const Document document(opened);
        EXPECT_EQ(status, c.error.empty() ? DtFedReadSuccess : DtFedReadNoFile);
        EXPECT_EQ(document != nullptr, c.error.empty());
        EXPECT_EQ(error, DtString("before;" + c.error));
        ASSERT_EQ(messages.list().size(), c.messages.size());
        for (std::size_t i = 0; i < c.messages.size(); ++i)
            EXPECT_THAT(messages.list()[i], StartsWith(c.messages[i]));
    }
}

TEST_F(FrontEndTest, TheDialectIsToldByNamespaceThenContent)
{
    const std::string unreliable =
        "<transportations><transportation name=\"T\"/>"
        "<transportation><reliable>Yes</reliable></transportation></transportations>";
    const std::string rates = "<updateRates/>";
    const std::string root =
        "<objects><objectClass><name>HLAobjectRoot</name></objectClass></objects>";
    const std::string interactions =
        "<interactions><interactionClass><name>HLAinteractionRoot"
        "</name></interactionClass></interactions>";
    struct Case
    {
        const char* what;
        bool isEvolved;
        std::string content;
        std::string attributes = "";
        std::string prefix = "";
    };
    const std::vector<Case> cases = {
        {"the namespace", true, unreliable, theNamespace},
        {"the namespace with a prefix", true, "",
         "xmlns:p=\"http://standards.ieee.org/IEEE1516-2010\"", "p:"},
        {"another namespace", false, "", "xmlns=\"http://standards.ieee.org/\""},
        {"reliable", true,
         "<transportations><transportation><reliable>Yes</reliable>"
         "</transportation></transportations>"},
        {"only the first transportation counts, whatever follows", false,
         unreliable + rates + root},
        {"reliable without text", false,
         "<transportations><transportation><reliable/>"
         "</transportation></transportations>" +
             rates},
        {"rates", true, rates + "<objects/>"},
        {"the object root", true, root},
        {"the first text counts", true,
         "<objects><objectClass><name/><name><!-- A --></name><name>HLAobjectRoot</name>"
         "</objectClass></objects>"},
        {"no classes, which settles it", false, "<objects/>" + interactions},
        {"another first class", false,
         "<objects><objectClass><name>A</name></objectClass>"
         "<objectClass><name>HLAobjectRoot</name></objectClass></objects>" +
             interactions},
        {"the root of 2000", false, "<objects><objectClass name=\"HLAobjectRoot\"/></objects>"},
        {"the interaction root", true, interactions},
        {"no interaction classes", false, "<interactions/>"},
        {"nothing", false, ""},
    };
    xmlNode* none = nullptr;
    EXPECT_FALSE(DtXMLFileReader::isEvolvedFormat(none));
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.what);
        const Document document = parse("<" + c.prefix + "objectModel " + c.attributes + ">" +
                                        c.content + "</" + c.prefix + "objectModel>");
        xmlNode* element = xmlDocGetRootElement(document.get());
        ASSERT_TRUE(element);
        EXPECT_EQ(DtXMLFileReader::isEvolvedFormat(element), c.isEvolved);
    }
}

TEST_F(FrontEndTest, ErrorsAddUpAndAReaderGoesOn)
{
    const Messages messages;
    folder.write("old.xml", "<objectModel name=\"Old\"/>");
    folder.write("new.xml", model("New"));
    EXPECT_FALSE(read(""));
    EXPECT_EQ(reader.getLastError(), "");
    EXPECT_FALSE(read("a"));
    EXPECT_FALSE(readAll({"new.xml", "b", "c"}));
    const std::string unbound = theUnbound;
    EXPECT_EQ(reader.getLastError().str(),
              unbound + "No such FED file: a" + unbound + "No such FED file: b");
    reader.clearLastError();
    EXPECT_FALSE(readAll({"new.xml", "old.xml"}));
    EXPECT_EQ(reader.getLastError(), "");
    EXPECT_EQ(read("new.xml")->getName(), "New");
    const TreePtr old = read("old.xml");
    EXPECT_EQ(old->getName(), "Old");
    EXPECT_EQ(old->hlaVersion(), DtHla1516_2000);
    const TreePtr empty = readAll({});
    EXPECT_EQ(empty->hlaVersion(), DtHla1516_2010);
    EXPECT_THAT(messages.list(), IsEmpty());
}

constexpr char theMIM[] =
    "Composed_From Standard MOM and Initialization Module (MIM) for HLA IEEE 1516-2010";

TEST_F(FrontEndTest, TheMIMIsAddedOnRequest)
{
    folder.write("new.xml", model("New"));
    folder.write("old.xml", "<objectModel/>");
    folder.write("HLAstandardMIM.xml", model("Own"));
    folder.write("HLAstandardMIM.xml.d/new.xml", model("Inside"));
    folder.write("my-HLAstandardMIM.xml.old", model("Like it"));
    EXPECT_FALSE(reader.MIMincluded());
    EXPECT_THAT(sources(read("new.xml")), IsEmpty());
    reader.includeMIM(true);

    const TreePtr both = read("new.xml");
    EXPECT_THAT(sources(both), ElementsAre("Composed_From New", theMIM));
    EXPECT_EQ(both->hlaVersion(), DtHla1516_2010);
    EXPECT_TRUE(both->getObjectClassNode("HLAobjectRoot.HLAmanager"));
    EXPECT_THAT(sources(read("HLAstandardMIM.xml.d/new.xml")),
                ElementsAre("Composed_From Inside", theMIM));
    EXPECT_EQ(read("HLAstandardMIM.xml")->getName(), "Own");
    EXPECT_EQ(read("my-HLAstandardMIM.xml.old")->getName(), "Like it");
    EXPECT_EQ(read("old.xml")->objectClassRoot(), nullptr);

    EXPECT_THAT(sources(readAll({"HLAstandardMIM.xml"})), ElementsAre(theMIM));
    EXPECT_THAT(sources(readAll({"./HLAstandardMIM.xml", "new.xml", "HLAstandardMIM.xml"})),
                ElementsAre("Composed_From Own", "Composed_From New", theMIM));
}

TEST_F(FrontEndTest, AnExceptionSpoilsOneModule)
{
    folder.write("a.xml", model("A"));
    folder.write("b.xml", model("B", "<switches><s isEnabled=\"true\"/></switches><objects/>"));
    folder.write("old.xml", "<objectModel><objects/></objectModel>");
    const Messages messages;
    DtWarn.setstate(std::ios::badbit);  // so that from here on each warning throws
    EXPECT_THROW(DtWarn.exceptions(std::ios::badbit), std::ios::failure);
    EXPECT_THAT(sources(readAll({"b.xml", "a.xml", "b.xml", "a.xml"})),
                ElementsAre("Composed_From A", "Composed_From A"));
    EXPECT_EQ(reader.getLastError(), "Unexpected problem reading fed file\n");
    reader.clearLastError();
    EXPECT_FALSE(read("old.xml"));
    EXPECT_EQ(reader.getLastError(), "Unexpected problem reading fed file\n");
    DtWarn.exceptions(std::ios::goodbit);
    DtWarn.clear();
}

class OwnFrontEnd : public DtXMLFileReader
{
public:
    DtOMTTree* readFiles(const std::vector<DtFilename>& names, DtExerciseConn*) override
    {
        for (const DtFilename& name : names) seen.push_back(name.name().str());
        return nullptr;
    }
    Texts seen;
};

TEST_F(FrontEndTest, ADerivedFrontEndReadsTheList)
{
    folder.write("x/a.xml", model("A"));
    OwnFrontEnd own;
    own.includeMIM(true);
    EXPECT_EQ(own.readFile("x/a.xml", nullptr), nullptr);
    EXPECT_THAT(own.seen, ElementsAre("x/a.xml", "HLAstandardMIM.xml"));
}

std::string repeated(const std::string& text, int times)
{
    std::string result;
    while (times-- > 0) result += text;
    return result;
}

/// A model with a note of some text.
std::string noted(const std::string& text)
{
    return "<objectModel><updateRates/><notes><note><semantics>" + text +
           "</semantics></note></notes></objectModel>";
}

std::string doctype(const std::string& declarations)
{
    return "<!DOCTYPE objectModel [" + declarations + "]>";
}

/// An entity that is ten of the one before, and so on.
std::string bomb()
{
    std::string entities = "<!ENTITY e0 \"ha ha ha ha\">";
    for (int i = 1; i < 12; ++i)
        entities += "<!ENTITY e" + std::to_string(i) + " \"" +
                    repeated("&e" + std::to_string(i - 1) + ";", 10) + "\">";
    return doctype(entities);
}

struct BadInput
{
    const char* what;
    std::string content;
    std::optional<std::string> line = {};  // of the dump; none where there is no tree
};

const std::vector<BadInput> theBadInput = {
    {"empty", ""},
    {"binary", std::string("\x7f"
                           "ELF\0\1\2\xff", 8)},
    {"mismatched tags", "<objectModel></objectmodel>"},
    {"bad UTF-8", noted("\xC3(")},
    {"an unknown encoding", "<?xml version=\"1.0\" encoding=\"no-such\"?><objectModel/>"},
    {"another encoding", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + noted("\xE9"),
     ".note[0].text = \xC3\xA9"},
    {"percent signs in what is wrong", "<%s%n/>"},
    {"a DTD that is there", "<!DOCTYPE objectModel SYSTEM \"local.dtd\"><objectModel/>",
     ".name = "},
    {"a DTD elsewhere", "<!DOCTYPE objectModel SYSTEM \"http://198.51.100.1/a\"><objectModel/>",
     ".name = "},
    {"an external entity", doctype("<!ENTITY e SYSTEM \"secret.txt\">") + noted("&e;"),
     ".note[0].text = "},
    {"an external entity in an XML attribute",
     doctype("<!ENTITY e SYSTEM \"secret.txt\">") + "<objectModel name=\"&e;\"/>"},
    {"an external parameter entity", doctype("<!ENTITY % p SYSTEM \"local.dtd\">%p;") + noted("A"),
     ".note[0].text = A"},
    {"an entity that grows", bomb() + noted("&e11;")},
    {"more than 256 deep", repeated("<a>", 300) + repeated("</a>", 300)},
    {"a long word", "<" + std::string(1000000, 'a') + "/>"},
    {"a long text", noted(std::string(1000000, 'a')),
     ".note[0].text = " + std::string(1000000, 'a')},
};

TEST_F(FrontEndTest, BadInputDoesNoHarm)
{
    folder.write("secret.txt", "<x>secret</x>");
    folder.write("local.dtd", "<!ENTITY e \"secret\"><!ATTLIST objectModel name CDATA \"secret\">");
    for (const BadInput& bad : theBadInput)
    {
        SCOPED_TRACE(bad.what);
        folder.write("bad.xml", bad.content);
        const Messages messages;
        testing::internal::CaptureStderr();  // where nobody but the sink may write
        const auto start = std::chrono::steady_clock::now();
        const TreePtr tree = read("bad.xml");
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_EQ(tree != nullptr, bad.line.has_value());
        if (tree)
        {
            EXPECT_THAT(dump(tree), HasSubstr(bad.line.value_or("") + "\n"));
            EXPECT_THAT(dump(tree), Not(HasSubstr("secret")));
            continue;
        }
        EXPECT_THAT(messages.list(), ElementsAre(AllOf(StartsWith("bad.xml:"), EndsWith("\n"))));
        EXPECT_THAT(reader.getLastError().str(), EndsWith("No such FED file: bad.xml"));
    }
}

constexpr char theSmallModel[] =
    R"(<!DOCTYPE objectModel [<!ENTITY e "x">]><objectModel><!-- c --><objects><objectClass>
<name>HLAobjectRoot</name><attribute><name>A</name><dimensions><dimension>D</dimension></dimensions>
</attribute></objectClass></objects><dimensions><dimension note="n"><name>D</name></dimension>
</dimensions><switches s="Enabled"><s isEnabled="true"/></switches><tags>&e;<![CDATA[t]]><t/></tags>
</objectModel>)";

/// Reads a text in both dialects, whichever it is in.
bool isRead(const std::string& text)
{
    const Document document = parse(text);
    if (!document) return false;
    xmlNode* root = xmlDocGetRootElement(document.get());
    DtXMLFileReader::isEvolvedFormat(root);
    const TreePtr evolved(DtXMLEvolvedFileReader(nullptr).processObjectModel(root));
    const TreePtr older(DtXML1516FileReader(nullptr).processObjectModel(root));
    return !dump(evolved).empty() && !dump(older).empty();
}

TEST_F(FrontEndTest, EveryBeginningAndEveryWrongOctetIsSurvived)
{
    const Messages messages;
    const std::string model = theSmallModel;
    ASSERT_TRUE(isRead(model));
    for (std::size_t length = 0; length < model.size(); ++length)
        EXPECT_FALSE(isRead(model.substr(0, length))) << length;
    for (std::size_t at = 0; at < model.size(); ++at)
        for (const char wrong : {'<', '>', '&', '"', '/', '\0', '\xFF'})
        {
            std::string octets = model;
            octets[at] = wrong;
            isRead(octets);
        }
}

/// How often libxml2 gets memory before there is none any more.
long theAllocationsLeft = 0;

void* unlessUsedUp(void* (*allocate)(void*, std::size_t), void* old, std::size_t size)
{
    return --theAllocationsLeft < 0 ? nullptr : allocate(old, size);
}

void limitAllocations()
{
    xmlMemSetup(
        std::free, [](std::size_t size) { return unlessUsedUp(std::realloc, nullptr, size); },
        [](void* old, std::size_t size) { return unlessUsedUp(std::realloc, old, size); },
        [](const char* text) { return --theAllocationsLeft < 0 ? nullptr : ::strdup(text); });
}

// A part of a document may look whole to a parser that gave up.
TEST_F(FrontEndTest, HalfOfAModelIsNoModel)
{
    folder.write("model.xml", theSmallModel);
    const Messages messages;
    const std::string whole = dump(read("model.xml"));
    limitAllocations();
    int read = 0;
    for (long allocations = 0; read == 0 && allocations < 100'000; ++allocations)
    {
        theAllocationsLeft = allocations;
        try
        {
            const TreePtr tree(DtXMLFileReader().readFile("model.xml", nullptr));
            if (!tree) continue;
            ++read;
            EXPECT_EQ(dump(tree), whole) << allocations;
        }
        catch (const std::bad_alloc&)
        {
        }
    }
    EXPECT_EQ(read, 1);
    xmlMemSetup(std::free, std::malloc, std::realloc, ::strdup);
}

}  // namespace
