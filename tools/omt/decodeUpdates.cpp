// SPDX-License-Identifier: Apache-2.0
#include "decodeUpdates.h"

#include "errors.h"
#include "messages.h"
#include "updateStream.h"

#include <algorithm>
#include <thread>

namespace
{

/// A summary of one line.
std::string summaryOf(const omt::UpdateCounts& counts)
{
    const auto count = [](std::uint64_t number, const char* what)
    { return std::to_string(number) + what; };
    std::string text = count(counts.rows, counts.rows == 1 ? " row" : " rows");
    if (counts.written != counts.rows)
        text += count(counts.rows - counts.written, " of other members").insert(0, ", ");
    if (counts.noted != 0) text += count(counts.noted, " with notes").insert(0, ", ");
    return text + count(counts.faults, " with a fault").insert(0, ", ");
}

}  // namespace

void addUpdatesArguments(CLI::App& command, UpdatesChoice& choice)
{
    CLI::Option* const updates =
        command
            .add_option("--updates", choice.file,
                        "Decode a recording, - for standard input: rows of "
                        "CSV or JSON with a class, a member and octets; a "
                        "line of JSON for each")
            ->type_name("FILE");
    command
        .add_flag("--csv", choice.asCsv, "Of a recording the rows of --member, in columns of CSV")
        ->needs(updates);
    command
        .add_option("--jobs", choice.jobs, "Threads for a recording; else one for each processor")
        ->check(CLI::Range(1, 256))
        ->type_name("N")
        ->needs(updates);
}

Result decodeUpdates(const UpdatesChoice& choice, const TargetChoice& target,
                     const std::optional<omt::EntityTable>& entityTypes, bool withGeodetics)
{
    const std::optional<omt::Codec> codec = readCodec(target);
    if (!codec) return theFailure;
    omt::UpdateOptions options;
    options.member = target.member;
    options.asCsv = choice.asCsv;
    options.entities = entityTypes;
    options.withGeodetics = withGeodetics;
    const unsigned jobs =
        choice.jobs != 0 ? choice.jobs : std::max(1U, std::thread::hardware_concurrency());
    const omt::UpdateCounts counts =
        decodeRecording(omt::UpdateDecoder(*codec, options), choice.file, jobs);
    writeWarning(summaryOf(counts));
    Result result;
    result.isFailure = counts.faults != 0;
    return result;
}
