// SPDX-License-Identifier: Apache-2.0
#include "valueTarget.h"

#include "errors.h"
#include "messages.h"

#include <algorithm>
#include <set>
#include <utility>

namespace
{

constexpr const char* theMemberForm = "CLASS.NAME";

/// A name alone is looked at when the model is there, which knows the classes.
std::string whyNoMember(const std::string& name)
{
    const std::size_t dot = name.rfind('.');
    const bool isWhole = dot == std::string::npos || (dot > 0 && dot + 1 < name.size());
    return isWhole && !name.empty() ? "" : '"' + name + "\" is not of the form CLASS.NAME";
}

/// "CLASS.NAME" of all classes that have a member of a name of their own.
std::vector<std::string> membersCalled(const omt::Model& model, const std::string& name,
                                       bool mayBeAttribute, bool mayBeParameter)
{
    std::vector<std::string> found;
    const auto look = [&](const auto& node, const auto& members)
    {
        for (const auto& member : members)
            if (member.name == name) found.push_back(node.name.str() + '.' + name);
    };
    if (mayBeAttribute)
        for (const omt::ObjectClass& node : model.objectClasses()) look(node, node.attributes);
    if (mayBeParameter)
        for (const omt::InteractionClass& node : model.interactionClasses())
            look(node, node.parameters);
    return found;
}

void requireClass(const omt::Model& model, const TargetChoice& choice)
{
    const std::string name = choice.member + choice.attribute + choice.parameter;
    if (name.empty() || name.find('.') != std::string::npos) return;
    const std::vector<std::string> found =
        membersCalled(model, name, choice.parameter.empty(), choice.attribute.empty());
    constexpr std::size_t theMost = 5;
    std::string text = '"' + name + "\" is not of the form CLASS.NAME";
    for (std::size_t i = 0; i < found.size() && i < theMost; ++i)
        text += (i == 0 ? "; did you mean " : i + 1 == found.size() ? " or " : ", ") + found[i];
    if (found.size() > theMost)
        text += " or one of " + std::to_string(found.size() - theMost) + " more";
    throw InputError(text + (found.empty() ? "" : "?"));
}

using Names = std::set<std::string_view>;

/// The names of a type and of all that is in it.
Names namesIn(const omt::Type& root)
{
    Names names;
    std::set<std::pair<std::string_view, omt::ValueKind>> known;
    std::vector<omt::Type> open = {root};
    const auto add = [&](omt::Type type)
    {
        if (known.emplace(type.name(), type.kind()).second) open.push_back(std::move(type));
    };
    while (!open.empty())
    {
        const omt::Type type = open.back();
        open.pop_back();
        names.insert(type.name());
        for (std::size_t i = 0; i < type.partCount(); ++i)
        {
            names.insert(type.partName(i));
            add(type.partType(i));
        }
        if (std::optional<omt::Type> element = type.element()) add(std::move(*element));
    }
    return names;
}

/// What concerns other datatypes is of no interest here.
void writeFindingsAbout(const omt::Type& type, const omt::Findings& findings)
{
    if (findings.empty()) return;
    const Names names = namesIn(type);
    omt::Findings chosen;
    std::copy_if(findings.begin(), findings.end(), std::back_inserter(chosen),
                 [&](const omt::Finding& finding)
                 {
                     return messageLevel() == MessageLevel::all || finding.name == "hint" ||
                            names.count(finding.subject) > 0;
                 });
    writeFindings(chosen);
}

ValueTarget lookUp(const omt::Codec& codec, const TargetChoice& choice)
{
    requireClass(codec.model(), choice);
    const auto nameOf = [](const std::string& path) { return path.substr(path.rfind('.') + 1); };
    if (!choice.member.empty()) return {nameOf(choice.member), codec.member(choice.member)};
    if (!choice.attribute.empty())
        return {nameOf(choice.attribute), codec.attribute(choice.attribute)};
    if (!choice.parameter.empty())
        return {nameOf(choice.parameter), codec.parameter(choice.parameter)};
    return {choice.datatype, codec.type(choice.datatype)};
}

}  // namespace

void addTargetArguments(CLI::App& command, TargetChoice& choice, const std::string& words,
                        bool mayBeNone)
{
    addWords(command, choice.words, words);
    addMimArgument(command, choice.model);
    const CLI::Validator isMember([](std::string& name) { return whyNoMember(name); }, "",
                                  "member");
    CLI::Option_group& what = *command.add_option_group(
        "Which value", mayBeNone ? "At most one of these" : "One of these is needed");
    const auto add = [&](const char* name, std::string& path, const char* description)
    { what.add_option(name, path, description)->type_name(theMemberForm)->check(isMember); };
    add("--member", choice.member,
        "Of an attribute or parameter, also an inherited one; the class may be named by the end of "
        "its full name");
    add("--attribute", choice.attribute, "Of an attribute alone");
    add("--parameter", choice.parameter, "Of a parameter alone");
    what.add_option("--type", choice.datatype, "Of a datatype or basic data representation")
        ->type_name("NAME");
    what.require_option(mayBeNone ? 0 : 1, 1);
    command
        .add_option(
            "--hints", choice.hints,
            "A file that says which datatypes are text, entity types, positions, or numbers "
            "with names")
        ->type_name("FILE");
    command.add_flag("--padding-from-start", choice.isPaddedFromStart,
                     "Padding in records counts from the start of the value, as some write it");
}

std::optional<omt::Codec> readCodec(const TargetChoice& choice)
{
    EngineChoice model = choice.model;
    model.hidesNotes = true;
    const EngineInput input = readEngine(model);
    if (!input.isWhole) return std::nullopt;
    omt::CodecOptions options;
    options.isPaddedFromStart = choice.isPaddedFromStart;
    if (!choice.hints.empty())
    {
        omt::HintsReading reading = omt::readHintsFile(choice.hints);
        writeFindings(reading.findings);
        if (hasError(reading.findings)) return std::nullopt;
        options.hints = std::move(reading.hints);
    }
    return omt::Codec(input.model, options);
}

std::optional<ValueTarget> findTarget(const TargetChoice& choice)
{
    const std::optional<omt::Codec> codec = readCodec(choice);
    if (!codec) return std::nullopt;
    ValueTarget target = lookUp(*codec, choice);
    target.model = codec->model();
    writeFindingsAbout(target.type, codec->findings());
    return target;
}

std::string nameIn(const ValueTarget& target, const std::string& path)
{
    const bool isField = !path.empty() && path.front() != '[';
    return target.name + (isField ? "." : "") + path;
}

std::string complaintOf(const ValueTarget& target, const omt::Value& value)
{
    if (const std::optional<omt::Fault>& fault = value.fault())
        return nameIn(target, fault->path) + ": octet " + std::to_string(fault->offset) + ": " +
               fault->what;
    const std::size_t left = value.left();
    if (left == 0) return "";
    return target.name + ": " + std::to_string(left) + (left == 1 ? " octet" : " octets") +
           " left over at octet " + std::to_string(value.octets().size());
}
