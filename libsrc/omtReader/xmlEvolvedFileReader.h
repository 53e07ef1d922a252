// SPDX-License-Identifier: Apache-2.0
// Reads object models in the IEEE 1516-2010 XML format.
#pragma once

#include "util/dtString.h"

class DtAlternativeComponentNode;
class DtArrayDatatypeNode;
class DtAttributeFedNode;
class DtBasicDataRepresentationNode;
class DtBoolAttrNode;
class DtDescriptionNode;
class DtDimensionNode;
class DtEnumeratedDatatypeNode;
class DtEnumerationNode;
class DtExerciseConn;  // a host's own; it is never looked into, and may be null
class DtFieldComponentNode;
class DtFixedDatatypeNode;
class DtInteractionClassFedNode;
class DtNoteNode;
class DtObjectClassFedNode;
class DtOMTNode;
class DtOMTTree;
class DtParameterFedNode;
class DtSimpleDatatypeNode;
class DtSynchroNode;
class DtTagNode;
class DtUpdateRateNode;
class DtVariantDatatypeNode;
struct _xmlAttr;
struct _xmlNode;

/// Turns the element tree of a 1516-2010 ("HLA Evolved") document into an object model tree.
///
/// A translator and no judge: texts go into the tree as they stand. What is wrong is a warning, the
/// definition concerned is dropped, and a read always gives a tree.
///
/// There is one handler for each element of the format, and a host may override any. A handler gets
/// the element by reference, may move that reference ahead, and fills the tree it is given. One
/// that reads a definition gives the new node, which then belongs to the tree or to the node it was
/// added to, or null when the definition was dropped.
class OMTREADER_EXPORT DtXMLEvolvedFileReader
{
public:
    /// The connection may be null; it is not owned and only tells whether handles are set up.
    explicit DtXMLEvolvedFileReader(DtExerciseConn* connection);
    DtXMLEvolvedFileReader(const DtXMLEvolvedFileReader&) = delete;
    DtXMLEvolvedFileReader& operator=(const DtXMLEvolvedFileReader&) = delete;
    virtual ~DtXMLEvolvedFileReader();

    /// Always empty: this reader warns and goes on.
    virtual const DtString& getLastError() { return myLastError; }
    virtual void clearLastError() { myLastError = DtString(); }

    /// A new tree, which is the caller's, of the element "objectModel" and all below; never null.
    virtual DtOMTTree* processObjectModel(_xmlNode*& root);

    // The identification of the model. The three that take an XML attribute are there for hosts: on
    // purpose nothing in this format is handed to them.
    virtual void processName(_xmlNode*& element, DtOMTTree* tree);
    virtual void processVersionNo(_xmlNode*& element, DtOMTTree* tree);
    virtual void processType(_xmlNode*& element, DtOMTTree* tree);
    virtual void processPurpose(_xmlNode*& element, DtOMTTree* tree);
    virtual void processUseLimitation(_xmlNode*& element, DtOMTTree* tree);
    virtual void processUseHistory(_xmlNode*& element, DtOMTTree* tree);
    virtual void processApplicationDomain(_xmlNode*& element, DtOMTTree* tree);
    virtual void processSponsorOrgName(_xmlAttr*& attribute, DtOMTTree* tree);
    virtual void processModificationDate(_xmlNode*& element, DtOMTTree* tree);
    virtual void processSecurityClassification(_xmlNode*& element, DtOMTTree* tree);
    virtual void processReleaseRestriction(_xmlNode*& element, DtOMTTree* tree);
    virtual void processDescription(_xmlNode*& element, DtOMTTree* tree);
    /// Adds a reference when the children "type" and "identification" are both there.
    virtual void processReference(_xmlAttr*& attribute, DtOMTTree* tree);
    virtual void processOther(_xmlAttr*& attribute, DtOMTTree* tree);

    // Classes. Kept for compatibility: a parameter adds itself to the class it is given (none if
    // null), while an attribute is only returned, for the caller to add.
    virtual void processInteractions(_xmlNode*& element, DtOMTTree* tree);
    virtual DtInteractionClassFedNode* processInteractionClass(_xmlNode*& element, DtOMTTree* tree);
    virtual DtAttributeFedNode* processAttribute(_xmlNode*& element, DtObjectClassFedNode* owner);
    virtual DtParameterFedNode* processParameter(_xmlNode*& element,
                                                 DtInteractionClassFedNode* owner);
    virtual void processObjects(_xmlNode*& element, DtOMTTree* tree);
    /// Classes enter the tree's list after all that are nested in them; the root comes last.
    virtual DtObjectClassFedNode* processObjectClass(_xmlNode*& element, DtOMTTree* tree);

    virtual void processNotes(_xmlNode*& element, DtOMTTree* tree);
    virtual DtNoteNode* processNote(_xmlNode*& element, DtOMTTree* tree);
    virtual void processUpdateRates(_xmlNode*& element, DtOMTTree* tree);
    virtual DtUpdateRateNode* processUpdateRate(_xmlNode*& element, DtOMTTree* tree);

    // Datatypes. Fields, alternatives and enumerators are returned, for the caller to add.
    virtual void processDatatypes(_xmlNode*& element, DtOMTTree* tree);
    virtual void processSimpleDatatypes(_xmlNode*& element, DtOMTTree* tree);
    virtual DtSimpleDatatypeNode* processSimpleData(_xmlNode*& element, DtOMTTree* tree);
    virtual void processArrayDatatypes(_xmlNode*& element, DtOMTTree* tree);
    virtual DtArrayDatatypeNode* processArrayData(_xmlNode*& element, DtOMTTree* tree);
    virtual void processFixedDatatypes(_xmlNode*& element, DtOMTTree* tree);
    virtual DtFixedDatatypeNode* processFixedData(_xmlNode*& element, DtOMTTree* tree);
    virtual DtFieldComponentNode* processField(_xmlNode*& element);
    virtual void processBasicDataReps(_xmlNode*& element, DtOMTTree* tree);
    virtual DtBasicDataRepresentationNode* processBasicDataRep(_xmlNode*& element, DtOMTTree* tree);
    virtual void processVariantDatatypes(_xmlNode*& element, DtOMTTree* tree);
    virtual DtVariantDatatypeNode* processVariantData(_xmlNode*& element, DtOMTTree* tree);
    virtual DtAlternativeComponentNode* processAlternative(_xmlNode*& element);
    virtual DtEnumeratedDatatypeNode* processEnumeratedDatatype(_xmlNode*& element,
                                                                DtOMTTree* tree);
    virtual DtEnumerationNode* processEnumeration(_xmlNode*& element);
    virtual void processEnumerations(_xmlNode*& element, DtOMTTree* tree);

    // The other tables.
    virtual void processSwitches(_xmlNode*& element, DtOMTTree* tree);
    /// Adds the switch once for each XML attribute of its element, kept for compatibility: the same
    /// node twice for two, and none at all, hence null, without any.
    virtual DtBoolAttrNode* processSwitch(_xmlNode*& element, DtOMTTree* tree);
    virtual void processDimensions(_xmlNode*& element, DtOMTTree* tree);
    virtual DtDimensionNode* processDimension(_xmlNode*& element, DtOMTTree* tree);
    virtual void processTimeRepresentation(_xmlNode*& element, DtOMTTree* tree);
    virtual void processSynchronizations(_xmlNode*& element, DtOMTTree* tree);
    virtual DtSynchroNode* processSynchronization(_xmlNode*& element, DtOMTTree* tree);
    /// Every child but text becomes a tag named after it, a comment too.
    virtual void processTags(_xmlNode*& element, DtOMTTree* tree);
    virtual DtTagNode* processTag(_xmlNode*& element, DtOMTTree* tree);
    virtual void processTransportations(_xmlNode*& element, DtOMTTree* tree);
    virtual DtDescriptionNode* processTransportation(_xmlNode*& element, DtOMTTree* tree);
    virtual void processModelIdentification(_xmlNode*& element, DtOMTTree* tree);
    virtual void processPoc(_xmlNode*& element, DtOMTTree* tree);
    /// Takes the note of a node from XML attributes named "note". Kept for compatibility: not
    /// "notes", which is what the standard's documents have, and for dimensions only.
    virtual void processEmbeddedNote(_xmlNode*& element, DtOMTNode* node);

    /// The text of an XML attribute or an element: that of its first child, empty without one. What
    /// a comment or an entity cuts in two is not joined.
    virtual DtString childNodeString(_xmlAttr*& attribute);
    virtual DtString childNodeString(_xmlNode*& element);

    /// Visits every class for its handles, if there is a connection. What is thrown for one class
    /// does not keep it from the next.
    void initializeHandles(DtOMTTree* tree);
    // Both assign nothing: identifiers stay as the nodes were made with.
    void setAttributeHandles(DtObjectClassFedNode* node);
    void setParameterHandles(DtInteractionClassFedNode* node);

private:
    DtString myLastError;
    DtExerciseConn* myConnection;
};
