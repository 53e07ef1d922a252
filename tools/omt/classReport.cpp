// SPDX-License-Identifier: Apache-2.0
#include "classReport.h"

#include "modelInput.h"
#include "modelLists.h"
#include "nearestNames.h"
#include "plainText.h"
#include "textTable.h"

#include <variant>

namespace
{

using Class = std::variant<const DtObjectClassFedNode*, const DtInteractionClassFedNode*>;

const DtFedNode& nodeOf(const Class& found)
{
    return *std::visit([](const auto* node) -> const DtFedNode* { return node; }, found);
}

std::vector<Class> allClasses(DtOMTTree& tree)
{
    std::vector<Class> all;
    for (const auto* node : ClassKind<DtObjectClassFedNode>::all(tree)) all.emplace_back(node);
    for (const auto* node : ClassKind<DtInteractionClassFedNode>::all(tree)) all.emplace_back(node);
    return all;
}

/// The classes that a name may mean: those of this full name, else those whose full name ends so.
std::vector<Class> candidates(const std::vector<Class>& all, const std::string& name)
{
    std::vector<Class> exact;
    std::vector<Class> ending;
    for (const Class& one : all)
    {
        const DtString& fullName = nodeOf(one).getFullName();
        if (fullName == name.c_str())
            exact.push_back(one);
        else if (fullName.endsWith('.' + name))
            ending.push_back(one);
    }
    return exact.empty() ? ending : exact;
}

/// A sentence for a name that means more than one class.
std::string ambiguousName(const std::string& name, const std::vector<Class>& found)
{
    constexpr std::size_t theMostShown = 10;
    std::vector<std::string> names;
    for (const Class& one : found)
        if (names.size() < theMostShown) names.push_back(nodeOf(one).getFullName().str());
    if (names.size() < found.size()) names.emplace_back("...");
    return '"' + name + "\" is the name of " + std::to_string(found.size()) +
           " classes; choose one of " + joined(names, ", ");
}

Class findClass(DtOMTTree& tree, const std::string& name)
{
    const std::vector<Class> all = allClasses(tree);
    const std::vector<Class> found = candidates(all, name);
    if (found.size() == 1) return found.front();
    if (!found.empty()) throw InputError(ambiguousName(name, found));

    const bool isPath = name.find('.') != std::string::npos;
    std::vector<std::string> names;
    for (const Class& one : all)
    {
        const DtFedNode& node = nodeOf(one);
        names.push_back(isPath ? node.getFullName().str() : node.getName().str());
    }
    throw InputError(unknownName("class", name, names));
}

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
    const DatatypeKinds kinds(tree);
    return std::visit([&](const auto* node) { return fullText(*node, kinds); },
                      findClass(tree, name));
}
