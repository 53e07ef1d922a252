// SPDX-License-Identifier: Apache-2.0
#include "convertCommand.h"

#include "checkSet.h"
#include "engineInput.h"
#include "errors.h"
#include "omt/model/write.h"
#include "outputFile.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <set>

namespace
{

namespace fs = std::filesystem;

struct ConvertChoice
{
    EngineChoice model;
    std::string edition;
    std::string output;
    bool isEach = false;
    CLI::Option* outputOption = nullptr;
};

/// The edition that was asked for, else that of the model, 2010 for what is older.
omt::Edition editionOf(const ConvertChoice& choice, const omt::Model& model)
{
    if (choice.edition == "2010") return omt::Edition::ieee2010;
    if (choice.edition == "2025") return omt::Edition::ieee2025;
    return std::max(model.edition(), omt::Edition::ieee2010);
}

std::string converted(const ConvertChoice& choice, const omt::Model& model)
{
    const omt::Writing writing = omt::writeXml(model, editionOf(choice, model));
    writeFindings(writing.findings);
    return writing.text;
}

/// Where a module goes: its name in the folder, as XML.
std::string placeIn(const std::string& folder, const std::string& file, std::set<fs::path>& taken)
{
    if (file == "-")
        throw UsageError("standard input has no name that a file of the folder could have");
    const fs::path place = fs::path(folder) / fs::path(file).filename().replace_extension(".xml");
    if (!taken.insert(place).second)
        throw InputError(place.string() + ": two of the modules would be written there");
    return place.string();
}

Result convertEach(const ConvertChoice& choice)
{
    if (!fs::is_directory(choice.output)) throw InputError(choice.output + ": no folder");
    std::set<fs::path> taken;
    std::vector<std::string> places;
    bool withMim = false;  // which is no module of the folder
    const std::vector<std::string> files = filesOfSets(choice.model.files, withMim);
    for (const std::string& file : files) places.push_back(placeIn(choice.output, file, taken));
    Result result;
    for (std::size_t i = 0; i < places.size(); ++i)
    {
        const EngineInput input = readModule(files[i]);
        result.isFailure = result.isFailure || input.isFailure;
        if (input.isWhole) writeOutputFile(places[i], converted(choice, input.model));
    }
    return result;
}

Result convert(const ConvertChoice& choice)
{
    if (choice.isEach) return convertEach(choice);
    const EngineInput input = readEngine(choice.model);
    Result result;
    result.isFailure = input.isFailure;
    if (!input.isWhole) return result;
    result.text = converted(choice, input.model);
    if (!*choice.outputOption) return result;
    writeOutputFile(choice.output, result.text);
    result.text.clear();
    return result;
}

}  // namespace

Command addConvertCommand(CLI::App& app)
{
    CLI::App* const command = app.add_subcommand(
        "convert", "Write an object model of any format as IEEE 1516-2010 or 1516-2025 XML");
    auto choice = std::make_shared<ConvertChoice>();
    choice->model.isMimKnown = true;
    addEngineArguments(*command, choice->model);
    command
        ->add_option(
            "--to", choice->edition,
            "The edition to write: 2010 or 2025 (the newest of the modules, at least 2010)")
        ->check(CLI::IsMember({"2010", "2025"}))
        ->type_name("EDITION");
    CLI::Option* const each =
        command->add_flag("--each", choice->isEach, "Write every module on its own, into a folder");
    choice->outputOption =
        command
            ->add_option("-o,--output", choice->output,
                         "Write to a file, which is replaced; may be one of the model's own. With "
                         "--each a folder")
            ->type_name("FILE");
    each->needs(choice->outputOption);
    command->footer(
        "Several modules become one model. What is lost, and what was made where the edition asks\n"
        "for it, is listed on standard error with file and line; the exit status is 0 all the "
        "same.\n"
        "\n"
        "Examples:\n"
        "  omt convert Harbour.omd --to 2010 -o Harbour.xml\n"
        "  omt convert HarbourBase.xml HarbourTraffic.xml --mim --to 2025 > Harbour.xml\n"
        "  mkdir new && omt convert HarbourBase.xml HarbourTraffic.xml --to 2025 --each -o new");
    return {command, [choice] { return convert(*choice); }};
}
