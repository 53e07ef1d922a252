// SPDX-License-Identifier: Apache-2.0
#include "encodeCommand.h"

#include "errors.h"
#include "inputFile.h"
#include "octetForms.h"
#include "valueTarget.h"

#include <nlohmann/json.hpp>

#include <cctype>
#include <filesystem>
#include <memory>
#include <sstream>

namespace
{

using Octets = std::vector<std::uint8_t>;

struct EncodeChoice
{
    TargetChoice target;
    std::string text;
    std::string file;
    std::string from;
    std::vector<std::string> changes;
    CLI::Option* textOption = nullptr;
    CLI::Option* fileOption = nullptr;
    CLI::Option* fromOption = nullptr;

    /// Whether parts are set in octets that are there, or in zeros.
    bool isChange() const { return *fromOption || !changes.empty(); }
};

bool isNumber(const std::string& word)
{
    return nlohmann::json::parse(word, nullptr, false).is_number();
}

/// Whether a word with a dot or a slash is a value.
bool isJson(const std::string& word)
{
    return word.find_first_of("{[\"") == 0 || isNumber(word);
}

/// A name or text without its quotes.
bool isBare(const std::string& text)
{
    const auto isLetter = [](char c)
    { return std::isalpha(static_cast<unsigned char>(c)) != 0 || c == '_' || (c & 0x80) != 0; };
    return !text.empty() &&
           (isLetter(text[0]) || (text.size() > 1 && text[0] == '-' && isLetter(text[1])));
}

void prepare(EncodeChoice& choice)
{
    SplitWords words = splitWords(choice.target.words, isJson);
    choice.target.model.files = std::move(words.files);
    const bool isGiven = *choice.textOption || *choice.fileOption || choice.isChange();
    if (words.others.size() > (isGiven ? 0 : 1))
        throw UsageError('"' + words.others.back() +
                         "\" is too much: the value is given once, in one argument");
    const bool isFromInput = !isGiven && words.others.empty();
    if (isFromInput) choice.file = "-";
    if (!words.others.empty()) choice.text = std::move(words.others.front());
    checkStandardInput(choice.target.model, choice.file == "-");
    for (const std::string& change : choice.changes)
        if (change.find('=') == std::string::npos || change.front() == '=')
            throw UsageError("--set: \"" + change + "\" is not of the form PATH=VALUE");
}

/// The octets of a JSON text, from an argument or a file.
Octets written(const EncodeChoice& choice, const omt::Type& type)
{
    std::string text = choice.text;
    if (choice.file == "-") text = contentOf(stdin, "standard input");
    if (!choice.file.empty() && choice.file != "-") text = contentOf(choice.file);
    if (choice.file.empty() && isBare(text))
        text = nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    Octets octets;
    const std::optional<omt::ValueError> error = type.encode(text, octets);
    if (!error) return octets;
    std::ostringstream message;
    message << (choice.file.empty() ? "JSON" : choice.file) << (error->line > 0 ? ":" : ": ")
            << *error;
    throw InputError(message.str());
}

/// The octets that were given, or zeros for as many as there are at least, with some parts changed.
Octets changed(const EncodeChoice& choice, const ValueTarget& target)
{
    constexpr std::size_t theMostZeros = std::size_t{1} << 24;
    const std::size_t least = target.type.leastSize();
    if (!*choice.fromOption && least > theMostZeros)
        throw InputError("--set begins with zeros, and these are too many: --from is needed");
    const Octets start = *choice.fromOption ? readOctets(choice.from) : Octets(least);
    omt::Value value = target.type.decode(start);
    const std::string complaint = complaintOf(target, value);
    if (!complaint.empty())
        throw InputError((*choice.fromOption ? "--from: " : "--set begins with zeros: ") +
                         complaint);
    for (const std::string& change : choice.changes)
    {
        const std::size_t end = change.find('=');
        const std::optional<omt::ValueError> error =
            value.set(change.substr(0, end), change.substr(end + 1));
        if (!error) continue;
        const std::string path = error->path.empty() ? change.substr(0, end) : error->path;
        throw InputError("--set " + path + ": " + error->what);
    }
    return {value.octets().begin(), value.octets().end()};
}

/// As findTarget(); a value in a file of JSON may have been taken for a set of models.
std::optional<ValueTarget> findTargetOf(const EncodeChoice& choice)
{
    const std::vector<std::string>& files = choice.target.model.files;
    const bool mayBeValue = choice.file == "-" && files.size() > 1 &&
                            std::filesystem::path(files.back()).extension() == ".json";
    try
    {
        return findTarget(choice.target);
    }
    catch (const InputError& error)
    {
        if (!mayBeValue) throw;
        throw InputError(error.what() + std::string("; a value in a file is named with --file"));
    }
}

Result encode(EncodeChoice& choice)
{
    prepare(choice);
    const std::optional<ValueTarget> target = findTargetOf(choice);
    if (!target) return theFailure;
    const Octets octets =
        choice.isChange() ? changed(choice, *target) : written(choice, target->type);
    return {hexadecimalText(octets.data(), octets.size()) + '\n'};
}

void addEncodeArguments(CLI::App& command, EncodeChoice& choice)
{
    addTargetArguments(command, choice.target,
                       "Files of the model, and after them JSON, the value in one argument");
    choice.textOption = command.add_option(
        "--text", choice.text, "JSON as --text=JSON, for one that begins with a - and a letter");
    choice.fileOption = command.add_option("--file", choice.file, "Read the JSON from a file")
                            ->type_name("FILE")
                            ->excludes(choice.textOption);
    choice.fromOption =
        command
            .add_option("--from", choice.from,
                        "Begin with these octets, in any form that omt decode takes")
            ->type_name("HEX")
            ->excludes(choice.textOption)
            ->excludes(choice.fileOption);
    command
        .add_option("--set", choice.changes,
                    "Change the part of a path, such as Position.X, and nothing else; several "
                    "times for several parts. Without --from, all others are zeros")
        ->type_name("PATH=VALUE")
        ->allow_extra_args(false)
        ->excludes(choice.textOption)
        ->excludes(choice.fileOption);
}

}  // namespace

Command addEncodeCommand(CLI::App& app)
{
    CLI::App* const command =
        app.add_subcommand("encode", "Give the octets of a value that is written as JSON");
    auto choice = std::make_shared<EncodeChoice>();
    addEncodeArguments(*command, *choice);
    command->footer(
        "JSON is what omt decode --line prints: a record as an object, an array as an array, "
        "texts\n"
        "and names of enumerators in quotes, which may be left out in arguments. A word with a "
        "dot\n"
        "or a slash, or -, is a file of the model, unless it is a number or begins with a brace, "
        "a\n"
        "bracket or a quote. Without JSON, --file, --from and --set it comes from standard input.\n"
        "What does not fit the datatype is reported with exit status 1.\n"
        "\n"
        "Examples:\n"
        "  omt encode HarbourBase.xml --mim --type SignalKind GaleWarning\n"
        "  omt encode HarbourBase.xml --mim --member Berth.Identifier "
        "'{\"Pier\": 66, \"Number\": 7}'\n"
        "  omt encode HarbourBase.xml --mim --member Berth.Identifier \\\n"
        "      --from '42 00 00 07' --set Number=8\n"
        "  omt encode HarbourBase.xml HarbourTraffic.xml --mim --member Vessel.Cargo \\\n"
        "      --set Kind=Containers --set ContainerLoad.FortyFoot=608");
    return {command, [choice] { return encode(*choice); }};
}
