// SPDX-License-Identifier: Apache-2.0
#include "modelLists.h"

namespace
{

constexpr const char* theKinds[] = {"basic", "simple",  "enumerated", "array",
                                    "fixed", "variant", "complex"};

constexpr const char* theBaseKind = "base";

// What HLA 1.3 defines and its models only refer to.
constexpr const char* theBaseNames[] = {
    "any",           "boolean", "char",  "double", "float",         "long",
    "long long",     "octet",   "short", "string", "unsigned long", "unsigned long long",
    "unsigned short"};

using Visit = std::function<void(const std::string&, const DtString&)>;

void visitReferences(const DtBasicDataRepresentationNode&, const Visit&) {}

void visitReferences(const DtSimpleDatatypeNode& node, const Visit& visit)
{
    visit("representation", node.getRepresentation());
}

void visitReferences(const DtEnumeratedDatatypeNode& node, const Visit& visit)
{
    visit("representation", node.getRepresentation());
}

void visitReferences(const DtArrayDatatypeNode& node, const Visit& visit)
{
    visit("element", node.getDatatype());
}

template <typename Parts>
void visitParts(const char* word, const Parts& parts, const Visit& visit)
{
    for (const auto* part : parts) visit(word + part->getName().str(), part->getDatatype());
}

void visitReferences(const DtFixedDatatypeNode& node, const Visit& visit)
{
    visitParts("field ", partsOf(node), visit);
}

void visitReferences(const DtVariantDatatypeNode& node, const Visit& visit)
{
    visit("discriminant " + node.getDiscriminant().str(), node.getDatatype());
    visitParts("alternative ", partsOf(node), visit);
}

void visitReferences(DtComplexDatatypeNode& node, const Visit& visit)
{
    visitParts("component ", partsOf(node), visit);
}

template <typename Table>
void append(std::vector<Datatype>& datatypes, const Table& table)
{
    for (auto* node : table) datatypes.emplace_back(node);
}

}  // namespace

const char* kindOf(const Datatype& datatype)
{
    return theKinds[datatype.index()];
}

const DtString& nameOf(const Datatype& datatype)
{
    return std::visit([](const auto* node) -> const DtString& { return node->getName(); },
                      datatype);
}

std::vector<Datatype> datatypesOf(DtOMTTree& tree)
{
    using Tree = DtOMTTree;
    std::vector<Datatype> all;
    append(all, rangeOf(tree, &Tree::getBasicDataRepresentationNodeList,
                        &Tree::getBasicDataRepresentationEndNode));
    append(all, rangeOf(tree, &Tree::getSimpleDatatypeNodeList, &Tree::getSimpleDatatypeEndNode));
    append(all, rangeOf(tree, &Tree::getEnumeratedDatatypeNodeList,
                        &Tree::getEnumeratedDatatypeEndNode));
    append(all, rangeOf(tree, &Tree::getArrayDatatypeNodeList, &Tree::getArrayDatatypeEndNode));
    append(all, rangeOf(tree, &Tree::getFixedDatatypeNodeList, &Tree::getFixedDatatypeEndNode));
    append(all, rangeOf(tree, &Tree::getVariantDatatypeNodeList, &Tree::getVariantDatatypeEndNode));
    append(all, rangeOf(tree, &Tree::getComplexDatatypeNodeList, &Tree::getComplexDatatypeEndNode));
    return all;
}

DatatypeKinds::DatatypeKinds(DtOMTTree& tree)
{
    for (const Datatype& datatype : datatypesOf(tree))
        myKinds.emplace(nameOf(datatype).view(), kindOf(datatype));
    if (tree.hlaVersion() != DtHla13) return;
    for (const char* name : theBaseNames) myKinds.emplace(name, theBaseKind);
}

bool DatatypeKinds::isBase(std::string_view name) const
{
    const auto known = myKinds.find(name);
    return known != myKinds.end() && known->second == theBaseKind;
}

std::string DatatypeKinds::nameWithKind(const DtString& name) const
{
    if (name.empty() || name == "NA") return name.str();
    const auto known = myKinds.find(name.view());
    return name.str() + " (" + (known == myKinds.end() ? "not in this model" : known->second) + ')';
}

void forEachReference(const Datatype& datatype, const Visit& visit)
{
    std::visit([&](auto* node) { visitReferences(*node, visit); }, datatype);
}
