// SPDX-License-Identifier: Apache-2.0
#include "showCommand.h"

#include "classReport.h"
#include "datatypeReport.h"
#include "modelInput.h"
#include "modelJson.h"
#include "modelReport.h"

#include <memory>

namespace
{

struct ShowChoice
{
    ModelChoice model;
    std::string className;
    std::string datatypeName;
    CLI::Option* classOption = nullptr;
    CLI::Option* datatypeOption = nullptr;
    bool asJson = false;
};

std::string show(const ShowChoice& choice)
{
    const DtOMTTreePtr tree = readModel(choice.model);
    if (choice.asJson) return jsonOf(*tree);
    if (*choice.classOption) return classReport(*tree, choice.className);
    if (*choice.datatypeOption) return datatypeReport(*tree, choice.datatypeName);
    return modelReport(*tree);
}

}  // namespace

Command addShowCommand(CLI::App& app)
{
    CLI::App* const command = app.add_subcommand("show", "Show what an object model holds");
    auto choice = std::make_shared<ShowChoice>();
    addModelArguments(*command, choice->model);
    CLI::Option* const json =
        command->add_flag("--json", choice->asJson, "Names, counts and datatypes, for programs");
    choice->classOption =
        command
            ->add_option("--class", choice->className,
                         "One class in full: its full name, or its own if no other class has it")
            ->type_name("NAME")
            ->excludes(json);
    choice->datatypeOption = command
                                 ->add_option("--datatype", choice->datatypeName,
                                              "One datatype in full, with all that refers to it")
                                 ->type_name("NAME")
                                 ->excludes(json)
                                 ->excludes(choice->classOption);
    command->footer(
        "Examples:\n"
        "  omt show HarbourBase.xml HarbourTraffic.xml --mim\n"
        "  omt show HarbourBase.xml --class PortEntity\n"
        "  omt show HarbourBase.xml --json");
    return {command, [choice] { return Result{show(*choice)}; }};
}
