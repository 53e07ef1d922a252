// SPDX-License-Identifier: Apache-2.0
// Datatypes of a model, made in one line each, for tests and fuzz targets.
#pragma once

#include "omtReader/arrayDatatypeNode.h"
#include "omtReader/complexDatatypeNode.h"
#include "omtReader/enumeratedDatatypeNode.h"
#include "omtReader/fixedDatatypeNode.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/simpleDatatypeNode.h"
#include "omtReader/variantDatatypeNode.h"

/// A new node with this name.
template <typename Node>
Node* named(const DtString& name)
{
    auto* const node = new Node;
    node->setName(name);
    return node;
}

/// Adds a field, an alternative or a component, and gives it.
template <typename Component, typename Record>
Component* addComponent(Record& record, const DtString& name, const DtString& datatype)
{
    auto* const component = named<Component>(name);
    component->setDatatype(datatype);
    record.addComponentNode(component);
    return component;
}

inline void addSimple(DtOMTTree& tree, const DtString& name, const DtString& representation)
{
    auto* const simple = named<DtSimpleDatatypeNode>(name);
    simple->setRepresentation(representation);
    tree.addSimpleDatatypeNode(simple);
}

inline void addArray(DtOMTTree& tree, const DtString& name, const DtString& element,
                     const DtString& encoding, const DtString& cardinality)
{
    auto* const array = named<DtArrayDatatypeNode>(name);
    array->setDatatype(element);
    array->setEncoding(encoding);
    array->setCardinality(cardinality);
    tree.addArrayDatatypeNode(array);
}

inline DtEnumeratedDatatypeNode* addEnumerated(DtOMTTree& tree, const DtString& name,
                                               const DtString& representation)
{
    auto* const enumerated = named<DtEnumeratedDatatypeNode>(name);
    enumerated->setRepresentation(representation);
    tree.addEnumeratedDatatypeNode(enumerated);
    return enumerated;
}

inline void addEnumerator(DtEnumeratedDatatypeNode& enumerated, const DtString& name, int number)
{
    auto* const enumerator = new DtEnumerationNode;
    enumerator->setEnum(name);
    enumerator->setNumber(number);
    enumerated.addEnumerationNode(enumerator);
}
