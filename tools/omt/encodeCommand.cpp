// SPDX-License-Identifier: Apache-2.0
#include "encodeCommand.h"

#include "checkedEncoder.h"
#include "messages.h"
#include "modelInput.h"
#include "octetInput.h"
#include "plainText.h"
#include "valueTarget.h"

#include <memory>

namespace
{

using Octets = DtDatatypeManager::Octets;

constexpr int theExactPrecision = 17;  // digits with which every number reads back as it was

struct EncodeChoice
{
    ModelChoice model;
    ConversionChoice conversion;
    TargetChoice target;
    std::vector<std::string> words;
    std::string text;
};

/// Keeps the words as they were typed: CLI11 takes a text in brackets for a list, and strips it. It
/// has validators look at every word as it is, and once more at what it made of all of them.
void keepWords(CLI::App& command, CLI::Option& option, EncodeChoice& choice)
{
    command.validate_positionals();
    option.check(CLI::Validator(
        [&choice](std::string& word)
        {
            choice.words.push_back(word);
            return std::string();
        },
        ""));
}

/// The text is the last word behind the files, unless an option gave it.
void splitWords(EncodeChoice& choice, bool hasText)
{
    std::vector<std::string>& words = choice.words;
    words.resize(words.size() - choice.model.files.size());
    if (!hasText)
    {
        if (words.size() < 2) throw CLI::RequiredError("TEXT");
        choice.text = std::move(words.back());
        words.pop_back();
    }
    choice.model.files = words;
}

/// Warns of octets that do not say what the text did. The representations of some datatypes write
/// another form than they read.
void checkReadBack(CheckedEncoder& encoder, const std::string& datatype, const Octets& octets)
{
    std::string line;
    bool isSame = false;
    {
        const HeldWarnings ignored;
        int consumed = 0;
        const auto length = static_cast<int>(octets.size());
        line = encoder.getStringRep(datatype, octets.data(), length, consumed).str();
        try
        {
            isSame = consumed == length && encoder.encode(datatype, line) == octets;
        }
        catch (const InputError&)  // the line is no text of the datatype at all
        {
        }
    }
    if (!isSame && !octets.empty())
        DtWarn << "the octets read back as another value: \"" << clipped(visible(line), 60)
               << "\"; the representations of " << datatype << " do not write what they read\n";
}

std::string encode(const EncodeChoice& choice)
{
    const DtOMTTreePtr tree = readModel(choice.model);
    CheckedEncoder encoder;
    encoder.prepare(*tree, choice.conversion);
    const ValueTarget target = findTarget(encoder, choice.target);
    const Octets octets = encoder.encode(target.name, choice.text);
    setFloatPrecision(theExactPrecision);
    checkReadBack(encoder, target.name, octets);
    return hexadecimalText(octets) + '\n';
}

}  // namespace

Command addEncodeCommand(CLI::App& app)
{
    CLI::App* const command =
        app.add_subcommand("encode", "Give the octets of a value that is written as text");
    auto choice = std::make_shared<EncodeChoice>();
    CLI::Option& words = *addModelArguments(*command, choice->model);
    words.description("Files of the model, and behind them TEXT, the value in one argument");
    keepWords(*command, words, *choice);
    addDatatypeArgument(*command, choice->target);
    addConversionArguments(*command, choice->conversion);
    const CLI::Option* const text = command->add_option(
        "--text", choice->text, "TEXT as --text=TEXT, for one that begins with a -");
    command->parse_complete_callback([choice, text] { splitWords(*choice, !text->empty()); });
    command->footer(
        "TEXT is what omt decode --line prints: a record's fields behind each other with a blank\n"
        "between them, an array's elements as 1[2[3]], an enumerator's name. An array of octets\n"
        "that are characters may be written as plain text. Variant records cannot be encoded. A\n"
        "text that does not fit is reported, with exit status 1.\n"
        "\n"
        "Examples:\n"
        "  omt encode HarbourBase.xml --mim --type GeocentricPosition \"6378137 0 0\"\n"
        "  omt encode HarbourBase.xml --mim --type SignalKind GaleWarning\n"
        "  omt encode HarbourBase.xml --mim --type GeocentricPosition --text=\"-inf 0 0\"");
    return {command, [choice] { return Result{encode(*choice)}; }};
}
