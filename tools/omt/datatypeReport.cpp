// SPDX-License-Identifier: Apache-2.0
#include "datatypeReport.h"

#include "modelInput.h"
#include "modelLists.h"
#include "nearestNames.h"
#include "omtReader/dimensionNode.h"
#include "omtReader/synchroNode.h"
#include "omtReader/tagNode.h"
#include "omtReader/timeRepNode.h"
#include "textTable.h"

namespace
{

using Tree = DtOMTTree;

std::string definition(const DtBasicDataRepresentationNode& node, const DatatypeKinds&)
{
    PropertyList list;
    list.add("Kind", "basic data representation");
    list.add("Size in bits", node.getSize().view());
    list.add("Endian", node.getEndian().view());
    list.add("Interpretation", node.getInterpretation().view());
    list.add("Encoding", node.getEncoding().view());
    list.add("Notes", node.getNote().view());
    return list.text();
}

std::string definition(const DtSimpleDatatypeNode& node, const DatatypeKinds& kinds)
{
    PropertyList list;
    list.add("Kind", "simple datatype");
    list.add("Representation", kinds.nameWithKind(node.getRepresentation()));
    list.add("Units", node.getUnits().view());
    list.add("Resolution", node.getResolution().view());
    list.add("Accuracy", node.getAccuracy().view());
    list.add("Meaning", node.getDescription().view());
    list.add("Notes", node.getNote().view());
    return list.text();
}

std::string definition(const DtEnumeratedDatatypeNode& node, const DatatypeKinds& kinds)
{
    PropertyList list;
    list.add("Kind", "enumerated datatype");
    list.add("Representation", kinds.nameWithKind(node.getRepresentation()));
    list.add("Meaning", node.getDescription().view());
    list.add("Notes", node.getNote().view());
    TextTable table({whole("Number"), whole("Name")});
    for (const DtEnumerationNode* one : enumeratorsOf(node))
        table.add({std::to_string(one->getNumber()), one->getEnum().str()});
    return list.text() + heading("Enumerators") + table.text();
}

std::string definition(const DtArrayDatatypeNode& node, const DatatypeKinds& kinds)
{
    PropertyList list;
    list.add("Kind", "array datatype");
    list.add("Element", kinds.nameWithKind(node.getDatatype()));
    list.add("Cardinality", node.getCardinality().view());
    list.add("Encoding", node.getEncoding().view());
    list.add("Meaning", node.getDescription().view());
    list.add("Notes", node.getNote().view());
    return list.text();
}

std::string definition(const DtFixedDatatypeNode& node, const DatatypeKinds& kinds)
{
    PropertyList list;
    list.add("Kind", "fixed record datatype");
    list.add("Encoding", node.getEncoding().view());
    list.add("Meaning", node.getDescription().view());
    list.add("Notes", node.getNote().view());
    TextTable table({whole("Name"), whole("Datatype"), wrap("Meaning")});
    for (const DtFieldComponentNode* field : partsOf(node))
        table.add({field->getName().str(), kinds.nameWithKind(field->getDatatype()),
                   field->getDescription().str()});
    return list.text() + heading("Fields") + table.text();
}

std::string definition(const DtVariantDatatypeNode& node, const DatatypeKinds& kinds)
{
    PropertyList list;
    list.add("Kind", "variant record datatype");
    list.add("Discriminant",
             node.getDiscriminant().str() + ": " + kinds.nameWithKind(node.getDatatype()));
    list.add("Encoding", node.getEncoding().view());
    list.add("Meaning", node.getDescription().view());
    list.add("Notes", node.getNote().view());
    TextTable table({wrap("Enumerator"), whole("Name"), whole("Datatype"), wrap("Meaning")});
    for (const DtAlternativeComponentNode* one : partsOf(node))
        table.add({one->getEnumerator().str(), one->getName().str(),
                   kinds.nameWithKind(one->getDatatype()), one->getDescription().str()});
    return list.text() + heading("Alternatives") + table.text();
}

std::string definition(DtComplexDatatypeNode& node, const DatatypeKinds& kinds)
{
    PropertyList list;
    list.add("Kind", "complex datatype");
    list.add("Notes", node.getNote().view());
    TextTable table({whole("Name"), whole("Datatype"), whole("Cardinality"), wrap("Accuracy"),
                     wrap("Accurate when")});
    for (const DtComplexComponentNode* one : partsOf(node))
        table.add({one->getName().str(), kinds.nameWithKind(one->getDatatype()),
                   one->getCardinality().str(), one->getAccuracy().str(),
                   one->getAccuracyCondition().str()});
    return list.text() + heading("Components") + table.text();
}

template <typename Class>
void addMembers(TextTable& table, Tree& tree, const std::string& name)
{
    for (const Class* node : ClassKind<Class>::all(tree))
        for (const auto* member : ClassKind<Class>::members(*node))
            if (member->getDatatype() == name.c_str())
                table.add({ClassKind<Class>::memberWord, member->getFullName().str(), ""});
}

template <typename Nodes>
void addEntries(TextTable& table, const char* word, const Nodes& nodes, const std::string& name)
{
    for (const auto* node : nodes)
        if (node->getDatatype() == name.c_str()) table.add({word, node->getName().str(), ""});
}

/// Every place of the model that names the datatype.
TextTable users(Tree& tree, const std::string& name)
{
    TextTable table({whole(""), whole(""), wrap("")});
    addMembers<DtObjectClassFedNode>(table, tree, name);
    addMembers<DtInteractionClassFedNode>(table, tree, name);
    for (const Datatype& datatype : datatypesOf(tree))
        forEachReference(datatype,
                         [&](const std::string& place, const DtString& used)
                         {
                             if (used == name.c_str())
                                 table.add({kindOf(datatype), nameOf(datatype).str(), place});
                         });
    addEntries(table, "dimension",
               rangeOf(tree, &Tree::getDimensionNodeList, &Tree::getDimensionEndNode), name);
    addEntries(table, "synchronization point",
               rangeOf(tree, &Tree::getSynchroNodeList, &Tree::getSynchroEndNode), name);
    addEntries(table, "tag", rangeOf(tree, &Tree::getTagNodeList, &Tree::getTagEndNode), name);
    const DtTimeRepNode& time = *tree.getTimeRepNode();
    if (time.getFedTimeDatatype() == name.c_str()) table.add({"time", "time stamp", ""});
    if (time.getLookaheadDatatype() == name.c_str()) table.add({"time", "lookahead", ""});
    return table;
}

std::string baseDefinition(const std::string& name)
{
    PropertyList list;
    list.add("Kind", "base datatype of HLA 1.3");
    return heading(name, '=') + list.text();
}

const char* whyMissing(const Tree& tree)
{
    return tree.hlaVersion() == DtHla13
               ? "; the model refers to it, and does not define it"
               : "; as the model refers to it, a module or --mim may be missing";
}

}  // namespace

std::string datatypeReport(DtOMTTree& tree, const std::string& name)
{
    const DatatypeKinds kinds(tree);
    const TextTable used = users(tree, name);
    std::string text;
    std::vector<std::string> names;
    for (const Datatype& datatype : datatypesOf(tree))
    {
        names.push_back(nameOf(datatype).str());
        if (names.back() != name) continue;
        text += heading(name, '=');
        text += std::visit([&](auto* node) { return definition(*node, kinds); }, datatype);
    }
    if (text.empty() && kinds.isBase(name)) text = baseDefinition(name);
    if (text.empty())
        throw InputError(unknownName("datatype", name, names) +
                         (used.isEmpty() ? "" : whyMissing(tree)));
    text += used.isEmpty() ? "\nNothing in the model refers to it.\n"
                           : heading("Used by") + used.text();
    return text.substr(1);
}
