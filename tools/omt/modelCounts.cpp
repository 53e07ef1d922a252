// SPDX-License-Identifier: Apache-2.0
#include "modelCounts.h"

#include "modelLists.h"

namespace
{

template <typename Class>
std::size_t memberCount(DtOMTTree& tree)
{
    std::size_t count = 0;
    for (const Class* node : ClassKind<Class>::all(tree))
        count += ClassKind<Class>::members(*node).size();
    return count;
}

template <typename Node>
std::size_t datatypeCount(const std::vector<Datatype>& datatypes)
{
    std::size_t count = 0;
    for (const Datatype& datatype : datatypes) count += std::holds_alternative<Node*>(datatype);
    return count;
}

std::size_t enumeratorCount(const std::vector<Datatype>& datatypes)
{
    std::size_t count = 0;
    for (const Datatype& datatype : datatypes)
        if (auto* const node = std::get_if<DtEnumeratedDatatypeNode*>(&datatype))
            count += enumeratorsOf(**node).size();
    return count;
}

}  // namespace

std::vector<Count> countsOf(DtOMTTree& tree)
{
    using Tree = DtOMTTree;
    using Object = DtObjectClassFedNode;
    using Interaction = DtInteractionClassFedNode;
    const std::vector<Datatype> types = datatypesOf(tree);
    std::vector<Count> counts;
    const auto add = [&](const char* key, const char* name, std::size_t number) {
        counts.push_back(Count{key, name, number});
    };
    const auto addTable = [&](const char* key, const char* name, auto begin, auto end)
    { add(key, name, rangeOf(tree, begin, end).size()); };

    add("objectClasses", "object classes", ClassKind<Object>::all(tree).size());
    add("attributes", "attributes", memberCount<Object>(tree));
    add("interactionClasses", "interaction classes", ClassKind<Interaction>::all(tree).size());
    add("parameters", "parameters", memberCount<Interaction>(tree));
    add("basic", "basic representations", datatypeCount<DtBasicDataRepresentationNode>(types));
    add("simple", "simple datatypes", datatypeCount<DtSimpleDatatypeNode>(types));
    add("enumerated", "enumerated datatypes", datatypeCount<DtEnumeratedDatatypeNode>(types));
    add("enumerators", "enumerators", enumeratorCount(types));
    add("array", "array datatypes", datatypeCount<DtArrayDatatypeNode>(types));
    add("fixed", "fixed records", datatypeCount<DtFixedDatatypeNode>(types));
    add("variant", "variant records", datatypeCount<DtVariantDatatypeNode>(types));
    add("complex", "complex datatypes", datatypeCount<DtComplexDatatypeNode>(types));
    addTable("notes", "notes", &Tree::getNoteNodeList, &Tree::getNoteEndNode);
    addTable("dimensions", "dimensions", &Tree::getDimensionNodeList, &Tree::getDimensionEndNode);
    addTable("transportations", "transportations", &Tree::getTransportationNodeList,
             &Tree::getTransportationEndNode);
    addTable("switches", "switches", &Tree::getSwitchNodeList, &Tree::getSwitchEndNode);
    addTable("synchronizations", "synchronization points", &Tree::getSynchroNodeList,
             &Tree::getSynchroEndNode);
    addTable("tags", "tags", &Tree::getTagNodeList, &Tree::getTagEndNode);
    addTable("updateRates", "update rates", &Tree::getUpdateRateNodeList,
             &Tree::getUpdateRateEndNode);
    return counts;
}
