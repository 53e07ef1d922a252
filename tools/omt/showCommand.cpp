// SPDX-License-Identifier: Apache-2.0
#include "showCommand.h"

#include "classReport.h"
#include "datatypeReport.h"
#include "datatypeUses.h"
#include "engineInput.h"
#include "modelReport.h"
#include "omt/model/modelJson.h"
#include "paint.h"

#include <memory>

namespace
{

struct ShowChoice
{
    EngineChoice model;
    std::string className;
    std::string datatypeName;
    std::string usedName;
    CLI::Option* classOption = nullptr;
    CLI::Option* datatypeOption = nullptr;
    CLI::Option* usesOption = nullptr;
    bool asJson = false;
};

std::string jsonText(const ShowChoice& choice, const omt::Model& model)
{
    constexpr omt::JsonLayout theLayout = {2};
    if (*choice.classOption)
        return std::visit([&](const auto* node) { return omt::classJson(model, *node, theLayout); },
                          findClass(model, choice.className));
    if (*choice.datatypeOption)
        return omt::datatypeJson(model, findDatatype(model, choice.datatypeName), theLayout);
    return omt::modelJson(model, theLayout);
}

std::string pageText(const ShowChoice& choice, const omt::Model& model)
{
    if (*choice.classOption) return classReport(model, choice.className);
    if (*choice.datatypeOption) return datatypeReport(model, choice.datatypeName);
    if (*choice.usesOption) return usesReport(model, choice.usedName);
    return modelReport(model);
}

Result show(const ShowChoice& choice)
{
    const EngineInput input = readEngine(choice.model);
    Result result;
    result.isFailure = input.isFailure;
    // Part of a model is not the model that was asked for.
    if (!input.isWhole) return result;
    result.isPainted = !choice.asJson;
    result.text = choice.asJson ? jsonText(choice, input.model) + '\n'
                                : painted(pageText(choice, input.model));
    return result;
}

}  // namespace

Command addShowCommand(CLI::App& app)
{
    CLI::App* const command = app.add_subcommand("show", "Show what an object model holds");
    auto choice = std::make_shared<ShowChoice>();
    addEngineArguments(*command, choice->model);
    CLI::Option* const jsonFlag = command->add_flag(
        "--json", choice->asJson, "All of the model, or of the class or datatype, for programs");
    choice->classOption =
        command
            ->add_option("--class", choice->className,
                         "One class with all its members, or, not as JSON, one member: its full "
                         "name, or any end of it that no other has")
            ->type_name("NAME");
    choice->datatypeOption =
        command
            ->add_option("--datatype", choice->datatypeName,
                         "One datatype down to the leaves, with all that names it")
            ->type_name("NAME")
            ->excludes(choice->classOption);
    choice->usesOption =
        command
            ->add_option("--uses", choice->usedName,
                         "All attributes and parameters that hold a datatype, and through what")
            ->type_name("NAME")
            ->excludes(jsonFlag)
            ->excludes(choice->classOption)
            ->excludes(choice->datatypeOption);
    command->footer(
        "Examples:\n"
        "  omt show HarbourBase.xml HarbourTraffic.xml --mim\n"
        "  omt show HarbourBase.xml --mim --class PortEntity\n"
        "  omt show HarbourBase.xml --mim --uses GeocentricPosition\n"
        "  omt show HarbourBase.xml --json");
    return {command, [choice] { return show(*choice); }};
}
