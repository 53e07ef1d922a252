// SPDX-License-Identifier: Apache-2.0
// Conversions and string trees when memory is short: what fails leaves everything usable.
#include "memoryShortage.h"
#include "modelText.h"
#include "omtReader/datatypeManager.h"
#include "omtReader/stringTree.h"
#include "support.h"

#include <sstream>

namespace
{

using Tree = std::unique_ptr<DtStringTree>;

struct Value
{
    const char* datatype;
    std::string octets;
};

/// The line of a value, and that of its tree.
std::string decoded(DtDatatypeManager& manager, const Value& value)
{
    const DtString datatype(value.datatype);
    const int length = static_cast<int>(value.octets.size());
    int ofLine = 0, ofTree = 0;
    const DtString line = manager.getStringRep(datatype, value.octets.data(), length, ofLine);
    const Tree tree(manager.createStringTreeRep(datatype, value.octets.data(), length, ofTree,
                                                nullptr, 0, nullptr, nullptr));
    std::ostringstream all;
    all << line << '|' << manager.convertStringTreeToString(tree.get(), ",") << '|' << ofLine << '|'
        << ofTree;
    return all.str();
}

}  // namespace

TEST(ShortageTest, DecodingGoesOnAfterFailures)
{
    const DtMessageSink sinkBefore = DtSetMessageSink([](auto, auto) {});
    const TreePtr model = modelOf(
        "simple B byte;simple D double;simple Text string;simple Lost nowhere;"
        "enumerated Kind HLAoctet AKindWithAVeryLongName=1 Two=2;"
        "array Numbers D HLAvariableArray Dynamic;variant Choice kind:Kind Two:Numbers;"
        "fixed All aFieldWithAVeryLongName:Kind b:Choice c:Text d:Lost;"
        "complex Old k:Kind:1 a:Text:0-1_(k_=_Two) b:B:(k);");
    const std::string numbers = std::string(3, '\0') + "\2" + std::string(20, '\7');
    const Value theValues[] = {
        {"All", "\1\2" + std::string(6, '\0') + numbers + "A text that has some length" +
                    std::string(8, '\0')},
        {"Old", "\2A text that has some length and goes on"},
        {"Text", std::string(100000, 'x')},
        {"Unknown", std::string(40, '\5')},
    };
    for (const Value& value : theValues)
    {
        SCOPED_TRACE(value.datatype);
        std::unique_ptr<DtDatatypeManager> manager;
        const auto makeManager = [&]
        {
            manager = std::make_unique<DtDatatypeManager>();
            manager->setImplicitPadding(true);
            manager->fillDefaultDatatypeRepList();
            manager->initOMTData(model.get());
        };
        makeManager();
        const std::string expected = decoded(*manager, value);
        makeManager();
        sweepShortages([&] { decoded(*manager, value); },
                       [&]
                       {
                           EXPECT_EQ(decoded(*manager, value), expected);
                           makeManager();  // the next one begins with nothing known
                       });
    }
    DtSetMessageSink(sinkBefore);
}

TEST(ShortageTest, EncodingGoesOnAfterFailures)
{
    const Messages messages;
    const TreePtr model = modelOf(
        "simple B byte;simple C char;enumerated E HLAoctet Five=5 Six=6;"
        "array Text C HLAnullTerminatedArray -;array V B HLAvariableArray Dynamic;"
        "fixed Datum a:E b:B c:V;array Data Datum HLAvariableArray Dynamic;"
        "fixed All a:Text b:Datum c:B d:Data;complex Old k:E:1 a:B:(k_=_5) o:Datum:0-2 z:B:0-1");
    const std::pair<const char*, const char*> theValues[] = {
        {"All",  "a[b[]] Five, 1, 2[3], 7 Six, 3, 4[Five, 5, 6]"},
        {"Old",  "Five 7 Six, 1, 2[Five, 3, 4], 9"              },
        {"Data", "Five 1 2[Six, 3, 4[5]]"                       },
        {"E",    "Six"                                          },
    };
    for (const auto& [datatype, text] : theValues)
    {
        SCOPED_TRACE(datatype);
        std::unique_ptr<DtDatatypeManager> manager;
        const auto makeManager = [&]
        {
            manager = std::make_unique<DtDatatypeManager>();
            manager->fillDefaultDatatypeRepList();
            manager->initOMTData(model.get());
            manager->addDelimiterMap("Datum", ", ");
            manager->setNodeLimit(2);  // and one for each octet of the text: spent ones would show
        };
        const auto encoded = [&, name = datatype, line = text]
        {
            DtDatatypeManager::Octets out;
            manager->getValueFromStringRep(name, line, out);
            return out;
        };
        makeManager();
        const DtDatatypeManager::Octets expected = encoded();
        makeManager();
        sweepShortages(encoded,
                       [&]
                       {
                           for (int times = 0; times < 3; ++times) EXPECT_EQ(encoded(), expected);
                           makeManager();
                       });
    }
    EXPECT_EQ(messages.list(), std::vector<std::string>());
}

TEST(ShortageTest, TreesNeedNoMemoryToGo)
{
    struct Larger : DtStringTree
    {
        char more[256];
    };
    Tree root(new DtStringTree);
    for (int count = 0; count < 1000; ++count)
    {
        Tree parent(new DtStringTree("key", "datatype", 0));
        parent->setNextSibling(new DtStringTree(*parent));
        parent->setNextElement(new DtStringTree(*parent->nextSibling()));
        parent->setFirstChild(root.release());
        root = std::move(parent);
    }
    const MemoryShortage shortage(0);
    root.reset();
    const Tree none(new (std::nothrow) Larger);
    EXPECT_FALSE(none);
}
