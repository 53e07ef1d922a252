// SPDX-License-Identifier: Apache-2.0
#include "classReport.h"

#include "classSearch.h"
#include "modelLists.h"
#include "plainText.h"
#include "textTable.h"

namespace
{

std::string namesText(const std::list<DtString>& names)
{
    std::vector<std::string> texts;
    for (const DtString& name : names) texts.push_back(name.str());
    return joined(texts, ", ");
}

/// What attributes and parameters have in common.
void addValue(PropertyList& list, const DtDatatypeFedNode& value, const DatatypeKinds& kinds)
{
    list.add("Datatype", kinds.nameWithKind(value.getDatatype()));
    if (value.getCardinality() != "1") list.add("Cardinality", value.getCardinality().view());
    list.add("Accuracy", value.getAccuracy().view());
    list.add("Accurate when", value.getAccuracyCondition().view());
}

void addProperties(PropertyList& list, const DtAttributeFedNode& attribute)
{
    list.add("Update", attribute.getUpdateType().view());
    list.add("Condition", attribute.getUpdateCondition().view());
    list.add("Ownership", attribute.getTransferAccept().view());
    list.add("Sharing", attribute.getSharing().view());
    list.add("Dimensions", namesText(attribute.getDimensions()));
    list.add("Transportation", attribute.getTransportation().view());
    list.add("Order", attribute.getOrder().view());
}

void addProperties(PropertyList& list, const DtParameterFedNode& parameter)
{
    list.add("Sharing", parameter.getSharing().view());
    list.add("Transportation", parameter.getTransportation().view());
    list.add("Order", parameter.getOrder().view());
}

void addProperties(PropertyList& list, const DtObjectClassFedNode& node)
{
    list.add("Sharing", node.getSharing().view());
}

void addProperties(PropertyList& list, const DtInteractionClassFedNode& node)
{
    list.add("Sharing", node.getSharing().view());
    list.add("Dimensions", namesText(node.getDimensions()));
    list.add("Transportation", node.getTransportation().view());
    list.add("Order", node.getOrder().view());
}

template <typename Node>
std::string membersText(const Node& owner, const DatatypeKinds& kinds)
{
    std::string text;
    for (const auto* member : ClassKind<Node>::members(owner))
    {
        PropertyList list;
        addValue(list, *member, kinds);
        addProperties(list, *member);
        list.add("Meaning", member->getDescription().view());
        list.add("Notes", member->getNote().view());
        text += '\n' + oneLine(member->getName().view()) + '\n' + list.text();
    }
    return text;
}

template <typename Node>
std::string fullText(const Node& node, const DatatypeKinds& kinds)
{
    std::vector<std::string> children;
    for (const Node* child : ClassKind<Node>::children(node))
        children.push_back(child->getName().str());
    PropertyList list;
    list.add("Kind", ClassKind<Node>::word);
    addProperties(list, node);
    list.add("Meaning", node.getDescriptor().view());
    list.add("Notes", node.getNote().view());
    list.add("Child classes", children.empty() ? "none" : joined(children, ", "));
    std::string text = heading(node.getFullName().view(), '=').substr(1) + list.text();

    const std::string word = std::string(ClassKind<Node>::memberWord) + 's';
    const std::string own = membersText(node, kinds);
    text += own.empty() ? "\nNo " + word + " of its own.\n" : heading("Own " + word) + own;
    for (const DtFedNode* parent = node.getParentObject(); parent;
         parent = parent->getParentObject())
    {
        const auto* const ancestor = dynamic_cast<const Node*>(parent);
        const std::string inherited = ancestor ? membersText(*ancestor, kinds) : "";
        if (inherited.empty()) continue;
        text += heading("Inherited from " + parent->getFullName().str()) + inherited;
    }
    return text;
}

}  // namespace

std::string classReport(DtOMTTree& tree, const std::string& name)
{
    std::vector<const DtFedNode*> all = classesOf<DtObjectClassFedNode>(tree);
    const std::vector<const DtFedNode*> interactions = classesOf<DtInteractionClassFedNode>(tree);
    all.insert(all.end(), interactions.begin(), interactions.end());

    const DatatypeKinds kinds(tree);
    const DtFedNode& found = findClass(all, "class", name);
    if (const auto* node = dynamic_cast<const DtObjectClassFedNode*>(&found))
        return fullText(*node, kinds);
    return fullText(dynamic_cast<const DtInteractionClassFedNode&>(found), kinds);
}
