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

#include <functional>
#include <map>
#include <string>
#include <string_view>
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
    static DtObjectClassFedNode* root(DtOMTTree& tree) { return tree.objectClassRoot(); }
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
    static DtInteractionClassFedNode* root(DtOMTTree& tree) { return tree.interactionClassRoot(); }
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

/// "basic", "simple", "enumerated", "array", "fixed", "variant" or "complex".
const char* kindOf(const Datatype& datatype);
const DtString& nameOf(const Datatype& datatype);

/// All datatypes of a tree, table by table.
std::vector<Datatype> datatypesOf(DtOMTTree& tree);

/// Tells the kind of a datatype by its name; where two tables have the name, the first counts.
class DatatypeKinds
{
public:
    explicit DatatypeKinds(DtOMTTree& tree);
    /// The name with its kind in parentheses, or with a remark that the model does not define it.
    std::string nameWithKind(const DtString& name) const;
    /// Whether it is a base datatype of HLA 1.3, which a model of that has without defining it.
    bool isBase(std::string_view name) const;

private:
    std::map<std::string_view, const char*> myKinds;
};

/// Calls `visit` for each place in which a datatype refers to another: what the place is, in words,
/// and the name found there.
void forEachReference(const Datatype& datatype,
                      const std::function<void(const std::string&, const DtString&)>& visit);

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
