// SPDX-License-Identifier: Apache-2.0
#include "decodeCommand.h"

#include "messages.h"
#include "modelInput.h"
#include "namedRecords.h"
#include "octetInput.h"
#include "plainText.h"
#include "valueJson.h"
#include "valueTable.h"
#include "valueTarget.h"
#include "watchedDecoder.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <memory>

namespace
{

using Octets = DtDatatypeManager::Octets;

struct DecodeChoice
{
    ModelChoice model;
    ConversionChoice conversion;
    NamedRecordChoice records;
    TargetChoice target;
    OctetChoice octets;
    int precision = 0;
    CLI::Option* precisionOption = nullptr;
    bool asLine = false;
    bool asJson = false;
};

/// Whether an argument can only be meant as a file. No octets have a dot or a slash.
bool isFileName(const std::string& word)
{
    std::error_code ignored;
    return word.find_first_of("./") != std::string::npos ||
           std::filesystem::is_regular_file(word, ignored);
}

/// The octets begin at the first word behind a file that is none itself.
void splitWords(DecodeChoice& choice)
{
    std::vector<std::string>& words = choice.model.files;
    const auto first = std::find_if_not(std::next(words.begin()), words.end(), isFileName);
    choice.octets.words.assign(first, words.end());
    words.erase(first, words.end());
    if (choice.octets.words.empty()) return;
    if (!choice.octets.file.empty())
        throw CLI::ValidationError("HEX", "octets stand in the arguments and in a file");
    if (choice.octets.isByLine)
        throw CLI::ValidationError("HEX", "--lines reads from a file or from standard input");
}

/// Decodes one value after the other and collects what they show.
class Decoding
{
public:
    Decoding(const DecodeChoice& choice, WatchedDecoder& decoder)
        : myChoice(choice), myDecoder(decoder), myTarget(findTarget(decoder, choice.target))
    {
    }

    void add(const GivenValue& given);
    Result takeResult() { return std::move(myResult); }

private:
    std::string line(const Octets& octets);
    std::string json(const Octets& octets);
    void reportWarnings(const std::vector<std::string>& warnings);

    const DecodeChoice& myChoice;
    WatchedDecoder& myDecoder;
    const ValueTarget myTarget;
    Result myResult;
    std::set<std::string> myReported;
};

void Decoding::add(const GivenValue& given)
{
    Octets octets;
    try
    {
        octets = octetsOf(given);
    }
    catch (const InputError& error)  // the next line may be better
    {
        myResult.complaints.emplace_back(error.what());
        return;
    }
    const WatchedValue value = myDecoder.watch(myTarget, octets);
    reportWarnings(value.warnings);
    if (!value.complaint.empty()) myResult.complaints.push_back(given.place + value.complaint);
    if (myChoice.asJson)
        myResult.text += json(octets) + '\n';
    else if (myChoice.asLine)
        myResult.text += visible(line(octets)) + '\n';
    else if (value.tree)
        myResult.text += (myResult.text.empty() ? "" : "\n") +
                         valueTable(myDecoder, myTarget.name, *value.tree, octets);
}

std::string Decoding::line(const Octets& octets)
{
    const HeldWarnings ignored;  // they were reported while the value was watched
    return myDecoder.line(myTarget, octets).str();
}

std::string Decoding::json(const Octets& octets)
{
    const HeldWarnings ignored;
    const auto length = static_cast<int>(octets.size());
    int consumed = 0;
    const std::unique_ptr<DtStringTree> tree(
        myTarget.member ? myDecoder.createStringTreeRep(myTarget.member, octets.data(), length,
                                                        consumed, 0, nullptr)
                        : myDecoder.createStringTreeRep(myTarget.datatype, octets.data(), length,
                                                        consumed, nullptr, 0, nullptr, nullptr));
    return "{\"text\":" + jsonText(line(octets)) + ",\"consumed\":" + std::to_string(consumed) +
           ",\"tree\":" + jsonOf(tree.get()) + '}';
}

/// Each warning once, however many values it comes from.
void Decoding::reportWarnings(const std::vector<std::string>& warnings)
{
    for (const std::string& warning : warnings)
        if (myReported.insert(warning).second) DtWarn << warning << "\n";
    for (const std::string& datatype : myDecoder.unmapped())
        if (myReported.insert(datatype).second)
            DtWarn << "no representation is mapped to " << datatype
                   << ": its values are shown in hexadecimal, and take all octets that are left\n";
}

Result decode(const DecodeChoice& choice)
{
    const DtOMTTreePtr tree = readModel(choice.model);
    if (*choice.precisionOption) setFloatPrecision(choice.precision);
    WatchedDecoder decoder;
    decoder.prepare(*tree, choice.conversion);
    addNamedRecords(decoder, choice.records);
    Decoding decoding(choice, decoder);
    for (const GivenValue& given : readValues(choice.octets)) decoding.add(given);
    return decoding.takeResult();
}

void addDecodeArguments(CLI::App& command, DecodeChoice& choice)
{
    addModelArguments(command, choice.model)
        ->description(
            "Files of the model, and behind them HEX, the octets in one argument or in several");
    addTargetArguments(command, choice.target);
    addConversionArguments(command, choice.conversion);
    addNamedRecordArguments(command, choice.records);
    choice.precisionOption =
        command.add_option("--precision", choice.precision, "Digits of floating-point numbers (5)")
            ->check(CLI::Range(1, 50));
    command
        .add_option("--file", choice.octets.file,
                    "Read the octets as they are from a file; with --lines, in hexadecimal")
        ->type_name("FILE")
        ->check([](const std::string& name)
                { return name.empty() ? "the name of a file is empty" : ""; });
    command.add_flag("--lines", choice.octets.isByLine,
                     "Each line of the file, or of standard input, is a value");
    CLI::Option* const line =
        command.add_flag("--line", choice.asLine, "Show a value as one line of text");
    command.add_flag("--json", choice.asJson, "Show a value as one JSON object, for programs")
        ->excludes(line);
}

}  // namespace

Command addDecodeCommand(CLI::App& app)
{
    CLI::App* const command = app.add_subcommand("decode", "Show what the octets of a value say");
    auto choice = std::make_shared<DecodeChoice>();
    addDecodeArguments(*command, *choice);
    command->parse_complete_callback([choice] { splitWords(*choice); });
    command->footer(
        "Octets are two hexadecimal digits each, with or without blanks between them; without HEX\n"
        "and --file they come from standard input. A value that ends too early is shown as far as\n"
        "it goes. That, and octets left over behind a value, are reported with exit status 1. An\n"
        "attribute or parameter holds as many values as its octets do.\n"
        "\n"
        "Examples:\n"
        "  omt decode HarbourBase.xml --mim --map harbour.map --type BerthIdentifier 42 00 00 07\n"
        "  omt encode HarbourBase.xml --mim --type GeocentricPosition \"3675000 446000 5177000\" "
        "|\n"
        "      omt decode HarbourBase.xml --mim --attribute PortEntity.Position \\\n"
        "          --geodetic --position-datatype GeocentricPosition\n"
        "  grep ^PortEntity.EntityType updates.txt | cut -d ' ' -f 2- |\n"
        "      omt decode HarbourBase.xml --mim --attribute PortEntity.EntityType --lines --line "
        "\\\n"
        "          --entity-types entity-types.csv --entity-type-datatype EntityTypeRecord");
    return {command, [choice] { return decode(*choice); }};
}
