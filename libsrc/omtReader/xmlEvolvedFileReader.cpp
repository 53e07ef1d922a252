// SPDX-License-Identifier: Apache-2.0
// Grammar: the element names of IEEE 1516.2-2010, each with its text in child elements. The names
// that this dialect shares with the older one are in xmlWords.h.
#include "omtReader/xmlEvolvedFileReader.h"

#include "omtReader/basicDataRepresentationNode.h"
#include "omtReader/boolAttrNode.h"
#include "omtReader/descriptionNode.h"
#include "omtReader/formats/xmlClassTree.h"
#include "omtReader/formats/xmlWords.h"
#include "omtReader/noteNode.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/textScan.h"
#include "omtReader/updateRateNode.h"

namespace
{

using namespace omtreader;
using Reader = DtXMLEvolvedFileReader;

constexpr Section<Reader, xmlNode> theSections[] = {
    {"modelIdentification", &Reader::processModelIdentification},
    {"objects",             &Reader::processObjects            },
    {"interactions",        &Reader::processInteractions       },
    {"dimensions",          &Reader::processDimensions         },
    {"time",                &Reader::processTimeRepresentation },
    {"tags",                &Reader::processTags               },
    {"synchronizations",    &Reader::processSynchronizations   },
    {"transportations",     &Reader::processTransportations    },
    {"switches",            &Reader::processSwitches           },
    {"updateRates",         &Reader::processUpdateRates        },
    {"dataTypes",           &Reader::processDatatypes          },
    {"notes",               &Reader::processNotes              },
};

// Kept for compatibility: without "reference", "other" and "glyph".
constexpr Section<Reader, xmlNode> theIdentification[] = {
    {"name",                   &Reader::processName                  },
    {"type",                   &Reader::processType                  },
    {"version",                &Reader::processVersionNo             },
    {"modificationDate",       &Reader::processModificationDate      },
    {"securityClassification", &Reader::processSecurityClassification},
    {"releaseRestriction",     &Reader::processReleaseRestriction    },
    {"purpose",                &Reader::processPurpose               },
    {"applicationDomain",      &Reader::processApplicationDomain     },
    {"description",            &Reader::processDescription           },
    {"useLimitation",          &Reader::processUseLimitation         },
    {"useHistory",             &Reader::processUseHistory            },
    {"poc",                    &Reader::processPoc                   },
};

constexpr Section<Reader, xmlNode> theDatatypeSections[] = {
    {"basicDataRepresentations", &Reader::processBasicDataReps   },
    {"simpleDataTypes",          &Reader::processSimpleDatatypes },
    {"enumeratedDataTypes",      &Reader::processEnumerations    },
    {"arrayDataTypes",           &Reader::processArrayDatatypes  },
    {"fixedRecordDataTypes",     &Reader::processFixedDatatypes  },
    {"variantRecordDataTypes",   &Reader::processVariantDatatypes},
};

constexpr ContactSpelling theContactWords[] = {
    {"pocType",      &DtOMTTreePOC::type    },
    {"pocName",      &DtOMTTreePOC::lastName},
    {"pocOrg",       &DtOMTTreePOC::orgName },
    {"pocTelephone", &DtOMTTreePOC::phone   },
    {"pocEmail",     &DtOMTTreePOC::email   },
};

constexpr Spelling<DtAttributeFedNode> theAttributeWords[] = {
    {"name", &DtAttributeFedNode::setName, WhenEmpty::drop},
    {"dataType", &DtAttributeFedNode::setDatatype},
    {"updateType", &DtAttributeFedNode::setUpdateType},
    {"updateCondition", &DtAttributeFedNode::setUpdateCondition},
    {"ownership", &DtAttributeFedNode::setTransferAccept},
    {"sharing", &DtAttributeFedNode::setSharing},
    {"transportation", &DtAttributeFedNode::setTransportation},
    {"order", &DtAttributeFedNode::setOrder},
    {"cardinality", &DtAttributeFedNode::setCardinality},
    {"accuracy", &DtAttributeFedNode::setAccuracy},
    {"semantics", &DtAttributeFedNode::setDescription},
};

constexpr Spelling<DtInteractionClassFedNode> theInteractionClassWords[] = {
    {"name", &DtInteractionClassFedNode::setName, WhenEmpty::drop},
    {"sharing", &DtInteractionClassFedNode::setSharing},
    {"transportation", &DtInteractionClassFedNode::setTransportation},
    {"order", &DtInteractionClassFedNode::setOrder},
    {"semantics", &DtInteractionClassFedNode::setDescriptor},
};

constexpr Spelling<DtParameterFedNode> theParameterWords[] = {
    {"name", &DtParameterFedNode::setName, WhenEmpty::drop},
    {"dataType", &DtParameterFedNode::setDatatype},
    {"sharing", &DtParameterFedNode::setSharing},
    {"transportation", &DtParameterFedNode::setTransportation},
    {"order", &DtParameterFedNode::setOrder},
    {"semantics", &DtParameterFedNode::setDescription},
};

constexpr Spelling<DtBasicDataRepresentationNode> theBasicDataWords[] = {
    {"name", &DtBasicDataRepresentationNode::setName, WhenEmpty::drop},
    {"size", &DtBasicDataRepresentationNode::setSize},
    {"interpretation", &DtBasicDataRepresentationNode::setInterpretation},
    {"endian", &DtBasicDataRepresentationNode::setEndian},
    {"encoding", &DtBasicDataRepresentationNode::setEncoding},
};

constexpr Spelling<DtFixedDatatypeNode> theFixedDataWords[] = {
    {"name", &DtFixedDatatypeNode::setName, WhenEmpty::drop},
    {"encoding", &DtFixedDatatypeNode::setEncoding},
    {"semantics", &DtFixedDatatypeNode::setDescription},
};

constexpr Spelling<DtNoteNode> theNoteWords[] = {
    {"label",     &DtNoteNode::setLabel, WhenEmpty::skip},
    {"semantics", &DtNoteNode::setText,  WhenEmpty::skip},
};

constexpr Spelling<DtDescriptionNode> theTransportationWords[] = {
    {"name",      &DtDescriptionNode::setName,        WhenEmpty::skip},
    {"reliable",  &DtDescriptionNode::setReliable,    WhenEmpty::skip},
    {"semantics", &DtDescriptionNode::setDescription, WhenEmpty::skip},
};

constexpr Spelling<DtUpdateRateNode> theUpdateRateWords[] = {
    {"name", &DtUpdateRateNode::setName, WhenEmpty::drop},
    {"semantics", &DtUpdateRateNode::setSemantics},
};

// The last words are those of the interaction side: kept for compatibility, because programs know
// them.
constexpr HierarchyWords theObjectWords = {
    "objectClass",
    "HLAobjectRoot",
    {"Warning: Additional object node found at the root level",
      " when parsing 1516 Evolved XML file has been ignored.\n"},
    "Warning: HLAobjectRoot is missing from 1516 Evolved XML file\n",
    "Warning: Interaction root is not \"HLAinteractionRoot\" in 1516 Evolved XML file\n"
};

constexpr HierarchyWords theInteractionWords = {
    "interactionClass",
    "HLAinteractionRoot",
    {"Warning: Additional interaction node found at the root level",
      " when parsing 1516 Evolved XML file has been ignored.\n"},
    "Warning: HLAinteractionRoot is missing from 1516 Evolved XML file\n",
    "Warning: Interaction root is not \"HLAinteractionRoot\" in 1516 Evolved XML file\n"
};

/// Adds the names in an element "dimensions" to an attribute or an interaction class.
template <typename Node>
void readDimensionNames(Reader& reader, xmlNode* list, Node& node)
{
    forEachNamed(childrenOf(list), "dimension",
                 [&](xmlNode*& item) { node.addDimension(reader.childNodeString(item)); });
}

}  // namespace

DtXMLEvolvedFileReader::DtXMLEvolvedFileReader(DtExerciseConn* connection)
    : myConnection(connection)
{
}

DtXMLEvolvedFileReader::~DtXMLEvolvedFileReader() = default;

DtOMTTree* DtXMLEvolvedFileReader::processObjectModel(xmlNode*& root)
{
    DtOMTTreePtr tree(new DtOMTTree);
    tree->setHlaVersion(DtHla1516_2010);
    processSections(*this, childrenOf(root), theSections, tree.get());
    initializeHandles(tree.get());
    return tree.release();
}

void DtXMLEvolvedFileReader::processName(xmlNode*& element, DtOMTTree* tree)
{
    tree->setName(childNodeString(element));
}

void DtXMLEvolvedFileReader::processVersionNo(xmlNode*& element, DtOMTTree* tree)
{
    tree->setVersionNo(childNodeString(element));
}

void DtXMLEvolvedFileReader::processType(xmlNode*& element, DtOMTTree* tree)
{
    tree->setType(childNodeString(element));
}

void DtXMLEvolvedFileReader::processPurpose(xmlNode*& element, DtOMTTree* tree)
{
    tree->setPurpose(childNodeString(element));
}

void DtXMLEvolvedFileReader::processUseLimitation(xmlNode*& element, DtOMTTree* tree)
{
    tree->setUseLimitation(childNodeString(element));
}

void DtXMLEvolvedFileReader::processUseHistory(xmlNode*& element, DtOMTTree* tree)
{
    tree->setUseHistory(childNodeString(element));
}

void DtXMLEvolvedFileReader::processApplicationDomain(xmlNode*& element, DtOMTTree* tree)
{
    tree->setApplicationDomain(childNodeString(element));
}

void DtXMLEvolvedFileReader::processSponsorOrgName(xmlAttr*& attribute, DtOMTTree* tree)
{
    tree->setSponsorOrgName(childNodeString(attribute));
}

void DtXMLEvolvedFileReader::processModificationDate(xmlNode*& element, DtOMTTree* tree)
{
    tree->setModificationDate(childNodeString(element));
}

void DtXMLEvolvedFileReader::processSecurityClassification(xmlNode*& element, DtOMTTree* tree)
{
    tree->setSecurityClassification(childNodeString(element));
}

void DtXMLEvolvedFileReader::processReleaseRestriction(xmlNode*& element, DtOMTTree* tree)
{
    tree->setReleaseRestriction(childNodeString(element));
}

void DtXMLEvolvedFileReader::processDescription(xmlNode*& element, DtOMTTree* tree)
{
    tree->setDescription(childNodeString(element));
}

void DtXMLEvolvedFileReader::processReference(xmlAttr*& attribute, DtOMTTree* tree)
{
    DtOMTTreeReference reference;
    bool hasType = false;
    bool hasIdentification = false;
    forEach(attribute->children,
            [&](xmlNode*& child)
            {
                if (isNamed(child, "type"))
                {
                    reference.type = childNodeString(child);
                    hasType = true;
                }
                else if (isNamed(child, "identification"))
                {
                    reference.identification = childNodeString(child);
                    hasIdentification = true;
                }
            });
    if (hasType && hasIdentification) tree->addReference(reference);
}

void DtXMLEvolvedFileReader::processOther(xmlAttr*& attribute, DtOMTTree* tree)
{
    tree->setOther(childNodeString(attribute));
}

void DtXMLEvolvedFileReader::processInteractions(xmlNode*& element, DtOMTTree* tree)
{
    readHierarchy<DtInteractionClassFedNode>(element, tree, theInteractionWords,
                                             [&](xmlNode*& child)
                                             { return processInteractionClass(child, tree); });
}

DtInteractionClassFedNode* DtXMLEvolvedFileReader::processInteractionClass(xmlNode*& element,
                                                                           DtOMTTree* tree)
{
    auto node = std::make_unique<DtInteractionClassFedNode>();
    const auto readNested = [&](xmlNode*& child)
    {
        if (isNamed(child, "parameter"))
            processParameter(child, node.get());
        else if (isNamed(child, "interactionClass"))
            node->addChildInteraction(processInteractionClass(child, tree));
        else if (isNamed(child, "dimensions"))
            readDimensionNames(*this, child, *node);
    };
    if (!fill(*this, childrenOf(element), theInteractionClassWords, *node,
              theNamelessInteractionClass, readNested))
        return dropClass(std::move(node));
    return handOver(tree, &DtOMTTree::addInteractionClassNode, std::move(node));
}

DtAttributeFedNode* DtXMLEvolvedFileReader::processAttribute(xmlNode*& element,
                                                             DtObjectClassFedNode* owner)
{
    auto attribute = std::make_unique<DtAttributeFedNode>(owner);
    const auto readNested = [&](xmlNode*& child)
    {
        if (isNamed(child, "dimensions")) readDimensionNames(*this, child, *attribute);
    };
    if (!fill(*this, childrenOf(element), theAttributeWords, *attribute, theNamelessAttribute,
              readNested))
        return nullptr;
    return attribute.release();
}

DtParameterFedNode* DtXMLEvolvedFileReader::processParameter(xmlNode*& element,
                                                             DtInteractionClassFedNode* owner)
{
    auto parameter = readNode(*this, childrenOf(element), theParameterWords, theNamelessParameter);
    if (parameter && owner) owner->addParameter(parameter.get());
    return parameter.release();
}

void DtXMLEvolvedFileReader::processObjects(xmlNode*& element, DtOMTTree* tree)
{
    readHierarchy<DtObjectClassFedNode>(element, tree, theObjectWords,
                                        [&](xmlNode*& child)
                                        { return processObjectClass(child, tree); });
}

DtObjectClassFedNode* DtXMLEvolvedFileReader::processObjectClass(xmlNode*& element, DtOMTTree* tree)
{
    auto node = std::make_unique<DtObjectClassFedNode>();
    const auto readNested = [&](xmlNode*& child)
    {
        if (isNamed(child, "attribute"))
            addRead(*node, processAttribute(child, node.get()));
        else if (isNamed(child, "objectClass"))
            node->addChildObject(processObjectClass(child, tree));
    };
    if (!fill(*this, childrenOf(element), theObjectClassWords, *node, theNamelessObjectClass,
              readNested))
        return dropClass(std::move(node));
    return handOver(tree, &DtOMTTree::addObjectClassNode, std::move(node));
}

void DtXMLEvolvedFileReader::processNotes(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "note", [&](xmlNode*& child) { processNote(child, tree); });
}

DtNoteNode* DtXMLEvolvedFileReader::processNote(xmlNode*& element, DtOMTTree* tree)
{
    return handOver(tree, &DtOMTTree::addNoteNode,
                    readNode(*this, childrenOf(element), theNoteWords));
}

void DtXMLEvolvedFileReader::processUpdateRates(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "updateRate",
                 [&](xmlNode*& child) { processUpdateRate(child, tree); });
}

DtUpdateRateNode* DtXMLEvolvedFileReader::processUpdateRate(xmlNode*& element, DtOMTTree* tree)
{
    auto node = std::make_unique<DtUpdateRateNode>();
    const auto readRate = [&](xmlNode*& child)
    {
        if (isNamed(child, "rate")) node->setRate(numberAsAtof(childNodeString(child)));
    };
    if (!fill(*this, childrenOf(element), theUpdateRateWords, *node,
              "Warning: updateRate definition was missing a name\n", readRate))
        return nullptr;
    return handOver(tree, &DtOMTTree::addUpdateRateNode, std::move(node));
}

void DtXMLEvolvedFileReader::processDatatypes(xmlNode*& element, DtOMTTree* tree)
{
    processSections(*this, childrenOf(element), theDatatypeSections, tree);
}

void DtXMLEvolvedFileReader::processSimpleDatatypes(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "simpleData",
                 [&](xmlNode*& child) { processSimpleData(child, tree); });
}

DtSimpleDatatypeNode* DtXMLEvolvedFileReader::processSimpleData(xmlNode*& element, DtOMTTree* tree)
{
    return handOver(
        tree, &DtOMTTree::addSimpleDatatypeNode,
        readNode(*this, childrenOf(element), theSimpleDataWords, theNamelessSimpleData));
}

void DtXMLEvolvedFileReader::processArrayDatatypes(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "arrayData",
                 [&](xmlNode*& child) { processArrayData(child, tree); });
}

DtArrayDatatypeNode* DtXMLEvolvedFileReader::processArrayData(xmlNode*& element, DtOMTTree* tree)
{
    return handOver(tree, &DtOMTTree::addArrayDatatypeNode,
                    readNode(*this, childrenOf(element), theArrayDataWords, theNamelessArrayData));
}

void DtXMLEvolvedFileReader::processFixedDatatypes(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "fixedRecordData",
                 [&](xmlNode*& child) { processFixedData(child, tree); });
}

DtFixedDatatypeNode* DtXMLEvolvedFileReader::processFixedData(xmlNode*& element, DtOMTTree* tree)
{
    auto node = std::make_unique<DtFixedDatatypeNode>();
    const auto readField = [&](xmlNode*& child)
    {
        if (isNamed(child, "field")) node->addComponentNode(processField(child));
    };
    if (!fill(*this, childrenOf(element), theFixedDataWords, *node,
              "Warning: fixedRecordData definition was missing a name\n", readField))
        return nullptr;
    return handOver(tree, &DtOMTTree::addFixedDatatypeNode, std::move(node));
}

DtFieldComponentNode* DtXMLEvolvedFileReader::processField(xmlNode*& element)
{
    return readNode(*this, childrenOf(element), theFieldWords, theNamelessField).release();
}

void DtXMLEvolvedFileReader::processBasicDataReps(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "basicData",
                 [&](xmlNode*& child) { processBasicDataRep(child, tree); });
}

DtBasicDataRepresentationNode* DtXMLEvolvedFileReader::processBasicDataRep(xmlNode*& element,
                                                                           DtOMTTree* tree)
{
    return handOver(tree, &DtOMTTree::addBasicDataRepresentationNode,
                    readNode(*this, childrenOf(element), theBasicDataWords, theNamelessBasicData));
}

void DtXMLEvolvedFileReader::processVariantDatatypes(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "variantRecordData",
                 [&](xmlNode*& child) { processVariantData(child, tree); });
}

DtVariantDatatypeNode* DtXMLEvolvedFileReader::processVariantData(xmlNode*& element,
                                                                  DtOMTTree* tree)
{
    auto node = std::make_unique<DtVariantDatatypeNode>();
    const auto readAlternative = [&](xmlNode*& child)
    {
        if (isNamed(child, "alternative")) node->addComponentNode(processAlternative(child));
    };
    if (!fill(*this, childrenOf(element), theVariantDataWords, *node, theNamelessVariantData,
              readAlternative))
        return nullptr;
    return handOver(tree, &DtOMTTree::addVariantDatatypeNode, std::move(node));
}

DtAlternativeComponentNode* DtXMLEvolvedFileReader::processAlternative(xmlNode*& element)
{
    return readNode(*this, childrenOf(element), theAlternativeWords).release();
}

DtEnumeratedDatatypeNode* DtXMLEvolvedFileReader::processEnumeratedDatatype(xmlNode*& element,
                                                                            DtOMTTree* tree)
{
    auto node = std::make_unique<DtEnumeratedDatatypeNode>();
    const auto readEnumerator = [&](xmlNode*& child)
    {
        if (!isNamed(child, "enumerator")) return;
        if (DtEnumerationNode* const enumerator = processEnumeration(child))
            addEnumerator(*node, enumerator);
    };
    if (!fill(*this, childrenOf(element), theEnumeratedDataWords, *node, theNamelessEnumeratedData,
              readEnumerator))
        return nullptr;
    return handOver(tree, &DtOMTTree::addEnumeratedDatatypeNode, std::move(node));
}

DtEnumerationNode* DtXMLEvolvedFileReader::processEnumeration(xmlNode*& element)
{
    auto node = std::make_unique<DtEnumerationNode>();
    const auto readValue = [&](xmlNode*& child)
    {
        if (!isNamed(child, "value")) return;
        const DtString value = childNodeString(child);
        if (!value.empty()) node->setNumber(integerAsAtoi(value));
    };
    if (!fill(*this, childrenOf(element), theEnumeratorWords, *node, theNamelessEnumerator,
              readValue))
        return nullptr;
    return node.release();
}

void DtXMLEvolvedFileReader::processEnumerations(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "enumeratedData",
                 [&](xmlNode*& child) { processEnumeratedDatatype(child, tree); });
}

void DtXMLEvolvedFileReader::processSwitches(xmlNode*& element, DtOMTTree* tree)
{
    forEach(childrenOf(element), [&](xmlNode*& child) { processSwitch(child, tree); });
}

DtBoolAttrNode* DtXMLEvolvedFileReader::processSwitch(xmlNode*& element, DtOMTTree* tree)
{
    auto unadded = std::make_unique<DtBoolAttrNode>();
    DtBoolAttrNode* const node = unadded.get();
    node->setName(nameOf(element));
    const bool isResignAction = node->getName() == "automaticResignAction";
    forEach(attributesOf(element),
            [&](xmlAttr*& attribute)
            {
                const DtString value = childNodeString(attribute);
                if (isNamed(attribute, "isEnabled") && (value == "true" || value == "false"))
                    node->setEnabled(value == "true");
                else if (isResignAction && isNamed(attribute, "resignAction") && !value.empty())
                    node->setNote(value);
                tree->addSwitchNode(node);  // kept: once more for each attribute
                unadded.release();
            });
    return unadded ? nullptr : node;
}

void DtXMLEvolvedFileReader::processDimensions(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "dimension",
                 [&](xmlNode*& child) { processDimension(child, tree); });
}

DtDimensionNode* DtXMLEvolvedFileReader::processDimension(xmlNode*& element, DtOMTTree* tree)
{
    auto node = std::make_unique<DtDimensionNode>();
    processEmbeddedNote(element, node.get());
    if (!fill(*this, childrenOf(element), theDimensionWords, *node, theNamelessDimension))
        return nullptr;
    return handOver(tree, &DtOMTTree::addDimensionNode, std::move(node));
}

void DtXMLEvolvedFileReader::processTimeRepresentation(xmlNode*& element, DtOMTTree* tree)
{
    DtTimeRepNode& time = *tree->getTimeRepNode();
    forEach(childrenOf(element),
            [&](xmlNode*& child)
            {
                if (isNamed(child, "timeStamp"))
                    fill(*this, childrenOf(child), theTimeStampWords, time);
                if (isNamed(child, "lookahead"))
                    fill(*this, childrenOf(child), theLookaheadWords, time);
            });
}

void DtXMLEvolvedFileReader::processSynchronizations(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "synchronizationPoint",
                 [&](xmlNode*& child) { processSynchronization(child, tree); });
}

DtSynchroNode* DtXMLEvolvedFileReader::processSynchronization(xmlNode*& element, DtOMTTree* tree)
{
    return handOver(
        tree, &DtOMTTree::addSynchroNode,
        readNode(*this, childrenOf(element), theSynchronizationWords, theNamelessSynchronization));
}

void DtXMLEvolvedFileReader::processTags(xmlNode*& element, DtOMTTree* tree)
{
    forEach(childrenOf(element),
            [&](xmlNode*& child)
            {
                if (nameOf(child) != "text") processTag(child, tree);  // kept: a comment is a tag
            });
}

DtTagNode* DtXMLEvolvedFileReader::processTag(xmlNode*& element, DtOMTTree* tree)
{
    auto node = std::make_unique<DtTagNode>();
    node->setName(nameOf(element));
    fill(*this, childrenOf(element), theTagWords, *node);
    return handOver(tree, &DtOMTTree::addTagNode, std::move(node));
}

void DtXMLEvolvedFileReader::processTransportations(xmlNode*& element, DtOMTTree* tree)
{
    forEachNamed(childrenOf(element), "transportation",
                 [&](xmlNode*& child) { processTransportation(child, tree); });
}

DtDescriptionNode* DtXMLEvolvedFileReader::processTransportation(xmlNode*& element, DtOMTTree* tree)
{
    return handOver(tree, &DtOMTTree::addTransportationNode,
                    readNode(*this, childrenOf(element), theTransportationWords));
}

void DtXMLEvolvedFileReader::processModelIdentification(xmlNode*& element, DtOMTTree* tree)
{
    processSections(*this, childrenOf(element), theIdentification, tree);
}

void DtXMLEvolvedFileReader::processPoc(xmlNode*& element, DtOMTTree* tree)
{
    DtOMTTreePOC contact;
    fillContact(*this, childrenOf(element), theContactWords, contact);
    tree->addPOC(contact);
}

void DtXMLEvolvedFileReader::processEmbeddedNote(xmlNode*& element, DtOMTNode* node)
{
    forEachNamed(attributesOf(element), "note",
                 [&](xmlAttr*& attribute)
                 {
                     const DtString note = childNodeString(attribute);
                     if (!note.empty()) node->setNote(note);
                 });
}

DtString DtXMLEvolvedFileReader::childNodeString(xmlAttr*& attribute)
{
    return firstText(attribute);
}

DtString DtXMLEvolvedFileReader::childNodeString(xmlNode*& element)
{
    return firstText(element);
}

void DtXMLEvolvedFileReader::initializeHandles(DtOMTTree* tree)
{
    if (!myConnection) return;
    visitForHandles<DtObjectClassFedNode>(*tree, [this](auto* node) { setAttributeHandles(node); });
    visitForHandles<DtInteractionClassFedNode>(*tree,
                                               [this](auto* node) { setParameterHandles(node); });
}

void DtXMLEvolvedFileReader::setAttributeHandles(DtObjectClassFedNode* node)
{
    for ([[maybe_unused]] const auto* attribute : node->getAttributes())
    {
    }
}

void DtXMLEvolvedFileReader::setParameterHandles(DtInteractionClassFedNode* node)
{
    for ([[maybe_unused]] const auto* parameter : node->getParameters())
    {
    }
}
