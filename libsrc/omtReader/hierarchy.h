// SPDX-License-Identifier: Apache-2.0
// The two class hierarchies under common names, for code that works on either.
#pragma once

#include "omtReader/interactionClassFedNode.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTree.h"

namespace omtreader
{

/// Object classes with attributes, or interaction classes with parameters.
template <typename Class>
struct Hierarchy;

template <>
struct Hierarchy<DtObjectClassFedNode>
{
    using Class = DtObjectClassFedNode;
    using Member = DtAttributeFedNode;
    static Class* root(DtOMTTree& tree) { return tree.objectClassRoot(); }
    static auto begin(DtOMTTree& tree) { return tree.getObjectClassNodeBegin(); }
    static auto end(DtOMTTree& tree) { return tree.getObjectClassNodeEnd(); }
    static Class* find(DtOMTTree& tree, const DtString& name)
    {
        return tree.getObjectClassNode(name);
    }
    static Class* findByIdentifier(DtOMTTree& tree, int identifier)
    {
        return tree.getObjectClassNodeByID(identifier);
    }
    static void add(DtOMTTree& tree, Class* node) { tree.addObjectClassNode(node); }
    static void setRoot(DtOMTTree& tree, Class* node) { tree.setObjectClassRoot(node); }
    static Class* merge(DtOMTTree& tree, const Class& node) { return tree.mergeObjectNode(node); }
    static const auto& children(const Class& node) { return node.getChildObjects(); }
    static Class* findChild(Class& node, const char* path) { return node.findChildObject(path); }
    static void addChild(Class& node, Class* child) { node.addChildObject(child); }
    static const auto& members(const Class& node) { return node.getAttributes(); }
    static void addMember(Class& node, Member* member) { node.addAttribute(member); }
    static void removeMembers(Class& node) { node.removeAttributes(); }
    /// The two operations that only undo takes: what add() and addChild() of plain ones add to.
    static auto& list(DtOMTTree& tree) { return tree.myObjectClasses; }
    static auto& childList(Class& node) { return node.myChildren; }
};

template <>
struct Hierarchy<DtInteractionClassFedNode>
{
    using Class = DtInteractionClassFedNode;
    using Member = DtParameterFedNode;
    static Class* root(DtOMTTree& tree) { return tree.interactionClassRoot(); }
    static auto begin(DtOMTTree& tree) { return tree.getInteractionClassNodeBegin(); }
    static auto end(DtOMTTree& tree) { return tree.getInteractionClassNodeEnd(); }
    static Class* find(DtOMTTree& tree, const DtString& name)
    {
        return tree.getInteractionClassNode(name);
    }
    static Class* findByIdentifier(DtOMTTree& tree, int identifier)
    {
        return tree.getInteractionClassNodeByID(identifier);
    }
    static void add(DtOMTTree& tree, Class* node) { tree.addInteractionClassNode(node); }
    static void setRoot(DtOMTTree& tree, Class* node) { tree.setInteractionClassRoot(node); }
    static Class* merge(DtOMTTree& tree, const Class& node)
    {
        return tree.mergeInteractionNode(node);
    }
    static const auto& children(const Class& node) { return node.getChildInteractions(); }
    static Class* findChild(Class& node, const char* path)
    {
        return node.findChildInteraction(path);
    }
    static void addChild(Class& node, Class* child) { node.addChildInteraction(child); }
    static const auto& members(const Class& node) { return node.getParameters(); }
    static void addMember(Class& node, Member* member) { node.addParameter(member); }
    static void removeMembers(Class& node) { node.removeParameters(); }
    /// The two operations that only undo takes: what add() and addChild() of plain ones add to.
    static auto& list(DtOMTTree& tree) { return tree.myInteractionClasses; }
    static auto& childList(Class& node) { return node.myChildren; }
};

}  // namespace omtreader
