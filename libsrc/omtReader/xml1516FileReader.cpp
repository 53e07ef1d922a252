// SPDX-License-Identifier: Apache-2.0
// Grammar: the names of IEEE 1516.2-2000, with properties in XML attributes and what is nested in
// child elements. The names that this dialect shares with the newer one are in xmlWords.h.
#include "omtReader/xml1516FileReader.h"

#include "omtReader/basicDataRepresentationNode.h"
#include "omtReader/boolAttrNode.h"
#include "omtReader/descriptionNode.h"
#include "omtReader/formats/xmlClassTree.h"
#include "omtReader/formats/xmlWords.h"
#include "omtReader/noteNode.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/textScan.h"

namespace
{

using namespace omtreader;
using Reader = DtXML1516FileReader;

constexpr Section<Reader, xmlAttr> theIdentification[] = {
    {"name",      &Reader::processName             },
    {"type",      &Reader::processType             },
    {"version",   &Reader::processVersionNo        },
    {"date",      &Reader::processModificationDate },
    {"purpose",   &Reader::processPurpose          },
    {"appDomain", &Reader::processApplicationDomain},
    {"sponsor",   &Reader::processSponsorOrgName   },
    {"reference", &Reader::processReference        },
    {"other",     &Reader::processOther            },
};

constexpr ContactSpelling theContactWords[] = {
    {"pocName",  &DtOMTTreePOC::lastName},
    {"pocOrg",   &DtOMTTreePOC::orgName },
    {"pocPhone", &DtOMTTreePOC::phone   },
    {"pocEmail", &DtOMTTreePOC::email   },
};

constexpr Section<Reader, xmlNode> theSections[] = {
    {"objects",          &Reader::processObjects           },
    {"interactions",     &Reader::processInteractions      },
    {"dimensions",       &Reader::processDimensions        },
    {"time",             &Reader::processTimeRepresentation},
    {"tags",             &Reader::processTags              },
    {"synchronizations", &Reader::processSynchronizations  },
    {"transportations",  &Reader::processTransportations   },
    {"switches",         &Reader::processSwitches          },
    {"dataTypes",        &Reader::processDatatypes         },
    {"notes",            &Reader::processNotes             },
};

constexpr Section<Reader, xmlNode> theDatatypeSections[] = {
    {"basicDataRepresentations", &Reader::processBasicDataReps   },
    {"simpleDataTypes",          &Reader::processSimpleDatatypes },
    {"enumeratedDataTypes",      &Reader::processEnumerations    },
    {"arrayDataTypes",           &Reader::processArrayDatatypes  },
    {"fixedRecordDataTypes",     &Reader::processFixedDatatypes  },
    {"variantRecordDataTypes",   &Reader::processVariantDatatypes},
};

// Kept for compatibility: without sharing, transportation, order and dimensions.
constexpr Spelling<DtAttributeFedNode> theAttributeWords[] = {
    {"name", &DtAttributeFedNode::setName, WhenEmpty::drop},
    {"dataType", &DtAttributeFedNode::setDatatype},
    {"updateType", &DtAttributeFedNode::setUpdateType},
    {"updateCondition", &DtAttributeFedNode::setUpdateCondition},
    {"ownership", &DtAttributeFedNode::setTransferAccept},
    {"cardinality", &DtAttributeFedNode::setCardinality},
    {"accuracy", &DtAttributeFedNode::setAccuracy},
    {"semantics", &DtAttributeFedNode::setDescription},
};

// Kept for compatibility: without dimensions.
constexpr Spelling<DtInteractionClassFedNode> theInteractionClassWords[] = {
    {"name", &DtInteractionClassFedNode::setName, WhenEmpty::drop},
    {"sharing", &DtInteractionClassFedNode::setSharing},
    {"transportation", &DtInteractionClassFedNode::setTransportation},
    {"order", &DtInteractionClassFedNode::setOrder},
    {"semantics", &DtInteractionClassFedNode::setDescriptor},
};

// Kept for compatibility: without sharing, transportation and order.
constexpr Spelling<DtParameterFedNode> theParameterWords[] = {
    {"name", &DtParameterFedNode::setName, WhenEmpty::drop},
    {"dataType", &DtParameterFedNode::setDatatype},
    {"semantics", &DtParameterFedNode::setDescription},
};

// Kept for compatibility: without the interpretation.
constexpr Spelling<DtBasicDataRepresentationNode> theBasicDataWords[] = {
    {"name", &DtBasicDataRepresentationNode::setName, WhenEmpty::drop},
    {"size", &DtBasicDataRepresentationNode::setSize},
    {"endian", &DtBasicDataRepresentationNode::setEndian},
    {"encoding", &DtBasicDataRepresentationNode::setEncoding},
};

// Kept for compatibility: without the encoding, and an empty name does not matter.
constexpr Spelling<DtFixedDatatypeNode> theFixedDataWords[] = {
    {"name",      &DtFixedDatatypeNode::setName       },
    {"semantics", &DtFixedDatatypeNode::setDescription},
};

constexpr Spelling<DtDescriptionNode> theTransportationWords[] = {
    {"name",      &DtDescriptionNode::setName       },
    {"semantics", &DtDescriptionNode::setDescription},
};

constexpr HierarchyWords theObjectWords = {
    "objectClass",
    "HLAobjectRoot",
    {"Warning: Additional object node found at the root level",
      " when parsing 1516 XML file has been ignored.\n"},
    "Warning: HLAobjectRoot is missing from 1516 XML file\n",
    "Warning: Object root is not \"HLAobjectRoot\" in 1516 XML file\n"
};

constexpr HierarchyWords theInteractionWords = {
    "interactionClass",
    "HLAinteractionRoot",
    {"Warning: Additional interaction node found at the root level",
      " when parsing 1516 XML file has been ignored.\n"},
    "Warning: HLAinteractionRoot is missing from 1516 XML file\n",
    "Warning: Interaction root is not \"HLAinteractionRoot\" in 1516 XML file\n"
};

}  // namespace

DtXML1516FileReader::DtXML1516FileReader(DtExerciseConn* connection) : myConnection(connection) {}

DtXML1516FileReader::~DtXML1516FileReader() = default;

DtOMTTree* DtXML1516FileReader::processObjectModel(xmlNode*& root)
{
    DtOMTTreePtr tree(new DtOMTTree);
    tree->setHlaVersion(DtHla1516_2000);
    processSections(*this, attributesOf(root), theIdentification, tree.get());
    DtOMTTreePOC contact;
    if (fillContact(*this, attributesOf(root), theContactWords, contact)) tree->addPOC(contact);
    processSections(*this, childrenOf(root), theSections, tree.get());
    initializeHandles(tree.get());
    return tree.release();
}

void DtXML1516FileReader::processName(xmlAttr*& attribute, DtOMTTree* tree)
{
    tree->setName(childNodeString(attribute));
}

void DtXML1516FileReader::processVersionNo(xmlAttr*& attribute, DtOMTTree* tree)
{
    tree->setVersionNo(childNodeString(attribute));
}

void DtXML1516FileReader::processType(xmlAttr*& attribute, DtOMTTree* tree)
{
    tree->setType(childNodeString(attribute));
}

void DtXML1516FileReader::processPurpose(xmlAttr*& attribute, DtOMTTree* tree)
{
    tree->setPurpose(childNodeString(attribute));
}

void DtXML1516FileReader::processApplicationDomain(xmlAttr*& attribute, DtOMTTree* tree)
{
    tree->setApplicationDomain(childNodeString(attribute));
}

void DtXML1516FileReader::processSponsorOrgName(xmlAttr*& attribute, DtOMTTree* tree)
{
    tree->setSponsorOrgName(childNodeString(attribute));
}

void DtXML1516FileReader::processModificationDate(xmlAttr*& attribute, DtOMTTree* tree)
{
    tree->setModificationDate(childNodeString(attribute));
}

void DtXML1516FileReader::processReference(xmlAttr*& attribute, DtOMTTree* tree)
{
    tree->setReference(childNodeString(attribute));
}

void DtXML1516FileReader::processOther(xmlAttr*& attribute, DtOMTTree* tree)
{
    tree->setOther(childNodeString(attribute));
}

void DtXML1516FileReader::processInteractions(xmlNode*& element, DtOMTTree* tree)
{
    readHierarchy<DtInteractionClassFedNode>(element, tree, theInteractionWords,
                                             [&](xmlNode*& child)
                                             { return processInteractionClass(child, tree); });
}

DtInteractionClassFedNode* DtXML1516FileReader::processInteractionClass(xmlNode*& element,
                                                                        DtOMTTree* tree)
{
    auto node = readNode(*this, attributesOf(element), theInteractionClassWords,
                         theNamelessInteractionClass);
    if (!node) return nullptr;
    forEach(childrenOf(element),
            [&](xmlNode*& child)
            {
                if (isNamed(child, "parameter"))
                    processParameter(child, node.get());
                else if (isNamed(child, "interactionClass"))
                    node->addChildInteraction(processInteractionClass(child, tree));
            });
    return handOver(tree, &DtOMTTree::addInteractionClassNode, std::move(node));
}

DtAttributeFedNode* DtXML1516FileReader::processAttribute(xmlNode*& element,
                                                          DtObjectClassFedNode* owner)
{
    auto attribute = std::make_unique<DtAttributeFedNode>(owner);
    if (!fill(*this, attributesOf(element), theAttributeWords, *attribute, theNamelessAttribute))
        return nullptr;
    return attribute.release();
}

DtParameterFedNode* DtXML1516FileReader::processParameter(xmlNode*& element,
                                                          DtInteractionClassFedNode* owner)
{
    auto parameter =
        readNode(*this, attributesOf(element), theParameterWords, theNamelessParameter);
    if (parameter && owner) owner->addParameter(parameter.get());
    return parameter.release();
}

void DtXML1516FileReader::processObjects(xmlNode*& element, DtOMTTree* tree)
{
    readHierarchy<DtObjectClassFedNode>(element, tree, theObjectWords,
                                        [&](xmlNode*& child)
                                        { return processObjectClass(child, tree); });
}

DtObjectClassFedNode* DtXML1516FileReader::processObjectClass(xmlNode*& element, DtOMTTree* tree)
{
    auto node = readNode(*this, attributesOf(element), theObjectClassWords, theNamelessObjectClass);
    if (!node) return nullptr;
    forEach(childrenOf(element),
            [&](xmlNode*& child)
            {
                if (isNamed(child, "attribute"))
                    addRead(*node, processAttribute(child, node.get()));
                else if (isNamed(child, "objectClass"))
                    node->addChildObject(processObjectClass(child, tree));
            });
    return handOver(tree, &DtOMTTree::addObjectClassNode, std::move(node));
}

void DtXML1516FileReader::processNotes(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "note", [&](xmlNode*& child) { processNote(child, tree); });
}

DtNoteNode* DtXML1516FileReader::processNote(xmlNode*& element, DtOMTTree* tree)
{
    auto node = std::make_unique<DtNoteNode>();
    forEach(attributesOf(element),
            [&](xmlAttr*& attribute)
            {
                if (isNamed(attribute, "semantics")) node->setText(childNodeString(attribute));
                if (isNamed(attribute, "name"))
                    node->setNumber(integerAsAtoi(childNodeString(attribute)));
            });
    return handOver(tree, &DtOMTTree::addNoteNode, std::move(node));
}

void DtXML1516FileReader::processDatatypes(xmlNode*& element, DtOMTTree* tree)
{
    processSections(*this, childrenOf(element), theDatatypeSections, tree);
}

void DtXML1516FileReader::processSimpleDatatypes(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "simpleData",
                 [&](xmlNode*& child) { processSimpleData(child, tree); });
}

DtSimpleDatatypeNode* DtXML1516FileReader::processSimpleData(xmlNode*& element, DtOMTTree* tree)
{
    return handOver(
        tree, &DtOMTTree::addSimpleDatatypeNode,
        readNode(*this, attributesOf(element), theSimpleDataWords, theNamelessSimpleData));
}

void DtXML1516FileReader::processArrayDatatypes(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "arrayData",
                 [&](xmlNode*& child) { processArrayData(child, tree); });
}

DtArrayDatatypeNode* DtXML1516FileReader::processArrayData(xmlNode*& element, DtOMTTree* tree)
{
    return handOver(
        tree, &DtOMTTree::addArrayDatatypeNode,
        readNode(*this, attributesOf(element), theArrayDataWords, theNamelessArrayData));
}

void DtXML1516FileReader::processFixedDatatypes(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "fixedRecordData",
                 [&](xmlNode*& child) { processFixedData(child, tree); });
}

DtFixedDatatypeNode* DtXML1516FileReader::processFixedData(xmlNode*& element, DtOMTTree* tree)
{
    auto node = readNode(*this, attributesOf(element), theFixedDataWords);
    forEachNamed(childrenOf(element), "field",
                 [&](xmlNode*& child) { node->addComponentNode(processField(child)); });
    return handOver(tree, &DtOMTTree::addFixedDatatypeNode, std::move(node));
}

DtFieldComponentNode* DtXML1516FileReader::processField(xmlNode*& element)
{
    return readNode(*this, attributesOf(element), theFieldWords, theNamelessField).release();
}

void DtXML1516FileReader::processBasicDataReps(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "basicData",
                 [&](xmlNode*& child) { processBasicDataRep(child, tree); });
}

DtBasicDataRepresentationNode* DtXML1516FileReader::processBasicDataRep(xmlNode*& element,
                                                                        DtOMTTree* tree)
{
    return handOver(
        tree, &DtOMTTree::addBasicDataRepresentationNode,
        readNode(*this, attributesOf(element), theBasicDataWords, theNamelessBasicData));
}

void DtXML1516FileReader::processVariantDatatypes(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "variantRecordData",
                 [&](xmlNode*& child) { processVariantData(child, tree); });
}

DtVariantDatatypeNode* DtXML1516FileReader::processVariantData(xmlNode*& element, DtOMTTree* tree)
{
    auto node = std::make_unique<DtVariantDatatypeNode>();
    forEachNamed(childrenOf(element), "alternative",
                 [&](xmlNode*& child) { node->addComponentNode(processAlternative(child)); });
    if (!fill(*this, attributesOf(element), theVariantDataWords, *node, theNamelessVariantData))
        return nullptr;
    return handOver(tree, &DtOMTTree::addVariantDatatypeNode, std::move(node));
}

DtAlternativeComponentNode* DtXML1516FileReader::processAlternative(xmlNode*& element)
{
    return readNode(*this, attributesOf(element), theAlternativeWords).release();
}

DtEnumeratedDatatypeNode* DtXML1516FileReader::processEnumeratedDatatype(xmlNode*& element,
                                                                         DtOMTTree* tree)
{
    auto node = std::make_unique<DtEnumeratedDatatypeNode>();
    forEachNamed(childrenOf(element), "enumerator",
                 [&](xmlNode*& child)
                 {
                     if (DtEnumerationNode* const enumerator = processEnumeration(child))
                         addEnumerator(*node, enumerator);
                 });
    if (!fill(*this, attributesOf(element), theEnumeratedDataWords, *node,
              theNamelessEnumeratedData))
        return nullptr;
    return handOver(tree, &DtOMTTree::addEnumeratedDatatypeNode, std::move(node));
}

DtEnumerationNode* DtXML1516FileReader::processEnumeration(xmlNode*& element)
{
    auto node = std::make_unique<DtEnumerationNode>();
    // "values" is this format's own word. Of the two, the later one in the document wins.
    const auto readValue = [&](xmlAttr*& attribute)
    {
        if (!isNamed(attribute, "value") && !isNamed(attribute, "values")) return;
        const DtString value = childNodeString(attribute);
        if (!value.empty()) node->setNumber(integerAsAtoi(value));
    };
    if (!fill(*this, attributesOf(element), theEnumeratorWords, *node, theNamelessEnumerator,
              readValue))
        return nullptr;
    return node.release();
}

void DtXML1516FileReader::processEnumerations(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "enumeratedData",
                 [&](xmlNode*& child) { processEnumeratedDatatype(child, tree); });
}

void DtXML1516FileReader::processSwitches(xmlNode*& element, DtOMTTree* tree)
{
    forEach(attributesOf(element),
            [&](xmlAttr*& attribute)
            {
                const DtString value = childNodeString(attribute);
                if (value.empty()) return;
                auto node = std::make_unique<DtBoolAttrNode>();
                node->setName(nameOf(attribute));
                node->setEnabled(value == "Enabled");
                handOver(tree, &DtOMTTree::addSwitchNode, std::move(node));
            });
}

void DtXML1516FileReader::processDimensions(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "dimension",
                 [&](xmlNode*& child) { processDimension(child, tree); });
}

DtDimensionNode* DtXML1516FileReader::processDimension(xmlNode*& element, DtOMTTree* tree)
{
    return handOver(
        tree, &DtOMTTree::addDimensionNode,
        readNode(*this, attributesOf(element), theDimensionWords, theNamelessDimension));
}

// The only table in this format whose texts are in child elements; as it has no element form of
// childNodeString, they are taken here.
void DtXML1516FileReader::processTimeRepresentation(xmlNode*& element, DtOMTTree* tree)
{
    struct ElementTexts
    {
        DtString childNodeString(const xmlNode* child) const { return firstText(child); }
    } texts;
    DtTimeRepNode& time = *tree->getTimeRepNode();
    forEach(childrenOf(element),
            [&](xmlNode*& child)
            {
                if (isNamed(child, "timeStamp"))
                    fill(texts, childrenOf(child), theTimeStampWords, time);
                if (isNamed(child, "lookahead"))
                    fill(texts, childrenOf(child), theLookaheadWords, time);
            });
}

void DtXML1516FileReader::processSynchronizations(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "synchronization",
                 [&](xmlNode*& child) { processSynchronization(child, tree); });
}

DtSynchroNode* DtXML1516FileReader::processSynchronization(xmlNode*& element, DtOMTTree* tree)
{
    return handOver(tree, &DtOMTTree::addSynchroNode,
                    readNode(*this, attributesOf(element), theSynchronizationWords,
                             theNamelessSynchronization));
}

void DtXML1516FileReader::processTags(xmlNode*& element, DtOMTTree* tree)
{
    forEach(childrenOf(element), [&](xmlNode*& child) { processTag(child, tree); });
}

DtTagNode* DtXML1516FileReader::processTag(xmlNode*& element, DtOMTTree* tree)
{
    auto node = std::make_unique<DtTagNode>();
    node->setName(nameOf(element));
    fill(*this, attributesOf(element), theTagWords, *node);
    return handOver(tree, &DtOMTTree::addTagNode, std::move(node));
}

void DtXML1516FileReader::processTransportations(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "transportation",
                 [&](xmlNode*& child) { processTransportation(child, tree); });
}

DtDescriptionNode* DtXML1516FileReader::processTransportation(xmlNode*& element, DtOMTTree* tree)
{
    return handOver(tree, &DtOMTTree::addTransportationNode,
                    readNode(*this, attributesOf(element), theTransportationWords));
}

DtString DtXML1516FileReader::childNodeString(xmlAttr*& attribute)
{
    return firstText(attribute);
}

void DtXML1516FileReader::initializeHandles(DtOMTTree* tree)
{
    if (!myConnection) return;
    visitForHandles<DtObjectClassFedNode>(*tree, [this](auto* node) { setAttributeHandles(node); });
    visitForHandles<DtInteractionClassFedNode>(*tree,
                                               [this](auto* node) { setParameterHandles(node); });
}

void DtXML1516FileReader::setAttributeHandles(DtObjectClassFedNode* node)
{
    for ([[maybe_unused]] const auto* attribute : node->getAttributes())
    {
    }
}

void DtXML1516FileReader::setParameterHandles(DtInteractionClassFedNode* node)
{
    for ([[maybe_unused]] const auto* parameter : node->getParameters())
    {
    }
}
