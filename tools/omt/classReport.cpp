// SPDX-License-Identifier: Apache-2.0
#include "classReport.h"

#include "errors.h"
#include "modelWords.h"
#include "omt/base/nearestNames.h"
#include "plainText.h"
#include "textTable.h"

namespace
{

/// A path without the root that HLA 1.3 has by itself, which no model declares.
std::string_view withoutSilentRoot(const omt::Model& model, std::string_view path)
{
    for (const std::string_view root : {"ObjectRoot.", "InteractionRoot."})
        if (model.edition() == omt::Edition::hla13 && path.substr(0, root.size()) == root)
            return path.substr(root.size());
    return path;
}

std::vector<ClassRef> classesNamed(const omt::Model& model, std::string_view path)
{
    path = withoutSilentRoot(model, path);
    std::vector<ClassRef> found;
    for (const omt::ObjectClass* node : model.findObjectClasses(path)) found.emplace_back(node);
    for (const omt::InteractionClass* node : model.findInteractionClasses(path))
        found.emplace_back(node);
    return found;
}

std::string ambiguousName(const omt::Model& model, const std::string& path,
                          const std::vector<ClassRef>& found)
{
    constexpr std::size_t theMostShown = 10;
    std::vector<std::string> names;
    for (const ClassRef& one : found)
        if (names.size() < theMostShown)
            names.push_back(
                std::visit([&](const auto* node) { return fullNameText(model, *node); }, one));
    if (names.size() < found.size()) names.emplace_back("...");
    return '"' + path + "\" is the name of " + std::to_string(found.size()) +
           " classes; choose one of " + joined(names, ", ");
}

/// A sentence for a class that there is not. Of a path the class may be right and the member wrong.
std::string unknownClass(const omt::Model& model, const std::string& path)
{
    const std::size_t period = path.rfind('.');
    std::vector<std::string_view> names;
    if (period != std::string::npos)
    {
        const std::string owner = path.substr(0, period);
        const auto addName = [&](const auto&, const auto& member) { names.push_back(member.name); };
        for (const omt::ObjectClass* node : model.findObjectClasses(owner))
        {
            model.forEachAttribute(*node, addName);
            for (const std::uint32_t child : node->children)
                names.push_back(model.objectClasses()[child].name);
        }
        for (const omt::InteractionClass* node : model.findInteractionClasses(owner))
        {
            model.forEachParameter(*node, addName);
            for (const std::uint32_t child : node->children)
                names.push_back(model.interactionClasses()[child].name);
        }
        if (!names.empty())
            return omt::unknownName("class or member of " + owner, path.substr(period + 1), names);
    }
    for (const omt::ObjectClass& node : model.objectClasses()) names.push_back(node.name);
    for (const omt::InteractionClass& node : model.interactionClasses()) names.push_back(node.name);
    return omt::unknownName("class", period == std::string::npos ? path : path.substr(period + 1),
                            names);
}

void addMore(PropertyList& list, const omt::Attribute& attribute)
{
    list.add("Update", attribute.updateType);
    list.add("Condition", attribute.updateCondition);
    list.add("Value required", attribute.valueRequired);
    list.add("Ownership", attribute.ownership);
    list.add("Sharing", attribute.sharing);
    list.add("Dimensions", joinedTexts(attribute.dimensions));
    list.add("Transportation", attribute.transportation);
    list.add("Order", attribute.order);
}

void addMore(PropertyList&, const omt::Parameter&) {}

void addMore(PropertyList& list, const omt::ObjectClass& node)
{
    list.add("Sharing", node.sharing);
    list.add("Dimensions", joinedTexts(node.dimensions));
    std::string names;
    for (const omt::DirectedInteraction& one : node.directedInteractions)
        names += (names.empty() ? "" : ", ") + one.name.str() +
                 (one.sharing.empty() ? "" : " (" + one.sharing.str() + ')');
    list.add("Directed interactions", names);
}

void addMore(PropertyList& list, const omt::InteractionClass& node)
{
    list.add("Sharing", node.sharing);
    list.add("Dimensions", joinedTexts(node.dimensions));
    list.add("Transportation", node.transportation);
    list.add("Order", node.order);
}

/// All properties of a member.
template <typename Member>
void addMember(PropertyList& list, const omt::Model& model, const Member& member, NoteList& notes)
{
    list.add("Datatype", nameWithKind(model, member.dataType));
    if (member.cardinality != "1") list.add("Cardinality", member.cardinality);
    list.add("Units", member.units);
    list.add("Resolution", member.resolution);
    list.add("Accuracy", member.accuracy);
    list.add("Accurate when", member.accuracyCondition);
    addMore(list, member);
    list.add("Meaning", member.semantics);
    list.add("Notes", notes.numbers(member));
    list.add("Declared at", placeText(model, member));
}

template <typename Class>
void forEachMember(const omt::Model& model, const omt::ObjectClass& node, const Class& visit)
{
    model.forEachAttribute(node, visit);
}
template <typename Class>
void forEachMember(const omt::Model& model, const omt::InteractionClass& node, const Class& visit)
{
    model.forEachParameter(node, visit);
}

std::vector<std::string> cells(const std::string& owner, const omt::Attribute& attribute,
                               const std::string& notes)
{
    return {owner,
            attribute.name.str(),
            attribute.dataType.str(),
            attribute.updateType.str(),
            attribute.sharing.str(),
            notes};
}
std::vector<std::string> cells(const std::string& owner, const omt::Parameter& parameter,
                               const std::string& notes)
{
    return {owner, parameter.name.str(), parameter.dataType.str(), "", "", notes};
}

/// Own and inherited members, with the class that they come from where it changes.
template <typename Class>
std::string memberTable(const omt::Model& model, const Class& node, NoteList& notes)
{
    TextTable table({whole("From"), whole("Name"), whole("Datatype"), whole("Update"),
                     whole("Sharing"), wrap("Notes")});
    const Class* last = nullptr;
    forEachMember(model, node,
                  [&](const Class& owner, const auto& member)
                  {
                      const std::string from = &owner == last ? "" : owner.name.str();
                      last = &owner;
                      table.add(cells(from, member, notes.numbers(member)));
                  });
    const std::string word = std::string(memberWord(node)) + 's';
    if (table.isEmpty()) return "\nNo " + word + ", neither of its own nor inherited.\n";
    return heading("All " + word) + table.text();
}

template <typename Class>
std::string classText(const omt::Model& model, const std::vector<Class>& table, const Class& node)
{
    std::string children;
    for (const std::uint32_t child : node.children)
        children += (children.empty() ? "" : ", ") + table[child].name.str();
    NoteList notes(model);
    PropertyList list;
    list.add("Kind", kindWord(node));
    addMore(list, node);
    list.add("Meaning", node.semantics);
    list.add("Notes", notes.numbers(node));
    list.add("Declared at", placeText(model, node));
    list.add("Child classes", children.empty() ? "none" : children);
    std::string text = heading(fullNameText(model, node), '=').substr(1) + list.text() +
                       memberTable(model, node, notes);
    if (!membersOf(node).empty()) text += heading("Own " + std::string(memberWord(node)) + 's');
    for (const auto& member : membersOf(node))
    {
        PropertyList properties;
        addMember(properties, model, member, notes);
        text += '\n' + oneLine(member.name) + '\n' + properties.text();
    }
    return text + notes.text();
}

std::string classText(const omt::Model& model, const omt::ObjectClass& node)
{
    return classText(model, model.objectClasses(), node);
}
std::string classText(const omt::Model& model, const omt::InteractionClass& node)
{
    return classText(model, model.interactionClasses(), node);
}

/// A member by class and name; empty where no member is meant.
std::string oneMember(const omt::Model& model, const std::string& path)
{
    std::string text;
    for (const omt::MemberUse& use : model.findMembers(withoutSilentRoot(model, path)))
    {
        NoteList notes(model);
        const std::string owner = use.objectClass ? fullNameText(model, *use.objectClass)
                                                  : fullNameText(model, *use.interactionClass);
        text += heading(owner + '.' + use.member().name.str(), '=');
        PropertyList list;
        list.add("Kind", use.attribute ? "attribute" : "parameter");
        list.add("From", use.owner->name);
        if (use.attribute)
            addMember(list, model, *use.attribute, notes);
        else
            addMember(list, model, *use.parameter, notes);
        text += list.text() + notes.text();
    }
    return text.empty() ? text : text.substr(1);
}

}  // namespace

ClassRef findClass(const omt::Model& model, const std::string& path)
{
    const std::vector<ClassRef> found = classesNamed(model, path);
    if (found.size() == 1) return found.front();
    if (found.empty() && !model.findMembers(path).empty())
        throw InputError('"' + path + "\" is a member; name the class " +
                         path.substr(0, path.rfind('.')));
    throw InputError(found.empty() ? unknownClass(model, path) : ambiguousName(model, path, found));
}

std::string classReport(const omt::Model& model, const std::string& path)
{
    if (classesNamed(model, path).empty())
        if (std::string text = oneMember(model, path); !text.empty()) return text;
    return std::visit([&](const auto* node) { return classText(model, *node); },
                      findClass(model, path));
}
