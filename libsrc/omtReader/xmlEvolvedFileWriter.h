// SPDX-License-Identifier: Apache-2.0
// Writes object models in the IEEE 1516-2010 XML format.
#pragma once

#include "util/dtString.h"

#include <cstddef>
#include <list>

class DtAlternativeComponentNode;
class DtArrayDatatypeNode;
class DtAttributeFedNode;
class DtBasicDataRepresentationNode;
class DtBoolAttrNode;
class DtDescriptionNode;
class DtDimensionNode;
class DtEnumeratedDatatypeNode;
class DtEnumerationNode;
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
struct DtOMTTreePOC;
struct DtOMTTreeReference;
struct _xmlBuffer;
struct _xmlTextWriter;

/// Writes a tree as a 1516-2010 ("HLA Evolved") document, whatever version of HLA it comes from.
///
/// The document is well-formed whatever the texts of the tree hold. XML 1.0 has no place for some
/// characters: a control character is written as U+FFFD, an octet that is not UTF-8 as the Latin-1
/// character of its value. In the names of tags and switches, which become names of elements, "_"
/// stands for what such a name may not hold. One warning counts the texts that were changed.
///
/// An entry that is empty is left out. These are never written: points of contact, the
/// use history, what only older formats have (sponsor, MOM version, complex datatypes, accuracy and
/// cardinality of attributes and parameters), encoding and semantics of variant records, semantics
/// of their alternatives, and classes that are not below the root. The name of the model has "Valid
/// FDD" after it. The datatype of a synchronization point is written in an element "datatype", a
/// word that the reader does not know.
///
/// What fails is printed to standard error, and never ends a write early.
class OMTREADER_EXPORT DtXMLEvolvedFileWriter
{
public:
    /// The tree is not owned and has to live as long as it is written.
    explicit DtXMLEvolvedFileWriter(DtOMTTree* tree);
    DtXMLEvolvedFileWriter(const DtXMLEvolvedFileWriter&) = delete;
    DtXMLEvolvedFileWriter& operator=(const DtXMLEvolvedFileWriter&) = delete;
    virtual ~DtXMLEvolvedFileWriter();

    /// Writes the document, indented, to a file, which is replaced if it is there, whole or not at
    /// all, see DtWriteWholeFile(). The name may be a "file:" URI, and "-" is standard output.
    /// There is no result to test: a host that has to know reads the file again.
    void writeFile(const char* fileName);

    /// The document in UTF-8, all elements on one line; what could be written if something fails.
    DtString writeString();

    /// The document in UTF-8 as writeFile() puts it into a file.
    DtString writeIndentedString();

    // Of the element writers these are for hosts that derive a writer; outside of a write they do
    // nothing.
    /// The type of the model.
    void writeType();
    /// Writes nothing: a document has no points of contact, because none ever had.
    void writePOCs();
    /// One point of contact, whose name is written in one piece.
    void writePOC(const DtOMTTreePOC& contact);

private:
    void writeDocument(_xmlBuffer& buffer);
    void writeAllXMLInformation();

    // One for each element that has more in it than a text; those of a table are written in the
    // order of the tree.
    void writeModelIdentification();
    void writeName();
    void writeReference(const DtOMTTreeReference& reference);
    void writeObjectClass(DtObjectClassFedNode* node);
    void startObjectClass(DtObjectClassFedNode* node);
    void writeAttribute(DtAttributeFedNode* node);
    void writeInteractionClass(DtInteractionClassFedNode* node);
    void startInteractionClass(DtInteractionClassFedNode* node);
    void writeParameter(DtParameterFedNode* node);
    void writeDimensionNames(const std::list<DtString>& names);
    void writeDimension(DtDimensionNode* node);
    void writeTime();
    void writeTag(DtTagNode* node);
    void writeSynchronization(DtSynchroNode* node);
    void writeTransportation(DtDescriptionNode* node);
    void writeSwitch(DtBoolAttrNode* node);
    void writeUpdateRate(DtUpdateRateNode* node);
    void writeDatatypes();
    void writeBasicData(DtBasicDataRepresentationNode* node);
    void writeSimpleData(DtSimpleDatatypeNode* node);
    void writeEnumeratedData(DtEnumeratedDatatypeNode* node);
    void writeEnumerator(DtEnumerationNode* node);
    void writeArrayData(DtArrayDatatypeNode* node);
    void writeFixedRecordData(DtFixedDatatypeNode* node);
    void writeField(DtFieldComponentNode* node);
    void writeVariantRecordData(DtVariantDatatypeNode* node);
    void writeAlternative(DtAlternativeComponentNode* node);
    void writeNote(DtNoteNode* node);
    /// The note of a node as the XML attribute "notes" of the element that was just started.
    void writeEmbeddedNote(const DtOMTNode& node);

    // What all of them are made of. Texts are made fit for XML here and nowhere else.
    void startElement(const char* name);
    void startElementNamedAfter(const DtOMTNode& node);
    void endElement();
    void writeXmlAttribute(const char* name, const DtString& text);
    void writeText(const DtString& text);
    void writeElement(const char* name, const DtString& text);
    /// Writes nothing for an empty text.
    void writeElementWithText(const DtString& tag, const DtString& text);
    template <typename Write>
    void withXmlText(const DtString& text, Write write);
    template <typename Node, typename Rows>
    void writeTexts(Node& node, const Rows& rows);
    template <typename Node, typename Rows>
    void writeNode(const char* name, Node& node, const Rows& rows);
    template <typename Class>
    void writeClasses(Class* top, void (DtXMLEvolvedFileWriter::*start)(Class*));
    template <typename Iterator, typename Node>
    void writeEach(Iterator begin, Iterator end, void (DtXMLEvolvedFileWriter::*write)(Node*));
    template <typename Iterator, typename Node>
    void writeSection(const char* name, Iterator begin, Iterator end,
                      void (DtXMLEvolvedFileWriter::*write)(Node*));

    DtOMTTree* myTree;
    _xmlTextWriter* myWriter = nullptr;  // while a document is written
    std::size_t myChangedTexts = 0;      // in this document
};
