// SPDX-License-Identifier: Apache-2.0
// One object model in memory.
#pragma once

#include "omtReader/hlaProtocolVersion.h"
#include "omtReader/omtTreePOC.h"
#include "omtReader/omtTreeReference.h"

#include <list>
#include <memory>
#include <vector>

class DtArrayDatatypeNode;
class DtBasicDataRepresentationNode;
class DtBoolAttrNode;
class DtComplexDatatypeNode;
class DtDescriptionNode;
class DtDimensionNode;
class DtEnumeratedDatatypeNode;
class DtFixedDatatypeNode;
class DtInteractionClassFedNode;
class DtNoteNode;
class DtObjectClassFedNode;
class DtSimpleDatatypeNode;
class DtSynchroNode;
class DtTagNode;
class DtTimeRepNode;
class DtUpdateRateNode;
class DtVariantDatatypeNode;

namespace omtreader
{
template <typename Class>
class ClassMerge;
template <typename Class>
struct Hierarchy;
}  // namespace omtreader

/// The tree of one object model: a FOM, a SOM, a FOM module, or several of them merged.
///
/// A plain container. Every `add...Node` appends to its table, ignores null and never looks for
/// duplicates. Every look-up searches its own table from the front, compares exactly, and gives the
/// first match or null. Tables keep the order in which entries were added.
///
/// The tree owns and deletes the nodes that were added to it. Four tables are left alone on
/// purpose: switches, dimensions, synchronization points and tags stay undeleted unless a host asks
/// for it with deleteAuxiliaryTables(). A root is deleted through its class list, so it is added
/// there too. A node that was added to a table twice stands there twice and is deleted once.
///
/// Classes may nest to any depth. Where a host's classes form a ring, a class that stands below
/// itself is merged and written once on each way down, with a warning, and its full name is its own
/// name. A class that was made a child twice counts as two children.
///
/// A tree is used by one thread at a time, as reading it fills in values when they are first asked
/// for; after prepareForSharing() any number of threads may read it.
class OMTREADER_EXPORT DtOMTTree
{
public:
    template <typename Node>
    using NodeList = std::list<Node*>;
    using POCList = std::list<DtOMTTreePOC>;
    using ReferenceList = std::vector<DtOMTTreeReference>;

    DtOMTTree();
    DtOMTTree(const DtOMTTree&) = delete;
    DtOMTTree& operator=(const DtOMTTree&) = delete;
    virtual ~DtOMTTree();

    /// The generation of HLA that the model was written for; for the host, never interpreted here.
    virtual void setHlaVersion(DtHLAProtocolVersion version) { myHlaVersion = version; }
    virtual DtHLAProtocolVersion hlaVersion() const { return myHlaVersion; }

    // The identification of the model: free texts, empty until set.

    /// The model's name.
    virtual void setName(const DtString& text) { myName = text; }
    virtual const DtString& getName() { return myName; }
    virtual void setVersionNo(const DtString& text) { myVersionNo = text; }
    virtual const DtString& getVersionNo() { return myVersionNo; }
    /// "FOM", "SOM" or another kind, as read.
    virtual void setType(const DtString& text) { myType = text; }
    virtual const DtString& getType() { return myType; }
    virtual void setPurpose(const DtString& text) { myPurpose = text; }
    virtual const DtString& getPurpose() { return myPurpose; }
    virtual void setApplicationDomain(const DtString& text) { myApplicationDomain = text; }
    virtual const DtString& getApplicationDomain() { return myApplicationDomain; }
    virtual void setSponsorOrgName(const DtString& text) { mySponsorOrgName = text; }
    virtual const DtString& getSponsorOrgName() { return mySponsorOrgName; }
    /// As written; never taken for a date.
    virtual void setModificationDate(const DtString& text) { myModificationDate = text; }
    virtual const DtString& getModificationDate() { return myModificationDate; }
    virtual void setSecurityClassification(const DtString& text)
    {
        mySecurityClassification = text;
    }
    virtual const DtString& getSecurityClassification() const { return mySecurityClassification; }
    virtual void setReleaseRestriction(const DtString& text) { myReleaseRestriction = text; }
    virtual const DtString& getReleaseRestriction() const { return myReleaseRestriction; }
    virtual void setDescription(const DtString& text) { myDescription = text; }
    virtual const DtString& getDescription() const { return myDescription; }
    virtual void setMOMVersion(const DtString& text) { myMOMVersion = text; }
    virtual const DtString& getMOMVersion() { return myMOMVersion; }
    /// The one free reference of a model in an older format.
    virtual void setReference(const DtString& text) { myReference = text; }
    virtual const DtString& getReference() { return myReference; }

    /// The references of the model identification.
    virtual const ReferenceList& getReferences() const { return myReferences; }
    virtual void setReferences(const ReferenceList& references) { myReferences = references; }
    virtual void addReference(const DtOMTTreeReference& reference);

    virtual void setOther(const DtString& text) { myOther = text; }
    virtual const DtString& getOther() { return myOther; }
    virtual void setUseLimitation(const DtString& text) { myUseLimitation = text; }
    virtual const DtString& getUseLimitation() { return myUseLimitation; }
    virtual void setUseHistory(const DtString& text) { myUseHistory = text; }
    virtual const DtString& getUseHistory() { return myUseHistory; }

    /// Points of contact.
    virtual void addPOC(const DtOMTTreePOC& contact);
    virtual void addPOC(const DtString& honorificName, const DtString& firstName,
                        const DtString& lastName, const DtString& orgName, const DtString& phone,
                        const DtString& email, const DtString& type);
    virtual POCList::iterator getPOCList();
    virtual POCList::iterator getPOCEndNode();

    // The tables. The list operations give the begin and the end of a table.

    /// Basic data representations.
    virtual void addBasicDataRepresentationNode(DtBasicDataRepresentationNode* node);
    virtual DtBasicDataRepresentationNode* getBasicDataRepresentationNode(const DtString& name);
    virtual NodeList<DtBasicDataRepresentationNode>::iterator getBasicDataRepresentationNodeList();
    virtual NodeList<DtBasicDataRepresentationNode>::iterator getBasicDataRepresentationEndNode();

    /// Variant record datatypes.
    virtual void addVariantDatatypeNode(DtVariantDatatypeNode* node);
    virtual DtVariantDatatypeNode* getVariantDatatypeNode(const DtString& name);
    virtual NodeList<DtVariantDatatypeNode>::iterator getVariantDatatypeNodeList();
    virtual NodeList<DtVariantDatatypeNode>::iterator getVariantDatatypeEndNode();

    /// Fixed record datatypes.
    virtual void addFixedDatatypeNode(DtFixedDatatypeNode* node);
    virtual DtFixedDatatypeNode* getFixedDatatypeNode(const DtString& name);
    virtual NodeList<DtFixedDatatypeNode>::iterator getFixedDatatypeNodeList();
    virtual NodeList<DtFixedDatatypeNode>::iterator getFixedDatatypeEndNode();

    /// Simple datatypes.
    virtual void addSimpleDatatypeNode(DtSimpleDatatypeNode* node);
    virtual DtSimpleDatatypeNode* getSimpleDatatypeNode(const DtString& name);
    virtual NodeList<DtSimpleDatatypeNode>::iterator getSimpleDatatypeNodeList();
    virtual NodeList<DtSimpleDatatypeNode>::iterator getSimpleDatatypeEndNode();

    /// Complex datatypes of HLA 1.3.
    virtual void addComplexDatatypeNode(DtComplexDatatypeNode* node);
    virtual DtComplexDatatypeNode* getComplexDatatypeNode(const DtString& name);
    virtual NodeList<DtComplexDatatypeNode>::iterator getComplexDatatypeNodeList();
    virtual NodeList<DtComplexDatatypeNode>::iterator getComplexDatatypeEndNode();

    /// Array datatypes.
    virtual void addArrayDatatypeNode(DtArrayDatatypeNode* node);
    virtual DtArrayDatatypeNode* getArrayDatatypeNode(const DtString& name);
    virtual NodeList<DtArrayDatatypeNode>::iterator getArrayDatatypeNodeList();
    virtual NodeList<DtArrayDatatypeNode>::iterator getArrayDatatypeEndNode();

    /// Enumerated datatypes.
    virtual void addEnumeratedDatatypeNode(DtEnumeratedDatatypeNode* node);
    virtual DtEnumeratedDatatypeNode* getEnumeratedDatatypeNode(const DtString& name);
    virtual NodeList<DtEnumeratedDatatypeNode>::iterator getEnumeratedDatatypeNodeList();
    virtual NodeList<DtEnumeratedDatatypeNode>::iterator getEnumeratedDatatypeEndNode();

    /// Notes, found by the number that their label begins with or by the whole label.
    virtual void addNoteNode(DtNoteNode* node);
    virtual DtNoteNode* getNoteNode(int number);
    virtual DtNoteNode* getNoteNode(DtString label);
    virtual NodeList<DtNoteNode>::iterator getNoteNodeList();
    virtual NodeList<DtNoteNode>::iterator getNoteEndNode();

    /// Update rates.
    virtual void addUpdateRateNode(DtUpdateRateNode* node);
    virtual DtUpdateRateNode* getUpdateRateNode(const DtString& name);
    virtual NodeList<DtUpdateRateNode>::iterator getUpdateRateNodeList();
    virtual NodeList<DtUpdateRateNode>::iterator getUpdateRateEndNode();

    /// The root of the object class hierarchy; null until set.
    virtual void setObjectClassRoot(DtObjectClassFedNode* root) { myObjectClassRoot = root; }
    virtual DtObjectClassFedNode* objectClassRoot() { return myObjectClassRoot; }

    /// All object classes, the root included, in one list; the hierarchy is in the classes.
    virtual void addObjectClassNode(DtObjectClassFedNode* node);
    /// The class of a full name such as "HLAobjectRoot.A.B"; the root for the empty name.
    ///
    /// With a root the search goes down from it and a class is never found by its own name alone;
    /// without one it goes through the list and compares full names.
    virtual DtObjectClassFedNode* getObjectClassNode(const DtString& name);
    virtual DtObjectClassFedNode* getObjectClassNodeByID(int identifier);
    virtual NodeList<DtObjectClassFedNode>::iterator getObjectClassNodeBegin();
    virtual NodeList<DtObjectClassFedNode>::iterator getObjectClassNodeEnd();
    virtual NodeList<DtObjectClassFedNode>::reverse_iterator getObjectClassNodeRBegin();
    virtual NodeList<DtObjectClassFedNode>::reverse_iterator getObjectClassNodeREnd();

    /// The root of the interaction class hierarchy; null until set.
    virtual void setInteractionClassRoot(DtInteractionClassFedNode* root)
    {
        myInteractionClassRoot = root;
    }
    virtual DtInteractionClassFedNode* interactionClassRoot() { return myInteractionClassRoot; }

    /// All interaction classes, the root included, in one list; the hierarchy is in the classes.
    virtual void addInteractionClassNode(DtInteractionClassFedNode* node);
    /// The class of a full name such as "HLAinteractionRoot.A.B"; the root for the empty name.
    ///
    /// With a root the search goes down from it and a class is never found by its own name alone;
    /// without one it goes through the list and compares full names.
    virtual DtInteractionClassFedNode* getInteractionClassNode(const DtString& name);
    virtual DtInteractionClassFedNode* getInteractionClassNodeByID(int identifier);
    virtual NodeList<DtInteractionClassFedNode>::iterator getInteractionClassNodeBegin();
    virtual NodeList<DtInteractionClassFedNode>::iterator getInteractionClassNodeEnd();
    virtual NodeList<DtInteractionClassFedNode>::reverse_iterator getInteractionClassNodeRBegin();
    virtual NodeList<DtInteractionClassFedNode>::reverse_iterator getInteractionClassNodeREnd();

    /// Switches. The tree does not delete them, see deleteAuxiliaryTables().
    virtual void addSwitchNode(DtBoolAttrNode* node);
    virtual DtBoolAttrNode* getSwitchNode(const DtString& name);
    virtual NodeList<DtBoolAttrNode>::iterator getSwitchNodeList();
    virtual NodeList<DtBoolAttrNode>::iterator getSwitchEndNode();

    /// Transportation types.
    virtual void addTransportationNode(DtDescriptionNode* node);
    virtual DtDescriptionNode* getTransportationNode(const DtString& name);
    virtual NodeList<DtDescriptionNode>::iterator getTransportationNodeList();
    virtual NodeList<DtDescriptionNode>::iterator getTransportationEndNode();

    /// Dimensions. The tree does not delete them, see deleteAuxiliaryTables().
    virtual void addDimensionNode(DtDimensionNode* node);
    virtual DtDimensionNode* getDimensionNode(const DtString& name);
    virtual NodeList<DtDimensionNode>::iterator getDimensionNodeList();
    virtual NodeList<DtDimensionNode>::iterator getDimensionEndNode();

    /// Synchronization points. The tree does not delete them, see deleteAuxiliaryTables().
    virtual void addSynchroNode(DtSynchroNode* node);
    virtual DtSynchroNode* getSynchroNode(const DtString& name);
    virtual NodeList<DtSynchroNode>::iterator getSynchroNodeList();
    virtual NodeList<DtSynchroNode>::iterator getSynchroEndNode();

    /// User-supplied tags. The tree does not delete them, see deleteAuxiliaryTables().
    virtual void addTagNode(DtTagNode* node);
    virtual DtTagNode* getTagNode(const DtString& name);
    virtual NodeList<DtTagNode>::iterator getTagNodeList();
    virtual NodeList<DtTagNode>::iterator getTagEndNode();

    /// The time representation; made when first asked for, so never null.
    virtual DtTimeRepNode* getTimeRepNode();

    /// Takes over from another tree, by copying, what this one does not have yet.
    ///
    /// What is here already stays as it is, and nothing is said about it. The other tree is not
    /// changed, and nothing in this one refers to it afterwards. Where a class cannot be merged, as
    /// memory is short, the exception leaves the classes of that hierarchy as they were.
    virtual void merge(DtOMTTree* source);
    /// Merges one class with all below it, by full name; gives the new class, or null if there was
    /// one already. A class that has attributes (parameters) here keeps exactly those. A host's
    /// operation is called for the classes of the first 100 levels; deeper ones go with them.
    virtual DtObjectClassFedNode* mergeObjectNode(const DtObjectClassFedNode& source);
    virtual DtInteractionClassFedNode* mergeInteractionNode(
        const DtInteractionClassFedNode& source);
    /// Notes the name of the other model as a "Composed_From" reference, in a 1516-2010 tree only.
    virtual void mergeModelIdentification(DtOMTTree* source);
    virtual void mergeObjects(DtOMTTree* source);
    virtual void mergeInteractions(DtOMTTree* source);
    virtual void mergeDatatypes(DtOMTTree* source);
    virtual void mergeDimensions(DtOMTTree* source);
    /// By label; notes are not renumbered.
    virtual void mergeNotes(DtOMTTree* source);
    virtual void mergeSyncPoints(DtOMTTree* source);
    virtual void mergeTransportations(DtOMTTree* source);
    virtual void mergeUpdateRates(DtOMTTree* source);
    virtual void mergeTags(DtOMTTree* source);
    virtual void mergeSwitches(DtOMTTree* source);

    /// Works out every value that is otherwise worked out when first asked for, so that from now on
    /// reading changes nothing and any number of threads may read at once. To be called again after
    /// a change, which needs the tree for itself. A full name of more than 1,024 octets is still
    /// put together when first asked for, by whichever threads ask.
    void prepareForSharing();

    /// Deletes the switches, dimensions, synchronization points and tags, and empties their tables.
    void deleteAuxiliaryTables();

private:
    friend struct omtreader::Hierarchy<DtObjectClassFedNode>;
    friend struct omtreader::Hierarchy<DtInteractionClassFedNode>;

    NodeList<DtNoteNode> myNotes;
    NodeList<DtObjectClassFedNode> myObjectClasses;
    NodeList<DtInteractionClassFedNode> myInteractionClasses;
    NodeList<DtComplexDatatypeNode> myComplexDatatypes;
    NodeList<DtEnumeratedDatatypeNode> myEnumeratedDatatypes;
    NodeList<DtBasicDataRepresentationNode> myBasicDataRepresentations;
    NodeList<DtSimpleDatatypeNode> mySimpleDatatypes;
    NodeList<DtArrayDatatypeNode> myArrayDatatypes;
    NodeList<DtFixedDatatypeNode> myFixedDatatypes;
    NodeList<DtVariantDatatypeNode> myVariantDatatypes;
    NodeList<DtBoolAttrNode> mySwitches;
    NodeList<DtDescriptionNode> myTransportations;
    NodeList<DtDimensionNode> myDimensions;
    NodeList<DtSynchroNode> mySynchros;
    NodeList<DtTagNode> myTags;
    NodeList<DtUpdateRateNode> myUpdateRates;
    DtTimeRepNode* myTimeRep = nullptr;
    DtObjectClassFedNode* myObjectClassRoot = nullptr;
    DtInteractionClassFedNode* myInteractionClassRoot = nullptr;
    DtString myName;
    DtString myVersionNo;
    DtString myType;
    DtString myPurpose;
    DtString myApplicationDomain;
    DtString mySponsorOrgName;
    DtString myModificationDate;
    DtString mySecurityClassification;
    DtString myReleaseRestriction;
    DtString myDescription;
    DtString myMOMVersion;
    DtString myReference;
    DtString myOther;
    DtString myUseLimitation;
    DtString myUseHistory;
    POCList myPOCs;
    ReferenceList myReferences;
    DtHLAProtocolVersion myHlaVersion = DtHlaUnset;

    // Only while classes are being merged; not owned.
    omtreader::ClassMerge<DtObjectClassFedNode>* myObjectMerge = nullptr;
    omtreader::ClassMerge<DtInteractionClassFedNode>* myInteractionMerge = nullptr;
};
