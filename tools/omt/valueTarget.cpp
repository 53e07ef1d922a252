// SPDX-License-Identifier: Apache-2.0
#include "valueTarget.h"

#include "classSearch.h"
#include "modelInput.h"
#include "omt/base/nearestNames.h"

namespace
{

constexpr const char* theMemberForm = "CLASS.NAME";

std::string whyNoMember(const std::string& name)
{
    const std::size_t dot = name.rfind('.');
    const bool isWhole = dot != std::string::npos && dot > 0 && dot + 1 < name.size();
    return isWhole ? "" : '"' + name + "\" is not of the form CLASS.NAME";
}

/// The attribute or parameter that a class has of its own or from the classes above it.
template <typename Class>
ValueTarget findMember(DtOMTTree& tree, const std::string& path)
{
    const std::size_t dot = path.rfind('.');
    const std::string name = path.substr(dot + 1);
    const DtFedNode& owner =
        findClass(classesOf<Class>(tree), ClassKind<Class>::word, path.substr(0, dot));
    std::vector<std::string> names;
    for (const DtFedNode* node = &owner; node; node = node->getParentObject())
    {
        const auto* const one = dynamic_cast<const Class*>(node);
        if (!one) break;
        for (const DtDatatypeFedNode* member : ClassKind<Class>::members(*one))
        {
            if (member->getName() == name.c_str()) return {name, member->getDatatype(), member};
            names.push_back(member->getName().str());
        }
    }
    throw InputError(owner.getFullName().str() + ": " +
                     omt::unknownName(ClassKind<Class>::memberWord, name, names));
}

ValueTarget findDatatype(DtDatatypeManager& manager, const std::string& name)
{
    if (manager.getDatatypeEnum(name) != DtDatatypeManager::DtDatatypeUnknown)
        return {name, name, nullptr};
    std::vector<std::string> names;
    for (const Datatype& datatype : datatypesOf(*manager.omtTree()))
        names.push_back(nameOf(datatype).str());
    throw InputError(omt::unknownName("datatype", name, names));
}

CLI::Option* addDatatypeOption(CLI::App& command, TargetChoice& choice, const char* text)
{
    return command.add_option("--type", choice.datatype, text)->type_name("NAME");
}

}  // namespace

void addTargetArguments(CLI::App& command, TargetChoice& choice)
{
    const CLI::Validator isMember([](std::string& name) { return whyNoMember(name); }, "",
                                  "member");
    CLI::Option_group& what = *command.add_option_group("Which value", "One of these is needed");
    what.add_option("--attribute", choice.attribute,
                    "Of an attribute, also an inherited one; the class may be named by the end of "
                    "its full name")
        ->type_name(theMemberForm)
        ->check(isMember);
    what.add_option("--parameter", choice.parameter, "Of a parameter, in the same way")
        ->type_name(theMemberForm)
        ->check(isMember);
    addDatatypeOption(what, choice, "Of a datatype");
    what.require_option(1);
}

void addDatatypeArgument(CLI::App& command, TargetChoice& choice)
{
    addDatatypeOption(command, choice, "The datatype of the value")->required();
}

ValueTarget findTarget(DtDatatypeManager& manager, const TargetChoice& choice)
{
    DtOMTTree& tree = *manager.omtTree();
    if (!choice.attribute.empty()) return findMember<DtObjectClassFedNode>(tree, choice.attribute);
    if (!choice.parameter.empty())
        return findMember<DtInteractionClassFedNode>(tree, choice.parameter);
    return findDatatype(manager, choice.datatype);
}
