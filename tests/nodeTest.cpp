// SPDX-License-Identifier: Apache-2.0
// Nodes: names and look-ups in the class hierarchies, values derived from texts, copies.
#include "omtReader/genAttrNode.h"
#include "support.h"

#include <algorithm>
#include <random>
#include <sstream>

using testing::ElementsAre;
using testing::Pair;
using testing::Pointee;
using testing::Property;

namespace
{

/// An object class that is known to its parent.
struct Class : DtObjectClassFedNode
{
    explicit Class(const char* name, Class* parent = nullptr)
    {
        setName(name);
        if (parent) parent->addChildObject(this);
    }
};

/// All that is derived from a cardinality, in the form "type min..max sizes|component|value".
template <typename Node>
std::string derived(const Node& node)
{
    std::ostringstream text;
    text << node.getCardinalityType() << ' ' << node.getCardinalityMinimum() << ".."
         << node.getCardinalityMaximum();
    if constexpr (requires { node.getMultiDimCardinality(); })
        for (const std::int32_t size : node.getMultiDimCardinality()) text << ' ' << size;
    if constexpr (requires { node.getConditionalValue(); })
        text << '|' << node.getConditionalComponent() << '|' << node.getConditionalValue();
    return text.str();
}

/// What one node makes of texts set in turn.
template <typename Node, typename Base = Node>
auto eachSetIn(Node& node, void (Base::*set)(const DtString&) = &Node::setCardinality)
{
    return [&node, set](const DtString& text)
    {
        (node.*set)(text);
        return derived(node);
    };
}

/// An enumerator whose answers are not those that were set.
struct ShoutingEnumerator : DtEnumerationNode
{
    const DtString& getEnum() const override { return shout; }
    DtString shout;
};

template <typename Node = DtEnumerationNode>
Node* enumerator(const DtString& name, int number)
{
    auto* const node = new Node;
    if constexpr (std::is_same_v<Node, ShoutingEnumerator>) node->shout = name;
    node->setEnum(name);
    node->setNumber(number);
    return node;
}

/// Adds an enumerator and deletes it if it was refused; tells whether it was accepted.
bool add(DtEnumeratedDatatypeNode& datatype, DtEnumerationNode* node)
{
    datatype.addEnumerationNode(node);
    const auto end = datatype.getEnumerationNodeEnd();
    if (std::find(datatype.getEnumerationNodeList(), end, node) != end) return true;
    delete node;
    return false;
}

/// What stands in the way by the plain rule: the first clash counts, the name before the number.
std::string plainClash(const DtEnumeratedDatatypeNode& datatype, const DtEnumerationNode& added)
{
    for (auto node = datatype.getEnumerationNodeList(); node != datatype.getEnumerationNodeEnd();
         ++node)
    {
        if ((*node)->getEnum() == added.getEnum()) return "name";
        if ((*node)->getNumber() == added.getNumber()) return "number";
    }
    return "nothing";
}

}  // namespace

TEST(FedNodeTest, TheFullNameIsWorkedOutOnce)
{
    Class root("Root"), a("A", &root), ab("AB", &root), b("B", &a);
    EXPECT_EQ(b.getFullName(), "Root.A.B");
    a.setName("Renamed");
    b.setName("Renamed");
    b.setParentObject(&ab);
    EXPECT_EQ(b.getFullName(), "Root.A.B");
    EXPECT_EQ(a.getFullName(), "Root.A") << "asked for on the way to that of B";
    const Class copy(b);
    EXPECT_EQ(copy.getFullName(), "Root.AB.Renamed") << "a copy starts anew";
    b = a;
    EXPECT_EQ(b.getFullName(), "Root.Renamed") << "an assignment drops the old one";
    b.setParentObject(nullptr);
    EXPECT_EQ(b.getFullName(), "Renamed") << "without a parent the name itself";
}

TEST(FedNodeTest, BelowANamelessNodeTheNameIsTheFullName)
{
    DtObjectClassFedNode nameless, node(&nameless);
    node.setName("A");
    EXPECT_EQ(node.getFullName(), "A");
    nameless.setName("Root");
    EXPECT_EQ(node.getFullName(), "Root.A") << "nothing was remembered before";
    EXPECT_TRUE(nameless.getChildObjects().empty()) << "the parent does not learn of the node";
}

TEST(FedNodeTest, PathsAreFollowedLeniently)
{
    Class root("Root"), a("A", &root), ab("AB", &root), b("B", &a), second("A", &root),
        nameless("");
    root.addChildObject(nullptr);
    EXPECT_THAT(root.getChildObjects(), ElementsAre(&a, &ab, &second));
    EXPECT_EQ(root.findChildObject("Root.A"), &a) << "the first of two";
    EXPECT_EQ(nameless.findChildObject(""), &nameless);
    EXPECT_EQ(nameless.findChildObject("."), nullptr);
    EXPECT_EQ(root.findChildObject(nullptr), nullptr);
    const auto from = [](Class& start)
    {
        return [&start](const DtString& path)
        {
            const DtObjectClassFedNode* const found = start.findChildObject(path.c_str());
            return found ? found->getFullName().str() : "none";
        };
    };
    expectEach({"Root => Root", "Root.A.B => Root.A.B", "Root.AB => Root.AB",
                "RootxAxB => Root.A.B", "A => none", "Root. => none", "Root..A => none",
                "Root.A.B. => none", "root.A => none", " => none"},
               from(root));
    expectEach({"A:B => Root.A.B", "ABB => Root.A.B", "AB => none"}, from(a));
}

TEST(FedNodeTest, ClassesOwnTheirMembersAndFindThemDifferently)
{
    DtObjectClassFedNode object;
    DtAttributeFedNode unheard;
    auto* const first = named<DtAttributeFedNode>("same");
    auto* const last = named<DtAttributeFedNode>("same");
    for (auto* attribute : {first, last, (DtAttributeFedNode*)nullptr})
        object.addAttribute(attribute);
    object.associateAttribute(&unheard);
    EXPECT_THAT(object.getAttributes(), ElementsAre(first, last));
    EXPECT_EQ(last->getParentObject(), &object);
    last->setName("other");
    EXPECT_EQ(object.findAttribute("same"), last) << "the last one of the name it had then";
    EXPECT_EQ(object.findAttribute("other"), nullptr);
    object.removeAttributes();
    EXPECT_EQ(object.findAttribute("same"), nullptr);

    DtInteractionClassFedNode interaction;
    auto* const early = named<DtParameterFedNode>("same");
    auto* const late = named<DtParameterFedNode>("same");
    for (auto* parameter : {early, late, (DtParameterFedNode*)nullptr})
        interaction.addParameter(parameter);
    EXPECT_EQ(early->getParentObject(), &interaction);
    EXPECT_EQ(interaction.findParameter("same"), early) << "searched from the front";
    early->setName("other");
    EXPECT_EQ(interaction.findParameter("same"), late);
    interaction.removeParameters();
    EXPECT_EQ(interaction.findParameter("same"), nullptr);
    EXPECT_EQ(object.getIdentifier() - interaction.getIdentifier(), 1) << "0 and -1";
}

TEST(CardinalityTest, OfAttributesAndParameters)
{
    DtAttributeFedNode node;
    EXPECT_EQ(derived(node), "0 1..1") << "at the start";
    expectEach({"3 => 0 3..3", "7+ => 1 7..0", "2-5 => 2 2..5", "5-2 => 2 5..5", " 2- 9x => 2 2..9",
                "2 -9 => 0 2..2", "2-x => 2 2..2", "-4 => 0 -4..-4", " => 0 0..0", "x+ => 0 0..0",
                "010 => 0 10..10", "4294967296+ => 0 2147483647..2147483647"},
               eachSetIn(node));
}

TEST(CardinalityTest, OfArrays)
{
    DtArrayDatatypeNode node;
    EXPECT_EQ(derived(node), "0 -1..-1") << "at the start";
    expectEach({"5 => 1 5..5", "x => 8 0..-1", "2,3 => 1 2..2"}, eachSetIn(node));
    const auto eachEncoding = eachSetIn(node, &DtArrayDatatypeNode::setEncoding);
    expectEach(
        {"HLAbitArray => 7 0..-1", "BitArray => 7 0..-1", "HLAnullTerminatedArray => 4 0..-1",
         "NullTerminatedArray => 4 0..-1", "RPRnullTerminatedArray => 4 0..-1",
         "HLAlengthlessVarArray => 8 0..-1", "RPRlengthlessArray => 8 0..-1",
         "HLAvariableArray => 10 0..-1", "addingTo => 5 0..0", "RPRpaddingTo64Array => 5 0..8",
         "X16paddingTo64 => 5 0..2", "addingTo-99999999999 => 5 0..268435455"},
        eachEncoding);
    node.setDatatype("HLAASCIIchar");
    expectEach({"HLAlengthlessVarArray => 4 0..-1", "RPRlengthlessArray => 4 0..-1",
                "HLAfixedArray => 9 0..-1 2 3"},
               eachEncoding);
    expectEach(
        {"3 => 1 3..3", " => 1 0..0", "0x10 => 1 0..0", "010 => 1 10..10",
         "2147483648 => 1 2147483647..2147483647", "2,,3 => 9 0..-1 2 0 3",
         "0x10, 010,-1,1x, => 9 0..-1 16 8 -1 1 0", "99999999999,2 => 9 0..-1 2147483647 2",
         "[0x1..010] => 2 1..8", "[1.x.10] => 2 1..10", "2,[1..10] => 2 1..10", "[..] => 2 0..0",
         "..[5] => 2 0..0", "[1.10] => 8 0..-1", "[1..10 => 8 0..-1", "[] => 8 0..-1"},
        eachSetIn(node));
}

TEST(CardinalityTest, OfComplexComponents)
{
    DtComplexComponentNode plain, conditional;
    EXPECT_EQ(derived(plain), "0 -1..-1||") << "at the start";
    expectEach({"1 => 0 1..1||", " 1 - 5  => 1 1..5||", "1- => 1 1..0||", "0+ => 3 0..-1||",
                " % 64 => 6 0..64||", "% => 6 0..0||", "%8 (Kind = 2) => 6 0..8||", "( => 5 0..1||",
                " => 0 0..0||", "many (Kind = 2) => 0 0..0||",
                "2147483648+ => 0 2147483647..2147483647||", "-3 => 0 -3..-3||"},
               eachSetIn(plain));
    // A condition outlives its text. And the length of the value left over says at which place of a
    // component without one there has to be a ")", so that the last character is cut off.
    expectEach(
        {"0+ , Kind => 3 0..-1|Kind|", "(Kind) => 5 0..1|Kind)|", "(Kind=2) => 5 0..1|Kind=2)|",
         "( Kind  =  2 ) => 2 0..1|Kind|2", "(Kind = ) => 2 0..1|Kind|", "(A = 2)) => 2 0..1|A|2)",
         "3,Kind = 2 => 2 3..3|Kind|2", "1 => 0 1..1|Kind|2", "(Kind) => 5 0..1|Kind)|2",
         "() => 5 0..1||2", "0-1 (A = value) => 2 0..1|A|value", "(Kind) => 5 0..1|Kind|value",
         "(A = xy) => 2 0..1|A|xy", "(a)b => 5 0..1|a)|xy"},
        eachSetIn(conditional));
}

TEST(EnumerationTest, ExpectedSize)
{
    EXPECT_EQ(DtEnumeratedDatatypeNode().getExpectedEnumerationSize(), 2);
    DtEnumeratedDatatypeNode::defaultEnumerationSize = 77;
    expectEach({"HLAinteger32BE/Color8 => 4", "HLAinteger16LE/Color8 => 2", "HLAoctet/Color32 => 1",
                "HLAoctetPair/Color32 => 4", " 64 bits/Color => 8", "1/Color32 => 0",
                "0/Color32 => 4", "99999999999/Color16 => 268435455", "/Color128 => 1",
                "/Color16 => 2", "/RPRboolean => 1", "/Color => 77"},
               [](const DtString& text)
               {
                   DtEnumeratedDatatypeNode node;
                   node.setRepresentation(text.sections('/')[0]);
                   node.setName(text.sections('/')[1]);
                   return std::to_string(node.getExpectedEnumerationSize());
               });
    DtEnumeratedDatatypeNode::defaultEnumerationSize = 2;
}

TEST(EnumerationTest, DuplicatesAreRefusedInTheirOwnWords)
{
    Messages messages;
    DtEnumeratedDatatypeNode datatype;
    datatype.addEnumerationNode(nullptr);
    for (const int number : {0, 3, 11, 22, 23, 24, -1})
        EXPECT_TRUE(add(datatype, enumerator("E" + DtString(number), number)));
    EXPECT_TRUE(add(datatype, enumerator("100%s", 100)));
    expectEach(
        {"N 0 => refused [Duplicated enum number ]", "N 3 => refused [licated enum number ]",
         "N 22 => refused [ ]", "N 23 => refused", "N 24 => refused [Duplicated enum number 24]",
         "N -1 => refused [Duplicated enum number -1]",
         "E3 99 => refused [Duplicated enum name E3]", "E3 3 => refused [Duplicated enum name E3]",
         "E11 3 => refused [licated enum number ]", "E3 11 => refused [Duplicated enum name E3]",
         "100%s 9 => refused [Duplicated enum name 100%s]", "N 9 => accepted"},
        [&](const DtString& text)
        {
            const DtString name = text.tokens()[0], number = text.tokens()[1];
            const bool isAccepted = add(datatype, enumerator(name, number.toInt()));
            std::string result = isAccepted ? "accepted" : "refused";
            for (const std::string& message : messages.take()) result += " [" + message + "]";
            return result;
        });
    EXPECT_EQ(datatype.getEnumerationNode("E23")->getNumber(), 23);
    EXPECT_EQ(datatype.getEnumerationNode(-1)->getEnum(), "E-1");
    EXPECT_EQ(datatype.getEnumerationNode("e23"), nullptr);
}

// However many enumerators there are, and whatever happened to those added before, an addition ends
// as if the list had been searched from the front.
TEST(EnumerationTest, ManyEnumeratorsAreJudgedAsAFewAre)
{
    std::mt19937 random(1516);
    const auto upTo = [&](std::size_t most) { return random() % (most + 1); };
    const auto anyNumber = [&] { return static_cast<int>(upTo(800)) - 20; };
    Messages messages;
    DtEnumeratedDatatypeNode datatype;
    for (int step = 0; step < 300 * 40; ++step)
    {
        if (step % 300 == 0) datatype = DtEnumeratedDatatypeNode();
        if (step % 128 == 0) datatype = DtEnumeratedDatatypeNode(datatype);
        const std::vector nodes(datatype.getEnumerationNodeList(),
                                datatype.getEnumerationNodeEnd());
        const DtString name = "E" + DtString(anyNumber());
        if (!nodes.empty() && upTo(9) == 0)
        {
            DtEnumerationNode& changed = *nodes[upTo(nodes.size() - 1)];
            if (auto* const shouting = dynamic_cast<ShoutingEnumerator*>(&changed))
                shouting->shout = name;
            else if (upTo(2) == 0)
                changed = *std::unique_ptr<DtEnumerationNode>(enumerator(name, anyNumber()));
            else if (upTo(1) == 0)
                changed.setEnum(name);
            else
                changed.setNumber(anyNumber());
        }
        const bool isShouting = step / 300 % 2 == 1 && upTo(99) == 0;
        DtEnumerationNode* const node = isShouting
                                            ? enumerator<ShoutingEnumerator>(name, anyNumber())
                                            : enumerator(name, anyNumber());
        const std::string expected = plainClash(datatype, *node);
        const bool isAccepted = add(datatype, node);
        const bool isOfName = messages.take() == std::vector{"Duplicated enum name " + name.str()};
        ASSERT_EQ(isAccepted ? "nothing" : isOfName ? "name" : "number", expected) << step;
    }
}

TEST(CopyTest, LeavesTheUniqueNameAndKeepsTheParent)
{
    Class root("Root"), target("T"), child("C", &target), original("A");
    original.setParentObject(&root);
    original.setUniqueName("A-1");
    original.setNote("2");
    original.addAttribute(named<DtAttributeFedNode>("x"));
    original.addChildObject(&target);
    const DtObjectClassFedNode copy(original);
    EXPECT_EQ(copy.getUniqueName(), "");
    EXPECT_EQ(copy.getNote(), "2");
    EXPECT_EQ(copy.getParentObject(), &root);
    EXPECT_TRUE(copy.getChildObjects().empty());
    EXPECT_THAT(copy.getAttributes(), ElementsAre(copy.findAttribute("x")));
    EXPECT_NE(copy.findAttribute("x"), original.findAttribute("x"));
    EXPECT_EQ(copy.findAttribute("x")->getParentObject(), &original);

    target.addAttribute(named<DtAttributeFedNode>("gone"));
    target.setUniqueName("T-1");
    target = original;
    EXPECT_EQ(target.getUniqueName(), "T-1");
    EXPECT_EQ(target.getNote(), "2");
    EXPECT_TRUE(target.getChildObjects().empty());
    EXPECT_EQ(target.findAttribute("gone"), nullptr);
    const DtAttributeFedNode* const before = target.findAttribute("x");
    target = *&target;
    EXPECT_THAT(target.getAttributes(), ElementsAre(before)) << "an assignment to itself";
}

TEST(CopyTest, CompositesCopyTheirComponents)
{
    using Component = DtComplexComponentNode;
    DtComplexDatatypeNode node, assigned;
    node.addComponentNode(nullptr);
    node.addComponentNode(named<Component>("x"));
    assigned.addComponentNode(named<Component>("gone"));
    DtComplexDatatypeNode copy(node);
    assigned = node;
    assigned = *&assigned;
    node.getComponentNode("x")->setName("changed");
    for (DtComplexDatatypeNode* each : {&copy, &assigned})
        EXPECT_THAT(std::vector(each->getComponentNodeList(), each->getComponentNodeEnd()),
                    ElementsAre(Pointee(Property(&Component::getName, "x"))));
}

TEST(GenAttrTest, AppendsAndEntersWhatIsAskedFor)
{
    DtGenAttrNode node;
    for (const char* value : {"a", "b"}) node.addAttribute("k", value);
    node.getAttribute("new") += "!";
    EXPECT_EQ(node.getAttribute("missing"), "");
    EXPECT_THAT(node.getAttributes(),
                ElementsAre(Pair("k", "ab"), Pair("missing", ""), Pair("new", "!")));
}
