// SPDX-License-Identifier: Apache-2.0
// The tree: tables, look-ups, what it deletes and what not, sharing between threads.
#include "omtReader/hierarchy.h"
#include "omtReader/xmlEvolvedFileReader.h"
#include "support.h"

#include <cstring>
#include <thread>

using testing::ElementsAre;

namespace
{

/// Labels of nodes in the order in which they were deleted.
std::vector<std::string> theDeletions;

template <typename Base>
struct Recorded : Base
{
    explicit Recorded(const char* label) : myLabel(label) {}
    ~Recorded() override { theDeletions.emplace_back(myLabel); }
    const char* myLabel;
};

/// Classes below each other with a member each.
template <typename Class>
void addChain(DtOMTTree& tree)
{
    using H = omtreader::Hierarchy<Class>;
    Class* parent = nullptr;
    for (int depth = 0; depth < 20; ++depth)
    {
        auto* const node = named<Class>("C");
        H::addMember(*node, named<typename H::Member>("member"));
        H::members(*node).front()->setCardinality("2-5");
        if (parent) H::addChild(*parent, node);
        H::add(tree, parent = node);
    }
    H::setRoot(tree, *H::begin(tree));
}

/// The slot of a virtual operation in the table, as the Itanium ABI stores it in a pointer.
template <typename Operation>
std::ptrdiff_t slotOf(Operation operation)
{
    std::ptrdiff_t slot;
    std::memcpy(&slot, &operation, sizeof slot);
    return (slot - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
}

}  // namespace

TEST(TreeTest, ATableGivesTheFirstMatch)
{
    const TreePtr tree(new DtOMTTree);
    DtTagNode* const nodes[] = {nullptr, named<DtTagNode>("same"), named<DtTagNode>("same")};
    for (DtTagNode* node : nodes) tree->addTagNode(node);
    EXPECT_THAT(std::vector(tree->getTagNodeList(), tree->getTagEndNode()),
                ElementsAre(nodes[1], nodes[2]));
    EXPECT_EQ(tree->getTagNode("same"), nodes[1]);
    EXPECT_EQ(tree->getTagNode("Same"), nullptr);
    EXPECT_EQ(tree->getTagNode(""), nullptr);
}

TEST(TreeTest, ClassesAreFoundFromTheRootOrInTheList)
{
    DtOMTTree tree;
    EXPECT_EQ(tree.getObjectClassNode(""), nullptr);
    EXPECT_EQ(tree.getInteractionClassNode(""), nullptr);
    auto* const root = named<DtObjectClassFedNode>("Root");
    auto* const a = named<DtObjectClassFedNode>("A");
    auto* const loner = named<DtObjectClassFedNode>("Loner");
    for (auto* node : {root, a, loner, (DtObjectClassFedNode*)nullptr})
        tree.addObjectClassNode(node);
    root->addChildObject(a);
    a->setIdentifier(7);
    const auto find = [&](const DtString& name)
    {
        const auto* const found = tree.getObjectClassNode(name);
        return found ? found->getName().str() : "none";
    };
    EXPECT_EQ(tree.objectClassRoot(), nullptr) << "adding sets no root";
    expectEach({"Root.A => A", "Root:A => none", "Loner => Loner"}, find);
    tree.setObjectClassRoot(root);
    expectEach(
        {" => Root", "Root => Root", "Root.A => A", "Root:A => A", "A => none", "Loner => none"},
        find);

    EXPECT_EQ(tree.getObjectClassNodeByID(0), root);
    EXPECT_EQ(tree.getObjectClassNodeByID(7), a);
    EXPECT_EQ(tree.getObjectClassNodeByID(-1), nullptr);
    EXPECT_THAT(std::vector(tree.getObjectClassNodeRBegin(), tree.getObjectClassNodeREnd()),
                ElementsAre(loner, a, root));
    auto* const interaction = named<DtInteractionClassFedNode>("I");
    tree.addInteractionClassNode(interaction);
    EXPECT_EQ(tree.getInteractionClassNodeByID(-1), interaction);
    EXPECT_EQ(tree.getInteractionClassNode("I"), interaction);
    tree.setInteractionClassRoot(interaction);
    EXPECT_EQ(tree.getInteractionClassNode(""), interaction);
}

TEST(TreeTest, NotesAreFoundByNumberOrLabel)
{
    DtOMTTree tree;
    for (const char* label : {"7a", "7", "x", ""})
    {
        auto* const note = new DtNoteNode;
        note->setLabel(label);
        tree.addNoteNode(note);
    }
    EXPECT_EQ(tree.getNoteNode(7)->getLabel(), "7a");
    EXPECT_EQ(tree.getNoteNode(DtString("7"))->getLabel(), "7");
    EXPECT_EQ(tree.getNoteNode(0)->getLabel(), "x");
    EXPECT_EQ(tree.getNoteNode(DtString(""))->getLabel(), "");
    EXPECT_EQ(tree.getNoteNode(3), nullptr);
    tree.getNoteNode(7)->setNumber(-12);
    EXPECT_EQ(tree.getNoteNode(DtString("-12"))->getNumber(), -12);
}

TEST(TreeTest, KeepsItsTimeRepresentationAndContacts)
{
    DtOMTTree tree;
    ASSERT_NE(tree.getTimeRepNode(), nullptr);
    EXPECT_EQ(tree.getTimeRepNode(), tree.getTimeRepNode());
    tree.addPOC("1", "2", "3", "4", "5", "6", "7");
    const DtOMTTreePOC& c = *tree.getPOCList();
    EXPECT_EQ(c.honorificName + c.firstName + c.lastName + c.orgName + c.phone + c.email + c.type,
              "1234567");
}

TEST(TreeTest, DeletesItsTablesInOrderAndLeavesFour)
{
    theDeletions.clear();
    Recorded<DtBoolAttrNode> aSwitch("switch");
    Recorded<DtDimensionNode> dimension("dimension");
    Recorded<DtSynchroNode> synchro("synchro");
    Recorded<DtTagNode> tag("tag");
    {
        DtOMTTree tree;
        tree.addSwitchNode(&aSwitch);
        tree.addDimensionNode(&dimension);
        tree.addSynchroNode(&synchro);
        tree.addTagNode(&tag);
        tree.addUpdateRateNode(new Recorded<DtUpdateRateNode>("updateRate"));
        tree.addTransportationNode(new Recorded<DtDescriptionNode>("transportation"));
        tree.addFixedDatatypeNode(new Recorded<DtFixedDatatypeNode>("fixed"));
        tree.addVariantDatatypeNode(new Recorded<DtVariantDatatypeNode>("variant"));
        tree.addArrayDatatypeNode(new Recorded<DtArrayDatatypeNode>("array"));
        tree.addSimpleDatatypeNode(new Recorded<DtSimpleDatatypeNode>("simple"));
        tree.addBasicDataRepresentationNode(new Recorded<DtBasicDataRepresentationNode>("basic"));
        tree.addNoteNode(new Recorded<DtNoteNode>("note"));
        tree.addEnumeratedDatatypeNode(new Recorded<DtEnumeratedDatatypeNode>("enumerated"));
        for (const char* label : {"complex 1", "complex 2"})
            tree.addComplexDatatypeNode(new Recorded<DtComplexDatatypeNode>(label));
        auto* const interaction = new Recorded<DtInteractionClassFedNode>("interaction");
        interaction->addParameter(new Recorded<DtParameterFedNode>("parameter"));
        tree.addInteractionClassNode(interaction);
        auto* const object = new Recorded<DtObjectClassFedNode>("object");
        object->addAttribute(new Recorded<DtAttributeFedNode>("attribute"));
        auto* const child = new Recorded<DtObjectClassFedNode>("child");
        object->addChildObject(child);
        for (DtObjectClassFedNode* node : {child, object}) tree.addObjectClassNode(node);
        tree.setObjectClassRoot(object);
        tree.getTimeRepNode();
    }
    EXPECT_THAT(theDeletions,
                ElementsAre("complex 1", "complex 2", "enumerated", "note", "basic", "simple",
                            "array", "variant", "fixed", "transportation", "updateRate", "child",
                            "object", "attribute", "interaction", "parameter"));
}

TEST(TreeTest, DeletesTheFourWhenAskedTo)
{
    theDeletions.clear();
    DtOMTTree tree;
    auto* const first = new Recorded<DtBoolAttrNode>("switch");
    auto* const twice = new Recorded<DtBoolAttrNode>("switch, there twice");
    for (DtBoolAttrNode* node : {twice, first, twice}) tree.addSwitchNode(node);
    tree.addDimensionNode(new Recorded<DtDimensionNode>("dimension"));
    tree.addSynchroNode(new Recorded<DtSynchroNode>("synchro"));
    tree.addTagNode(new Recorded<DtTagNode>("tag"));
    tree.addTransportationNode(new Recorded<DtDescriptionNode>("transportation"));
    for (int time = 0; time < 2; ++time) tree.deleteAuxiliaryTables();
    EXPECT_THAT(theDeletions, testing::UnorderedElementsAre("switch", "switch, there twice",
                                                            "dimension", "synchro", "tag"));
    EXPECT_EQ(tree.getSwitchNodeList(), tree.getSwitchEndNode());
}

// What a thread reads here is worked out when first asked for; the thread sanitizer tells whether
// that was really done before.
TEST(TreeTest, IsReadByManyThreadsOncePrepared)
{
    DtOMTTree tree;
    addChain<DtObjectClassFedNode>(tree);
    addChain<DtInteractionClassFedNode>(tree);
    tree.addArrayDatatypeNode(named<DtArrayDatatypeNode>("array"));
    tree.getArrayDatatypeNode("array")->setCardinality("3");
    tree.addComplexDatatypeNode(named<DtComplexDatatypeNode>("complex"));
    auto* const component = named<DtComplexComponentNode>("component");
    component->setCardinality("(Kind = 2)");
    tree.getComplexDatatypeNode("complex")->addComponentNode(component);

    tree.prepareForSharing();
    tree.objectClassRoot()->setName("Renamed");
    tree.interactionClassRoot()->setName("Renamed");
    std::vector<std::string> dumps(4);
    std::vector<std::thread> threads;
    for (std::string& text : dumps) threads.emplace_back([&] { text = dump(tree); });
    for (std::thread& thread : threads) thread.join();
    EXPECT_THAT(dumps, testing::Each(dump(tree)));
    EXPECT_THAT(dumps[0], testing::Not(testing::HasSubstr("Renamed."))) << "full names were known";
}

// slotOrder.txt has names only; this is the order among operations of one name.
TEST(SlotOrderTest, OfOverloads)
{
    using T = DtOMTTree;
    using Text = const DtString&;
    EXPECT_EQ(slotOf<void (T::*)(const DtOMTTreePOC&)>(&T::addPOC) + 1,
              slotOf<void (T::*)(Text, Text, Text, Text, Text, Text, Text)>(&T::addPOC));
    EXPECT_EQ(slotOf<DtNoteNode* (T::*)(int)>(&T::getNoteNode) + 1,
              slotOf<DtNoteNode* (T::*)(DtString)>(&T::getNoteNode));
    using E = DtEnumeratedDatatypeNode;
    EXPECT_EQ(slotOf<DtEnumerationNode* (E::*)(Text) const>(&E::getEnumerationNode) + 1,
              slotOf<DtEnumerationNode* (E::*)(int) const>(&E::getEnumerationNode));
    using R = DtXMLEvolvedFileReader;
    EXPECT_EQ(slotOf<DtString (R::*)(_xmlAttr*&)>(&R::childNodeString) + 1,
              slotOf<DtString (R::*)(_xmlNode*&)>(&R::childNodeString));
}
