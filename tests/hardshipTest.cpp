// SPDX-License-Identifier: Apache-2.0
// Hard times for readers, merging and the writer: classes nested without end, memory that runs out,
// files that are made to take long, disks that are full, messages at the wrong moment.
#include "memoryShortage.h"
#include "omtReader/datatypeManager.h"
#include "omtReader/omtFileReader.h"
#include "omtReader/xmlEvolvedFileWriter.h"
#include "omtReader/xmlFileReader.h"
#include "support.h"
#include "util/dtWholeFile.h"
#include "xmlDocument.h"

#include <libxml/parser.h>
#include <pthread.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <new>
#include <thread>

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;

/// A 1516-2010 model with this in it.
std::string model(const std::string& content)
{
    return "<objectModel xmlns=\"http://standards.ieee.org/IEEE1516-2010\">" + content +
           "</objectModel>";
}

/// Runs on a thread with a stack of 256 KiB.
void onSmallStack(void (*run)())
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 256 << 10);
    pthread_t thread;
    const auto start = [](void* work) -> void*
    {
        reinterpret_cast<void (*)()>(work)();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, start, reinterpret_cast<void*>(run)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

TEST(HardshipTest, ClassesAtAnyDepthTakeNoStack)
{
    onSmallStack(
        []
        {
            constexpr int theDepth = 100000;
            std::string text = "(ObjectModel ";
            std::string path = "ObjectRoot";
            for (int i = 1; i <= theDepth; ++i)
            {
                const std::string id = std::to_string(i);
                const std::string above = std::to_string(i == 1 ? 0 : i - 1);
                text += "(Class (ID " + id + ")(Name \"C" + id + "\")(SuperClass " + above +
                        ")(Attribute (Name \"a\")))";
                path += ".C" + id;
            }
            const TemporaryFolder folder;
            const Messages messages;
            const TreePtr source(
                DtOMTFileReader().readFile(folder.write("deep.omd", text + ")"), nullptr));
            const TreePtr target(new DtOMTTree);
            for (int i = 0; i < 2; ++i) target->merge(source.get());
            for (DtOMTTree* const tree : {source.get(), target.get()})
            {
                DtObjectClassFedNode* const last = tree->getObjectClassNode(path);
                ASSERT_NE(last, nullptr);
                EXPECT_EQ(last->getName(), DtString("C" + std::to_string(theDepth)));
                EXPECT_EQ(last->getFullName(), path);
                tree->prepareForSharing();
                const auto count =
                    std::distance(tree->getObjectClassNodeBegin(), tree->getObjectClassNodeEnd());
                EXPECT_EQ(count, theDepth + 1);
            }
            struct Host : DtDatatypeManager
            {
                void checkObjOrphans(DtObjectClassFedNode* node) override
                {
                    DtDatatypeManager::checkObjOrphans(node);
                }
            } host;
            target->getObjectClassNode(path)->findAttribute("a")->setDatatype("lost");
            host.initOMTData(target.get());
            EXPECT_EQ(host.getDatatypeEnum("lost"), DtDatatypeManager::DtDatatypeSimple);
            target->setObjectClassRoot(nullptr);  // then by full name out of the list
            EXPECT_NE(target->getObjectClassNode(path), nullptr);
            target->setObjectClassRoot(target->getObjectClassNode("ObjectRoot"));
            const DtString written = DtXMLEvolvedFileWriter(target.get()).writeIndentedString();
            EXPECT_THAT(written.str(), HasSubstr("<name>C" + std::to_string(theDepth) + "</name>"));
            EXPECT_THAT(messages.list(), testing::IsEmpty());
        });
}

TEST(HardshipTest, AClassInARingOrAddedTwiceIsOneClass)
{
    const Messages messages;
    const TreePtr ring(new DtOMTTree), target(new DtOMTTree);
    auto* const a = named<DtObjectClassFedNode>("A");
    auto* const b = named<DtObjectClassFedNode>("B");
    a->addChildObject(b);
    b->addChildObject(a);
    for (auto* node : {a, b, a, b}) ring->addObjectClassNode(node);
    EXPECT_EQ(a->getFullName(), "A");
    EXPECT_EQ(ring->getObjectClassNode("B"), b);
    ring->setObjectClassRoot(a);
    EXPECT_EQ(ring->getObjectClassNode("A.B.A"), a);
    target->merge(ring.get());
    EXPECT_EQ(std::distance(target->getObjectClassNodeBegin(), target->getObjectClassNodeEnd()), 2);
    EXPECT_THAT(DtXMLEvolvedFileWriter(ring.get()).writeString().str(),
                HasSubstr("<name>B</name>"));
    EXPECT_THAT(messages.list(),
                ElementsAre(HasSubstr("not merged again"), HasSubstr("not written again")));
}

TEST(HardshipTest, AMergeThatThrowsLeavesTheTreeAsItWas)
{
    struct Refusing : DtOMTTree
    {
        void addObjectClassNode(DtObjectClassFedNode* node) override
        {
            if (node->getName() != "Last") return DtOMTTree::addObjectClassNode(node);
            kept.reset(node);
            throw std::bad_alloc();
        }
        std::unique_ptr<DtObjectClassFedNode> kept;  // what a host keeps stays the host's
    };
    struct Throwing : DtObjectClassFedNode
    {
        const DtString& getFullName() const override { throw std::bad_alloc(); }
    };
    const auto fill = [](DtOMTTree& tree, const std::vector<DtObjectClassFedNode*>& children)
    {
        auto* const root = named<DtObjectClassFedNode>("Root");
        tree.addObjectClassNode(root);
        tree.setObjectClassRoot(root);
        for (auto* child : children)
        {
            root->addChildObject(child);
            tree.addObjectClassNode(child);
        }
        return root;
    };
    for (const bool isPlain : {true, false})
    {
        const TreePtr target(isPlain ? new DtOMTTree : new Refusing);
        const TreePtr source(new DtOMTTree);
        auto* const present = named<DtObjectClassFedNode>("Present");
        auto* const root = fill(*target, {present});
        auto* const same = named<DtObjectClassFedNode>("Present");
        same->addAttribute(named<DtAttributeFedNode>("x"));
        auto* const last = isPlain ? new Throwing : named<DtObjectClassFedNode>("Last");
        last->setName("Last");
        fill(*source, {named<DtObjectClassFedNode>("New"), same, last});
        const std::string before = dump(target);
        EXPECT_THROW(target->mergeObjects(source.get()), std::bad_alloc);
        EXPECT_EQ(dump(target), before);
        EXPECT_EQ(root->getChildObjects().size(), 1u);
        EXPECT_EQ(present->findAttribute("x"), nullptr);
    }
}

TEST(HardshipTest, EveryAllocationOfAReadMayFail)
{
    const TemporaryFolder folder;
    const std::string text = model(
        "<objects><objectClass><name>HLAobjectRoot</name><attribute><name>a</name></attribute>"
        "<objectClass><name>A name that does not fit into a short text</name></objectClass>"
        "</objectClass></objects><notes><note><label>l</label></note></notes>");
    const std::vector<DtFilename> names = {folder.write("1.xml", text),
                                           folder.write("2.xml", text)};
    const Messages messages;
    const std::string whole = dump(TreePtr(DtXMLFileReader().readFiles(names, nullptr)));
    bool isRead = false;
    for (std::size_t count = 1; !isRead && count < 100'000; ++count)
    {
        DtXMLFileReader reader;
        TreePtr tree;
        try
        {
            const MemoryShortage shortage(count);
            tree.reset(reader.readFiles(names, nullptr));
            isRead = tree && reader.getLastError().empty();
        }
        catch (const std::bad_alloc&)
        {
            EXPECT_LT(count, 20u) << "only where nothing was read yet";
        }
        if (isRead)
        {
            EXPECT_EQ(dump(tree), whole);
        }
        else if (tree)
        {
            EXPECT_NE(dump(tree), "") << "what was read is whole";
        }
    }
    EXPECT_TRUE(isRead);
}

// The thread sanitizer tells whether what readers share is made once, if this test runs alone.
TEST(HardshipTest, FirstReadsMayBeOnSeveralThreads)
{
    const TemporaryFolder folder;
    const std::string name = folder.write("m.xml", model("<objects/>"));
    std::vector<std::string> dumps(4);
    std::vector<std::thread> threads;
    for (std::string& text : dumps)
        threads.emplace_back([&]
                             { text = dump(TreePtr(DtXMLFileReader().readFile(name, nullptr))); });
    for (std::thread& thread : threads) thread.join();
    EXPECT_THAT(dumps, testing::Each(dump(TreePtr(DtXMLFileReader().readFile(name, nullptr)))));
}

TEST(HardshipTest, NamesGoToLibxml2)
{
    const TemporaryFolder folder;
    // model("") as gzip packs it.
    const std::vector<char> packed = octets(
        "1f 8b 08 00 00 00 00 00 02 03 b3 c9 4f ca 4a 4d 2e f1 cd 4f 49 cd 51 a8 c8 cd c9 2b b6 55 "
        "ca 28 29 29 b0 d2 d7 2f 2e 49 cc 4b 49 2c 4a 29 d6 cb 4c 4d 4d d5 cb 2f 4a d7 f7 74 75 75 "
        "35 34 35 34 d3 35 32 30 34 50 d2 b7 03 00 43 42 e9 7c 3e 00 00 00");
    const std::string plain = folder.write("a b.xml", model(""));
    const std::string zipped = folder.write("m.xml.gz", {packed.data(), packed.size()});
    const std::string uri = "file://" + folder.path().string() + "/a%20b.xml";
    Messages messages;
    unsetenv("RTI_CONFIG");
    DtXMLFileReader reader;
    EXPECT_NE(TreePtr(reader.readFile(uri, nullptr)), nullptr);
    const bool isPacked = xmlHasFeature(XML_WITH_ZLIB);
    EXPECT_EQ(TreePtr(reader.readFile(zipped, nullptr)) != nullptr, isPacked);
    EXPECT_TRUE(messages.take().empty());
    EXPECT_EQ(TreePtr(reader.readFile("http://localhost/m.xml", nullptr)), nullptr);
    EXPECT_THAT(messages.take(), ElementsAre(HasSubstr("nothing is read from the network")));

    DtOMTTree tree;
    DtXMLEvolvedFileWriter(&tree).writeFile(uri.c_str());
    const TreePtr again(reader.readFile(plain, nullptr));
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(again->getName(), "Valid FDD");
    testing::internal::CaptureStdout();
    DtXMLEvolvedFileWriter(&tree).writeFile("-");
    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("</objectModel>"));
    const auto text = [](const char* word) { return reinterpret_cast<const xmlChar*>(word); };
    xmlDoc* opened = nullptr;
    DtString error;
    DtXMLFileReader::openStream("<r>x</r>", 8, &opened, error);
    const Document document(opened);
    auto* const top = reinterpret_cast<xmlNode*>(opened);
    EXPECT_EQ(DtXMLFileReader::getNodeByName(top, text("r")), opened->children);
    EXPECT_EQ(DtXMLFileReader::childContentByName(top, text("r"))[0], 'x');
}

TEST(HardshipTest, AnElementWithVeryManyAttributesIsRefused)
{
    const auto element = [](int count, const char* quote = "'")
    {
        std::string text = "<e";
        for (int i = 0; i < count; ++i)
            text += " a" + std::to_string(i) + "=" + quote + ">" + quote;
        return text + "/>";
    };
    const std::string limit = element(1000);
    const std::string more = element(1001);
    const struct
    {
        const char* what;
        std::string text;
        bool isRefused;
    } cases[] = {
        {"the most", "<r>" + limit + limit + "</r>", false},
        {"one more", "<r>" + limit + "\n" + more + "</r>", true},
        {"a comment", "<r><!--" + more + "'-->" + limit + "</r>", false},
        {"after a comment", "<r><!--> <a x='-->" + element(1001, "\"") + "</r>", true},
        {"characters, one more", "<r><![CDATA[<a x=']]>" + element(1001, "\"") + "</r>", true},
        {"characters", "<r><![CDATA[" + more + "]]></r>", false},
        {"an instruction", "<r><?a <a x='?>" + element(1001, "\"") + "</r>", true},
        {"a subset", "<!DOCTYPE r [<!-- it's --><!ENTITY e 'x'>]><r>" + more + "</r>", true},
        {"an entity", "<!DOCTYPE r [<!ENTITY e \"" + more + "\">]><r>&e;</r>", true},
        {"UTF-16", "\xFF\xFE", true},
    };
    for (const auto& test : cases)
    {
        std::string text = test.text;
        if (text.size() == 2)
            for (const char c : "<r>" + more + "</r>") text += {c, '\0'};
        const Messages messages;
        xmlDoc* opened = nullptr;
        DtString error;
        DtXMLFileReader::openStream(text.data(), static_cast<int>(text.size()), &opened, error);
        const Document document(opened);
        EXPECT_EQ(document == nullptr, test.isRefused) << test.what;
        std::string expected = test.isRefused ? "FED buffer:" : "";
        EXPECT_EQ(messages.list().empty() ? "" : messages.list()[0].substr(0, 11), expected)
            << test.what;
    }
}

TEST(HardshipTest, FilesAreWrittenWholeOrNotAtAll)
{
    namespace fs = std::filesystem;
    const TemporaryFolder folder;
    const auto modeOf = [](const std::string& name)
    {
        struct stat found = {};
        ::stat(name.c_str(), &found);
        return found.st_mode & 0777;
    };
    const mode_t before = ::umask(027);
    const std::string fresh = (folder.path() / "fresh").string();
    EXPECT_FALSE(DtWriteWholeFile(fresh, "new"));
    ::umask(before);
    EXPECT_EQ(modeOf(fresh), 0640u);
    const std::string old = folder.write("old", "old");
    fs::permissions(old, fs::perms(0604));
    fs::create_symlink("old", folder.path() / "link");
    EXPECT_FALSE(DtWriteWholeFile((folder.path() / "link").string(), "new"));
    EXPECT_EQ(modeOf(old), 0604u);
    std::string content;
    std::ifstream(old) >> content;
    EXPECT_EQ(content, "new");
    EXPECT_EQ(DtWriteWholeFile("/dev/full", "x"), std::errc::no_space_on_device);
    EXPECT_EQ(DtWriteWholeFile("/no/such/folder/x", "x"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 3)
        << "nothing else is left";
}

TEST(HardshipTest, MessagesArriveAtAnyMoment)
{
    struct Late
    {
        ~Late()
        {
            DtWarn << "good"
                   << "bye" << std::endl;
        }
    };
    const auto leave = []
    {
        static const Late theLate;
        DtWarn << "begun";
        std::exit(0);
    };
    EXPECT_EXIT(leave(), testing::ExitedWithCode(0), "begun\nbye|begun\ngoodbye|begun\ngood\nbye");

    static std::string theText;
    theText.reserve(1000);
    const DtMessageSink plainSink = [](DtMessageLevel, std::string_view text) { theText += text; };
    DtMessageSink beforeAll = DtSetMessageSink(plainSink);
    std::thread(
        []
        {
            {
                const MemoryShortage shortage(0);
                DtWarn << "a first message for which there is no memory at all: " << 1 << "\n";
            }
            DtWarn << "and another" << std::endl;
        })
        .join();
    EXPECT_EQ(theText, "a first message for which there is no memory at all: 1\nand another\n");
    DtSetMessageSink([plainSink](DtMessageLevel, std::string_view)
                     { DtSetMessageSink(plainSink); });
    testing::internal::CaptureStderr();
    DtWarn << "x" << std::endl;
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("a message sink called"));
    DtSetMessageSink(std::move(beforeAll));
}

}  // namespace
