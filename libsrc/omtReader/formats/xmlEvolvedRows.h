// SPDX-License-Identifier: Apache-2.0
// What is written of each node of a 1516-2010 document: its elements in their order, and where
// their texts are from.
#pragma once

#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/basicDataRepresentationNode.h"
#include "omtReader/descriptionNode.h"
#include "omtReader/dimensionNode.h"
#include "omtReader/enumeratedDatatypeNode.h"
#include "omtReader/fixedDatatypeNode.h"
#include "omtReader/interactionClassFedNode.h"
#include "omtReader/noteNode.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTree.h"
#include "omtReader/simpleDatatypeNode.h"
#include "omtReader/synchroNode.h"
#include "omtReader/tagNode.h"
#include "omtReader/timeRepNode.h"
#include "omtReader/updateRateNode.h"
#include "omtReader/variantDatatypeNode.h"

namespace omtreader::evolved
{

/// An element for one text of a node.
template <typename Node>
struct Row
{
    const char* element;
    const DtString& (*text)(Node&);
    bool isAlways = false;  // also when the text is empty
};

template <auto get, typename Node>
const DtString& textOf(Node& node)
{
    return (node.*get)();
}

inline constexpr Row<DtOMTTree> theIdentification[] = {
    {"version",                textOf<&DtOMTTree::getVersionNo>             },
    {"modificationDate",       textOf<&DtOMTTree::getModificationDate>      },
    {"securityClassification", textOf<&DtOMTTree::getSecurityClassification>},
    {"releaseRestriction",     textOf<&DtOMTTree::getReleaseRestriction>    },
    {"purpose",                textOf<&DtOMTTree::getPurpose>               },
    {"applicationDomain",      textOf<&DtOMTTree::getApplicationDomain>     },
    {"description",            textOf<&DtOMTTree::getDescription>           },
    {"useLimitation",          textOf<&DtOMTTree::getUseLimitation>         },
};

using ObjectClass = DtObjectClassFedNode;
inline constexpr Row<ObjectClass> theObjectClass[] = {
    {"name",      textOf<&ObjectClass::getName>      },
    {"sharing",   textOf<&ObjectClass::getSharing>   },
    {"semantics", textOf<&ObjectClass::getDescriptor>},
};

// The dimensions stand between the two.
using Attribute = DtAttributeFedNode;
inline constexpr Row<Attribute> theAttributeHead[] = {
    {"name",            textOf<&Attribute::getName>           },
    {"dataType",        textOf<&Attribute::getDatatype>       },
    {"updateType",      textOf<&Attribute::getUpdateType>     },
    {"updateCondition", textOf<&Attribute::getUpdateCondition>},
    {"ownership",       textOf<&Attribute::getTransferAccept> },
    {"sharing",         textOf<&Attribute::getSharing>        },
};
inline constexpr Row<Attribute> theAttributeTail[] = {
    {"transportation", textOf<&Attribute::getTransportation>},
    {"order",          textOf<&Attribute::getOrder>         },
    {"semantics",      textOf<&Attribute::getDescription>   },
};

// The dimensions stand between the two.
using InteractionClass = DtInteractionClassFedNode;
inline constexpr Row<InteractionClass> theInteractionClassHead[] = {
    {"name",    textOf<&InteractionClass::getName>   },
    {"sharing", textOf<&InteractionClass::getSharing>},
};
inline constexpr Row<InteractionClass> theInteractionClassTail[] = {
    {"transportation", textOf<&InteractionClass::getTransportation>},
    {"order",          textOf<&InteractionClass::getOrder>         },
    {"semantics",      textOf<&InteractionClass::getDescriptor>    },
};

using Parameter = DtParameterFedNode;
inline constexpr Row<Parameter> theParameter[] = {
    {"name",           textOf<&Parameter::getName>          },
    {"dataType",       textOf<&Parameter::getDatatype>      },
    {"sharing",        textOf<&Parameter::getSharing>       },
    {"transportation", textOf<&Parameter::getTransportation>},
    {"order",          textOf<&Parameter::getOrder>         },
    {"semantics",      textOf<&Parameter::getDescription>   },
};

inline constexpr Row<DtDimensionNode> theDimension[] = {
    {"name",          textOf<&DtDimensionNode::getName>         },
    {"dataType",      textOf<&DtDimensionNode::getDatatype>     },
    {"upperBound",    textOf<&DtDimensionNode::getUpperBound>   },
    {"normalization", textOf<&DtDimensionNode::getNormalization>},
    {"value",         textOf<&DtDimensionNode::getValue>        },
};

inline constexpr Row<DtTimeRepNode> theTimeStamp[] = {
    {"dataType",  textOf<&DtTimeRepNode::getFedTimeDatatype> },
    {"semantics", textOf<&DtTimeRepNode::getFedTimeSemantics>},
};
inline constexpr Row<DtTimeRepNode> theLookahead[] = {
    {"dataType",  textOf<&DtTimeRepNode::getLookaheadDatatype> },
    {"semantics", textOf<&DtTimeRepNode::getLookaheadSemantics>},
};

inline constexpr Row<DtTagNode> theTag[] = {
    {"dataType",  textOf<&DtTagNode::getDatatype>   },
    {"semantics", textOf<&DtTagNode::getDescription>},
};

// The small t of "datatype" is kept, because programs that take these documents look for it.
inline constexpr Row<DtSynchroNode> theSynchronization[] = {
    {"label",      textOf<&DtSynchroNode::getName>       },
    {"datatype",   textOf<&DtSynchroNode::getDatatype>   },
    {"capability", textOf<&DtSynchroNode::getCapability> },
    {"semantics",  textOf<&DtSynchroNode::getDescription>},
};

inline constexpr Row<DtDescriptionNode> theTransportation[] = {
    {"name",      textOf<&DtDescriptionNode::getName>       },
    {"reliable",  textOf<&DtDescriptionNode::getReliable>   },
    {"semantics", textOf<&DtDescriptionNode::getDescription>},
};

inline constexpr Row<DtUpdateRateNode> theUpdateRate[] = {
    {"name",      textOf<&DtUpdateRateNode::getName>  },
    {"semantics", textOf<&DtUpdateRateNode::semantics>},
};

using BasicData = DtBasicDataRepresentationNode;
inline constexpr Row<BasicData> theBasicData[] = {
    {"name",           textOf<&BasicData::getName>          },
    {"size",           textOf<&BasicData::getSize>          },
    {"interpretation", textOf<&BasicData::getInterpretation>},
    {"endian",         textOf<&BasicData::getEndian>        },
    {"encoding",       textOf<&BasicData::getEncoding>      },
};

using SimpleData = DtSimpleDatatypeNode;
inline constexpr Row<SimpleData> theSimpleData[] = {
    {"name",           textOf<&SimpleData::getName>          },
    {"representation", textOf<&SimpleData::getRepresentation>},
    {"units",          textOf<&SimpleData::getUnits>         },
    {"resolution",     textOf<&SimpleData::getResolution>    },
    {"accuracy",       textOf<&SimpleData::getAccuracy>      },
    {"semantics",      textOf<&SimpleData::getDescription>   },
};

using EnumeratedData = DtEnumeratedDatatypeNode;
inline constexpr Row<EnumeratedData> theEnumeratedData[] = {
    {"name",           textOf<&EnumeratedData::getName>          },
    {"representation", textOf<&EnumeratedData::getRepresentation>},
    {"semantics",      textOf<&EnumeratedData::getDescription>   },
};

using ArrayData = DtArrayDatatypeNode;
inline constexpr Row<ArrayData> theArrayData[] = {
    {"name",        textOf<&ArrayData::getName>       },
    {"dataType",    textOf<&ArrayData::getDatatype>   },
    {"cardinality", textOf<&ArrayData::getCardinality>},
    {"encoding",    textOf<&ArrayData::getEncoding>   },
    {"semantics",   textOf<&ArrayData::getDescription>},
};

using FixedRecord = DtFixedDatatypeNode;
inline constexpr Row<FixedRecord> theFixedRecord[] = {
    {"name",      textOf<&FixedRecord::getName>       },
    {"encoding",  textOf<&FixedRecord::getEncoding>   },
    {"semantics", textOf<&FixedRecord::getDescription>},
};

inline constexpr Row<DtFieldComponentNode> theField[] = {
    {"name",      textOf<&DtFieldComponentNode::getName>       },
    {"dataType",  textOf<&DtFieldComponentNode::getDatatype>   },
    {"semantics", textOf<&DtFieldComponentNode::getDescription>},
};

// Kept for compatibility: without "encoding" and "semantics".
using VariantRecord = DtVariantDatatypeNode;
inline constexpr Row<VariantRecord> theVariantRecord[] = {
    {"name",         textOf<&VariantRecord::getName>,         true},
    {"discriminant", textOf<&VariantRecord::getDiscriminant>, true},
    {"dataType",     textOf<&VariantRecord::getDatatype>,     true},
};

// Kept for compatibility: without "semantics".
using Alternative = DtAlternativeComponentNode;
inline constexpr Row<Alternative> theAlternative[] = {
    {"enumerator", textOf<&Alternative::getEnumerator>, true},
    {"name",       textOf<&Alternative::getName>,       true},
    {"dataType",   textOf<&Alternative::getDatatype>,   true},
};

inline constexpr Row<DtNoteNode> theNote[] = {
    {"label",     textOf<&DtNoteNode::getLabel>},
    {"semantics", textOf<&DtNoteNode::getText> },
};

}  // namespace omtreader::evolved
