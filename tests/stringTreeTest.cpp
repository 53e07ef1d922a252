// SPDX-License-Identifier: Apache-2.0
// String trees, their line of text, and the history that keeps them.
#include "omtReader/attributeHistory.h"
#include "omtReader/datatypeManager.h"
#include "omtReader/stringTree.h"
#include "support.h"

namespace
{

using Tree = std::unique_ptr<DtStringTree>;

/// The tree of a text such as "value:Datatype(child)[element],sibling"; keys are the values.
DtStringTree* parsed(std::string_view& text, int& nodes)
{
    const auto next = [&text, &nodes](char open, char close) -> DtStringTree*
    {
        if (text.empty() || text.front() != open) return nullptr;
        text.remove_prefix(1);
        DtStringTree* const part = parsed(text, nodes);
        if (close) text.remove_prefix(1);
        return part;
    };
    const std::string_view head = text.substr(0, text.find_first_of("()[],"));
    const std::string_view value = head.substr(0, head.find(':'));
    text.remove_prefix(head.size());
    ++nodes;
    auto* const node = new DtStringTree;
    node->setKey(value);
    node->setDatatype(head.substr(std::min(value.size() + 1, head.size())));
    node->setOffset(static_cast<unsigned int>(nodes));
    node->setValue(value);
    node->setFirstChild(next('(', ')'));
    node->setNextElement(next('[', ']'));
    node->setNextSibling(next(',', '\0'));
    return node;
}

Tree parsed(std::string_view text)
{
    int nodes = 0;
    return Tree(parsed(text, nodes));
}

/// Takes part in rendering, and changes nothing.
struct Listener : DtDatatypeManager
{
    DtString convertStringTreeToString(DtStringTree* tree, const DtString& delimiter) override
    {
        ++count;
        return DtDatatypeManager::convertStringTreeToString(tree, delimiter);
    }
    int count = 0;
};

using Link = void (DtStringTree::*)(DtStringTree*);

/// A chain of nodes "e", the last of which has the key "last".
Tree chain(int length, Link link)
{
    Tree first = parsed("e");
    first->setKey("last");
    while (--length > 0)
    {
        Tree before = parsed("e");
        (before.get()->*link)(first.release());
        first = std::move(before);
    }
    return first;
}

}  // namespace

TEST(StringTreeTest, ChainsMayBeLong)
{
    constexpr int theLength = 200000;
    const struct
    {
        const char* what;
        Link link;
        bool isSearched;
        std::size_t length;
        const char* head;
    } theCases[] = {
        {"elements", &DtStringTree::setNextElement, false, 3 * theLength - 2, "e[e[e["},
        {"siblings", &DtStringTree::setNextSibling, true,  2 * theLength - 1, "e,e e "},
        {"children", &DtStringTree::setFirstChild,  true,  theLength,         "eeeeee"},
    };
    DtDatatypeManager manager;
    for (const auto& [what, link, isSearched, length, head] : theCases)
    {
        SCOPED_TRACE(what);
        Tree tree = chain(theLength, link);
        const DtString line = manager.convertStringTreeToString(tree.get(), ",");
        EXPECT_EQ(line.length(), length);
        EXPECT_EQ(line.view().substr(0, 6), head);
        DtStringTree assigned;
        assigned = DtStringTree(*tree);
        EXPECT_EQ(tree->findKey("last") != nullptr, isSearched);
        tree.reset();
        EXPECT_EQ(manager.convertStringTreeToString(&assigned, ","), line);
        EXPECT_EQ(assigned.findKey("none"), nullptr);

        const Tree part = chain(5000, link);
        Listener listener;
        EXPECT_EQ(listener.convertStringTreeToString(part.get(), ";"),
                  manager.convertStringTreeToString(part.get(), ";"));
    }
}

TEST(StringTreeTest, LinesHandDelimitersOn)
{
    const TreePtr model(new DtOMTTree);
    model->addFixedDatatypeNode(named<DtFixedDatatypeNode>("R"));
    model->addVariantDatatypeNode(named<DtVariantDatatypeNode>("V"));
    model->addSimpleDatatypeNode(named<DtSimpleDatatypeNode>("S"));
    model->addEnumeratedDatatypeNode(named<DtEnumeratedDatatypeNode>("E"));
    DtDatatypeManager plain;
    Listener listener;
    for (DtDatatypeManager* manager : {&plain, static_cast<DtDatatypeManager*>(&listener)})
    {
        manager->initOMTData(model.get());
        for (const char* datatype : {"R", "V", "S", "E"}) manager->addDelimiterMap(datatype, ";");
        const auto line = [&](const DtString& input)
        {
            listener.count = 0;
            int nodes = 0;
            std::string_view text = input.view();
            const Tree tree(parsed(text, nodes));
            const DtString result = manager->convertStringTreeToString(tree.get(), "/");
            EXPECT_EQ(listener.count, manager == &listener ? nodes : 0) << input;
            return result.str();
        };
        expectEach({"1:S[2:S[3:S]] => 1[2[3]]", "0:R(c)[e:S],s:S => 0c[e]/s",
                    // A first child and its siblings are handed the delimiter,
                    ":S(:R(1:S,2:S)) => 1/2", ":(1:S,2:S) => 1/2",
                    // later ones have their own, for what follows them as well,
                    "0:S,:R(1:S,2:S),3:S => 0/1;2;3", "0:S[:R(1:S,2:S)],3:S => 0[1;2]/3",
                    // or the default, or none.
                    "0:S,:unmapped(1:S,2:S),3:S => 0/1 2 3", "0:S,:V(1:S,2:S),3:S => 0/1/2/3",
                    "0:S,:E(1:S,2:S),3:S => 0/1/2/3", "0:S,x:S(1:S,2:S),3:S => 0/x1/2/3"},
                   line);
        EXPECT_EQ(manager->convertStringTreeToString(nullptr, ";"), "");
    }
}

TEST(StringTreeTest, KeysAreFoundInSiblingsFirst)
{
    const Tree tree = parsed("root(x:child)[element],s(x:sibling's)");
    EXPECT_EQ(tree->findKey("x")->datatype(), "sibling's");
    EXPECT_EQ(tree->findKey("root"), tree.get());
    EXPECT_EQ(tree->findKey("element"), nullptr);
    EXPECT_EQ(tree->appendToArray(new DtStringTree), tree->nextElement());
}

TEST(StringTreeTest, AssignmentCopiesAndLeavesFormerLinks)
{
    DtDatatypeManager manager;
    const Tree tree = parsed("k:D(c:C(g)[e],s)");
    const Tree child(tree->firstChild());
    *tree = std::as_const(*tree);
    EXPECT_EQ(tree->firstChild(), child.get());
    *tree = *child;  // which is a part of it
    for (DtStringTree* each : {tree.get(), child.get()})
        EXPECT_EQ(manager.convertStringTreeToString(each, "/"), "cg[e]/s");
    EXPECT_EQ(tree->key() + tree->datatype(), "cC");
    EXPECT_EQ(tree->offset(), 2U);
    for (DtStringTree* link : {tree->firstChild(), tree->nextSibling(), tree->nextElement()})
        for (const auto* source : {child->firstChild(), child->nextSibling(), child->nextElement()})
            EXPECT_NE(link, source);
}

TEST(StringTreeTest, FieldsAreTheNodesOwn)
{
    DtStringTree tree("a key that takes memory", "a datatype that takes memory", 0);
    const DtString &key = tree.key(), &datatype = tree.datatype();
    tree.setDatatype(key);
    tree.setKey("another");
    EXPECT_EQ(key + "/" + datatype, "another/a key that takes memory");
}

TEST(AttributeHistoryTest, KeepsTheLastFiveValues)
{
    DtDatatypeManager manager;
    DtAttributeHistory history(manager);
    DtAttributeFedNode attribute;
    attribute.setDatatype("unknown");
    attribute.setCardinality("1+");
    EXPECT_EQ(history.getByteStream(4), nullptr);
    EXPECT_EQ(history.createStringTree(&attribute, 0), nullptr);
    for (const int outside : {5, 1000000, -1})
    {
        EXPECT_EQ(history.at(static_cast<unsigned int>(outside)), nullptr);
        EXPECT_EQ(history.getByteStream(outside), nullptr);
        EXPECT_EQ(history.getByteStreamCount(outside) + history.getStringTreeCount(outside), 0);
        EXPECT_EQ(history.createStringTree(&attribute, outside), nullptr);
    }
    const DtStringTree* kept = nullptr;
    for (char value = 'A'; value <= 'F'; ++value)
    {
        const char octets[] = {value, 'x'};
        history.setByteStream(octets, value - 'A' > 1 ? 2 : 1);
        if (value == 'E') kept = history.createStringTree(&attribute, 0);
    }
    std::string values;
    for (int index = 0; index < 5; ++index)
        values += std::string(history.getByteStream(index),
                              static_cast<std::size_t>(history.getByteStreamCount(index))) +
                  std::to_string(history.getStringTreeCount(index)) + ' ';
    EXPECT_EQ(values, "Fx0 Ex2 Dx0 Cx0 B0 ");
    attribute.setDatatype("another");
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(history.createStringTree(&attribute, 1), kept);
    EXPECT_EQ(kept->value(), "45 78");
    history.setByteStream(history.getByteStream(4), 1);
    EXPECT_EQ(*history.getByteStream(0), 'B') << "a value may come from its own history";
}
