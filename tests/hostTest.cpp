// SPDX-License-Identifier: Apache-2.0
// The manager with edits between conversions, with hosts that replace a part of it, and with others
// at the same model.
#include "modelText.h"
#include "omtReader/charDatatypeRep.h"
#include "omtReader/datatypeManager.h"
#include "omtReader/definedDatatypeRep.h"
#include "omtReader/stringTree.h"
#include "support.h"

#include <dlfcn.h>

#include <map>
#include <sstream>
#include <thread>

namespace
{

using Manager = DtDatatypeManager;
using Text = const DtString&;
using Data = const void*;
using Tree = DtStringTree*;
using Old = DtObjectHistory*;
using Offset = unsigned int;
using Part = const DtOMTDatatypeNode&;

/// A character under a name of its own.
struct Letter : DtCharDatatypeRep
{
    explicit Letter(const char* itsName) : name(itsName) {}
    const char* datatype() const override { return name; }
    const char* name;
};

/// A record of two octets, as a whole.
struct Whole : DtDefinedDatatypeRep
{
    Whole() : DtDefinedDatatypeRep(false) {}
    const char* datatype() const override { return "Whole"; }
    DtString stringRep(Data position, int* consumed) const override
    {
        if (consumed) *consumed = 2;
        return "whole" + DtString(static_cast<int>(*static_cast<const char*>(position)));
    }
    DtString stringRep(Data position, int* consumed, Old) const override
    {
        return stringRep(position, consumed);
    }
    Tree createTreeRep(Data, int*, Old) const override { return new DtStringTree; }
    DtString originalStringRep(Data, int*, Old) const override { return DtString(); }
    std::vector<char> valueFromStringRep(Text) const override { return {'W', 'W'}; }
    unsigned int byteAlignment() const override { return 2; }
};

/// Counts steps that the library leaves out where there is no host, and changes nothing.
struct Host : Manager
{
    using Manager::createStringTreeRep;
    std::map<std::string, int> calls;

    int byteAlignment(Text n) override { return ++calls["alignment"], Manager::byteAlignment(n); }
    DtDatatypeEnum getDatatypeEnum(Text n) override
    {
        return ++calls["kind"], Manager::getDatatypeEnum(n);
    }
    DtString convertStringTreeToString(Tree t, Text d) override
    {
        return ++calls["line"], Manager::convertStringTreeToString(t, d);
    }
    void getDatatypeRep(Text n, Data d, int l, int& c, DtString& t) override
    {
        ++calls["decode"], Manager::getDatatypeRep(n, d, l, c, t);
    }
    Tree createStringTreeRep(Part n, Data d, int l, int& c, Offset o, Tree r, Old h) override
    {
        return ++calls["part"], Manager::createStringTreeRep(n, d, l, c, o, r, h);
    }
    void getValueFromDatatypeRep(Text n, Text t, Octets& o) override
    {
        ++calls["encode"], Manager::getValueFromDatatypeRep(n, t, o);
    }
};

const char theModel[] =
    "simple Small HLAoctet;simple Count HLAinteger32BE;simple Large HLAinteger64BE;"
    "simple Later x;enumerated Color HLAoctet Red=1 Blue=2;enumerated Wide HLAinteger32BE Blue=2;"
    "array Row Small HLAvariableArray Dynamic;fixed Pos X:Count Y:Small;"
    "variant Choice Kind:Color Red:Small Blue:Pos;complex Old First:Small:1 Second:Small:1;"
    "fixed Some A:Small B:Color C:Row D:Pos;"
    "fixed All A:Small B:Color C:Color D:Small E:Row F:Pos G:Small H:Small I:Choice J:Old "
    "K:Small L:Gone M:Whole N:Lost";
/// A value of All, which stands where it is with padding and without.
const char theValue[] =
    "01 02 05 03 00 00 00 04 41 42 43 44 00 00 00 07 08 09 0A 02 00 00 00 0B 0C 0D 0E 0F 10 11 1E "
    "13 14 15 16 17 18 19 1A 1B";

/// A manager, with a model of all kinds; what there is in it, `results` shows.
struct Bench
{
    explicit Bench(bool pads, std::unique_ptr<Manager> owned = std::make_unique<Manager>())
        : owner(std::move(owned))
    {
        attribute.setName("attribute");
        attribute.setDatatype("Row");
        attribute.setCardinality("0+");
        spare->setDatatype("Large");
        enumerator->setEnum("Five");
        enumerator->setNumber(5);
        manager.setImplicitPadding(pads);
        manager.fillDefaultDatatypeRepList();
        manager.addDefinedDatatypeRep(new Whole);
        manager.initOMTData(earlier.get());
        manager.initOMTData(tree.get());
        manager.readStandardMappings();
        manager.addRepMapping("Later", "late");
        manager.addDelimiterMap("Pos", ";");
    }

    std::string decoded()
    {
        const std::vector<char> value = octets(theValue);
        const int length = static_cast<int>(value.size());
        int consumed = 0;
        std::ostringstream text;
        text << manager.getStringRep("All", value.data(), length, consumed) << consumed << '\n';
        const std::unique_ptr<DtStringTree> all(manager.createStringTreeRep(
            "All", value.data(), length, consumed, nullptr, 4, nullptr, nullptr));
        outline(all.get(), text);
        text << consumed << '\n';
        text << manager.getFedNodeStringRep(&attribute, &value[4], 8, consumed);
        const std::unique_ptr<DtStringTree> rows(
            manager.createStringTreeRep(&attribute, &value[4], 8, consumed, 0, nullptr));
        outline(rows.get(), text);
        manager.getArrayRep("Row", &value[4], length - 4, consumed, row);
        text << row << manager.getStringRep("Later", value.data(), 4, consumed) << '\n';
        return text.str();
    }

    std::string encoded()
    {
        std::ostringstream text;
        Manager::Octets out;
        manager.getValueFromStringRep("Some", "7 Red 1[2] 4;5", out);
        manager.getValueFromStringRep("Color", "Blue", out);
        for (const char octet : out) text << static_cast<int>(octet) << ' ';
        for (const char* name : {"All", "Row", "Choice"})
            text << manager.byteAlignment(name) << ' ';
        return text.str();
    }

    std::string results() { return decoded() + encoded(); }

    DtFixedDatatypeNode& pos() { return *tree->getFixedDatatypeNode("Pos"); }
    DtEnumeratedDatatypeNode& color() { return *tree->getEnumeratedDatatypeNode("Color"); }
    DtVariantDatatypeNode& choice() { return *tree->getVariantDatatypeNode("Choice"); }
    DtArrayDatatypeNode& rows() { return *tree->getArrayDatatypeNode("Row"); }

    static void outline(Tree node, std::ostream& text)
    {
        if (!node) return;
        text << node->key() << '@' << node->offset() << '=' << node->value() << ' ';
        for (Tree part : {node->firstChild(), node->nextElement(), node->nextSibling()})
            outline(part, text);
    }

    const Messages messages;
    TreePtr earlier = modelOf("fixed Gone A:Small");
    TreePtr gone = modelOf("fixed Gone B:Small");
    TreePtr tree = modelOf(theModel);
    std::unique_ptr<DtFixedDatatypeNode> later{
        new DtFixedDatatypeNode(*gone->getFixedDatatypeNode("Gone"))};
    std::unique_ptr<DtFieldComponentNode> spare{named<DtFieldComponentNode>("spare")};
    std::unique_ptr<DtEnumerationNode> enumerator{new DtEnumerationNode};
    DtAttributeFedNode attribute;
    DtString row;
    std::unique_ptr<Manager> owner;
    Manager& manager = *owner;
};

/// Changes mappings and converts other values while a value is being converted.
struct Editor : Manager
{
    void edit()
    {
        if (std::exchange(isEditing, true)) return;
        addRepMapping(DtString(++edits), "int");
        int consumed = 0;
        getStringRep("Pos", "\1\2\3\4\5", 5, consumed);
        Octets out;
        getValueFromStringRep("Some", "7 Red 1[2] 4;5", out);
        isEditing = false;
    }
    void getEnumRep(Text n, Data d, int l, int& c, DtString& t) override
    {
        edit();
        Manager::getEnumRep(n, d, l, c, t);
    }
    void getValueFromEnumRep(Text n, Text t, Octets& o) override
    {
        edit();
        Manager::getValueFromEnumRep(n, t, o);
    }
    int edits = 0;
    bool isEditing = false;
};

}  // namespace

TEST(HostTest, KeepsNothingThatAnEditChanges)
{
    const struct
    {
        const char* what;
        void (*edit)(Bench&);
    } theEdits[] = {
        {"mapping",            [](auto& b) { b.manager.addRepMapping("HLAoctet", "char"); }          },
        {"mapping removed",    [](auto& b) { b.manager.removeRepMapping("Count"); }                  },
        {"mapping modified",   [](auto& b) { b.manager.modifyRepMapping("Small", "short"); }         },
        {"representation",     [](auto& b) { b.manager.addDatatypeRep(new Letter("late")); }         },
        {"defined",            [](auto& b) { b.manager.addDefinedDatatypeRep(new Letter("Later")); } },
        {"delimiter",          [](auto& b) { b.manager.addDelimiterMap("Old", ","); }                },
        {"delimiter removed",  [](auto& b) { b.manager.removeDelimiterMap("Pos"); }                  },
        {"default delimiter",  [](auto& b) { b.manager.setDefaultDelimiter("/"); }                   },
        {"attribute",          [](auto& b) { b.manager.addAttributeMapping("X", "hex"); }            },
        {"model",              [](auto& b) { b.manager.initOMTData(b.gone.get()); }                  },
        {"node added",         [](auto& b) { b.tree->addFixedDatatypeNode(b.later.release()); }      },
        {"node renamed",       [](auto& b) { b.pos().setName("X"); }                                 },
        {"field's datatype",   [](auto& b) { b.pos().getComponentNode("X")->setDatatype("Large"); }  },
        {"field added",        [](auto& b) { b.pos().addComponentNode(b.spare.release()); }          },
        {"element's datatype", [](auto& b) { b.rows().setDatatype("Count"); }                        },
        {"encoding",           [](auto& b) { b.rows().setEncoding("HLAfixedArray"); }                },
        {"discriminant",       [](auto& b) { b.choice().setDatatype("Wide"); }                       },
        {"enumerator added",   [](auto& b) { b.color().addEnumerationNode(b.enumerator.release()); } },
        {"renumbered",         [](auto& b) { b.color().getEnumerationNode("Blue")->setNumber(5); }   },
        {"renamed",            [](auto& b) { b.color().getEnumerationNode("Blue")->setEnum("Red2"); }},
    };
    for (const bool pads : {false, true})
        for (const auto& [what, edit] : theEdits)
        {
            Bench used(pads), fresh(pads);
            const std::string before = used.results();
            edit(used);
            edit(fresh);
            const std::string after = fresh.results();
            EXPECT_EQ(used.results(), after) << what << (pads ? ", padded" : "");
            EXPECT_NE(before, after) << what << (pads ? ", padded" : "");
        }
}

TEST(HostTest, CallsAHostForEveryStep)
{
    for (const bool pads : {false, true})
    {
        auto* const host = new Host;
        Bench bench(pads, std::unique_ptr<Manager>(host));
        EXPECT_EQ(bench.results(), Bench(pads).results());
        host->calls.clear();
        bench.encoded();
        // Of "7 Red 1[2] 4;5" all but Red.
        EXPECT_EQ(host->calls["encode"], 5);
        host->calls.clear();
        int consumed = 0;
        const std::vector<char> value = octets("00 00 00 07 08");
        EXPECT_EQ(bench.manager.getStringRep("Pos", value.data(), 5, consumed), "7;8");
        std::map<std::string, int> expected = {
            {"kind",   5},
            {"part",   2},
            {"decode", 2},
            {"line",   3}
        };
        // Before Pos that of Pos and of its two fields, then each field's own.
        if (pads) expected["alignment"] = 5;
        EXPECT_EQ(host->calls, expected) << (pads ? "padded" : "");
        bench.manager.getStringRep("Pos", value.data(), 5, consumed);
        for (auto& [step, count] : expected) count *= 2;
        EXPECT_EQ(host->calls, expected) << "nothing is kept";
    }
}

TEST(HostTest, AllowsEditsInBetween)
{
    auto* const editor = new Editor;
    Bench bench(true, std::unique_ptr<Manager>(editor));
    EXPECT_EQ(bench.results(), Bench(true).results());
    EXPECT_GE(editor->edits, 6);
}

// Plugins of a host may bring copies of their own, and other libraries with thread-local data.
TEST(HostTest, LoadsManyCopiesOfTheLibrary)
{
    // The address sanitizer takes a second copy for a fault.
    if (dlsym(RTLD_DEFAULT, "__asan_init")) GTEST_SKIP() << "Under the address sanitizer";
    constexpr char theOperation[] = "_ZN17DtDatatypeManager15defaultInstanceEv";
    void* const own = dlsym(RTLD_DEFAULT, theOperation);
    Dl_info library;
    ASSERT_TRUE(own && dladdr(own, &library));
    const TemporaryFolder folder;
    for (int count = 0; count < 30; ++count)
    {
        const auto copy = folder.path() / (std::to_string(count) + ".so");
        std::filesystem::copy_file(library.dli_fname, copy);
        void* const loaded = dlopen(copy.c_str(), RTLD_NOW | RTLD_LOCAL);
        ASSERT_TRUE(loaded) << count << ": " << dlerror();
        void* const theirs = dlsym(loaded, theOperation);
        ASSERT_TRUE(theirs && theirs != own);
        auto* const manager = reinterpret_cast<DtDatatypeManager* (*)()>(theirs)();
        int consumed = 0;
        EXPECT_EQ(manager->getStringRep("Unknown", "\1\2", 2, consumed), "01 02");
    }
}

// Managers of their own, one model, and one sink for what all of them say.
TEST(HostTest, SharesAPreparedModel)
{
    const TreePtr shared = modelOf(theModel);
    shared->prepareForSharing();
    const std::string expected = Bench(true).results();
    const auto convert = [&](Bench& bench, DtOMTTree& model)
    {
        bench.manager.initOMTData(&model);
        bench.manager.readStandardMappings();
        for (int times = 0; times < 20; ++times) EXPECT_EQ(bench.results(), expected);
    };
    Bench alone(true);
    convert(alone, *alone.tree);
    struct PaddedBench : Bench
    {
        PaddedBench() : Bench(true) {}
    } benches[8];
    const Messages together;
    std::vector<std::thread> threads;
    for (Bench& bench : benches) threads.emplace_back([&] { convert(bench, *shared); });
    for (std::thread& thread : threads) thread.join();

    std::map<std::string, long> missing;
    for (const std::string& text : alone.messages.list()) missing[text] += std::ssize(benches);
    for (const std::string& text : together.list()) --missing[text];
    EXPECT_FALSE(missing.empty());
    for (const auto& [text, count] : missing) EXPECT_EQ(count, 0) << text;
}
