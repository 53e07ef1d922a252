// SPDX-License-Identifier: Apache-2.0
#include "omt/codec/codec.h"

#include "omt/base/nearestNames.h"
#include "omt/codec/compile.h"

#include <algorithm>

namespace omt
{

Codec::Codec(const Model& model) : Codec(model, CodecOptions()) {}

Codec::Codec(const Model& model, const CodecOptions& options) : myModel(model)
{
    Findings findings;
    myPlan = std::make_shared<const Plan>(Compiler(model, options, findings).compile());
    myFindings = std::make_shared<const Findings>(std::move(findings));
}

std::optional<Type> Codec::findType(std::string_view name) const
{
    const auto place = myPlan->names.find(std::string(name));
    if (place == myPlan->names.end()) return std::nullopt;
    return Type(myPlan, place->second);
}

std::optional<Type> Codec::find(std::string_view path, Which which) const
{
    std::optional<Type> found;
    const Member* first = nullptr;
    for (const MemberUse& use : myModel.findMembers(path))
    {
        if (which == Which::attribute && !use.attribute) continue;
        if (which == Which::parameter && !use.parameter) continue;
        if (first && first != &use.member()) return std::nullopt;
        first = &use.member();
        const std::string repeated = Compiler::repeatedName(first->dataType, first->cardinality);
        found = findType(repeated);
        if (!found) found = findType(first->dataType);
    }
    return found;
}

Type Codec::type(std::string_view name) const
{
    if (std::optional<Type> found = findType(name)) return *found;
    std::vector<std::string_view> names;
    for (const auto& one : myPlan->names)
        if (one.first.find('\n') == std::string::npos) names.push_back(one.first);
    throw UnknownName(unknownName("datatype", name, names));
}

Type Codec::get(std::string_view path, Which which) const
{
    if (std::optional<Type> found = find(path, which)) return *found;
    const std::string what = which == Which::attribute   ? "attribute"
                             : which == Which::parameter ? "parameter"
                                                         : "attribute or parameter";
    const std::vector<MemberUse> uses = myModel.findMembers(path);
    if (uses.size() > 1)
        throw UnknownName("\"" + std::string(path) + "\" means more than one " + what + ": " +
                          fullNames(uses));
    if (uses.size() == 1 && !findType(uses[0].member().dataType))
        throw UnknownName("\"" + std::string(path) + "\" is of the unknown datatype \"" +
                          uses[0].member().dataType.str() + "\"");
    // Where the class is known, its members may be meant, else other classes.
    const std::size_t period = path.rfind('.');
    const std::string_view owner = path.substr(0, std::min(period, path.size()));
    const bool isObject = which != Which::parameter && !myModel.findObjectClasses(owner).empty();
    const bool isInteraction =
        which != Which::attribute && !myModel.findInteractionClasses(owner).empty();
    const bool isKnown = period != std::string_view::npos && (isObject || isInteraction);
    const std::string kind = which == Which::attribute   ? "object class"
                             : which == Which::parameter ? "interaction class"
                                                         : "class";
    throw UnknownName("\"" + std::string(path) + "\": " +
                      unknownName(isKnown ? what : kind, isKnown ? path.substr(period + 1) : owner,
                                  namesNear(path, which)));
}

std::string Codec::fullNames(const std::vector<MemberUse>& uses) const
{
    constexpr std::size_t theMost = 5;
    std::string names;
    for (std::size_t i = 0; i < uses.size() && i <= theMost; ++i)
    {
        const MemberUse& use = uses[i];
        names += i > 0 ? ", " : "";
        if (i == theMost) return names + "...";
        names += use.objectClass        ? myModel.fullName(*use.objectClass)
                 : use.interactionClass ? myModel.fullName(*use.interactionClass)
                                        : std::string();
        names += '.' + use.member().name.str();
    }
    return names;
}

// "Class.member" for all members, with the class as the path has it where there is that class.
std::vector<std::string_view> Codec::namesNear(std::string_view path, Which which) const
{
    const std::size_t period = std::min(path.rfind('.'), path.size());
    const std::string_view owner = path.substr(0, period);
    std::vector<std::string_view> names;
    const auto keep = [&names](const Member& member) { names.push_back(member.name); };
    if (which != Which::parameter)
        for (const ObjectClass* one : myModel.findObjectClasses(owner))
            myModel.forEachAttribute(
                *one, [&](const ObjectClass&, const Attribute& attribute) { keep(attribute); });
    if (which != Which::attribute)
        for (const InteractionClass* one : myModel.findInteractionClasses(owner))
            myModel.forEachParameter(*one, [&](const InteractionClass&, const Parameter& parameter)
                                     { keep(parameter); });
    if (!names.empty()) return names;
    // The class is unknown, so classes are what may have been meant.
    for (const ObjectClass& one : myModel.objectClasses())
        if (which != Which::parameter) names.push_back(one.name);
    for (const InteractionClass& one : myModel.interactionClasses())
        if (which != Which::attribute) names.push_back(one.name);
    return names;
}

Type Codec::attribute(std::string_view path) const
{
    return get(path, Which::attribute);
}

Type Codec::parameter(std::string_view path) const
{
    return get(path, Which::parameter);
}

Type Codec::member(std::string_view path) const
{
    return get(path, Which::either);
}

std::optional<Type> Codec::findAttribute(std::string_view path) const
{
    return find(path, Which::attribute);
}

std::optional<Type> Codec::findParameter(std::string_view path) const
{
    return find(path, Which::parameter);
}

std::optional<Type> Codec::findMember(std::string_view path) const
{
    return find(path, Which::either);
}

}  // namespace omt
