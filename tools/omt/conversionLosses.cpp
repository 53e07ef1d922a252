// SPDX-License-Identifier: Apache-2.0
#include "conversionLosses.h"

#include "modelLists.h"
#include "omtReader/synchroNode.h"
#include "util/dtMessages.h"

#include <set>

namespace
{

using Tree = DtOMTTree;

template <auto get>
std::size_t textCount(Tree& tree)
{
    return (tree.*get)().empty() ? 0 : 1;
}

std::size_t contactCount(Tree& tree)
{
    return rangeOf(tree, &Tree::getPOCList, &Tree::getPOCEndNode).size();
}

/// Of modules that were merged: of each there is a reference in the merged model.
std::size_t moduleCount(Tree& tree)
{
    std::size_t count = 0;
    for (const DtOMTTreeReference& reference : tree.getReferences())
        count += reference.type == "Composed_From";
    return count;
}

std::size_t complexCount(Tree& tree)
{
    return rangeOf(tree, &Tree::getComplexDatatypeNodeList, &Tree::getComplexDatatypeEndNode)
        .size();
}

template <typename Class, typename Visit>
void visitMembers(Tree& tree, Visit visit)
{
    for (const Class* node : ClassKind<Class>::all(tree))
        for (const DtDatatypeFedNode* member : ClassKind<Class>::members(*node)) visit(*member);
}

/// Calls `visit` for each attribute and each parameter.
template <typename Visit>
void visitAllMembers(Tree& tree, Visit visit)
{
    visitMembers<DtObjectClassFedNode>(tree, visit);
    visitMembers<DtInteractionClassFedNode>(tree, visit);
}

std::size_t cardinalityCount(Tree& tree)
{
    std::size_t count = 0;
    visitAllMembers(
        tree, [&](const DtDatatypeFedNode& member)
        { count += !member.getCardinality().empty() && member.getCardinality() != "1"; });
    return count;
}

std::size_t accuracyCount(Tree& tree)
{
    std::size_t count = 0;
    visitAllMembers(
        tree, [&](const DtDatatypeFedNode& member)
        { count += !member.getAccuracy().empty() || !member.getAccuracyCondition().empty(); });
    return count;
}

/// Only in an HLA 1.3 model, where nothing else can define them. Modules of the others refer to
/// datatypes of each other.
std::size_t undefinedCount(Tree& tree)
{
    if (tree.hlaVersion() != DtHla13) return 0;
    std::set<std::string_view> names;
    visitAllMembers(
        tree, [&](const DtDatatypeFedNode& member) { names.insert(member.getDatatype().view()); });
    names.erase("");
    for (const Datatype& datatype : datatypesOf(tree))
        if (!std::holds_alternative<DtComplexDatatypeNode*>(datatype))
            names.erase(nameOf(datatype).view());
    return names.size();
}

auto variantsOf(Tree& tree)
{
    return rangeOf(tree, &Tree::getVariantDatatypeNodeList, &Tree::getVariantDatatypeEndNode);
}

template <auto get>
std::size_t variantCount(Tree& tree)
{
    std::size_t count = 0;
    for (const DtVariantDatatypeNode* node : variantsOf(tree)) count += !(node->*get)().empty();
    return count;
}

std::size_t alternativeCount(Tree& tree)
{
    std::size_t count = 0;
    for (const DtVariantDatatypeNode* node : variantsOf(tree))
        for (const DtAlternativeComponentNode* one : partsOf(*node))
            count += !one->getDescription().empty();
    return count;
}

std::size_t synchronizationCount(Tree& tree)
{
    std::size_t count = 0;
    for (const DtSynchroNode* node :
         rangeOf(tree, &Tree::getSynchroNodeList, &Tree::getSynchroEndNode))
        count += !node->getDatatype().empty();
    return count;
}

/// The classes that no way leads to from the one that the writer begins with.
template <typename Class>
std::size_t unreachedCount(Tree& tree, Class* top)
{
    std::set<const Class*> unreached;
    for (const Class* node : ClassKind<Class>::all(tree)) unreached.insert(node);
    std::vector<const Class*> pending;
    if (top) pending.push_back(top);
    while (!pending.empty())
    {
        const Class* const node = pending.back();
        pending.pop_back();
        unreached.erase(node);
        for (const Class* child : ClassKind<Class>::children(*node)) pending.push_back(child);
    }
    return unreached.size();
}

std::size_t classCount(Tree& tree)
{
    return unreachedCount(tree, tree.getObjectClassNode("")) +
           unreachedCount(tree, tree.getInteractionClassNode(""));
}

/// One kind of what is lost, and how often there is in a tree what is.
struct Loss
{
    std::size_t (*count)(Tree&);
    const char* one;
    const char* many;
    const char* why;
};

constexpr const char* theNotWritten = "not written";
constexpr const char* theNoPlace = "IEEE 1516-2010 has no place for it";

// clang-format off
constexpr Loss theLosses[] = {
    {moduleCount, "identification of a module", "identifications of modules",
     "merging keeps their names alone, as references"},
    {contactCount, "point of contact", "points of contact", theNotWritten},
    {textCount<&Tree::getUseHistory>, "use history", "", theNotWritten},
    {textCount<&Tree::getSponsorOrgName>, "sponsor", "", theNoPlace},
    {textCount<&Tree::getMOMVersion>, "MOM version", "", theNoPlace},
    {textCount<&Tree::getReference>, "free reference", "", theNoPlace},
    {textCount<&Tree::getOther>, "other text of the identification", "", theNotWritten},
    {classCount, "class", "classes", "not below a root, and so not written"},
    {cardinalityCount, "attribute or parameter with a cardinality",
     "attributes and parameters with a cardinality", "IEEE 1516-2010 has arrays instead"},
    {accuracyCount, "attribute or parameter with an accuracy",
     "attributes and parameters with an accuracy", "simple datatypes have it in IEEE 1516-2010"},
    {complexCount, "complex datatype", "complex datatypes", "HLA 1.3 alone has them"},
    {undefinedCount, "datatype name", "datatype names",
     "attributes and parameters refer to what the written model does not define"},
    {variantCount<&DtVariantDatatypeNode::getEncoding>,
     "encoding of a variant record", "encodings of variant records", theNotWritten},
    {variantCount<&DtVariantDatatypeNode::getDescription>,
     "meaning of a variant record", "meanings of variant records", theNotWritten},
    {alternativeCount, "meaning of an alternative", "meanings of alternatives", theNotWritten},
    {synchronizationCount,
     "datatype of a synchronization point", "datatypes of synchronization points",
     "written as \"datatype\", a word that readers do not know"},
};
// clang-format on

}  // namespace

void reportLosses(DtOMTTree& tree)
{
    DtWarn << "the name \"" << tree.getName() << "\" is written as \"" << tree.getName()
           << "Valid FDD\"\n";
    for (const Loss& loss : theLosses)
        if (const std::size_t count = loss.count(tree))
            DtWarn << "lost: " << count << ' ' << (count == 1 ? loss.one : loss.many) << ": "
                   << loss.why << "\n";
}
