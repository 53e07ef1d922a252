// SPDX-License-Identifier: Apache-2.0
#include "omtReader/omtTree.h"

#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/basicDataRepresentationNode.h"
#include "omtReader/boolAttrNode.h"
#include "omtReader/complexDatatypeNode.h"
#include "omtReader/derivedValues.h"
#include "omtReader/descriptionNode.h"
#include "omtReader/dimensionNode.h"
#include "omtReader/enumeratedDatatypeNode.h"
#include "omtReader/fixedDatatypeNode.h"
#include "omtReader/modelRevision.h"
#include "omtReader/nodeLookup.h"
#include "omtReader/noteNode.h"
#include "omtReader/simpleDatatypeNode.h"
#include "omtReader/synchroNode.h"
#include "omtReader/tagNode.h"
#include "omtReader/timeRepNode.h"
#include "omtReader/treeMerge.h"
#include "omtReader/updateRateNode.h"
#include "omtReader/variantDatatypeNode.h"

#include <algorithm>
#include <new>
#include <vector>

namespace
{

template <typename List>
bool mayHoldOneTwice(const List& nodes)
{
    try
    {
        std::vector<const void*> sorted(nodes.begin(), nodes.end());
        std::sort(sorted.begin(), sorted.end());
        return std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end();
    }
    catch (const std::bad_alloc&)
    {
        return true;
    }
}

/// Deletes each node of a table once, however often it was added, and empties the table from the
/// front; in no order of the table where a node was added twice.
template <typename List>
void deleteAll(List& nodes)
{
    if (mayHoldOneTwice(nodes))
    {
        nodes.sort();
        nodes.unique();
    }
    for (; !nodes.empty(); nodes.pop_front()) delete nodes.front();
}

template <typename Node>
void append(std::list<Node*>& nodes, Node* node)
{
    if (!node) return;
    nodes.push_back(node);
    omtreader::noteModelChange();
}

template <typename Class>
Class* firstOfFullName(const std::list<Class*>& classes, const DtString& name)
{
    return omtreader::firstWhere(classes, [&](const Class& node)
                                 { return omtreader::FullNames::isEqual(node, name.view()); });
}

template <typename Class>
Class* firstOfIdentifier(const std::list<Class*>& classes, int identifier)
{
    return omtreader::firstWhere(classes,
                                 [=](Class& node) { return node.getIdentifier() == identifier; });
}

// The tables that are merged by name.
constexpr omtreader::Table<DtBasicDataRepresentationNode> theBasicDataRepresentationTable = {
    &DtOMTTree::getBasicDataRepresentationNodeList, &DtOMTTree::getBasicDataRepresentationEndNode,
    &DtOMTTree::getBasicDataRepresentationNode, &DtOMTTree::addBasicDataRepresentationNode};
constexpr omtreader::Table<DtVariantDatatypeNode> theVariantDatatypeTable = {
    &DtOMTTree::getVariantDatatypeNodeList, &DtOMTTree::getVariantDatatypeEndNode,
    &DtOMTTree::getVariantDatatypeNode, &DtOMTTree::addVariantDatatypeNode};
constexpr omtreader::Table<DtFixedDatatypeNode> theFixedDatatypeTable = {
    &DtOMTTree::getFixedDatatypeNodeList, &DtOMTTree::getFixedDatatypeEndNode,
    &DtOMTTree::getFixedDatatypeNode, &DtOMTTree::addFixedDatatypeNode};
constexpr omtreader::Table<DtSimpleDatatypeNode> theSimpleDatatypeTable = {
    &DtOMTTree::getSimpleDatatypeNodeList, &DtOMTTree::getSimpleDatatypeEndNode,
    &DtOMTTree::getSimpleDatatypeNode, &DtOMTTree::addSimpleDatatypeNode};
constexpr omtreader::Table<DtComplexDatatypeNode> theComplexDatatypeTable = {
    &DtOMTTree::getComplexDatatypeNodeList, &DtOMTTree::getComplexDatatypeEndNode,
    &DtOMTTree::getComplexDatatypeNode, &DtOMTTree::addComplexDatatypeNode};
constexpr omtreader::Table<DtArrayDatatypeNode> theArrayDatatypeTable = {
    &DtOMTTree::getArrayDatatypeNodeList, &DtOMTTree::getArrayDatatypeEndNode,
    &DtOMTTree::getArrayDatatypeNode, &DtOMTTree::addArrayDatatypeNode};
constexpr omtreader::Table<DtEnumeratedDatatypeNode> theEnumeratedDatatypeTable = {
    &DtOMTTree::getEnumeratedDatatypeNodeList, &DtOMTTree::getEnumeratedDatatypeEndNode,
    &DtOMTTree::getEnumeratedDatatypeNode, &DtOMTTree::addEnumeratedDatatypeNode};
constexpr omtreader::Table<DtSynchroNode> theSynchroTable = {
    &DtOMTTree::getSynchroNodeList, &DtOMTTree::getSynchroEndNode, &DtOMTTree::getSynchroNode,
    &DtOMTTree::addSynchroNode};
constexpr omtreader::Table<DtDescriptionNode> theTransportationTable = {
    &DtOMTTree::getTransportationNodeList, &DtOMTTree::getTransportationEndNode,
    &DtOMTTree::getTransportationNode, &DtOMTTree::addTransportationNode};
constexpr omtreader::Table<DtDimensionNode> theDimensionTable = {
    &DtOMTTree::getDimensionNodeList, &DtOMTTree::getDimensionEndNode, &DtOMTTree::getDimensionNode,
    &DtOMTTree::addDimensionNode};
constexpr omtreader::Table<DtUpdateRateNode> theUpdateRateTable = {
    &DtOMTTree::getUpdateRateNodeList, &DtOMTTree::getUpdateRateEndNode,
    &DtOMTTree::getUpdateRateNode, &DtOMTTree::addUpdateRateNode};
constexpr omtreader::Table<DtTagNode> theTagTable = {
    &DtOMTTree::getTagNodeList, &DtOMTTree::getTagEndNode, &DtOMTTree::getTagNode,
    &DtOMTTree::addTagNode};
constexpr omtreader::Table<DtBoolAttrNode> theSwitchTable = {
    &DtOMTTree::getSwitchNodeList, &DtOMTTree::getSwitchEndNode, &DtOMTTree::getSwitchNode,
    &DtOMTTree::addSwitchNode};
constexpr omtreader::Table<DtNoteNode> theNoteTable = {
    &DtOMTTree::getNoteNodeList, &DtOMTTree::getNoteEndNode, nullptr, &DtOMTTree::addNoteNode};

}  // namespace

DtOMTTree::DtOMTTree() = default;

DtOMTTree::~DtOMTTree()
{
    deleteAll(myComplexDatatypes);
    deleteAll(myEnumeratedDatatypes);
    deleteAll(myNotes);
    deleteAll(myBasicDataRepresentations);
    deleteAll(mySimpleDatatypes);
    deleteAll(myArrayDatatypes);
    deleteAll(myVariantDatatypes);
    deleteAll(myFixedDatatypes);
    deleteAll(myTransportations);
    deleteAll(myUpdateRates);
    deleteAll(myObjectClasses);
    myObjectClassRoot = nullptr;
    deleteAll(myInteractionClasses);
    myInteractionClassRoot = nullptr;
    delete myTimeRep;
    // Switches, dimensions, synchronization points and tags are left undeleted: hosts
    // keep such nodes beyond the tree.
}

void DtOMTTree::addReference(const DtOMTTreeReference& reference)
{
    myReferences.push_back(reference);
}

void DtOMTTree::addPOC(const DtOMTTreePOC& contact)
{
    myPOCs.push_back(contact);
}

void DtOMTTree::addPOC(const DtString& honorificName, const DtString& firstName,
                       const DtString& lastName, const DtString& orgName, const DtString& phone,
                       const DtString& email, const DtString& type)
{
    addPOC(DtOMTTreePOC{honorificName, firstName, lastName, orgName, phone, email, type});
}

DtOMTTree::POCList::iterator DtOMTTree::getPOCList()
{
    return myPOCs.begin();
}

DtOMTTree::POCList::iterator DtOMTTree::getPOCEndNode()
{
    return myPOCs.end();
}

void DtOMTTree::addBasicDataRepresentationNode(DtBasicDataRepresentationNode* node)
{
    append(myBasicDataRepresentations, node);
}

DtBasicDataRepresentationNode* DtOMTTree::getBasicDataRepresentationNode(const DtString& name)
{
    return omtreader::firstNamed(myBasicDataRepresentations, name);
}

DtOMTTree::NodeList<DtBasicDataRepresentationNode>::iterator
DtOMTTree::getBasicDataRepresentationNodeList()
{
    return myBasicDataRepresentations.begin();
}

DtOMTTree::NodeList<DtBasicDataRepresentationNode>::iterator
DtOMTTree::getBasicDataRepresentationEndNode()
{
    return myBasicDataRepresentations.end();
}

void DtOMTTree::addVariantDatatypeNode(DtVariantDatatypeNode* node)
{
    append(myVariantDatatypes, node);
}

DtVariantDatatypeNode* DtOMTTree::getVariantDatatypeNode(const DtString& name)
{
    return omtreader::firstNamed(myVariantDatatypes, name);
}

DtOMTTree::NodeList<DtVariantDatatypeNode>::iterator DtOMTTree::getVariantDatatypeNodeList()
{
    return myVariantDatatypes.begin();
}

DtOMTTree::NodeList<DtVariantDatatypeNode>::iterator DtOMTTree::getVariantDatatypeEndNode()
{
    return myVariantDatatypes.end();
}

void DtOMTTree::addFixedDatatypeNode(DtFixedDatatypeNode* node)
{
    append(myFixedDatatypes, node);
}

DtFixedDatatypeNode* DtOMTTree::getFixedDatatypeNode(const DtString& name)
{
    return omtreader::firstNamed(myFixedDatatypes, name);
}

DtOMTTree::NodeList<DtFixedDatatypeNode>::iterator DtOMTTree::getFixedDatatypeNodeList()
{
    return myFixedDatatypes.begin();
}

DtOMTTree::NodeList<DtFixedDatatypeNode>::iterator DtOMTTree::getFixedDatatypeEndNode()
{
    return myFixedDatatypes.end();
}

void DtOMTTree::addSimpleDatatypeNode(DtSimpleDatatypeNode* node)
{
    append(mySimpleDatatypes, node);
}

DtSimpleDatatypeNode* DtOMTTree::getSimpleDatatypeNode(const DtString& name)
{
    return omtreader::firstNamed(mySimpleDatatypes, name);
}

DtOMTTree::NodeList<DtSimpleDatatypeNode>::iterator DtOMTTree::getSimpleDatatypeNodeList()
{
    return mySimpleDatatypes.begin();
}

DtOMTTree::NodeList<DtSimpleDatatypeNode>::iterator DtOMTTree::getSimpleDatatypeEndNode()
{
    return mySimpleDatatypes.end();
}

void DtOMTTree::addComplexDatatypeNode(DtComplexDatatypeNode* node)
{
    append(myComplexDatatypes, node);
}

DtComplexDatatypeNode* DtOMTTree::getComplexDatatypeNode(const DtString& name)
{
    return omtreader::firstNamed(myComplexDatatypes, name);
}

DtOMTTree::NodeList<DtComplexDatatypeNode>::iterator DtOMTTree::getComplexDatatypeNodeList()
{
    return myComplexDatatypes.begin();
}

DtOMTTree::NodeList<DtComplexDatatypeNode>::iterator DtOMTTree::getComplexDatatypeEndNode()
{
    return myComplexDatatypes.end();
}

void DtOMTTree::addArrayDatatypeNode(DtArrayDatatypeNode* node)
{
    append(myArrayDatatypes, node);
}

DtArrayDatatypeNode* DtOMTTree::getArrayDatatypeNode(const DtString& name)
{
    return omtreader::firstNamed(myArrayDatatypes, name);
}

DtOMTTree::NodeList<DtArrayDatatypeNode>::iterator DtOMTTree::getArrayDatatypeNodeList()
{
    return myArrayDatatypes.begin();
}

DtOMTTree::NodeList<DtArrayDatatypeNode>::iterator DtOMTTree::getArrayDatatypeEndNode()
{
    return myArrayDatatypes.end();
}

void DtOMTTree::addEnumeratedDatatypeNode(DtEnumeratedDatatypeNode* node)
{
    append(myEnumeratedDatatypes, node);
}

DtEnumeratedDatatypeNode* DtOMTTree::getEnumeratedDatatypeNode(const DtString& name)
{
    return omtreader::firstNamed(myEnumeratedDatatypes, name);
}

DtOMTTree::NodeList<DtEnumeratedDatatypeNode>::iterator DtOMTTree::getEnumeratedDatatypeNodeList()
{
    return myEnumeratedDatatypes.begin();
}

DtOMTTree::NodeList<DtEnumeratedDatatypeNode>::iterator DtOMTTree::getEnumeratedDatatypeEndNode()
{
    return myEnumeratedDatatypes.end();
}

void DtOMTTree::addNoteNode(DtNoteNode* node)
{
    append(myNotes, node);
}

DtNoteNode* DtOMTTree::getNoteNode(int number)
{
    return omtreader::firstWhere(myNotes, [=](auto& note) { return note.getNumber() == number; });
}

DtNoteNode* DtOMTTree::getNoteNode(DtString label)
{
    return omtreader::firstWhere(myNotes, [&](auto& note) { return note.getLabel() == label; });
}

DtOMTTree::NodeList<DtNoteNode>::iterator DtOMTTree::getNoteNodeList()
{
    return myNotes.begin();
}

DtOMTTree::NodeList<DtNoteNode>::iterator DtOMTTree::getNoteEndNode()
{
    return myNotes.end();
}

void DtOMTTree::addUpdateRateNode(DtUpdateRateNode* node)
{
    append(myUpdateRates, node);
}

DtUpdateRateNode* DtOMTTree::getUpdateRateNode(const DtString& name)
{
    return omtreader::firstNamed(myUpdateRates, name);
}

DtOMTTree::NodeList<DtUpdateRateNode>::iterator DtOMTTree::getUpdateRateNodeList()
{
    return myUpdateRates.begin();
}

DtOMTTree::NodeList<DtUpdateRateNode>::iterator DtOMTTree::getUpdateRateEndNode()
{
    return myUpdateRates.end();
}

void DtOMTTree::addObjectClassNode(DtObjectClassFedNode* node)
{
    append(myObjectClasses, node);
}

DtObjectClassFedNode* DtOMTTree::getObjectClassNode(const DtString& name)
{
    DtObjectClassFedNode* const root = objectClassRoot();
    if (name.empty()) return root;
    return root ? root->findChildObject(name.c_str()) : firstOfFullName(myObjectClasses, name);
}

DtObjectClassFedNode* DtOMTTree::getObjectClassNodeByID(int identifier)
{
    return firstOfIdentifier(myObjectClasses, identifier);
}

DtOMTTree::NodeList<DtObjectClassFedNode>::iterator DtOMTTree::getObjectClassNodeBegin()
{
    return myObjectClasses.begin();
}

DtOMTTree::NodeList<DtObjectClassFedNode>::iterator DtOMTTree::getObjectClassNodeEnd()
{
    return myObjectClasses.end();
}

DtOMTTree::NodeList<DtObjectClassFedNode>::reverse_iterator DtOMTTree::getObjectClassNodeRBegin()
{
    return myObjectClasses.rbegin();
}

DtOMTTree::NodeList<DtObjectClassFedNode>::reverse_iterator DtOMTTree::getObjectClassNodeREnd()
{
    return myObjectClasses.rend();
}

void DtOMTTree::addInteractionClassNode(DtInteractionClassFedNode* node)
{
    append(myInteractionClasses, node);
}

DtInteractionClassFedNode* DtOMTTree::getInteractionClassNode(const DtString& name)
{
    DtInteractionClassFedNode* const root = interactionClassRoot();
    if (name.empty()) return root;
    return root ? root->findChildInteraction(name.c_str())
                : firstOfFullName(myInteractionClasses, name);
}

DtInteractionClassFedNode* DtOMTTree::getInteractionClassNodeByID(int identifier)
{
    return firstOfIdentifier(myInteractionClasses, identifier);
}

DtOMTTree::NodeList<DtInteractionClassFedNode>::iterator DtOMTTree::getInteractionClassNodeBegin()
{
    return myInteractionClasses.begin();
}

DtOMTTree::NodeList<DtInteractionClassFedNode>::iterator DtOMTTree::getInteractionClassNodeEnd()
{
    return myInteractionClasses.end();
}

DtOMTTree::NodeList<DtInteractionClassFedNode>::reverse_iterator
DtOMTTree::getInteractionClassNodeRBegin()
{
    return myInteractionClasses.rbegin();
}

DtOMTTree::NodeList<DtInteractionClassFedNode>::reverse_iterator
DtOMTTree::getInteractionClassNodeREnd()
{
    return myInteractionClasses.rend();
}

void DtOMTTree::addSwitchNode(DtBoolAttrNode* node)
{
    append(mySwitches, node);
}

DtBoolAttrNode* DtOMTTree::getSwitchNode(const DtString& name)
{
    return omtreader::firstNamed(mySwitches, name);
}

DtOMTTree::NodeList<DtBoolAttrNode>::iterator DtOMTTree::getSwitchNodeList()
{
    return mySwitches.begin();
}

DtOMTTree::NodeList<DtBoolAttrNode>::iterator DtOMTTree::getSwitchEndNode()
{
    return mySwitches.end();
}

void DtOMTTree::addTransportationNode(DtDescriptionNode* node)
{
    append(myTransportations, node);
}

DtDescriptionNode* DtOMTTree::getTransportationNode(const DtString& name)
{
    return omtreader::firstNamed(myTransportations, name);
}

DtOMTTree::NodeList<DtDescriptionNode>::iterator DtOMTTree::getTransportationNodeList()
{
    return myTransportations.begin();
}

DtOMTTree::NodeList<DtDescriptionNode>::iterator DtOMTTree::getTransportationEndNode()
{
    return myTransportations.end();
}

void DtOMTTree::addDimensionNode(DtDimensionNode* node)
{
    append(myDimensions, node);
}

DtDimensionNode* DtOMTTree::getDimensionNode(const DtString& name)
{
    return omtreader::firstNamed(myDimensions, name);
}

DtOMTTree::NodeList<DtDimensionNode>::iterator DtOMTTree::getDimensionNodeList()
{
    return myDimensions.begin();
}

DtOMTTree::NodeList<DtDimensionNode>::iterator DtOMTTree::getDimensionEndNode()
{
    return myDimensions.end();
}

void DtOMTTree::addSynchroNode(DtSynchroNode* node)
{
    append(mySynchros, node);
}

DtSynchroNode* DtOMTTree::getSynchroNode(const DtString& name)
{
    return omtreader::firstNamed(mySynchros, name);
}

DtOMTTree::NodeList<DtSynchroNode>::iterator DtOMTTree::getSynchroNodeList()
{
    return mySynchros.begin();
}

DtOMTTree::NodeList<DtSynchroNode>::iterator DtOMTTree::getSynchroEndNode()
{
    return mySynchros.end();
}

void DtOMTTree::addTagNode(DtTagNode* node)
{
    append(myTags, node);
}

DtTagNode* DtOMTTree::getTagNode(const DtString& name)
{
    return omtreader::firstNamed(myTags, name);
}

DtOMTTree::NodeList<DtTagNode>::iterator DtOMTTree::getTagNodeList()
{
    return myTags.begin();
}

DtOMTTree::NodeList<DtTagNode>::iterator DtOMTTree::getTagEndNode()
{
    return myTags.end();
}

DtTimeRepNode* DtOMTTree::getTimeRepNode()
{
    if (!myTimeRep) myTimeRep = new DtTimeRepNode;
    return myTimeRep;
}

void DtOMTTree::merge(DtOMTTree* source)
{
    if (!source) return;
    mergeModelIdentification(source);
    mergeObjects(source);
    mergeInteractions(source);
    mergeDatatypes(source);
    mergeNotes(source);
    mergeSyncPoints(source);
    mergeTransportations(source);
    mergeDimensions(source);
    mergeUpdateRates(source);
    mergeTags(source);
    mergeSwitches(source);
    if (!myTimeRep && source->myTimeRep) myTimeRep = new DtTimeRepNode(*source->myTimeRep);
}

DtObjectClassFedNode* DtOMTTree::mergeObjectNode(const DtObjectClassFedNode& source)
{
    return omtreader::mergeClass(*this, source, myObjectMerge);
}

DtInteractionClassFedNode* DtOMTTree::mergeInteractionNode(const DtInteractionClassFedNode& source)
{
    return omtreader::mergeClass(*this, source, myInteractionMerge);
}

void DtOMTTree::mergeModelIdentification(DtOMTTree* source)
{
    if (hlaVersion() == DtHla1516_2010) addReference({"Composed_From", source->getName()});
}

void DtOMTTree::mergeObjects(DtOMTTree* source)
{
    omtreader::mergeHierarchy(*this, *source, myObjectMerge);
}

void DtOMTTree::mergeInteractions(DtOMTTree* source)
{
    omtreader::mergeHierarchy(*this, *source, myInteractionMerge);
}

void DtOMTTree::mergeDatatypes(DtOMTTree* source)
{
    omtreader::mergeTable(*this, *source, theBasicDataRepresentationTable);
    omtreader::mergeTable(*this, *source, theVariantDatatypeTable);
    omtreader::mergeTable(*this, *source, theFixedDatatypeTable);
    omtreader::mergeTable(*this, *source, theSimpleDatatypeTable);
    omtreader::mergeTable(*this, *source, theComplexDatatypeTable);
    omtreader::mergeTable(*this, *source, theArrayDatatypeTable);
    omtreader::mergeTable(*this, *source, theEnumeratedDatatypeTable);
}

void DtOMTTree::mergeDimensions(DtOMTTree* source)
{
    omtreader::mergeTable(*this, *source, theDimensionTable);
}

void DtOMTTree::mergeNotes(DtOMTTree* source)
{
    omtreader::mergeTable(
        *this, *source, theNoteTable,
        [](const DtNoteNode& note) -> const DtString& { return note.getLabel(); },
        [](DtOMTTree& tree, const DtString& label) { return tree.getNoteNode(label); });
}

void DtOMTTree::mergeSyncPoints(DtOMTTree* source)
{
    omtreader::mergeTable(*this, *source, theSynchroTable);
}

void DtOMTTree::mergeTransportations(DtOMTTree* source)
{
    omtreader::mergeTable(*this, *source, theTransportationTable);
}

void DtOMTTree::mergeUpdateRates(DtOMTTree* source)
{
    omtreader::mergeTable(*this, *source, theUpdateRateTable);
}

void DtOMTTree::mergeTags(DtOMTTree* source)
{
    omtreader::mergeTable(*this, *source, theTagTable);
}

void DtOMTTree::mergeSwitches(DtOMTTree* source)
{
    omtreader::mergeTable(*this, *source, theSwitchTable);
}

void DtOMTTree::prepareForSharing()
{
    omtreader::deriveAllValues(*this);
}

void DtOMTTree::deleteAuxiliaryTables()
{
    deleteAll(mySwitches);
    deleteAll(myDimensions);
    deleteAll(mySynchros);
    deleteAll(myTags);
}
