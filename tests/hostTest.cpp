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
using Key = const DtOMTNode*;
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

// An operation that is counted and changes nothing; parameters and arguments in brackets.
#define COUNTED(Result, operation, parameters, arguments) \
    Result operation parameters override                  \
    {                                                     \
        ++calls[#operation #parameters];                  \
        return Manager::operation arguments;              \
    }
#define COUNTED_ALIGNMENT(operation) COUNTED(int, operation, (Text n), (n))
#define COUNTED_WALK(operation)                                                       \
    COUNTED(void, operation,                                                          \
            (Text n, Data d, int l, int& c, Tree parent, Tree root, Offset o, Old h), \
            (n, d, l, c, parent, root, o, h))

/// Replaces operations that the library may leave out where nobody does.
struct Host : Manager
{
    using Manager::createStringTreeRep;
    using Manager::getStringRep;
    mutable std::map<std::string, int> calls;

    COUNTED_ALIGNMENT(byteAlignment)
    COUNTED_ALIGNMENT(byteAlignmentFromRep)
    COUNTED_ALIGNMENT(byteAlignmentFixed)
    COUNTED_ALIGNMENT(byteAlignmentArray)
    COUNTED_ALIGNMENT(byteAlignmentVariant)
    COUNTED_ALIGNMENT(byteAlignmentComplex)
    COUNTED(int, implicitPadding, (Offset o, Text n), (o, n))
    COUNTED(bool, isImplicitPaddingEnabled, () const, ())
    COUNTED(DtDatatypeEnum, getDatatypeEnum, (Text n), (n))
    COUNTED(Text, getDelimiterMap, (Text n, bool* f), (n, f))
    COUNTED(DtString, convertStringTreeToString, (Tree t, Text d), (t, d))
    COUNTED(void, getDatatypeRep, (Text n, Data d, int l, int& c, DtString& t), (n, d, l, c, t))
    COUNTED(Tree, createStringTreeRep,
            (Text n, Data d, int l, int& c, Key k, Offset o, Tree r, Old h),
            (n, d, l, c, k, o, r, h))
    COUNTED(Tree, createStringTreeRep, (Part n, Data d, int l, int& c, Offset o, Tree r, Old h),
            (n, d, l, c, o, r, h))
    COUNTED_WALK(createFixedTreeRep)
    COUNTED_WALK(createComplexTreeRep)
    COUNTED_WALK(createArrayTreeRep)
    COUNTED_WALK(createVariantTreeRep)
    COUNTED_WALK(createDefinedTreeRep)
    COUNTED(DtString, getStringRep, (Text n, Data d, int l, int& c), (n, d, l, c))
    COUNTED(void, getEnumRep, (Text n, Data d, int l, int& c, DtString& t), (n, d, l, c, t))
    COUNTED(int, getArrayDatatypeCount,
            (DtArrayDatatypeNode * n, Data d, int l, Tree root, Tree other), (n, d, l, root, other))
    COUNTED(void, getValueFromStringRep, (Text n, Text t, Octets& o), (n, t, o))
    COUNTED(void, getValueFromDatatypeRep, (Text n, Text t, Octets& o), (n, t, o))
};

using Slots = std::vector<void*>;

/// The virtual operations of a manager, as the Itanium ABI has them, with the two entries before.
void*** tableOf(Manager& manager)
{
    return reinterpret_cast<void***>(&manager);
}
Slots slotsOf(Manager& manager)
{
    constexpr std::ptrdiff_t theCount = 77;  // as slotOrder.txt lists them
    void** const table = *tableOf(manager);
    return Slots(table - 2, table + theCount);
}

/// A host that replaced only what stands in one slot; every other operation is the manager's own.
struct OneReplaced : Host
{
    explicit OneReplaced(std::size_t slot)
    {
        Manager plain;
        const Slots own = slotsOf(*this);
        slots = slotsOf(plain);
        std::copy(&own[1], &own[4], &slots[1]);  // its type, and what deletes it
        slots[slot] = own[slot];
        *tableOf(*this) = &slots[2];
    }
    Slots slots;
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
    // clang-format off
    const struct
    {
        const char* what;
        void (*edit)(Bench&);
    } theEdits[] = {
        {"mapping", [](auto& b) { b.manager.addRepMapping("HLAoctet", "char"); }},
        {"mapping removed", [](auto& b) { b.manager.removeRepMapping("Count"); }},
        {"mapping modified", [](auto& b) { b.manager.modifyRepMapping("Small", "short"); }},
        {"representation", [](auto& b) { b.manager.addDatatypeRep(new Letter("late")); }},
        {"defined", [](auto& b) { b.manager.addDefinedDatatypeRep(new Letter("Later")); }},
        {"delimiter", [](auto& b) { b.manager.addDelimiterMap("Old", ","); }},
        {"delimiter removed", [](auto& b) { b.manager.removeDelimiterMap("Pos"); }},
        {"default delimiter", [](auto& b) { b.manager.setDefaultDelimiter("/"); }},
        {"attribute", [](auto& b) { b.manager.addAttributeMapping("X", "hex"); }},
        {"model", [](auto& b) { b.manager.initOMTData(b.gone.get()); }},
        {"node added", [](auto& b) { b.tree->addFixedDatatypeNode(b.later.release()); }},
        {"node renamed", [](auto& b) { b.pos().setName("X"); }},
        {"field's datatype", [](auto& b) { b.pos().getComponentNode("X")->setDatatype("Large"); }},
        {"field added", [](auto& b) { b.pos().addComponentNode(b.spare.release()); }},
        {"element's datatype", [](auto& b) { b.rows().setDatatype("Count"); }},
        {"encoding", [](auto& b) { b.rows().setEncoding("HLAfixedArray"); }},
        {"discriminant", [](auto& b) { b.choice().setDatatype("Wide"); }},
        {"enumerator added", [](auto& b) { b.color().addEnumerationNode(b.enumerator.release()); }},
        {"renumbered", [](auto& b) { b.color().getEnumerationNode("Blue")->setNumber(5); }},
        {"renamed", [](auto& b) { b.color().getEnumerationNode("Blue")->setEnum("Red2"); }},
    };
    // clang-format on
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

TEST(HostTest, CallsWhatAHostReplaced)
{
    // Of decoding all, of encoding those that write: only these are never kept.
    const auto callsOf = [](Bench& bench, const Host& host)
    {
        bench.decoded();
        std::map<std::string, int> calls = host.calls;
        bench.encoded();
        for (const auto& [name, count] : host.calls)
            if (name.starts_with("getValue")) calls[name] = count;
        return calls;
    };
    Manager none;
    Host every;
    const Slots plainSlots = slotsOf(none), hostSlots = slotsOf(every);
    for (const bool pads : {false, true})
    {
        const std::string expected = Bench(pads).results();
        auto* const host = new Host;
        Bench all(pads, std::unique_ptr<Manager>(host));
        const std::map<std::string, int> calls = callsOf(all, *host);
        host->calls.clear();
        EXPECT_EQ(callsOf(all, *host), calls) << "asked again";
        EXPECT_EQ(all.results(), expected);
        // What is replaced alone is called as often as if all were: then nothing can be kept.
        std::map<std::string, int> alone;
        for (std::size_t slot = 4; slot < hostSlots.size(); ++slot)  // after both destructors
        {
            if (hostSlots[slot] == plainSlots[slot]) continue;
            auto* const one = new OneReplaced(slot);
            Bench bench(pads, std::unique_ptr<Manager>(one));
            alone.merge(callsOf(bench, *one));
            EXPECT_EQ(bench.results(), expected) << slot;
        }
        EXPECT_EQ(alone, calls) << (pads ? "padded" : "");
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
