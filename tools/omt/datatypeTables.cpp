// SPDX-License-Identifier: Apache-2.0
#include "datatypeTables.h"

#include "modelLists.h"
#include "plainText.h"
#include "tableSection.h"

namespace
{

using Row = std::vector<std::string>;

template <typename Node>
std::vector<Node*> nodesOf(const std::vector<Datatype>& datatypes)
{
    std::vector<Node*> nodes;
    for (const Datatype& datatype : datatypes)
        if (auto* const node = std::get_if<Node*>(&datatype)) nodes.push_back(*node);
    return nodes;
}

std::string enumeratorsText(const DtEnumeratedDatatypeNode& node)
{
    constexpr std::size_t theMostShown = 20;  // more than fit on a line
    std::vector<std::string> texts;
    for (const DtEnumerationNode* one : enumeratorsOf(node))
    {
        texts.push_back(one->getEnum().str() + '=' + std::to_string(one->getNumber()));
        if (texts.size() == theMostShown) break;
    }
    return joined(texts, ", ");
}

std::string headline(const DtOMTNode& node)
{
    return node.getName().str();
}

std::string headline(const DtVariantDatatypeNode& node)
{
    return node.getName().str() + ", by " + node.getDiscriminant().str() + ": " +
           node.getDatatype().str();
}

/// Records and their parts, each part on a line of its own; nothing when there are no records.
template <typename Node, typename Cells>
std::string records(const char* title, const std::vector<Datatype>& types, Cells cells)
{
    const std::vector<Node*> nodes = nodesOf<Node>(types);
    if (nodes.empty()) return "";
    std::string text = heading(withCount(title, nodes.size()));
    for (Node* node : nodes)
    {
        constexpr std::size_t thePartIndent = 6;
        TextTable parts({whole(""), whole(""), wrap("")}, thePartIndent);
        for (const auto* part : partsOf(*node)) parts.add(cells(*part));
        text += "  " + oneLine(headline(*node)) + '\n' + parts.text();
    }
    return text;
}

std::string numberTables(const std::vector<Datatype>& types)
{
    return section("Basic data representations",
                   {whole("Name"), whole("Bits"), whole("Endian"), clip("Meaning")},
                   nodesOf<DtBasicDataRepresentationNode>(types),
                   [](const DtBasicDataRepresentationNode& node)
                   {
                       const DtString& meaning = node.getInterpretation().empty()
                                                     ? node.getEncoding()
                                                     : node.getInterpretation();
                       return Row{node.getName().str(), node.getSize().str(),
                                  node.getEndian().str(), meaning.str()};
                   }) +
           section("Simple datatypes",
                   {whole("Name"), whole("Representation"), clip("Units"), clip("Resolution"),
                    clip("Accuracy")},
                   nodesOf<DtSimpleDatatypeNode>(types),
                   [](const DtSimpleDatatypeNode& node)
                   {
                       return Row{node.getName().str(), node.getRepresentation().str(),
                                  node.getUnits().str(), node.getResolution().str(),
                                  node.getAccuracy().str()};
                   });
}

std::string collectionTables(const std::vector<Datatype>& types)
{
    return section("Enumerated datatypes",
                   {whole("Name"), whole("Representation"), whole("Values"), clip("Enumerators")},
                   nodesOf<DtEnumeratedDatatypeNode>(types),
                   [](const DtEnumeratedDatatypeNode& node)
                   {
                       return Row{node.getName().str(), node.getRepresentation().str(),
                                  std::to_string(enumeratorsOf(node).size()),
                                  enumeratorsText(node)};
                   }) +
           section("Array datatypes",
                   {whole("Name"), whole("Element"), whole("Cardinality"), clip("Encoding")},
                   nodesOf<DtArrayDatatypeNode>(types),
                   [](const DtArrayDatatypeNode& node)
                   {
                       return Row{node.getName().str(), node.getDatatype().str(),
                                  node.getCardinality().str(), node.getEncoding().str()};
                   });
}

std::string recordTables(const std::vector<Datatype>& types)
{
    return records<DtFixedDatatypeNode>(
               "Fixed record datatypes and their fields", types,
               [](const DtFieldComponentNode& field) {
                   return Row{field.getName().str(), field.getDatatype().str()};
               }) +
           records<DtVariantDatatypeNode>("Variant record datatypes and their alternatives", types,
                                          [](const DtAlternativeComponentNode& one)
                                          {
                                              return Row{one.getName().str(),
                                                         one.getDatatype().str(),
                                                         "when " + one.getEnumerator().str()};
                                          }) +
           records<DtComplexDatatypeNode>("Complex datatypes and their components", types,
                                          [](const DtComplexComponentNode& component)
                                          {
                                              return Row{component.getName().str(),
                                                         component.getDatatype().str(),
                                                         component.getCardinality().str()};
                                          });
}

}  // namespace

std::string datatypeTables(DtOMTTree& tree)
{
    const std::vector<Datatype> types = datatypesOf(tree);
    return numberTables(types) + collectionTables(types) + recordTables(types);
}
