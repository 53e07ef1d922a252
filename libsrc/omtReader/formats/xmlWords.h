// SPDX-License-Identifier: Apache-2.0
// The vocabularies that the two XML dialects have in common.
#pragma once

#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/dimensionNode.h"
#include "omtReader/fixedDatatypeNode.h"
#include "omtReader/formats/xmlVocabulary.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/simpleDatatypeNode.h"
#include "omtReader/synchroNode.h"
#include "omtReader/tagNode.h"
#include "omtReader/timeRepNode.h"
#include "omtReader/variantDatatypeNode.h"

namespace omtreader
{

inline constexpr Spelling<DtObjectClassFedNode> theObjectClassWords[] = {
    {"name", &DtObjectClassFedNode::setName, WhenEmpty::drop},
    {"sharing", &DtObjectClassFedNode::setSharing},
    {"semantics", &DtObjectClassFedNode::setDescriptor},
};

inline constexpr Spelling<DtSimpleDatatypeNode> theSimpleDataWords[] = {
    {"name", &DtSimpleDatatypeNode::setName, WhenEmpty::drop},
    {"representation", &DtSimpleDatatypeNode::setRepresentation},
    {"units", &DtSimpleDatatypeNode::setUnits},
    {"resolution", &DtSimpleDatatypeNode::setResolution},
    {"accuracy", &DtSimpleDatatypeNode::setAccuracy},
    {"semantics", &DtSimpleDatatypeNode::setDescription},
};

inline constexpr Spelling<DtEnumeratedDatatypeNode> theEnumeratedDataWords[] = {
    {"name", &DtEnumeratedDatatypeNode::setName, WhenEmpty::drop},
    {"representation", &DtEnumeratedDatatypeNode::setRepresentation},
    {"semantics", &DtEnumeratedDatatypeNode::setDescription},
};

inline constexpr Spelling<DtEnumerationNode> theEnumeratorWords[] = {
    {"name", &DtEnumerationNode::setEnum, WhenEmpty::drop},
};

inline constexpr Spelling<DtArrayDatatypeNode> theArrayDataWords[] = {
    {"name", &DtArrayDatatypeNode::setName, WhenEmpty::drop},
    {"dataType", &DtArrayDatatypeNode::setDatatype},
    {"cardinality", &DtArrayDatatypeNode::setCardinality},
    {"encoding", &DtArrayDatatypeNode::setEncoding},
    {"semantics", &DtArrayDatatypeNode::setDescription},
};

inline constexpr Spelling<DtFieldComponentNode> theFieldWords[] = {
    {"name", &DtFieldComponentNode::setName, WhenEmpty::drop},
    {"dataType", &DtFieldComponentNode::setDatatype},
    {"semantics", &DtFieldComponentNode::setDescription},
};

inline constexpr Spelling<DtVariantDatatypeNode> theVariantDataWords[] = {
    {"name", &DtVariantDatatypeNode::setName, WhenEmpty::drop},
    {"discriminant", &DtVariantDatatypeNode::setDiscriminant},
    {"dataType", &DtVariantDatatypeNode::setDatatype},
    {"encoding", &DtVariantDatatypeNode::setEncoding},
    {"semantics", &DtVariantDatatypeNode::setDescription},
};

// An alternative may lack a name: one that carries no data has none.
inline constexpr Spelling<DtAlternativeComponentNode> theAlternativeWords[] = {
    {"enumerator", &DtAlternativeComponentNode::setEnumerator },
    {"name",       &DtAlternativeComponentNode::setName       },
    {"dataType",   &DtAlternativeComponentNode::setDatatype   },
    {"semantics",  &DtAlternativeComponentNode::setDescription},
};

inline constexpr Spelling<DtDimensionNode> theDimensionWords[] = {
    {"name", &DtDimensionNode::setName, WhenEmpty::drop},
    {"dataType", &DtDimensionNode::setDatatype},
    {"upperBound", &DtDimensionNode::setUpperBound},
    {"normalization", &DtDimensionNode::setNormalization},
    {"value", &DtDimensionNode::setValue},
};

inline constexpr Spelling<DtTagNode> theTagWords[] = {
    {"dataType",  &DtTagNode::setDatatype   },
    {"semantics", &DtTagNode::setDescription},
};

inline constexpr Spelling<DtSynchroNode> theSynchronizationWords[] = {
    {"label", &DtSynchroNode::setName, WhenEmpty::drop},
    {"dataType", &DtSynchroNode::setDatatype},
    {"capability", &DtSynchroNode::setCapability},
    {"semantics", &DtSynchroNode::setDescription},
};

inline constexpr Spelling<DtTimeRepNode> theTimeStampWords[] = {
    {"dataType",  &DtTimeRepNode::setFedTimeDatatype,  WhenEmpty::skip},
    {"semantics", &DtTimeRepNode::setFedTimeSemantics, WhenEmpty::skip},
};

inline constexpr Spelling<DtTimeRepNode> theLookaheadWords[] = {
    {"dataType",  &DtTimeRepNode::setLookaheadDatatype,  WhenEmpty::skip},
    {"semantics", &DtTimeRepNode::setLookaheadSemantics, WhenEmpty::skip},
};

// The warnings for definitions whose name is empty.
inline constexpr char theNamelessObjectClass[] =
    "Warning: objectClass definition was missing a name\n";
inline constexpr char theNamelessAttribute[] = "Warning: attribute definition was missing a name\n";
inline constexpr char theNamelessInteractionClass[] =
    "Warning: interactionClass definition was missing a name\n";
inline constexpr char theNamelessParameter[] = "Warning: parameter definition was missing a name\n";
inline constexpr char theNamelessBasicData[] = "Warning: basicData definition was missing a name\n";
inline constexpr char theNamelessSimpleData[] =
    "Warning: simpleData definition was missing a name\n";
inline constexpr char theNamelessEnumeratedData[] =
    "Warning: enumeratedData definition was missing a name\n";
inline constexpr char theNamelessEnumerator[] =
    "Warning: enumerator definition was missing a name\n";
inline constexpr char theNamelessArrayData[] = "Warning: arrayData definition was missing a name\n";
inline constexpr char theNamelessField[] =
    "Warning: fixedRecordData field definition was missing a name\n";
inline constexpr char theNamelessVariantData[] =
    "Warning: variantRecordData definition was missing a name\n";
inline constexpr char theNamelessDimension[] = "Warning: dimension definition was missing a name\n";
inline constexpr char theNamelessSynchronization[] =
    "Warning: synchronization definition was missing a label\n";

}  // namespace omtreader
