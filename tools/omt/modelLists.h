// SPDX-License-Identifier: Apache-2.0
// The tables of a tree as ranges, the two class hierarchies and the seven kinds of datatypes under
// common names.
#pragma once

#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/basicDataRepresentationNode.h"
#include "omtReader/complexDatatypeNode.h"
#include "omtReader/enumeratedDatatypeNode.h"
#include "omtReader/fixedDatatypeNode.h"
#include "omtReader/interactionClassFedNode.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTree.h"
#include "omtReader/simpleDatatypeNode.h"
#include "omtReader/variantDatatypeNode.h"

#include <string>
#include <variant>
#include <vector>

/// What a pair of iterators delimits.
template <typename Iterator>
class Range
{
public:
    Range(Iterator first, Iterator last) : myFirst(first), myLast(last) {}
    Iterator begin() const { return myFirst; }
    Iterator end() const { return myLast; }
    std::size_t size() const { return static_cast<std::size_t>(std::distance(myFirst, myLast)); }

private:
    Iterator myFirst;
    Iterator myLast;
};

/// The table between two operations of a tree or of a composite datatype.
template <typename Owner, typename Begin, typename End>
auto rangeOf(Owner& owner, Begin begin, End end)
{
    return Range((owner.*begin)(), (owner.*end)());
}

/// Object classes and their attributes, interaction classes and their parameters.
template <typename Class>
struct ClassKind;

template <>
struct ClassKind<DtObjectClassFedNode>
{
    static constexpr const char* word = "object class";
    static constexpr const char* memberWord = "attribute";
    static auto all(DtOMTTree& tree)
    {
        return Range(tree.getObjectClassNodeBegin(), tree.getObjectClassNodeEnd());
    }
    static const auto& children(const DtObjectClassFedNode& node) { return node.getChildObjects(); }
    static const auto& members(const DtObjectClassFedNode& node) { return node.getAttributes(); }
};

template <>
struct ClassKind<DtInteractionClassFedNode>
{
    static constexpr const char* word = "interaction class";
    static constexpr const char* memberWord = "parameter";
    static auto all(DtOMTTree& tree)
    {
        return Range(tree.getInteractionClassNodeBegin(), tree.getInteractionClassNodeEnd());
    }
    static const auto& children(const DtInteractionClassFedNode& node)
    {
        return node.getChildInteractions();
    }
    static const auto& members(const DtInteractionClassFedNode& node)
    {
        return node.getParameters();
    }
};

/// One datatype of any kind; the order of the kinds is that of their tables wherever all are shown.
using Datatype = std::variant<DtBasicDataRepresentationNode*, DtSimpleDatatypeNode*,
                              DtEnumeratedDatatypeNode*, DtArrayDatatypeNode*, DtFixedDatatypeNode*,
                              DtVariantDatatypeNode*, DtComplexDatatypeNode*>;

const DtString& nameOf(const Datatype& datatype);

/// All datatypes of a tree, table by table.
std::vector<Datatype> datatypesOf(DtOMTTree& tree);

/// The parts of the composite datatypes.
inline auto enumeratorsOf(const DtEnumeratedDatatypeNode& node)
{
    return Range(node.getEnumerationNodeList(), node.getEnumerationNodeEnd());
}
inline auto partsOf(const DtFixedDatatypeNode& node)
{
    return Range(node.getComponentNodeList(), node.getComponentNodeEnd());
}
inline auto partsOf(const DtVariantDatatypeNode& node)
{
    return Range(node.getComponentNodeList(), node.getComponentNodeEnd());
}
inline auto partsOf(DtComplexDatatypeNode& node)
{
    return Range(node.getComponentNodeList(), node.getComponentNodeEnd());
}
