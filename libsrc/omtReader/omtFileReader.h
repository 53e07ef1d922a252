// SPDX-License-Identifier: Apache-2.0
// Reads object models in the HLA 1.3 data interchange format.
#pragma once

#include "omtReader/omtReadException.h"

class DtAttributeFedNode;
class DtComplexComponentNode;
class DtEnumerationNode;
class DtExerciseConn;  // a host's own; it is never looked into, and may be null
class DtInteractionClassFedNode;
class DtlObjPtr;
class DtObjectClassFedNode;
class DtOMTTree;
class DtParameterFedNode;

/// Turns a file in the OMT data interchange format (DIF) of HLA 1.3 into an object model tree.
///
/// A file is a sequence of s-expressions. The one that counts is the list (ObjectModel ...), whose
/// elements are clauses: lists of a keyword and a value, such as (Name "Tug"), or of a keyword and
/// further clauses, such as (Class (ID 1) (Name "Tug")). Unknown keywords are passed over.
///
/// Unlike the readers of XML this one is strict. The first malformed clause ends the read with a
/// DtOMTReadException; there is no partial tree. Keywords are compared exactly.
///
/// There is a handler for each kind of clause, and a host may override any. One that is named after
/// a text takes a clause and sets that property of the tree when the value is a string. One for a
/// definition adds a new node to the tree. The four that read a part of a definition take the
/// clause without its keyword, and give a new node that is the caller's.
///
/// A reader may read several files in turn. Readers on different threads do not disturb each other.
class OMTREADER_EXPORT DtOMTFileReader
{
public:
    DtOMTFileReader();
    DtOMTFileReader(const DtOMTFileReader&) = delete;
    DtOMTFileReader& operator=(const DtOMTFileReader&) = delete;
    virtual ~DtOMTFileReader();

    /// A new tree, which is the caller's; never null. Throws DtOMTReadException when the file
    /// cannot be read or is no model.
    ///
    /// The connection may be null; it is not owned and only tells whether handles are set up.
    /// Strings are read with backslash escapes; DtSexpReadEscapeChar is set back to null
    /// after a read that succeeds, and stays set after one that does not.
    virtual DtOMTTree* readFile(const DtString& fileName, DtExerciseConn* connection);

    /// The text of the last exception; empty until the first, and again after clearLastError().
    virtual const DtString& getLastError() { return myLastError; }
    virtual void clearLastError() { myLastError = DtString(); }

    /// A new tree, which is the caller's, of the clauses after the symbol ObjectModel. Throws
    /// DtOMTReadException.
    virtual DtOMTTree* processObjectModel(DtlObjPtr& clauses);

    // The identification of the model. A value that is no string is ignored silently.
    virtual void processName(DtlObjPtr& clause, DtOMTTree* tree);
    virtual void processVersionNo(DtlObjPtr& clause, DtOMTTree* tree);
    virtual void processType(DtlObjPtr& clause, DtOMTTree* tree);
    virtual void processPurpose(DtlObjPtr& clause, DtOMTTree* tree);
    virtual void processApplicationDomain(DtlObjPtr& clause, DtOMTTree* tree);
    virtual void processSponsorOrgName(DtlObjPtr& clause, DtOMTTree* tree);
    virtual void processModificationDate(DtlObjPtr& clause, DtOMTTree* tree);
    virtual void processMOMVersion(DtlObjPtr& clause, DtOMTTree* tree);

    // Definitions. Each throws DtOMTReadException for a clause of the wrong shape.
    virtual void processComplexDataType(DtlObjPtr& clause, DtOMTTree* tree);
    virtual void processEnumeratedDataType(DtlObjPtr& clause, DtOMTTree* tree);
    virtual void processNote(DtlObjPtr& clause, DtOMTTree* tree);
    virtual void processObjectClass(DtlObjPtr& clause, DtOMTTree* tree);
    virtual void processInteractionClass(DtlObjPtr& clause, DtOMTTree* tree);

    /// Links the classes by their identifiers, under a new root "ObjectRoot" with identifier 0;
    /// does nothing for a tree that has a root.
    ///
    /// A class without a parent identifier, or with one that no class has, goes under the root. So
    /// does, with a warning, one that would become its own ancestor. Classes may stand at any
    /// depth; a document of the XML formats can be read again down to about 250 levels.
    virtual void buildObjectClassTree(DtOMTTree* tree);
    /// As above, under "InteractionRoot".
    virtual void buildInteractionClassTree(DtOMTTree* tree);

    // Both assign nothing: a 1.3 model has no handles.
    virtual void setAttributeHandles(DtObjectClassFedNode* node);
    virtual void setParameterHandles(DtInteractionClassFedNode* node);

    DtComplexComponentNode* processComplexComponent(DtlObjPtr& clauses);
    DtEnumerationNode* processEnumeration(DtlObjPtr& clauses);
    DtAttributeFedNode* processAttribute(DtlObjPtr& clauses);
    DtParameterFedNode* processParameter(DtlObjPtr& clauses);

private:
    DtString myLastError;
    DtExerciseConn* myConnection = nullptr;
};
