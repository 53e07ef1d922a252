// SPDX-License-Identifier: Apache-2.0
// Merging: what is copied, what stays, that nothing leads back into the source, and that the quick
// look-up inside answers as the tree's own does.
#include "omtReader/hierarchy.h"
#include "support.h"

#include <map>
#include <random>

using testing::HasSubstr;
using testing::Not;

namespace
{

using Objects = omtreader::Hierarchy<DtObjectClassFedNode>;
using Interactions = omtreader::Hierarchy<DtInteractionClassFedNode>;

/// A tree of classes such as "Root: Root.A:x,y", parents first, members after the colon.
template <typename H>
TreePtr classes(const DtString& text)
{
    TreePtr tree(new DtOMTTree);
    std::map<std::string, typename H::Class*> known;
    for (const DtString& word : text.tokens())
    {
        const std::string path = word.sections(':')[0].str();
        const std::size_t dot = path.rfind('.');
        auto* const node = known[path] = named<typename H::Class>(path.substr(dot + 1));
        for (const DtString& name : word.sections(':')[1].tokens(","))
            H::addMember(*node, named<typename H::Member>(name));
        if (dot == path.npos)
            H::setRoot(*tree, node);
        else
            H::addChild(*known[path.substr(0, dot)], node);
        H::add(*tree, node);
    }
    return tree;
}

/// The classes of a tree in the same form, in list order, after the name of the root.
template <typename H>
std::string textOf(DtOMTTree& tree)
{
    std::string text = H::root(tree)->getName().str();
    for (auto node = H::begin(tree); node != H::end(tree); ++node)
    {
        text += " " + (*node)->getFullName().str() + ":";
        for (const auto* member : H::members(**node))
        {
            text += (text.back() == ':' ? "" : ",") + member->getName().str();
            EXPECT_EQ(member->getParentObject(), *node);
        }
    }
    return text;
}

template <typename H>
class MergeClassesTest : public testing::Test
{
};
using Hierarchies = testing::Types<Objects, Interactions>;
TYPED_TEST_SUITE(MergeClassesTest, Hierarchies);

/// A module with entries that all such modules have, but for `text`, and a tag of its own.
TreePtr module(const char* text)
{
    TreePtr tree(new DtOMTTree);
    tree->setName(text);
    tree->addSimpleDatatypeNode(named<DtSimpleDatatypeNode>("same"));
    tree->getSimpleDatatypeNode("same")->setUnits(text);
    tree->addNoteNode(new DtNoteNode);
    tree->getNoteNode(0)->setText(text);
    tree->addTagNode(named<DtTagNode>(text));
    tree->addPOC(text, "", "", "", "", "", "");
    tree->addReference({"Standalone", text});
    return tree;
}

/// A host's tree that says which steps were taken, in what order, and has a mind of its own.
class HostTree : public DtOMTTree
{
public:
    std::string steps;

    void mergeModelIdentification(DtOMTTree*) override { steps += "identification "; }
    void mergeInteractions(DtOMTTree*) override { steps += "interactions "; }
    void mergeNotes(DtOMTTree*) override { steps += "notes "; }
    void mergeSyncPoints(DtOMTTree*) override { steps += "syncPoints "; }
    void mergeTransportations(DtOMTTree*) override { steps += "transportations "; }
    void mergeDimensions(DtOMTTree*) override { steps += "dimensions "; }
    void mergeUpdateRates(DtOMTTree*) override { steps += "updateRates "; }
    void mergeSwitches(DtOMTTree*) override { steps += "switches"; }
    void addTagNode(DtTagNode* node) override
    {
        steps += "tag ";
        DtOMTTree::addTagNode(node);
    }
    DtSimpleDatatypeNode* getSimpleDatatypeNode(const DtString&) override { return &mySimple; }
    DtObjectClassFedNode* getObjectClassNode(const DtString& name) override
    {
        return name == "Root.Mine" ? &myClass : DtOMTTree::getObjectClassNode(name);
    }
    DtObjectClassFedNode* mergeObjectNode(const DtObjectClassFedNode& source) override
    {
        return source.getName() == "Secret" ? nullptr : DtOMTTree::mergeObjectNode(source);
    }

private:
    DtSimpleDatatypeNode mySimple;
    DtObjectClassFedNode myClass;
};

/// Another class than DtOMTTree, so that it is asked for each class and entry in turn.
class SlowTree : public DtOMTTree
{
};

/// A random model with an entry in each table, of names that differ or that begin one another, hold
/// separators or are missing.
class RandomModel
{
public:
    RandomModel(unsigned seed, bool namesDiffer) : myRandom(seed), myNamesDiffer(namesDiffer) {}

    TreePtr make()
    {
        TreePtr tree(new DtOMTTree);
        for (unsigned count = upTo(8) + 1; count > 0; --count) addEntries(*tree);
        Objects::setRoot(*tree, makeClass<Objects>(*tree, 0));
        Interactions::setRoot(*tree, makeClass<Interactions>(*tree, 0));
        tree->getTimeRepNode()->setFedTimeDatatype(name());
        return tree;
    }

private:
    unsigned upTo(unsigned most) { return static_cast<unsigned>(myRandom() % (most + 1)); }

    DtString name()
    {
        if (myNamesDiffer) return "name" + DtString(++myCount);
        static const char* const thePieces[] = {"A", "B", "AA", ".", "A.", "a", "1", ":"};
        DtString text;
        for (unsigned count = upTo(3); count > 0; --count) text += thePieces[upTo(7)];
        return text;
    }

    /// A new node with a name and other texts.
    template <typename Node, typename... Setters>
    Node* make(Setters... setters)
    {
        auto* const node = new Node;
        (..., (node->*setters)(name()));
        return node;
    }

    template <typename Node>
    Node* make()
    {
        return make<Node>(&Node::setName, &Node::setNote);
    }

    template <typename Node, typename Component>
    Node* makeComposite()
    {
        auto* const node = make<Node>();
        node->addComponentNode(make<Component>());
        return node;
    }

    void addEntries(DtOMTTree& tree)
    {
        tree.addBasicDataRepresentationNode(make<DtBasicDataRepresentationNode>());
        tree.addSimpleDatatypeNode(make<DtSimpleDatatypeNode>());
        tree.addArrayDatatypeNode(make<DtArrayDatatypeNode>());
        tree.addFixedDatatypeNode(makeComposite<DtFixedDatatypeNode, DtFieldComponentNode>());
        tree.addVariantDatatypeNode(
            makeComposite<DtVariantDatatypeNode, DtAlternativeComponentNode>());
        tree.addComplexDatatypeNode(makeComposite<DtComplexDatatypeNode, DtComplexComponentNode>());
        using Enumerated = DtEnumeratedDatatypeNode;
        auto* const enumerated = make<Enumerated>(&Enumerated::setName, &Enumerated::setDescription,
                                                  &Enumerated::setRepresentation);
        enumerated->addEnumerationNode(make<DtEnumerationNode>(&DtEnumerationNode::setEnum));
        enumerated->getEnumerationNode(0)->setNumber(15);
        tree.addEnumeratedDatatypeNode(enumerated);
        tree.addNoteNode(make<DtNoteNode>(&DtNoteNode::setLabel, &DtNoteNode::setText));
        tree.addSwitchNode(make<DtBoolAttrNode>());
        tree.addTransportationNode(make<DtDescriptionNode>());
        tree.addDimensionNode(make<DtDimensionNode>());
        tree.addSynchroNode(make<DtSynchroNode>());
        tree.addTagNode(make<DtTagNode>());
        tree.addUpdateRateNode(make<DtUpdateRateNode>());
    }

    template <typename H>
    typename H::Class* makeClass(DtOMTTree& tree, int depth)
    {
        using Class = typename H::Class;
        using Member = typename H::Member;
        auto* const node = make<Class>(&Class::setName, &Class::setNote, &Class::setDescriptor,
                                       &Class::setSharing);
        if (depth == 0 && upTo(9) != 0) node->setName("Root");
        if constexpr (requires { node->setOrder(""); })
        {
            node->setTransportation(name());
            node->setOrder(name());
            node->addDimension(name());
        }
        node->setIdentifier(int(upTo(99)));
        node->setParentIdentifier(int(upTo(99)));
        for (unsigned count = upTo(2); count > 0; --count)
            H::addMember(*node, make<Member>(&Member::setName, &Member::setNote,
                                             &Member::setDatatype, &Member::setCardinality));
        const bool isWide = depth < 3 && upTo(3) == 0;
        const unsigned children = depth == 4 ? 0 : isWide ? 30 + upTo(30) : upTo(3);
        for (unsigned count = children; count > 0; --count)
            H::addChild(*node, makeClass<H>(tree, isWide ? depth + 2 : depth + 1));
        if (upTo(5) == 0) node->getFullName();
        H::add(tree, node);
        return node;
    }

    std::mt19937 myRandom;
    bool myNamesDiffer;
    int myCount = 0;
};

}  // namespace

TYPED_TEST(MergeClassesTest, MatchesByFullName)
{
    // Modules with a "|" between them.
    expectEach(
        {"Root:a Root.A:x Root.A.B: Root.C:y,z => Root Root.A.B: Root.A:x Root.C:y,z Root:a",
         // Members are not merged one by one, but a class without any takes those of the next.
         "Root: Root.A:x | Root: Root.A:x,y => Root Root.A:x Root:",
         "Root: Root.A: | Root: Root.A:x,y | Root: Root.A:z => Root Root.A:x,y Root:",
         // New classes go below those there are, and after them in the list.
         "Root: Root.A:x | Root: Root.A: Root.A.B:y Root.C: => Root Root.A:x Root: Root.A.B:y "
         "Root.C:",
         // The same name elsewhere is another class.
         "Root: Root.A:x | Root: Root.B: Root.B.A:y => Root Root.A:x Root: Root.B.A:y Root.B:",
         // Another root takes the place of the first, and a module without classes changes nothing.
         "Root: Root.A: | Other: Other.A: | => Other Root.A: Root: Other.A: Other:"},
        [](const DtString& modules)
        {
            const TreePtr target(new DtOMTTree);
            for (const DtString& module : modules.sections('|'))
                target->merge(classes<TypeParam>(module).get());
            return textOf<TypeParam>(*target);
        });
}

TEST(MergeTest, TheFirstDefinitionWins)
{
    const TreePtr target(new DtOMTTree), older(new DtOMTTree), source = module("second");
    source->getTimeRepNode()->setFedTimeDatatype("second");
    target->setHlaVersion(DtHla1516_2010);
    older->setHlaVersion(DtHla1516_2000);
    target->merge(module("first").get());
    for (const TreePtr* tree : {&target, &older}) (*tree)->merge(source.get());
    target->merge(target.get());
    target->merge(nullptr);

    const std::string text = dump(target);
    for (const char* line :
         {".name = \n", ".simple[0].units = first\n", ".note[0].text = first\n",
          ".tag[1].name = second\n", ".references[0].type = Composed_From\n",
          ".references[1].identification = second\n", ".fedTimeDatatype = second\n"})
        EXPECT_THAT(text, HasSubstr(line));
    for (const char* entry : {".simple[1]", ".note[1]", ".tag[2]", ".references[3]", ".POC[0]"})
        EXPECT_THAT(text, Not(HasSubstr(entry)));
    EXPECT_TRUE(older->getReferences().empty()) << "a 1516-2010 tree only";
}

TEST(MergeTest, AHostsOverridesTakeEffect)
{
    HostTree host;
    const TreePtr source = classes<Objects>("Root: Root.Secret:x Root.Mine: Root.A:");
    source->merge(module("m").get());
    source->addArrayDatatypeNode(named<DtArrayDatatypeNode>("array"));
    host.merge(source.get());
    EXPECT_EQ(host.steps,
              "identification interactions notes syncPoints transportations dimensions "
              "updateRates tag switches");
    EXPECT_EQ(textOf<Objects>(host), "Root Root.A: Root:");
    EXPECT_EQ(host.getSimpleDatatypeNodeList(), host.getSimpleDatatypeEndNode());
    EXPECT_NE(host.getArrayDatatypeNode("array"), nullptr);
    host.deleteAuxiliaryTables();
}

TEST(MergeTest, CopiesEverythingAndPointsNowhereIntoTheSource)
{
    TreePtr source = RandomModel(7, true).make();
    const TreePtr target(new DtOMTTree);
    target->merge(source.get());
    const std::string expected = dump(source);
    source.reset();
    EXPECT_EQ(dump(target), expected);
}

TEST(MergeTest, TheQuickLookUpAnswersAsTheSlowOne)
{
    for (unsigned seed = 0; seed < 15; ++seed)
    {
        const TreePtr quick(new DtOMTTree);
        const TreePtr slow(new SlowTree);
        for (const TreePtr* target : {&quick, &slow})
        {
            RandomModel model(seed, false);
            for (int module = 0; module < 3; ++module) (*target)->merge(model.make().get());
        }
        ASSERT_TRUE(dump(quick) == dump(slow)) << "seed " << seed;
    }
}
