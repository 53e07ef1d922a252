// SPDX-License-Identifier: Apache-2.0
// Rules on classes and their members, those of 1516-2025 included.
#include "omt/base/nameHash.h"
#include "omt/check/checkRun.h"

#include <set>

namespace omt
{

namespace
{

/// Calls `visit` with each attribute and its class, then with each parameter and its class.
template <typename Visit>
void eachMember(CheckRun& run, const Visit& visit)
{
    run.each(&Tables::objectClasses,
             [&](const ObjectClass& node)
             {
                 for (const Attribute& attribute : node.attributes)
                     visit(attribute, run.model().objectClasses(), node);
             });
    run.each(&Tables::interactionClasses,
             [&](const InteractionClass& node)
             {
                 for (const Parameter& parameter : node.parameters)
                     visit(parameter, run.model().interactionClasses(), node);
             });
}

void findOddRoots(CheckRun& run)
{
    const auto look = [&](const auto& node, std::string_view root)
    {
        if (node.parent != ClassDefinition::theNone || node.name == root ||
            run.edition(node) == Edition::hla13)
            return;
        run.report(node, node.name,
                   called(node) + " is a root of its own; all classes stand below " + quoted(root));
    };
    run.each(&Tables::objectClasses, [&](const auto& node) { look(node, "HLAobjectRoot"); });
    run.each(&Tables::interactionClasses,
             [&](const auto& node) { look(node, "HLAinteractionRoot"); });
}

const List<Attribute>& membersOf(const ObjectClass& node)
{
    return node.attributes;
}
const List<Parameter>& membersOf(const InteractionClass& node)
{
    return node.parameters;
}

/// Finds names that a class or one above it has already. Goes down each branch with the names of
/// the classes above at hand, so that time grows with the members alone.
template <typename Class, typename Part>
class Inheritance
{
public:
    explicit Inheritance(const std::vector<Class>& table) : myTable(table) {}

    /// `membersOf` gives the list of a class; `visit` takes the part, its class, the first part of
    /// the name and the class of that.
    template <typename Members, typename Visit>
    void go(const Members& members, const Visit& visit)
    {
        for (std::uint32_t root = 0; root < myTable.size(); ++root)
        {
            if (myTable[root].parent != Class::theNone) continue;
            enter(root, members, visit);
            while (!myOpen.empty())
            {
                const Class& node = myTable[myOpen.back().node];
                if (myOpen.back().next < node.children.size())
                    enter(node.children[myOpen.back().next++], members, visit);
                else
                    leave();
            }
        }
    }

private:
    struct Frame
    {
        std::uint32_t node = 0;
        std::size_t next = 0;
        std::size_t names = 0;
    };
    struct First
    {
        const Part* part = nullptr;
        const Class* node = nullptr;
    };

    template <typename Members, typename Visit>
    void enter(std::uint32_t index, const Members& members, const Visit& visit)
    {
        const Class& node = myTable[index];
        myOpen.push_back({index, 0, myNames.size()});
        for (const Part& part : members(node))
        {
            if (part.name.empty()) continue;
            const auto [place, isNew] = myFirst.try_emplace(part.name, First{&part, &node});
            if (isNew)
                myNames.push_back(part.name);
            else
                visit(part, node, *place->second.part, *place->second.node);
        }
    }

    void leave()
    {
        for (; myNames.size() > myOpen.back().names; myNames.pop_back())
            myFirst.erase(myNames.back());
        myOpen.pop_back();
    }

    const std::vector<Class>& myTable;
    std::vector<Frame> myOpen;
    std::vector<std::string_view> myNames;
    NameMap<First> myFirst;
};

/// Reports the members that their own class has already, or that one above it has.
template <typename Part, typename Class>
void findRepeated(CheckRun& run, const std::vector<Class>& table, bool isOwn)
{
    run.begin();
    Inheritance<Class, Part>(table).go(
        [](const Class& node) -> const List<Part>& { return membersOf(node); },
        [&](const Part& part, const Class& node, const Part& first, const Class& owner)
        {
            if ((&node == &owner) != isOwn || run.isBuiltIn(part)) return;
            const std::string above = shortFullName(table, owner, 200);
            run.report(part, part.name,
                       called(part, table, node) +
                           (isOwn ? " is there twice" : " is inherited from `" + above + '`'),
                       &first);
        });
}

void findRepeatedMembers(CheckRun& run)
{
    findRepeated<Attribute>(run, run.model().objectClasses(), true);
    findRepeated<Parameter>(run, run.model().interactionClasses(), true);
}

void findOverloadedMembers(CheckRun& run)
{
    findRepeated<Attribute>(run, run.model().objectClasses(), false);
    findRepeated<Parameter>(run, run.model().interactionClasses(), false);
}

void findRepeatedDirected(CheckRun& run)
{
    const std::vector<ObjectClass>& table = run.model().objectClasses();
    run.begin();
    Inheritance<ObjectClass, DirectedInteraction>(table).go(
        [](const ObjectClass& node) -> const List<DirectedInteraction>&
        { return node.directedInteractions; },
        [&](const DirectedInteraction& part, const ObjectClass& node,
            const DirectedInteraction& first, const ObjectClass& owner)
        {
            if (&node != &owner || run.isBuiltIn(part)) return;
            run.report(part, part.name, called(part, table, node) + " is there twice", &first);
        });
}

void findBasicMembers(CheckRun& run)
{
    eachMember(run,
               [&](const auto& member, const auto& table, const auto& node)
               {
                   const Edition edition = run.edition(member);
                   if (edition != Edition::ieee2010 && edition != Edition::ieee2000) return;
                   if (run.model().findDatatype(member.dataType).kind() == Kind::basicData)
                       run.report(member, member.dataType,
                                  called(member, table, node) + " is of " +
                                      quoted(member.dataType) +
                                      ", a basic data representation and no datatype");
               });
}

void findNaCompanions(CheckRun& run)
{
    run.each(&Tables::objectClasses,
             [&](const ObjectClass& node)
             {
                 for (const Attribute& attribute : node.attributes)
                     if (attribute.dataType == "NA" && saysSomething(attribute.updateType.view()))
                         run.report(attribute, attribute.updateType,
                                    called(attribute, run.model().objectClasses(), node) +
                                        " has no datatype, and is updated all the same: " +
                                        quoted(attribute.updateType));
             });
}

void findOddConditions(CheckRun& run)
{
    run.each(&Tables::objectClasses,
             [&](const ObjectClass& node)
             {
                 for (const Attribute& attribute : node.attributes)
                 {
                     const bool hasCondition = saysSomething(attribute.updateCondition.view());
                     const bool needsCondition = attribute.updateType == "Conditional";
                     if (needsCondition && !hasCondition)
                         run.report(attribute, attribute.updateType,
                                    called(attribute, run.model().objectClasses(), node) +
                                        " is updated on a condition, and no condition is given");
                     else if (attribute.updateType == "Static" && hasCondition)
                         run.report(attribute, attribute.updateCondition,
                                    called(attribute, run.model().objectClasses(), node) +
                                        " is static, and has a condition for updates");
                 }
             });
}

/// The words that a property may have, NA apart.
struct Choice
{
    std::string_view key;
    std::span<const std::string_view> words;
};

constexpr std::string_view theSharings[] = {"Publish", "Subscribe", "PublishSubscribe", "Neither"};
constexpr std::string_view theOwnerships[] = {"Divest", "Acquire", "DivestAcquire", "NoTransfer"};
constexpr std::string_view theUpdateTypes[] = {"Static", "Periodic", "Conditional"};
constexpr std::string_view theOrders[] = {"Receive", "TimeStamp"};
constexpr std::string_view theTruths[] = {"true", "false"};
constexpr std::string_view theEndians[] = {"Big", "Little"};
constexpr std::string_view theYesAndNo[] = {"Yes", "No"};
constexpr std::string_view theCapabilities[] = {"Register", "Achieve", "RegisterAchieve",
                                                "NoSynch"};
constexpr Choice theChoices[] = {
    {"sharing",       theSharings    },
    {"ownership",     theOwnerships  },
    {"updateType",    theUpdateTypes },
    {"order",         theOrders      },
    {"valueRequired", theTruths      },
    {"endian",        theEndians     },
    {"reliable",      theYesAndNo    },
    {"capability",    theCapabilities},
};

/// The choices of the properties of a kind, by row.
std::vector<std::pair<const Row*, const Choice*>> choicesOf(Kind kind)
{
    std::vector<std::pair<const Row*, const Choice*>> choices;
    for (const Row& row : rowsOf(kind))
        for (const Choice& choice : theChoices)
            if (row.key == choice.key && row.oneText) choices.emplace_back(&row, &choice);
    return choices;
}

void findUnknownWords(CheckRun& run)
{
    run.eachWritten(
        [&](const auto& definition)
        {
            using T = std::decay_t<decltype(definition)>;
            static const auto theirChoices = choicesOf(T::theKind);
            if (theirChoices.empty() || run.edition(definition) == Edition::hla13) return;
            for (const auto& [row, choice] : theirChoices)
            {
                const Text& word = definition.*row->oneText;
                if (!saysSomething(word.view()) ||
                    std::find(choice->words.begin(), choice->words.end(), word.view()) !=
                        choice->words.end())
                    continue;
                std::string words;
                for (const std::string_view one : choice->words)
                    words += (words.empty() ? "" : ", ") + std::string(one);
                run.report(definition, word,
                           std::string(row->key) + " of " + called(definition) + " is " +
                               quoted(word) + ", and may be " + words);
            }
        });
}

/// Which attributes each class has of its own.
using OwnAttributes = std::set<std::pair<const ObjectClass*, std::string_view>>;

/// Whether a class has an attribute, of its own or inherited; one nested deeper than anything real
/// is taken to.
bool hasAttribute(const Model& model, const OwnAttributes& own, const ObjectClass* node,
                  std::string_view name)
{
    constexpr int theDeepestClass = 100;
    for (int depth = 0; depth < theDeepestClass; ++depth, node = model.parent(*node))
    {
        if (own.count({node, name}) != 0) return true;
        if (node->parent == ObjectClass::theNone) return false;
    }
    return true;
}

void findOddReferences(CheckRun& run)
{
    if (run.model().tables().referenceData.empty()) return;
    OwnAttributes own;
    for (const ObjectClass& node : run.model().objectClasses())
        for (const Attribute& attribute : node.attributes) own.insert({&node, attribute.name});
    run.each(&Tables::referenceData,
             [&](const ReferenceData& data)
             {
                 const Text& name = data.referencedAttribute;
                 // The instance itself stands for an attribute that no class has.
                 if (!saysSomething(name.view()) || name == "HLAobjectInstanceHandle") return;
                 const ObjectClass* const node = run.model().findObjectClass(data.referenceClass);
                 if (node && !hasAttribute(run.model(), own, node, name))
                     run.report(data, name,
                                called(data) + " refers to the attribute " + quoted(name) +
                                    ", which " + quoted(data.referenceClass) + " does not have");
             });
}

constexpr Severity error = Severity::error;
constexpr Severity warning = Severity::warning;
constexpr std::string_view theGroup = "classes";

constexpr RuleRow theRules[] = {
    rule("class-root", error, theGroup, "a class beside the roots of the standard", findOddRoots),
    rule("repeated-member", error, theGroup, "an attribute or parameter that its class has twice",
         findRepeatedMembers),
    rule("overloaded-member", error, theGroup, "an attribute or parameter that its class inherits",
         findOverloadedMembers),
    rule("basic-datatype", error, theGroup,
         "an attribute or parameter on a basic data representation (before 2025)",
         findBasicMembers),
    rule("na-companions", warning, theGroup,
         "an attribute without datatype that is updated all the same", findNaCompanions),
    rule("update-condition", warning, theGroup,
         "a conditional attribute without condition, or a static one with one", findOddConditions),
    rule("unknown-word", error, theGroup, "a word that a property of few words does not have",
         findUnknownWords),
    rule("unknown-dimension", warning, theGroup, "a dimension that is defined in no module given"),
    rule("unknown-transportation", warning, theGroup,
         "a transportation that is defined in no module given"),
    rule("unknown-class", warning, theGroup, "a class that is defined in no module given"),
    rule("repeated-directed-interaction", error, "2025",
         "a directed interaction that its class has twice", findRepeatedDirected),
    rule("referenced-attribute", error, "2025",
         "a reference datatype that refers to an attribute its class does not have",
         findOddReferences),
};

}  // namespace

std::span<const RuleRow> classRules()
{
    return theRules;
}

}  // namespace omt
