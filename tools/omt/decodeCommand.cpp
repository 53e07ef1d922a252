// SPDX-License-Identifier: Apache-2.0
#include "decodeCommand.h"

#include "decodeUpdates.h"
#include "errors.h"
#include "fittingMembers.h"
#include "messages.h"
#include "octetInput.h"
#include "plainText.h"
#include "valueJson.h"
#include "valueTable.h"
#include "valueTarget.h"

#include <algorithm>
#include <memory>
#include <set>

namespace
{

struct DecodeChoice
{
    TargetChoice target;
    OctetChoice octets;
    TableChoice table;
    UpdatesChoice updates;
    std::string className;
    std::string entityTypes;
    bool isGeodetic = false;
    bool asLine = false;
    bool asJson = false;

    /// Whether something may stand beside values.
    bool hasOverlays() const { return isGeodetic || !entityTypes.empty() || !target.hints.empty(); }
};

/// The octets begin at the first word that is no file by its form.
void prepare(DecodeChoice& choice)
{
    SplitWords words = splitWords(choice.target.words, isDumpLine);
    choice.target.model.files = std::move(words.files);
    choice.octets.words = std::move(words.others);
    if (!choice.updates.file.empty())
    {
        if (!choice.octets.words.empty())
            throw UsageError("octets stand in the arguments and in a recording");
        if (!choice.className.empty() || !choice.target.datatype.empty() ||
            !choice.target.attribute.empty() || !choice.target.parameter.empty())
            throw UsageError("--updates takes --member, or nothing for all members");
        if (choice.updates.asCsv && choice.target.member.empty())
            throw UsageError("--csv takes --member, whose columns it has");
        checkStandardInput(choice.target.model, choice.updates.file == "-");
        return;
    }
    if (!choice.className.empty() && choice.target.isNamed())
        throw UsageError("--class looks at all members; name one of them, or the class");
    if (!choice.className.empty() && (choice.asLine || choice.asJson || choice.table.hasOctets))
        throw UsageError("--class gives a table of members; name one of them for another form");
    if (!choice.target.isNamed() && choice.className.empty())
        throw UsageError(
            "one of --member, --attribute, --parameter, --type, --class or --updates is needed");
    if (!choice.octets.words.empty() && !choice.octets.file.empty())
        throw UsageError("octets stand in the arguments and in a file");
    if (!choice.octets.words.empty() && choice.octets.isByLine)
        throw UsageError("--lines reads from a file or from standard input");
    checkStandardInput(choice.target.model, choice.octets.isFromStandardInput());
}

/// Decodes one value after the other and collects what they show.
class Decoding
{
public:
    Decoding(const DecodeChoice& choice, const ValueTarget& target,
             const omt::EntityTable& entityTypes)
        : myChoice(choice), myTarget(target), myEntityTypes(entityTypes)
    {
    }

    void add(const GivenValue& given);
    Result takeResult();

private:
    void findOverlays();
    void show();
    std::string line() const;
    void reportNotes();

    const DecodeChoice& myChoice;
    const ValueTarget& myTarget;
    const omt::EntityTable& myEntityTypes;
    omt::Value myValue;
    std::vector<omt::Overlay> myOverlays;
    Result myResult;
    std::set<std::string> myReported;
    bool myHasPosition = false;
    bool myHasEntityType = false;
};

void Decoding::add(const GivenValue& given)
{
    if (!given.complaint.empty())
    {
        myResult.complaints.push_back(given.place + given.complaint);
        return;
    }
    myTarget.type.decodeInPlace(given.octets, myValue);
    if (myChoice.hasOverlays()) findOverlays();
    show();
    std::string complaint = complaintOf(myTarget, myValue);
    const bool isAsItIs = !myChoice.octets.file.empty() && !myChoice.octets.isByLine;
    if (!complaint.empty() && isAsItIs && isOctetText(given.octets))
        complaint += "; --file takes octets as they are, and standard input hexadecimal text";
    if (!complaint.empty()) myResult.complaints.push_back(given.place + complaint);
    if (!myChoice.asJson) reportNotes();
}

void Decoding::findOverlays()
{
    myOverlays = omt::overlays(myValue, &myEntityTypes);
    for (const omt::Overlay& one : myOverlays)
    {
        myHasPosition |= one.kind == omt::Overlay::Kind::geodetic;
        myHasEntityType |= one.kind == omt::Overlay::Kind::entityType;
    }
    if (myChoice.isGeodetic) return;
    const auto isPosition = [](const omt::Overlay& one)
    { return one.kind == omt::Overlay::Kind::geodetic; };
    myOverlays.erase(std::remove_if(myOverlays.begin(), myOverlays.end(), isPosition),
                     myOverlays.end());
}

Result Decoding::takeResult()
{
    if (myChoice.isGeodetic && !myHasPosition)
        writeWarning("--geodetic: no position is known in what was decoded; see --hints");
    if (!myChoice.entityTypes.empty() && !myHasEntityType)
        writeWarning(
            "--entity-types: no entity type is known in what was decoded, or none has a "
            "row; see --hints");
    return std::move(myResult);
}

/// The JSON of the value, and after it what stands beside its parts.
std::string Decoding::line() const
{
    std::string text = myValue.json();
    for (const omt::Overlay& one : myOverlays)
        text += "  " + one.path + (one.path.empty() ? "" : ": ") + one.text;
    return visible(text);
}

void Decoding::show()
{
    std::string& text = myResult.text;
    if (myChoice.asJson)
        appendEnvelope(myValue, myChoice.hasOverlays() ? &myOverlays : nullptr, text);
    else if (myChoice.asLine)
        text += line();
    else if (myValue.root())
        text += (text.empty() ? "" : "\n") +
                valueTable(myTarget.name, myValue, myOverlays, myChoice.table);
    if (myChoice.asJson || myChoice.asLine) text += '\n';
}

/// Each note once, however many values it comes from.
void Decoding::reportNotes()
{
    constexpr std::size_t theMostNotes = 1000;
    for (const omt::ValueNote& note : myValue.notes())
    {
        const std::string text = nameIn(myTarget, note.path) + ": octet " +
                                 std::to_string(note.offset) + ": " + note.what;
        if (myReported.size() < theMostNotes && myReported.insert(text).second) writeWarning(text);
    }
}

/// The members of a class that the octets may be.
Result decodeByClass(const DecodeChoice& choice)
{
    const std::optional<omt::Codec> codec = readCodec(choice.target);
    if (!codec) return theFailure;
    const ClassRef node = findClass(codec->model(), choice.className);
    Result result;
    const auto look = [&](const GivenValue& given)
    {
        const std::string table =
            given.complaint.empty() ? fittingMembers(*codec, node, given.octets) : "";
        result.text += (result.text.empty() || table.empty() ? "" : "\n") + table;
        const std::string why = given.complaint.empty()
                                    ? "the octets are no whole value of any member of " +
                                          choice.className + "; name one to see how far they go"
                                    : given.complaint;
        if (table.empty()) result.complaints.push_back(given.place + why);
    };
    readValues(choice.octets, look);
    return result;
}

Result decode(DecodeChoice& choice)
{
    prepare(choice);
    omt::EntityTableReading table;
    if (!choice.entityTypes.empty()) table = omt::EntityTable::readFile(choice.entityTypes);
    writeFindings(table.findings);
    if (hasError(table.findings)) return theFailure;
    if (!choice.updates.file.empty())
        return decodeUpdates(choice.updates, choice.target,
                             choice.entityTypes.empty() ? std::nullopt : std::optional(table.table),
                             choice.isGeodetic);
    if (!choice.className.empty()) return decodeByClass(choice);
    const std::optional<ValueTarget> target = findTarget(choice.target);
    if (!target)
    {
        if (choice.target.model.files.size() > 1 && choice.octets.isFromStandardInput())
            writeWarning("octets in a file are named with --file");
        return theFailure;
    }
    Decoding decoding(choice, *target, table.table);
    readValues(choice.octets, [&](const GivenValue& given) { decoding.add(given); });
    return decoding.takeResult();
}

void addDecodeArguments(CLI::App& command, DecodeChoice& choice)
{
    addTargetArguments(command, choice.target,
                       "Files of the model, and after them HEX, the octets in one argument or in "
                       "several",
                       true);
    command
        .add_option("--class", choice.className,
                    "Of any member of a class: list those of which the octets are a whole value")
        ->type_name("CLASS");
    addUpdatesArguments(command, choice.updates);
    command
        .add_option("--file", choice.octets.file,
                    "Read the octets as they are from a file, - for standard input; with --lines, "
                    "in hexadecimal")
        ->type_name("FILE")
        ->check([](const std::string& name)
                { return name.empty() ? "the name of a file is empty" : ""; });
    command.add_flag("--lines", choice.octets.isByLine,
                     "Each line of the file, or of standard input, is a value");
    command
        .add_option("--entity-types", choice.entityTypes,
                    "Show entity types by the names of a table as omt entity reads it")
        ->type_name("CSV");
    command.add_flag("--geodetic", choice.isGeodetic,
                     "Show positions as latitude, longitude and altitude on WGS 84");
    CLI::Option* const line = command.add_flag("--line", choice.asLine,
                                               "Show a value as one line, its JSON alone, which "
                                               "omt encode takes");
    CLI::Option* const jsonFlag =
        command
            .add_flag("--json", choice.asJson,
                      "Show a value as one line of JSON with all that is to "
                      "be said about it")
            ->excludes(line);
    command.add_flag("--hex", choice.table.hasOctets, "Show the octets of each row as well")
        ->excludes(line)
        ->excludes(jsonFlag);
    command
        .add_flag("--all", choice.table.isWhole,
                  "Show all elements of long arrays, long texts and octets")
        ->excludes(line)
        ->excludes(jsonFlag);
}

}  // namespace

Command addDecodeCommand(CLI::App& app)
{
    CLI::App* const command = app.add_subcommand("decode", "Show what the octets of a value say");
    auto choice = std::make_shared<DecodeChoice>();
    addDecodeArguments(*command, *choice);
    command->footer(
        "A word with a dot or a slash, or -, is a file of the model, up to the first that is "
        "none:\n"
        "there the octets begin. They are read as traces show them: with or without blanks, "
        "commas,\n"
        "colons or dashes, 0x01, \\x01, lists of C, Java and Python, b'A\\x01', lines of xxd,\n"
        "hexdump -C, od -tx1, tcpdump, gdb and Wireshark; without HEX and --file from standard\n"
        "input. A value is shown as far as it goes; one that ends too early, and octets left "
        "over,\n"
        "are reported with exit status 1.\n"
        "\n"
        "Examples:\n"
        "  omt decode HarbourBase.xml --mim --member Berth.Identifier 42 00 00 07\n"
        "  omt decode HarbourBase.xml --mim --type SignalKind 0x10 --json\n"
        "  omt decode HarbourBase.xml HarbourTraffic.xml --mim --class Vessel 00 00 00 01\n"
        "  omt encode HarbourBase.xml --mim --type GeocentricPosition \\\n"
        "          '{\"X\": 3675000, \"Y\": 446000, \"Z\": 5177000}' |\n"
        "      omt decode HarbourBase.xml --mim --member PortEntity.Position --hex\n"
        "  grep ,PortEntity,EntityType, updates.csv | cut -d , -f 7 |\n"
        "      omt decode HarbourBase.xml --mim --member PortEntity.EntityType --lines --line \\\n"
        "          --hints harbourHints.json --entity-types entity-types.csv\n"
        "  omt decode HarbourBase.xml HarbourTraffic.xml --mim --updates updates.csv\n"
        "  omt decode HarbourBase.xml --mim --updates updates.csv --member PortEntity.Position "
        "--csv");
    return {command, [choice] { return decode(*choice); }};
}
