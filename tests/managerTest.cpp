// SPDX-License-Identifier: Apache-2.0
// The manager: representations, what it takes from a model, mappings and their file.
#include "modelText.h"
#include "omtReader/byteDatatypeRep.h"
#include "omtReader/charDatatypeRep.h"
#include "omtReader/datatypeManager.h"
#include "omtReader/hierarchy.h"
#include "omtReader/xmlFileReader.h"
#include "support.h"

#include <fstream>
#include <map>
#include <set>
#include <sstream>

namespace
{

using Manager = DtDatatypeManager;
using Text = const DtString&;
using Data = const void*;

/// "key=value " for each entry.
std::string listed(auto begin, auto end)
{
    std::ostringstream text;
    for (; begin != end; ++begin) text << begin->first << '=' << begin->second << ' ';
    return text.str();
}

std::string mappings(Manager& manager)
{
    return listed(manager.getRepMapList(), manager.getRepMapListEnd());
}

/// A character under a name of its own, whose deletions are counted.
struct Letter : DtCharDatatypeRep
{
    explicit Letter(const char* itsName) : name(itsName) {}
    ~Letter() override { ++theDeletions; }
    const char* datatype() const override { return name; }
    const char* name;
    static inline int theDeletions = 0;
};

/// Names nothing that it could be deleted as.
struct Nameless final : DtDatatypeRep
{
    Nameless() : DtDatatypeRep(false) {}
    const char* datatype() const override { return "nameless"; }
    DtString stringRep(Data, int*) const override { return DtString(); }
    std::vector<char> valueFromStringRep(Text) const override { return {}; }
    unsigned int byteAlignment() const override { return 1; }
};

}  // namespace

TEST(ManagerTest, RegistersRepresentations)
{
    const Messages messages;
    Manager manager;
    manager.setImplicitPadding(true);
    manager.fillDefaultDatatypeRepList();
    std::vector<char> ones(16, '\xFF');
    ones.resize(1024);
    std::string reads;  // what each takes at an odd address
    for (auto it = manager.getNameRepMapList(); it != manager.getNameRepMapListEnd(); ++it)
    {
        int consumed = 0;
        it->second->stringRep(&ones[1], &consumed);
        reads += it->first.str() + '=' + std::to_string(consumed) + ' ';
    }
    EXPECT_EQ(
        reads,
        "bool=1 byte=1 char=1 double=15 double-LE=15 enum16=3 enum32=7 enum8=1 float=7 float-LE=7 "
        "hex=1 int=7 int-LE=7 long=15 long-LE=15 short=3 short-LE=3 string=16 unsigned-int=7 "
        "unsigned-int-LE=7 unsigned-long=15 unsigned-long-LE=15 unsigned-short=3 "
        "unsigned-short-LE=3 utf16=2 utf8=0 ");
}

TEST(ManagerTest, DeletesEachRepresentationOnceThroughItsOwnClass)
{
    Letter::theDeletions = 0;
    Letter* const first = new Letter("a");
    Nameless nameless;  // whose deletion would end the test
    {
        Manager manager;
        for (DtDatatypeRep* rep : {static_cast<DtDatatypeRep*>(first), (DtDatatypeRep*)nullptr,
                                   static_cast<DtDatatypeRep*>(&nameless)})
            manager.addDatatypeRep(rep);
        manager.addDefinedDatatypeRep(nullptr);
        auto* const second = new Letter("a");
        manager.addDatatypeRep(second);
        manager.addDatatypeRep(second);
        second->name = "b";
        manager.addDefinedDatatypeRep(second);
        EXPECT_EQ(manager.getSimpleDatatypeRep("none"), nullptr);
        EXPECT_EQ(manager.getSimpleDatatypeRep("b"), second);
        EXPECT_EQ(manager.getDatatypeEnum("b"), Manager::DtDatatypeDefined);
    }
    EXPECT_EQ(Letter::theDeletions, 1) << "what was replaced is not deleted";
    delete first;
}

TEST(ManagerTest, TakesUpModels)
{
    const TreePtr tree = modelOf(
        "simple S HLAoctet;enumerated E1 HLAoctet;enumerated E2 HLAinteger16BE;"
        "enumerated E4 HLAinteger32LE;enumerated E 64;array A element HLAfixedArray 2;"
        "fixed F x:field;variant V d:discriminant x:alternative;complex C x:component:1");
    const auto addMember = []<typename Class>(Class& owner, const char* datatype)
    {
        auto* const member = named<typename omtreader::Hierarchy<Class>::Member>("m");
        member->setDatatype(datatype);
        omtreader::Hierarchy<Class>::addMember(owner, member);
    };
    auto* const object = named<DtObjectClassFedNode>("O");
    auto* const interaction = named<DtInteractionClassFedNode>("I");
    DtObjectClassFedNode nestedObject;
    DtInteractionClassFedNode nestedInteraction;
    object->addChildObject(&nestedObject);
    interaction->addChildInteraction(&nestedInteraction);
    addMember(*object, "attribute");
    addMember(nestedObject, "nestedAttribute");
    addMember(*interaction, "parameter");
    addMember(nestedInteraction, "nestedParameter");
    tree->addObjectClassNode(object);
    tree->addInteractionClassNode(interaction);

    const TreePtr earlier = modelOf("array S x HLAfixedArray 2;fixed Earlier x:S");
    Manager manager;
    manager.initOMTData(nullptr);
    EXPECT_EQ(manager.omtTree(), nullptr);
    manager.initOMTData(earlier.get());
    manager.addRepMapping("S", "overwritten");
    manager.addRepMapping("attribute", "overwritten");
    EXPECT_EQ(manager.getDatatypeEnum("field"), Manager::DtDatatypeUnknown);
    manager.initOMTData(tree.get());
    EXPECT_EQ(mappings(manager),
              "E1=enum8 E2=enum16 E4=enum32 S=HLAoctet alternative=--- attribute=--- component=--- "
              "discriminant=--- element=--- field=--- nestedAttribute=--- nestedParameter=--- "
              "parameter=--- x=--- ");
    expectEach({"S => 1", "E1 => 2", "E => 2", "C => 3", "A => 4", "V => 5", "F => 6",
                "Earlier => 6", "field => 1", "attribute => 1", "none => 0"},
               [&](Text name) { return std::to_string(manager.getDatatypeEnum(name)); });
}

TEST(ManagerTest, MapsNames)
{
    const TreePtr tree = modelOf("simple A base;simple B base;simple C other");
    Manager manager;
    manager.initOMTData(tree.get());
    // Rows of several lines, which clang-format would run into each other.
    // clang-format off
    const struct
    {
        const char* what;
        std::function<void()> edit;
        const char* mappings;
    } theSteps[] = {
        {"itself", [&] { manager.addRepMapping("B", "long"); }, "A=base B=long C=other "},
        {"carried over", [&] { manager.addRepMapping("base", "int"); },
         "A=int B=long C=other base=int "},
        {"still its own", [&] { manager.addRepMapping("base", "byte"); },
         "A=byte B=long C=other base=byte "},
        {"modified", [&] { EXPECT_TRUE(manager.modifyRepMapping("A", "hex")); },
         "A=hex B=long C=other base=byte "},
        {"nothing to modify", [&] { EXPECT_FALSE(manager.modifyRepMapping("D", "hex")); },
         "A=hex B=long C=other D= base=byte "},
        {"attributes are apart", [&] { manager.addAttributeMapping("base", "char"); },
         "A=hex B=long C=other D= base=byte "},
    };
    // clang-format on
    for (const auto& [what, edit, expected] : theSteps)
    {
        edit();
        EXPECT_EQ(mappings(manager), expected) << what;
    }
    const auto attributeMapping = [&](Text name) { return manager.attributeMapping(name).str(); };
    expectEach({"base => char", "A => char", "B => ", "C => "}, attributeMapping);
    manager.addAttributeMapping("other", "char");
    manager.removeAttributeMapping("base");
    expectEach({"base => ", "C => char"}, attributeMapping);

    bool found = true;
    manager.setDefaultArrayBracket(false);
    EXPECT_TRUE(manager.getArrayBracketMap("A", &found)) << "there is a default";
    EXPECT_FALSE(found);
    manager.addArrayBracketMap("A", false);
    EXPECT_FALSE(manager.getArrayBracketMap("A", nullptr));
    EXPECT_EQ(manager.getDelimiterMap("A", &found), " ");
    EXPECT_FALSE(found);
}

TEST(ManagerTest, KnowsWhetherThereIsSomethingToSave)
{
    const TreePtr tree = modelOf("simple A base");
    const TemporaryFolder folder;
    const std::string full = folder.write("full", "((datatypeMap \"A\" \"x\"))");
    const std::string empty = folder.write("empty", ";;Nothing\n");
    enum Effect
    {
        keeps,
        sets,
        clears
    };
    const struct
    {
        const char* what;
        Effect effect;
        std::function<void(Manager&)> call;
    } theCases[] = {
        {"representation", sets,   [](auto& m) { m.addDatatypeRep(new DtByteDatatypeRep); }       },
        {"defined",        sets,   [](auto& m) { m.addDefinedDatatypeRep(new DtByteDatatypeRep); }},
        {"default list",   keeps,  [](auto& m) { m.fillDefaultDatatypeRepList(); }                },
        {"mapping",        sets,   [](auto& m) { m.addRepMapping("A", "x"); }                     },
        {"none removed",   sets,   [](auto& m) { m.removeRepMapping("none"); }                    },
        {"none removed",   sets,   [](auto& m) { m.removeAttributeMapping("none"); }              },
        {"modified",       sets,   [](auto& m) { m.modifyRepMapping("A", "x"); }                  },
        {"none modified",  keeps,  [](auto& m) { m.modifyRepMapping("none", "x"); }               },
        {"looked up",      keeps,  [](auto& m) { m.getSimpleDatatypeRep("none"); }                },
        {"model",          keeps,  [&](auto& m) { m.initOMTData(tree.get()); }                    },
        {"read",           clears, [&](auto& m) { m.readFile(full.c_str()); }                     },
        {"nothing read",   keeps,  [&](auto& m) { m.readFile(empty.c_str()); }                    },
        {"standard",       clears, [](auto& m) { m.readStandardMappings(); }                      },
    };
    for (const bool before : {false, true})
        for (const auto& [what, effect, call] : theCases)
        {
            Manager manager;
            manager.initOMTData(tree.get());
            manager.setIsDirty(before);
            call(manager);
            EXPECT_EQ(manager.isDirty(), effect == keeps ? before : effect == sets) << what;
        }
}

TEST(MappingFileTest, IsWrittenAndReadBack)
{
    const TreePtr tree = modelOf("enumerated E HLAoctet;fixed F x:orphan");
    Manager manager;
    manager.initOMTData(tree.get());
    manager.addRepMapping("b", "byte");
    manager.addRepMapping("a", "Xenum");
    manager.addRepMapping("d", "enumX");
    manager.modifyRepMapping("c", "leaves an empty one");
    manager.addAttributeMapping("lost", "byte");
    manager.addDelimiterMap("F", ", ");
    manager.addDelimiterMap("E", "");
    manager.addArrayBracketMap("y", false);
    manager.addArrayBracketMap("x", true);
    const TemporaryFolder folder;
    const std::string name = (folder.path() / "map").string();
    manager.writeFile(name);
    std::stringstream text;
    text << std::ifstream(name).rdbuf();
    EXPECT_EQ(text.str(),
              ";;This file needs to always start with a parenthesis.\n("
              "\n\t(datatypeMap \"a\" \"Xenum\")\n\t(datatypeMap \"b\" \"byte\")"
              "\n\t(datatypeMap \"c\" \"\")\n"
              "\n\t(delimiterMap \"E\" \"\")\n\t(delimiterMap \"F\" \", \")\n"
              "\n\t(arrayBracketMap \"x\" 1)\n\t(arrayBracketMap \"y\" 0)\n)\n");
    Manager other;
    other.readFile(name);
    EXPECT_EQ(mappings(other), "a=Xenum b=byte c= ");
    EXPECT_EQ(listed(other.getDelimiterList(), other.getDelimiterListEnd()), "E= F=,  ");
    EXPECT_EQ(listed(other.getArrayBracketList(), other.getArrayBracketListEnd()), "x=1 y=0 ");
    EXPECT_EQ(other.attributeMapping("lost"), "");
}

TEST(MappingFileTest, MayHoldAnything)
{
    const std::string theDeep(1000000, '(');
    const std::string theEnd(1000000, ')');
    // Rows of several lines, which clang-format would run into each other.
    // clang-format off
    const struct
    {
        const char* what;
        std::string content;
        const char* mappings;
        const char* delimiters;
        std::size_t warnings = 0;
    } theCases[] = {
        {"unknown words", "((foo \"A\" \"x\") word 42 \"text\" () ((datatypeMap) \"A\" \"x\")"
                          "(DatatypeMap \"A\" \"x\") (delimiterMap \"D\" \",\"))", "A=y ", "D=, "},
        {"escapes", R"(((delimiterMap "D" "\"\\\t\054")))", "A=y ", "D=\"\\\t, "},
        {"an empty list", "()", "A=y ", ""},
        {"deep", theDeep + theEnd, "A=y ", ""},
        {"too deep to end", "((datatypeMap \"A\" \"x\")" + theDeep, "A=y ", "", 1},
        {"no end", "((datatypeMap \"A\" \"x\")", "A=y ", "", 1},
        {"no end of a text", "((datatypeMap \"A\" \"x) )", "A=y ", "", 1},
        {"a stray end", ")", "A=y ", "", 1},
        {"binary", std::string("\x7F\x45\x00\x01)\xFF\x00(", 8), "A=y ", ""},
    };
    // clang-format on
    const TemporaryFolder folder;
    for (const auto& [what, content, expected, delimiters, warnings] : theCases)
    {
        SCOPED_TRACE(what);
        Manager manager;
        manager.addRepMapping("A", "y");
        const Messages messages;
        manager.readFile(folder.write("map", content));
        EXPECT_EQ(mappings(manager), expected);
        EXPECT_EQ(listed(manager.getDelimiterList(), manager.getDelimiterListEnd()), delimiters);
        EXPECT_EQ(messages.list().size(), warnings);
        EXPECT_EQ(manager.isDirty(), warnings > 0);
    }
    const Messages messages;
    Manager manager;
    manager.setIsDirty(true);
    for (const auto& path : {folder.path(), folder.path() / "none", std::filesystem::path()})
        manager.readFile(path.string());
    manager.readFile(folder.write("map", ""));
    manager.writeFile(folder.path().string());
    EXPECT_TRUE(manager.isDirty());
    EXPECT_EQ(messages.list().size(), 0U);
    manager.writeFile("/dev/full");
    EXPECT_THAT(messages.list(), testing::ElementsAre(testing::HasSubstr("No space left")));
}

using StandardMappingTest = ModelsTest;
TEST_F(StandardMappingTest, ServesPublishedModels)
{
    const Messages messages;
    for (const char* folder : {"evolved", "x2000", "mim"})
        for (const auto& file : std::filesystem::directory_iterator(model(folder)))
        {
            DtXMLFileReader reader;
            const TreePtr tree(reader.readFile(file.path().c_str(), nullptr));
            if (!tree) continue;
            Manager manager;
            manager.fillDefaultDatatypeRepList();
            manager.initOMTData(tree.get());
            manager.readStandardMappings();
            std::set<std::string> basic, missing;
            for (auto it = tree->getBasicDataRepresentationNodeList();
                 it != tree->getBasicDataRepresentationEndNode(); ++it)
                basic.insert((*it)->getName().str());
            for (auto it = tree->getSimpleDatatypeNodeList();
                 it != tree->getSimpleDatatypeEndNode(); ++it)
                if (basic.count((*it)->getRepresentation().str()) &&
                    !manager.getSimpleDatatypeRep((*it)->getName()))
                    missing.insert((*it)->getName().str());
            EXPECT_EQ(missing, std::set<std::string>()) << file.path();
        }
}
