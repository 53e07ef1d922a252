// SPDX-License-Identifier: Apache-2.0
// Grammar, as far as it is read; other clauses are passed over, wherever they stand:
//
//   file      form* "(" ObjectModel clause+ ")" ...
//   clause    text | contact | complex | enumerated | class | interaction | note
//   text      "(" ( Name | VersionNumber | Type | Purpose ... ) string ")"
//   complex   "(" ComplexDataType Name ("(" ComplexComponent FieldName DataType ... ")")* ")"
//   ...       the words of every kind of clause are in the tables below
#include "omtReader/omtFileReader.h"

#include "omtReader/complexDatatypeNode.h"
#include "omtReader/formats/classLinks.h"
#include "omtReader/formats/clauseVocabulary.h"
#include "omtReader/formats/handOver.h"
#include "omtReader/omtTreePtr.h"

#include <cstdio>

namespace
{

using namespace omtreader;
using Reader = DtOMTFileReader;

constexpr ClauseSection theSections[] = {
    {"Name",               &Reader::processName              },
    {"VersionNumber",      &Reader::processVersionNo         },
    {"Type",               &Reader::processType              },
    {"Purpose",            &Reader::processPurpose           },
    {"ApplicationDomain",  &Reader::processApplicationDomain },
    {"SponsorOrgName",     &Reader::processSponsorOrgName    },
    {"ModificationDate",   &Reader::processModificationDate  },
    {"MOMVersion",         &Reader::processMOMVersion        },
    {"ComplexDataType",    &Reader::processComplexDataType   },
    {"EnumeratedDataType", &Reader::processEnumeratedDataType},
    {"Class",              &Reader::processObjectClass       },
    {"Interaction",        &Reader::processInteractionClass  },
    {"Note",               &Reader::processNote              },
};

struct ContactWord
{
    const char* keyword;
    DtString DtOMTTreePOC::*field;
};

constexpr ContactWord theContactWords[] = {
    {"POCHonorificName", &DtOMTTreePOC::honorificName},
    {"POCFirstName",     &DtOMTTreePOC::firstName    },
    {"POCLastName",      &DtOMTTreePOC::lastName     },
    {"POCOrgName",       &DtOMTTreePOC::orgName      },
    {"POCPhone",         &DtOMTTreePOC::phone        },
    {"POCEmail",         &DtOMTTreePOC::email        },
};

// What messages call the definitions and their parts differs from the keywords here and there, and
// two of the places end without a blank, as the nodes are not named there.
constexpr ClauseKind theObjectClass = {"Class", " in Class "};
constexpr ClauseKind theAttribute = {"Attribute", " in Attribute "};
constexpr ClauseKind theInteractionClass = {"Interaction", " in Interaction "};
constexpr ClauseKind theParameter = {"Parameter", " in Parameter "};
constexpr ClauseKind theComplexDatatype = {"Complex Datatype", " in Complex Datatype "};
constexpr ClauseKind theComplexComponent = {"Complex Component", " in Complex Component "};
constexpr ClauseKind theEnumeratedDatatype = {"Enumerated Datatype", " in Enumerated Datatype "};
constexpr ClauseKind theEnumeration = {"Enumeration", " in Enumeration"};
constexpr ClauseKind theNote = {"Note", " in Note"};

constexpr ClausePart theAttributes = {"Attribute", " in Class ", false};
// Kept for compatibility, because programs look for it: the second blank after "Interaction".
constexpr ClausePart theParameters = {"Parameter", " in Interaction  ", true};
constexpr ClausePart theComplexComponents = {"ComplexComponent", " in Datatype ", false};
constexpr ClausePart theEnumerations = {"Enumeration", " in Datatype ", true};

using ObjectClass = DtObjectClassFedNode;
constexpr ClauseWord<ObjectClass> theObjectClassWords[] = {
    {"Name",        "Name",        takeText<&ObjectClass::setName>              },
    {"ID",          "ID",          takeNumber<&ObjectClass::setIdentifier>      },
    {"Description", "Description", takeText<&ObjectClass::setDescriptor>        },
    {"SuperClass",  "SuperClass",  takeNumber<&ObjectClass::setParentIdentifier>},
};

using Attribute = DtAttributeFedNode;
constexpr ClauseWord<Attribute> theAttributeWords[] = {
    {"Name",              "Name",               takeText<&Attribute::setName>             },
    {"DataType",          "Datatype",           takeText<&Attribute::setDatatype>         },
    {"Cardinality",       "Cardinality",        takeText<&Attribute::setCardinality>      },
    {"Accuracy",          "Accuracy",           takeText<&Attribute::setAccuracy>         },
    {"AccuracyCondition", "Accuracy Condition", takeText<&Attribute::setAccuracyCondition>},
    {"UpdateType",        "Update Type",        takeText<&Attribute::setUpdateType>       },
    {"UpdateCondition",   "Update Condition",   takeText<&Attribute::setUpdateCondition>  },
    {"TransferAccept",    "TransferAccept",     takeText<&Attribute::setTransferAccept>   },
    {"Description",       "Description",        takeText<&Attribute::setDescription>      },
};

using InteractionClass = DtInteractionClassFedNode;
constexpr ClauseWord<InteractionClass> theInteractionClassWords[] = {
    {"Name",             "Name",             takeText<&InteractionClass::setName>              },
    {"ID",               "ID",               takeNumber<&InteractionClass::setIdentifier>      },
    {"Description",      "Description",      takeText<&InteractionClass::setDescriptor>        },
    {"SuperInteraction", "SuperInteraction", takeNumber<&InteractionClass::setParentIdentifier>},
};

using Parameter = DtParameterFedNode;
constexpr ClauseWord<Parameter> theParameterWords[] = {
    {"Name",              "Name",               takeText<&Parameter::setName>             },
    {"DataType",          "DataType",           takeText<&Parameter::setDatatype>         },
    {"Cardinality",       "Cardinality",        takeText<&Parameter::setCardinality>      },
    {"Accuracy",          "Accuracy",           takeText<&Parameter::setAccuracy>         },
    {"AccuracyCondition", "Accuracy Condition", takeText<&Parameter::setAccuracyCondition>},
    {"Description",       "Description",        takeText<&Parameter::setDescription>      },
};

constexpr ClauseWord<DtComplexDatatypeNode> theComplexDatatypeWords[] = {
    {"Name", "Name", takeText<&DtComplexDatatypeNode::setName>},
};

using Component = DtComplexComponentNode;
constexpr ClauseWord<Component> theComplexComponentWords[] = {
    {"FieldName",         "Field Name",         takeText<&Component::setName>             },
    {"DataType",          "Datatype",           takeText<&Component::setDatatype>         },
    {"Cardinality",       "Cardinality",        takeText<&Component::setCardinality>      },
    {"Accuracy",          "Accuracy",           takeText<&Component::setAccuracy>         },
    {"AccuracyCondition", "Accuracy Condition", takeText<&Component::setAccuracyCondition>},
};

constexpr ClauseWord<DtEnumeratedDatatypeNode> theEnumeratedDatatypeWords[] = {
    {"Name", "Name", takeText<&DtEnumeratedDatatypeNode::setName>},
};

constexpr ClauseWord<DtEnumerationNode> theEnumerationWords[] = {
    {"Enumerator",     "Enumerator",     takeStringOnly<&DtEnumerationNode::setEnum>},
    {"Representation", "Representation", takeNumber<&DtEnumerationNode::setNumber>  },
};

constexpr ClauseWord<DtNoteNode> theNoteWords[] = {
    {"NoteText",   "NoteText",   takeText<&DtNoteNode::setText>    },
    {"NoteNumber", "NoteNumber", takeNumber<&DtNoteNode::setNumber>},
};

/// Sets a property of the tree, if the value of the clause is a string.
void setText(DtOMTTree* tree, void (DtOMTTree::*set)(const DtString&), const DtlObjPtr& clause)
{
    const DtlObjPtr value = DtcCadr(clause);
    if (DtcStringp(value)) (tree->*set)(value->string());
}

/// The form that begins with the symbol ObjectModel; nothing of those before it is looked at.
DtlObjPtr findObjectModel(DtlInputStream& stream, const ClauseWalk& walk)
{
    DtSexpEnvironment environment;
    const DtlObjPtr end = DtcIntern("eof", environment.env());
    const DtlObjPtr keyword = DtcMakeSymbol("ObjectModel");
    DtlObjPtr form = DtcRead(stream, environment.env());
    if (DtcEq(form, end)) walk.fail("OMT Input file is empty");
    while (!DtcListp(form) || !DtcEqual(DtcCar(form), keyword))
    {
        if (DtcEq(form, end)) walk.fail("Could not find ObjectModel tag");
        form = DtcRead(stream, environment.env());
    }
    return form;
}

/// Fails where there is no such file, or nothing can be read from it, as from a directory.
std::unique_ptr<DtlInputStream> openStream(const DtString& fileName, const ClauseWalk& walk)
{
    std::FILE* const file = std::fopen(fileName.c_str(), "r");
    if (!file) walk.fail("Failed to Open OMT File");
    auto stream = std::make_unique<DtlFileInputStream>(file);
    std::ungetc(std::getc(file), file);
    if (std::ferror(file)) walk.fail("Failed to Open OMT Input Stream");
    return stream;
}

/// The predefined class that stands above all others.
template <typename Class>
Class* addRoot(DtOMTTree& tree, const char* name, const char* descriptor)
{
    auto root = std::make_unique<Class>();
    root->setName(name);
    root->setDescriptor(descriptor);
    root->setIdentifier(0);
    Class* const added = root.get();
    Hierarchy<Class>::add(tree, root.release());
    Hierarchy<Class>::setRoot(tree, added);
    return added;
}

/// Calls what sets up the handles of a class. They are an extra for connected hosts: a class
/// without them is read all the same.
template <typename SetHandles>
void setUpHandles(const DtExerciseConn* connection, SetHandles setHandles)
{
    if (!connection) return;
    try
    {
        setHandles();
    }
    catch (...)
    {
    }
}

}  // namespace

DtOMTFileReader::DtOMTFileReader() = default;
DtOMTFileReader::~DtOMTFileReader() = default;

DtOMTTree* DtOMTFileReader::readFile(const DtString& fileName, DtExerciseConn* connection)
{
    const ClauseWalk walk(myLastError);
    myConnection = connection;
    std::unique_ptr<DtlInputStream> stream = openStream(fileName, walk);
    DtSexpReadEscapeChar = "\\";
    DtlObjPtr form;
    try
    {
        form = findObjectModel(*stream, walk);
    }
    catch (const DtOMTReadException&)
    {
        throw;
    }
    catch (const DtException& problem)
    {
        walk.fail("Badly formatted OMT file, " + problem.location() + ": " + problem.message());
    }
    stream.reset();

    DtlObjPtr clauses = DtcCdr(form);
    DtOMTTree* const tree = processObjectModel(clauses);
    DtSexpReadEscapeChar = nullptr;
    return tree;
}

DtOMTTree* DtOMTFileReader::processObjectModel(DtlObjPtr& clauses)
{
    if (!DtcListp(clauses)) ClauseWalk(myLastError).fail("Could not find ObjectModel tree");
    DtOMTTreePtr tree(new DtOMTTree);
    tree->setHlaVersion(DtHla13);

    DtOMTTreePOC contact;
    bool hasContact = false;
    forEachClause(clauses,
                  [&](const DtString& keyword, DtlObjPtr& clause)
                  {
                      if (const auto* const section = findWord(theSections, keyword))
                          (this->*section->process)(clause, tree.get());
                      else if (const auto* const word = findWord(theContactWords, keyword))
                      {
                          contact.*word->field = DtcCadr(clause)->string();
                          hasContact = true;
                      }
                  });
    if (hasContact) tree->addPOC(contact);
    buildObjectClassTree(tree.get());
    buildInteractionClassTree(tree.get());
    return tree.release();
}

void DtOMTFileReader::processName(DtlObjPtr& clause, DtOMTTree* tree)
{
    setText(tree, &DtOMTTree::setName, clause);
}

void DtOMTFileReader::processVersionNo(DtlObjPtr& clause, DtOMTTree* tree)
{
    setText(tree, &DtOMTTree::setVersionNo, clause);
}

void DtOMTFileReader::processType(DtlObjPtr& clause, DtOMTTree* tree)
{
    setText(tree, &DtOMTTree::setType, clause);
}

void DtOMTFileReader::processPurpose(DtlObjPtr& clause, DtOMTTree* tree)
{
    setText(tree, &DtOMTTree::setPurpose, clause);
}

void DtOMTFileReader::processApplicationDomain(DtlObjPtr& clause, DtOMTTree* tree)
{
    setText(tree, &DtOMTTree::setApplicationDomain, clause);
}

void DtOMTFileReader::processSponsorOrgName(DtlObjPtr& clause, DtOMTTree* tree)
{
    setText(tree, &DtOMTTree::setSponsorOrgName, clause);
}

void DtOMTFileReader::processModificationDate(DtlObjPtr& clause, DtOMTTree* tree)
{
    setText(tree, &DtOMTTree::setModificationDate, clause);
}

void DtOMTFileReader::processMOMVersion(DtlObjPtr& clause, DtOMTTree* tree)
{
    setText(tree, &DtOMTTree::setMOMVersion, clause);
}

void DtOMTFileReader::processComplexDataType(DtlObjPtr& clause, DtOMTTree* tree)
{
    const auto readPart = [this](DtComplexDatatypeNode& node, DtlObjPtr& clauses)
    { node.addComponentNode(processComplexComponent(clauses)); };
    handOver(tree, &DtOMTTree::addComplexDatatypeNode,
             ClauseWalk(myLastError)
                 .readWhole(clause, theComplexDatatype, theComplexDatatypeWords,
                            theComplexComponents, readPart));
}

DtComplexComponentNode* DtOMTFileReader::processComplexComponent(DtlObjPtr& clauses)
{
    return ClauseWalk(myLastError)
        .readNode(clauses, theComplexComponent, theComplexComponentWords)
        .release();
}

void DtOMTFileReader::processEnumeratedDataType(DtlObjPtr& clause, DtOMTTree* tree)
{
    const auto readPart = [this](DtEnumeratedDatatypeNode& node, DtlObjPtr& clauses)
    { addEnumerator(node, processEnumeration(clauses)); };
    handOver(tree, &DtOMTTree::addEnumeratedDatatypeNode,
             ClauseWalk(myLastError)
                 .readWhole(clause, theEnumeratedDatatype, theEnumeratedDatatypeWords,
                            theEnumerations, readPart));
}

DtEnumerationNode* DtOMTFileReader::processEnumeration(DtlObjPtr& clauses)
{
    return ClauseWalk(myLastError).readNode(clauses, theEnumeration, theEnumerationWords).release();
}

void DtOMTFileReader::processNote(DtlObjPtr& clause, DtOMTTree* tree)
{
    handOver(tree, &DtOMTTree::addNoteNode,
             ClauseWalk(myLastError).readNode(DtcCdr(clause), theNote, theNoteWords));
}

void DtOMTFileReader::processObjectClass(DtlObjPtr& clause, DtOMTTree* tree)
{
    const auto readPart = [this](DtObjectClassFedNode& node, DtlObjPtr& clauses)
    { addRead(node, processAttribute(clauses)); };
    handOver(tree, &DtOMTTree::addObjectClassNode,
             ClauseWalk(myLastError)
                 .readWhole(clause, theObjectClass, theObjectClassWords, theAttributes, readPart));
}

DtAttributeFedNode* DtOMTFileReader::processAttribute(DtlObjPtr& clauses)
{
    return ClauseWalk(myLastError).readNode(clauses, theAttribute, theAttributeWords).release();
}

void DtOMTFileReader::processInteractionClass(DtlObjPtr& clause, DtOMTTree* tree)
{
    const auto readPart = [this](DtInteractionClassFedNode& node, DtlObjPtr& clauses)
    { node.addParameter(processParameter(clauses)); };
    handOver(tree, &DtOMTTree::addInteractionClassNode,
             ClauseWalk(myLastError)
                 .readWhole(clause, theInteractionClass, theInteractionClassWords, theParameters,
                            readPart));
}

DtParameterFedNode* DtOMTFileReader::processParameter(DtlObjPtr& clauses)
{
    return ClauseWalk(myLastError).readNode(clauses, theParameter, theParameterWords).release();
}

void DtOMTFileReader::buildObjectClassTree(DtOMTTree* tree)
{
    if (tree->objectClassRoot()) return;
    auto* const root = addRoot<DtObjectClassFedNode>(*tree, "ObjectRoot", "Predefined object root");
    linkClasses(*tree, root,
                [this](DtObjectClassFedNode* node)
                { setUpHandles(myConnection, [=, this] { setAttributeHandles(node); }); });
}

void DtOMTFileReader::buildInteractionClassTree(DtOMTTree* tree)
{
    if (tree->interactionClassRoot()) return;
    auto* const root =
        addRoot<DtInteractionClassFedNode>(*tree, "InteractionRoot", "Predefined Interaction Root");
    linkClasses(*tree, root,
                [this](DtInteractionClassFedNode* node)
                { setUpHandles(myConnection, [=, this] { setParameterHandles(node); }); });
}

void DtOMTFileReader::setAttributeHandles(DtObjectClassFedNode* node)
{
    for ([[maybe_unused]] const auto* attribute : node->getAttributes())
    {
    }
}

void DtOMTFileReader::setParameterHandles(DtInteractionClassFedNode* node)
{
    for ([[maybe_unused]] const auto* parameter : node->getParameters())
    {
    }
}
