// SPDX-License-Identifier: Apache-2.0
// Grammar: the element names of IEEE 1516.2-2010, in an order and with omissions of its own. What
// is written of each node is in xmlEvolvedRows.h; here are the elements around it.
#include "omtReader/xmlEvolvedFileWriter.h"

#include "omtReader/boolAttrNode.h"
#include "omtReader/formats/xmlDocument.h"
#include "omtReader/formats/xmlEvolvedRows.h"
#include "omtReader/formats/xmlText.h"
#include "omtReader/hierarchy.h"
#include "util/dtMessages.h"
#include "util/dtWholeFile.h"

#include <libxml/parser.h>
#include <libxml/uri.h>
#include <libxml/xmlwriter.h>

#include <cstdio>
#include <cstring>
#include <limits>
#include <list>
#include <memory>
#include <new>
#include <string>
#include <unordered_set>
#include <vector>

namespace
{

using namespace omtreader::evolved;

constexpr char theNamespace[] = "http://standards.ieee.org/IEEE1516-2010";
constexpr char theInstanceNamespace[] = "http://www.w3.org/2001/XMLSchema-instance";
constexpr char theSchemaLocation[] =
    "http://standards.ieee.org/IEEE1516-2010 "
    "http://standards.ieee.org/downloads/1516/1516.1-2010/IEEE1516-FDD-2010.xsd";

struct FreeXmlBuffer
{
    void operator()(xmlBuffer* buffer) const { xmlBufferFree(buffer); }
};
using XmlBuffer = std::unique_ptr<xmlBuffer, FreeXmlBuffer>;

struct FreeTextWriter
{
    void operator()(xmlTextWriter* writer) const { xmlFreeTextWriter(writer); }
};

/// A buffer that grows by its own size, so that writing takes a time in proportion to the document.
XmlBuffer newBuffer()
{
    XmlBuffer buffer(xmlBufferCreate());
    if (buffer) xmlBufferSetAllocationScheme(buffer.get(), XML_BUFFER_ALLOC_DOUBLEIT);
    return buffer;
}

DtString textIn(const xmlBuffer& buffer)
{
    const char* const text = reinterpret_cast<const char*>(xmlBufferContent(&buffer));
    return std::string_view(text, static_cast<std::size_t>(xmlBufferLength(&buffer)));
}

const xmlChar* xmlChars(const char* text)
{
    return reinterpret_cast<const xmlChar*>(text);
}

/// Problems go straight to standard error, as programs expect, and not to a sink of messages.
void report(const char* problem)
{
    std::fputs(problem, stderr);
}

/// Reports an operation of the text writer that gave a negative result.
void check(int result, const char* problem)
{
    if (result < 0) report(problem);
}

/// The document, indented; as it is where that fails. It is our own, so libxml2's limits for
/// foreign ones do not hold for it.
DtString indented(const DtString& text)
{
    constexpr int theOptions =
        XML_PARSE_HUGE | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
    if (text.length() > std::size_t{std::numeric_limits<int>::max()}) return text;
    const int length = static_cast<int>(text.length());
    const omtreader::XmlDocument document(
        xmlReadMemory(text.c_str(), length, nullptr, "utf-8", theOptions));
    if (!document) return text;

    xmlChar* octets = nullptr;
    int indentedLength = 0;
    xmlDocDumpFormatMemoryEnc(document.get(), &octets, &indentedLength, "utf-8", 1);
    if (!octets) return text;
    const DtString result =
        std::string(reinterpret_cast<char*>(octets), static_cast<std::size_t>(indentedLength));
    xmlFree(octets);
    return result;
}

/// The path that a name stands for: it may be a "file:" URI, as with libxml2.
std::string pathOf(const char* name)
{
    const std::string_view whole = name;
    for (const std::string_view head : {"file://localhost/", "file:///", "file:/"})
    {
        if (whole.substr(0, head.size()) != head) continue;
        char* const path = xmlURIUnescapeString(name + head.size() - 1, 0, nullptr);
        if (!path) throw std::bad_alloc();
        const std::unique_ptr<char, decltype(xmlFree)> owner(path, xmlFree);
        return path;
    }
    return name;
}

/// "-" is standard output.
bool writeTo(const char* name, const DtString& text)
{
    if (!name) return false;
    if (std::strcmp(name, "-") != 0) return !DtWriteWholeFile(pathOf(name), text.view());
    const bool isWritten = std::fwrite(text.c_str(), 1, text.length(), stdout) == text.length();
    return std::fflush(stdout) == 0 && isWritten;
}

}  // namespace

/// Calls `write` with the text as XML can hold it.
template <typename Write>
void DtXMLEvolvedFileWriter::withXmlText(const DtString& text, Write write)
{
    if (omtreader::isXmlText(text.view())) return write(xmlChars(text.c_str()));
    ++myChangedTexts;
    write(xmlChars(omtreader::toXmlText(text.view()).c_str()));
}

template <typename Node, typename Rows>
void DtXMLEvolvedFileWriter::writeTexts(Node& node, const Rows& rows)
{
    for (const auto& row : rows)
    {
        if (row.isAlways)
            writeElement(row.element, row.text(node));
        else
            writeElementWithText(row.element, row.text(node));
    }
}

template <typename Node, typename Rows>
void DtXMLEvolvedFileWriter::writeNode(const char* name, Node& node, const Rows& rows)
{
    startElement(name);
    writeTexts(node, rows);
    endElement();
}

template <typename Iterator, typename Node>
void DtXMLEvolvedFileWriter::writeEach(Iterator begin, Iterator end,
                                       void (DtXMLEvolvedFileWriter::*write)(Node*))
{
    for (; begin != end; ++begin) (this->*write)(*begin);
}

template <typename Iterator, typename Node>
void DtXMLEvolvedFileWriter::writeSection(const char* name, Iterator begin, Iterator end,
                                          void (DtXMLEvolvedFileWriter::*write)(Node*))
{
    startElement(name);
    writeEach(begin, end, write);
    endElement();
}

/// Writes a class and all below it; `start` writes what is before the child classes. The way down
/// takes no stack, as classes may stand at any depth. A class that stands below itself is passed
/// over there.
template <typename Class>
void DtXMLEvolvedFileWriter::writeClasses(Class* top, void (DtXMLEvolvedFileWriter::*start)(Class*))
{
    using H = omtreader::Hierarchy<Class>;
    struct Level
    {
        Class* node;
        typename std::list<Class*>::const_iterator next;
    };
    std::vector<Level> levels;
    std::unordered_set<const Class*> open;
    const auto enter = [&](Class* node)
    {
        if (!open.insert(node).second)
        {
            DtWarn << "Warning: class \"" << node->getName()
                   << "\" stands below itself; it was not written again there\n";
            return;
        }
        (this->*start)(node);
        levels.push_back({node, H::children(*node).begin()});
    };
    for (enter(top); !levels.empty();)
    {
        Level& level = levels.back();
        if (level.next != H::children(*level.node).end())
        {
            enter(*level.next++);
            continue;
        }
        open.erase(level.node);
        levels.pop_back();
        endElement();
    }
}

DtXMLEvolvedFileWriter::DtXMLEvolvedFileWriter(DtOMTTree* tree) : myTree(tree) {}
DtXMLEvolvedFileWriter::~DtXMLEvolvedFileWriter() = default;

void DtXMLEvolvedFileWriter::writeFile(const char* fileName)
{
    if (!writeTo(fileName, writeIndentedString())) report("Error at xmlSaveFormatFileEnc\n");
}

DtString DtXMLEvolvedFileWriter::writeString()
{
    omtreader::startXmlLibrary();
    const XmlBuffer buffer = newBuffer();
    if (!buffer)
    {
        std::puts("testXmlwriterMemory: Error creating the xml buffer");
        return DtString();
    }
    writeDocument(*buffer);
    return textIn(*buffer);
}

DtString DtXMLEvolvedFileWriter::writeIndentedString()
{
    return indented(writeString());
}

void DtXMLEvolvedFileWriter::writeDocument(xmlBuffer& buffer)
{
    const std::unique_ptr<xmlTextWriter, FreeTextWriter> writer(xmlNewTextWriterMemory(&buffer, 0));
    if (!writer) report("Error creating the xml writer\n");
    myWriter = writer.get();
    myChangedTexts = 0;
    check(xmlTextWriterStartDocument(myWriter, nullptr, "utf-8", nullptr),
          "Error at xmlTextWriterStartDocument\n");
    writeAllXMLInformation();
    myWriter = nullptr;
    if (myChangedTexts > 0)
        DtWarn << "Warning: texts or names with something that XML cannot hold, changed as they "
                  "were written: "
               << myChangedTexts << "\n";
}

void DtXMLEvolvedFileWriter::writeAllXMLInformation()
{
    startElement("objectModel");
    // Kept for compatibility: every document refers to a note "_1", and its identification to a
    // note "_2", whether or not there are such notes.
    writeXmlAttribute("notes", "_1");
    writeXmlAttribute("xmlns", theNamespace);
    writeXmlAttribute("xmlns:xsi", theInstanceNamespace);
    writeXmlAttribute("xsi:schemaLocation", theSchemaLocation);
    writeModelIdentification();

    startElement("objects");
    if (DtObjectClassFedNode* const root = myTree->getObjectClassNode("")) writeObjectClass(root);
    endElement();
    startElement("interactions");
    if (DtInteractionClassFedNode* const root = myTree->getInteractionClassNode(""))
        writeInteractionClass(root);
    endElement();

    using Writer = DtXMLEvolvedFileWriter;
    writeSection("dimensions", myTree->getDimensionNodeList(), myTree->getDimensionEndNode(),
                 &Writer::writeDimension);
    writeTime();
    writeSection("tags", myTree->getTagNodeList(), myTree->getTagEndNode(), &Writer::writeTag);
    writeSection("synchronizations", myTree->getSynchroNodeList(), myTree->getSynchroEndNode(),
                 &Writer::writeSynchronization);
    writeSection("transportations", myTree->getTransportationNodeList(),
                 myTree->getTransportationEndNode(), &Writer::writeTransportation);
    writeSection("switches", myTree->getSwitchNodeList(), myTree->getSwitchEndNode(),
                 &Writer::writeSwitch);
    writeSection("updateRates", myTree->getUpdateRateNodeList(), myTree->getUpdateRateEndNode(),
                 &Writer::writeUpdateRate);
    writeDatatypes();
    writeSection("notes", myTree->getNoteNodeList(), myTree->getNoteEndNode(), &Writer::writeNote);
    check(xmlTextWriterEndDocument(myWriter), "Error at xmlTextWriterEndDocument\n");
}

void DtXMLEvolvedFileWriter::writeModelIdentification()
{
    startElement("modelIdentification");
    writeXmlAttribute("notes", "_2");
    writeName();
    writeType();
    writeTexts(*myTree, theIdentification);  // without the use history, which none ever had
    writePOCs();
    for (const DtOMTTreeReference& reference : myTree->getReferences()) writeReference(reference);
    // Kept for compatibility, because programs know the message: the words are those of the end.
    check(xmlTextWriterEndElement(myWriter), "Error at xmlTextWriterEndDocument\n");
}

/// The name has "Valid FDD" right after it: so one can tell where a document is from.
void DtXMLEvolvedFileWriter::writeName()
{
    startElement("name");
    writeXmlAttribute("notes", "_2");
    writeText(myTree->getName() + "Valid FDD");
    endElement();
}

void DtXMLEvolvedFileWriter::writeType()
{
    writeElementWithText("type", myTree->getType());
}

void DtXMLEvolvedFileWriter::writePOCs() {}

void DtXMLEvolvedFileWriter::writePOC(const DtOMTTreePOC& contact)
{
    DtString name;
    for (const DtString* part : {&contact.honorificName, &contact.firstName, &contact.lastName})
    {
        if (!name.empty() && !part->empty()) name += ' ';
        name += *part;
    }
    startElement("poc");
    writeElementWithText("pocType", contact.type);
    writeElementWithText("pocName", name);
    writeElementWithText("pocOrg", contact.orgName);
    writeElementWithText("pocTelephone", contact.phone);
    writeElementWithText("pocEmail", contact.email);
    endElement();
}

void DtXMLEvolvedFileWriter::writeReference(const DtOMTTreeReference& reference)
{
    startElement("reference");
    writeElementWithText("type", reference.type);
    writeElementWithText("identification", reference.identification);
    endElement();
}

void DtXMLEvolvedFileWriter::startObjectClass(DtObjectClassFedNode* node)
{
    startElement("objectClass");
    writeTexts(*node, theObjectClass);
    for (DtAttributeFedNode* attribute : node->getAttributes()) writeAttribute(attribute);
}

void DtXMLEvolvedFileWriter::writeObjectClass(DtObjectClassFedNode* node)
{
    writeClasses(node, &DtXMLEvolvedFileWriter::startObjectClass);
}

void DtXMLEvolvedFileWriter::writeAttribute(DtAttributeFedNode* node)
{
    startElement("attribute");
    writeTexts(*node, theAttributeHead);
    writeDimensionNames(node->getDimensions());
    writeTexts(*node, theAttributeTail);
    endElement();
}

void DtXMLEvolvedFileWriter::startInteractionClass(DtInteractionClassFedNode* node)
{
    startElement("interactionClass");
    writeTexts(*node, theInteractionClassHead);
    writeDimensionNames(node->getDimensions());
    writeTexts(*node, theInteractionClassTail);
    for (DtParameterFedNode* parameter : node->getParameters()) writeParameter(parameter);
}

void DtXMLEvolvedFileWriter::writeInteractionClass(DtInteractionClassFedNode* node)
{
    writeClasses(node, &DtXMLEvolvedFileWriter::startInteractionClass);
}

void DtXMLEvolvedFileWriter::writeParameter(DtParameterFedNode* node)
{
    writeNode("parameter", *node, theParameter);
}

void DtXMLEvolvedFileWriter::writeDimensionNames(const std::list<DtString>& names)
{
    if (names.empty()) return;
    startElement("dimensions");
    for (const DtString& name : names) writeElementWithText("dimension", name);
    endElement();
}

void DtXMLEvolvedFileWriter::writeDimension(DtDimensionNode* node)
{
    startElement("dimension");
    writeEmbeddedNote(*node);
    writeTexts(*node, theDimension);
    endElement();
}

void DtXMLEvolvedFileWriter::writeTime()
{
    startElement("time");
    writeNode("timeStamp", *myTree->getTimeRepNode(), theTimeStamp);
    writeNode("lookahead", *myTree->getTimeRepNode(), theLookahead);
    endElement();
}

void DtXMLEvolvedFileWriter::writeTag(DtTagNode* node)
{
    startElementNamedAfter(*node);
    writeTexts(*node, theTag);
    endElement();
}

void DtXMLEvolvedFileWriter::writeSynchronization(DtSynchroNode* node)
{
    writeNode("synchronizationPoint", *node, theSynchronization);
}

void DtXMLEvolvedFileWriter::writeTransportation(DtDescriptionNode* node)
{
    writeNode("transportation", *node, theTransportation);
}

void DtXMLEvolvedFileWriter::writeSwitch(DtBoolAttrNode* node)
{
    startElementNamedAfter(*node);
    if (node->getName() == "automaticResignAction")
        writeXmlAttribute("resignAction", node->getNote());
    else
        writeXmlAttribute("isEnabled", node->getEnabled() ? "true" : "false");
    endElement();
}

void DtXMLEvolvedFileWriter::writeUpdateRate(DtUpdateRateNode* node)
{
    startElement("updateRate");
    writeTexts(*node, theUpdateRate);
    writeElementWithText("rate", DtString(node->rate()));
    endElement();
}

void DtXMLEvolvedFileWriter::writeDatatypes()
{
    using Writer = DtXMLEvolvedFileWriter;
    startElement("dataTypes");
    writeSection("basicDataRepresentations", myTree->getBasicDataRepresentationNodeList(),
                 myTree->getBasicDataRepresentationEndNode(), &Writer::writeBasicData);
    writeSection("simpleDataTypes", myTree->getSimpleDatatypeNodeList(),
                 myTree->getSimpleDatatypeEndNode(), &Writer::writeSimpleData);
    writeSection("enumeratedDataTypes", myTree->getEnumeratedDatatypeNodeList(),
                 myTree->getEnumeratedDatatypeEndNode(), &Writer::writeEnumeratedData);
    writeSection("arrayDataTypes", myTree->getArrayDatatypeNodeList(),
                 myTree->getArrayDatatypeEndNode(), &Writer::writeArrayData);
    writeSection("fixedRecordDataTypes", myTree->getFixedDatatypeNodeList(),
                 myTree->getFixedDatatypeEndNode(), &Writer::writeFixedRecordData);
    writeSection("variantRecordDataTypes", myTree->getVariantDatatypeNodeList(),
                 myTree->getVariantDatatypeEndNode(), &Writer::writeVariantRecordData);
    endElement();
}

void DtXMLEvolvedFileWriter::writeBasicData(DtBasicDataRepresentationNode* node)
{
    writeNode("basicData", *node, theBasicData);
}

void DtXMLEvolvedFileWriter::writeSimpleData(DtSimpleDatatypeNode* node)
{
    writeNode("simpleData", *node, theSimpleData);
}

void DtXMLEvolvedFileWriter::writeEnumeratedData(DtEnumeratedDatatypeNode* node)
{
    startElement("enumeratedData");
    writeTexts(*node, theEnumeratedData);
    writeEach(node->getEnumerationNodeList(), node->getEnumerationNodeEnd(),
              &DtXMLEvolvedFileWriter::writeEnumerator);
    endElement();
}

void DtXMLEvolvedFileWriter::writeEnumerator(DtEnumerationNode* node)
{
    startElement("enumerator");
    writeElementWithText("name", node->getEnum());
    writeElementWithText("value", DtString(node->getNumber()));
    endElement();
}

void DtXMLEvolvedFileWriter::writeArrayData(DtArrayDatatypeNode* node)
{
    writeNode("arrayData", *node, theArrayData);
}

void DtXMLEvolvedFileWriter::writeFixedRecordData(DtFixedDatatypeNode* node)
{
    startElement("fixedRecordData");
    writeTexts(*node, theFixedRecord);
    writeEach(node->getComponentNodeList(), node->getComponentNodeEnd(),
              &DtXMLEvolvedFileWriter::writeField);
    endElement();
}

void DtXMLEvolvedFileWriter::writeField(DtFieldComponentNode* node)
{
    writeNode("field", *node, theField);
}

void DtXMLEvolvedFileWriter::writeVariantRecordData(DtVariantDatatypeNode* node)
{
    startElement("variantRecordData");
    writeTexts(*node, theVariantRecord);
    writeEach(node->getComponentNodeList(), node->getComponentNodeEnd(),
              &DtXMLEvolvedFileWriter::writeAlternative);
    endElement();
}

void DtXMLEvolvedFileWriter::writeAlternative(DtAlternativeComponentNode* node)
{
    writeNode("alternative", *node, theAlternative);
}

void DtXMLEvolvedFileWriter::writeNote(DtNoteNode* node)
{
    writeNode("note", *node, theNote);
}

void DtXMLEvolvedFileWriter::writeEmbeddedNote(const DtOMTNode& node)
{
    if (!node.getNote().empty()) writeXmlAttribute("notes", node.getNote());
}

void DtXMLEvolvedFileWriter::startElement(const char* name)
{
    xmlTextWriterStartElement(myWriter, xmlChars(name));
}

void DtXMLEvolvedFileWriter::startElementNamedAfter(const DtOMTNode& node)
{
    const std::string name = omtreader::toXmlName(node.getName().view());
    if (node.getName() != name.c_str()) ++myChangedTexts;
    startElement(name.c_str());
}

void DtXMLEvolvedFileWriter::endElement()
{
    xmlTextWriterEndElement(myWriter);
}

void DtXMLEvolvedFileWriter::writeXmlAttribute(const char* name, const DtString& text)
{
    withXmlText(text, [&](const xmlChar* octets)
                { xmlTextWriterWriteAttribute(myWriter, xmlChars(name), octets); });
}

void DtXMLEvolvedFileWriter::writeText(const DtString& text)
{
    withXmlText(text, [&](const xmlChar* octets) { xmlTextWriterWriteString(myWriter, octets); });
}

void DtXMLEvolvedFileWriter::writeElement(const char* name, const DtString& text)
{
    withXmlText(text, [&](const xmlChar* octets)
                { xmlTextWriterWriteElement(myWriter, xmlChars(name), octets); });
}

void DtXMLEvolvedFileWriter::writeElementWithText(const DtString& tag, const DtString& text)
{
    if (text != DtString::nullString()) writeElement(tag.c_str(), text);
}
