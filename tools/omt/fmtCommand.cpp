// SPDX-License-Identifier: Apache-2.0
#include "fmtCommand.h"

#include "engineInput.h"
#include "errors.h"
#include "inputFile.h"
#include "omt/model/write.h"
#include "outputFile.h"

#include <memory>
#include <string>
#include <vector>

namespace
{

struct FmtChoice
{
    std::vector<std::string> files;
    bool isCheck = false;
};

/// What a model does not keep: document types, and instructions to programs other than the one that
/// says it is XML. Comments may speak of them.
bool hasMore(std::string_view octets)
{
    for (std::size_t at = octets.find("?>"); (at = octets.find('<', at)) != std::string_view::npos;)
    {
        const std::string_view rest = octets.substr(at);
        if (rest.substr(0, 2) == "<?" || rest.substr(0, 9) == "<!DOCTYPE") return true;
        const bool isComment = rest.substr(0, 4) == "<!--";
        const bool isVerbatim = rest.substr(0, 9) == "<![CDATA[";
        at = isComment ? octets.find("-->", at) : isVerbatim ? octets.find("]]>", at) : at + 1;
    }
    return false;
}

/// The canonical form of a module; throws InputError where it has none.
std::string formatted(const std::string& file, const std::string& octets)
{
    omt::Findings findings;
    const omt::Model model = omt::readModule({file, octets}, findings);
    if (model.modules().empty())
    {
        writeFindings(findings);
        throw InputError(file + ": cannot be formatted");
    }
    if (model.edition() != omt::Edition::ieee2010 && model.edition() != omt::Edition::ieee2025)
        throw InputError(file + ": is of an older edition; omt convert writes it in one of today");
    if (hasMore(octets))
        throw InputError(file +
                         ": has a document type or processing instruction, which would be lost");
    return omt::writeXml(model, model.edition(), omt::WriteOptions().asRead()).text;
}

/// Formats one file; whether it was in another form.
bool format(const std::string& file, bool isCheck, Result& result)
{
    const bool isStandardInput = file == "-";
    const std::string octets = isStandardInput ? contentOf(stdin, file) : contentOf(file);
    const std::string text = formatted(file, octets);
    if (isStandardInput && !isCheck) result.text += text;
    if (text == octets) return false;
    if (isCheck)
        result.text += file + '\n';
    else if (!isStandardInput)
        writeOutputFile(file, text);
    return true;
}

Result formatAll(const FmtChoice& choice)
{
    Result result;
    for (const std::string& file : choice.files) try
        {
            const bool isOther = format(file, choice.isCheck, result);
            result.isFailure = result.isFailure || (isOther && choice.isCheck);
        }
        catch (const InputError& error)
        {
            result.complaints.emplace_back(error.what());
        }
    return result;
}

}  // namespace

Command addFmtCommand(CLI::App& app)
{
    CLI::App* const command =
        app.add_subcommand("fmt", "Bring modules of 1516-2010 and 1516-2025 into canonical form");
    auto choice = std::make_shared<FmtChoice>();
    command->add_flag("--check", choice->isCheck,
                      "Change nothing; list files in another form, and exit with status 1");
    command
        ->add_option("MODEL", choice->files,
                     "Files, each replaced; - for standard input to standard output")
        ->required();
    command->footer(
        "The order is that of the schema, every level two blanks further in. All that a module "
        "says\n"
        "is kept, comments and unknown elements included.\n"
        "\n"
        "Examples:\n"
        "  omt fmt HarbourBase.xml HarbourTraffic.xml\n"
        "  omt fmt HarbourBase.xml --check");
    return {command, [choice] { return formatAll(*choice); }};
}
