// SPDX-License-Identifier: Apache-2.0
#include "omt/model/mergeReport.h"

#include "omt/base/nameHash.h"

#include <algorithm>
#include <map>
#include <sstream>

namespace omt
{

namespace
{

/// The line of a property, that of its definition where the property has none.
std::uint32_t lineOf(const Definition& definition, const Row& row)
{
    const std::uint32_t line = textOf(definition, row).line();
    return line != 0 ? line : definition.line;
}

std::string inWords(const Place& place)
{
    std::string text = place.file.empty() ? "the first definition" : place.file;
    if (place.line != 0) text += ':' + std::to_string(place.line);
    return text;
}

std::string describePart(Kind kind, std::string_view name, const Repetition& repetition)
{
    return std::string(nameOf(kind)) + ' ' + shown(name) + " of " + repetition.what;
}

/// The files of one edition, ten by their names.
struct EditionFiles
{
    static constexpr std::size_t theMost = 10;

    void add(const std::string& file)
    {
        if (++count <= theMost) list += (count == 1 ? "" : ", ") + file;
    }
    std::string inWords() const
    {
        return count > theMost ? list + " and " + std::to_string(count - theMost) + " more" : list;
    }

    std::string list;
    std::size_t count = 0;
};

}  // namespace

std::string shown(std::string_view text)
{
    return text.empty() ? "not given" : '`' + cutText(text) + '`';
}

bool MergeReport::isEqual(const Definition& first, const Definition& later, Kind kind) const
{
    const Edition left = myMerging.editionOf(first.module);
    const Edition right = myMerging.editionOf(later.module + myMerging.firstModule);
    for (const Row& row : rowsOf(kind))
        if (isCompared(kind, row, left, right) && !isSame(first, later, kind, row)) return false;
    return true;
}

void MergeReport::compareRows(const Definition& first, const Definition& later, Kind kind,
                              const std::string& what, bool mayLeaveOut)
{
    const Edition left = myMerging.editionOf(first.module);
    const Edition right = myMerging.editionOf(later.module + myMerging.firstModule);
    for (const Row& row : rowsOf(kind))
    {
        if (!isCompared(kind, row, left, right)) continue;
        if (mayLeaveOut && !saysSomething(valueOf(later, row))) continue;
        if (!isSame(first, later, kind, row)) reportRow(first, later, kind, row, what);
    }
}

void MergeReport::reportRow(const Definition& first, const Definition& later, Kind kind,
                            const Row& row, const std::string& what)
{
    struct Verdict
    {
        Severity severity;
        std::string_view name;
        std::string_view ending;
    };
    Verdict verdict = {Severity::error, "conflict", ""};
    if (kind == Kind::switchSetting)
        verdict = {Severity::warning, "switch", ", which counts"};
    else if (kind == Kind::basicData && isSameNumber(static_cast<const BasicData&>(first),
                                                     static_cast<const BasicData&>(later)))
        verdict = {Severity::warning, "wording", "; octets are the same"};
    const Place other = myMerging.place(first.module, lineOf(first, row));
    std::string text = std::string(row.key) + " of " + what + " is " + shown(valueOf(later, row)) +
                       ", but " + shown(valueOf(first, row)) + " in " + inWords(other);
    report(verdict.severity, verdict.name, text.append(verdict.ending),
           myMerging.place(later.module + myMerging.firstModule, lineOf(later, row)), other);
}

void MergeReport::comparePart(const Definition& ours, const Definition& theirs, Kind kind,
                              std::string_view name, const Repetition& repetition)
{
    if (!isEqual(ours, theirs, kind))
        compareRows(ours, theirs, kind, describePart(kind, name, repetition), false);
}

template <typename Part>
void MergeReport::compareInOrder(const List<Part>& ours, const List<Part>& theirs,
                                 const Repetition& repetition)
{
    const std::size_t count = std::min(ours.size(), theirs.size());
    for (std::size_t i = 0; i < count; ++i)
    {
        if (ours[i].name != theirs[i].name)
            return reportOtherPart(Part::theKind, i, ours[i], theirs[i], repetition);
        comparePart(ours[i], theirs[i], Part::theKind, theirs[i].name, repetition);
    }
    if (ours.size() == theirs.size()) return;
    const std::uint32_t theirLine =
        theirs.size() > count ? theirs[count].line : repetition.laterLine;
    const std::uint32_t ourLine = ours.size() > count ? ours[count].line : repetition.firstLine;
    const Place other = myMerging.place(repetition.firstModule, ourLine);
    report(Severity::error, "conflict",
           repetition.what + " has " + std::to_string(theirs.size()) + " parts, but " +
               std::to_string(ours.size()) + " in " + inWords(other),
           myMerging.place(repetition.laterModule, theirLine), other);
}

template void MergeReport::compareInOrder(const List<RecordField>&, const List<RecordField>&,
                                          const Repetition&);
template void MergeReport::compareInOrder(const List<Component>&, const List<Component>&,
                                          const Repetition&);
template void MergeReport::compareInOrder(const List<RoutingDimension>&,
                                          const List<RoutingDimension>&, const Repetition&);

void MergeReport::reportOtherPart(Kind kind, std::size_t index, const Definition& ours,
                                  const Definition& theirs, const Repetition& repetition)
{
    const Place other = myMerging.place(ours.module, ours.line);
    report(Severity::error, "conflict",
           std::string(nameOf(kind)) + ' ' + std::to_string(index + 1) + " of " + repetition.what +
               " is " + shown(theirs.name) + ", but " + shown(ours.name) + " in " + inWords(other),
           myMerging.place(repetition.laterModule, theirs.line), other);
}

void MergeReport::reportOtherKind(Kind kind, const Definition& later, Kind firstKind,
                                  const Definition& first)
{
    const Place other = myMerging.place(first.module, first.line);
    report(Severity::error, "conflict",
           shown(later.name) + " is defined as " + std::string(nameOf(kind)) + ", but as " +
               std::string(nameOf(firstKind)) + " in " + inWords(other),
           myMerging.place(later.module + myMerging.firstModule, later.line), other);
}

void MergeReport::reportDuplicate(const std::string& what, const Definition& first,
                                  const Definition& later)
{
    const Place other = myMerging.place(first.module, first.line);
    report(Severity::warning, "duplicate", what + " stands a second time, after " + inWords(other),
           myMerging.place(later.module + myMerging.firstModule, later.line), other);
}

void MergeReport::reportAddition(Kind kind, std::string_view name, std::uint32_t line,
                                 const Repetition& repetition)
{
    const Place other = myMerging.place(repetition.firstModule, repetition.firstLine);
    const bool isNewest = myMerging.editionOf(repetition.laterModule) == Edition::ieee2025;
    report(Severity::error, "addition",
           describePart(kind, name, repetition) + " is not in " + inWords(other) +
               (isNewest ? "; only HLAextendableVariantRecord may be added to"
                         : "; only a module of 1516-2025 may add it"),
           myMerging.place(repetition.laterModule, line), other);
}

void MergeReport::reportTakenClaim(const Definition& part, Kind kind, std::string_view name,
                                   const std::string& claim, const Definition& owner,
                                   std::string_view ownerName, const Repetition& repetition)
{
    const std::uint32_t line = part.line != 0 ? part.line : repetition.laterLine;
    const Place other = myMerging.place(owner.module, owner.line);
    report(Severity::error, "conflict",
           describePart(kind, name, repetition) + " takes " + shown(claim) + ", which is " +
               shown(ownerName) + " in " + inWords(other),
           myMerging.place(repetition.laterModule, line), other);
}

void MergeReport::reportMissing(Kind kind, const std::string& names, const Repetition& repetition)
{
    const Place other = myMerging.place(repetition.firstModule, repetition.firstLine);
    report(Severity::error, "conflict",
           repetition.what + " lacks the " + std::string(nameOf(kind)) + ' ' + names +
               " that it has in " + inWords(other),
           myMerging.place(repetition.laterModule, repetition.laterLine), other);
}

void MergeReport::reportMovedNotes()
{
    if (myMerging.movedNotes.empty()) return;
    NameMap<std::size_t> counts;
    for (const Note& note : myMerging.tables().notes) ++counts[note.name];
    for (const auto& [labels, module] : myMerging.movedNotes)
    {
        std::istringstream words(labels.str());
        for (std::string label; words >> label;)
            if (const auto found = counts.find(label); found != counts.end() && found->second > 1)
                myFindings.push_back({Severity::warning, "note-label",
                                      "the note " + shown(label) +
                                          " that a scaffold refers to has its label from several "
                                          "modules",
                                      myMerging.place(module, labels.line())});
    }
}

void MergeReport::reportMixedEditions()
{
    std::map<Edition, EditionFiles, std::greater<>> editions;
    for (const Module& module : myMerging.tables().modules)
        if (!module.isBuiltIn) editions[module.edition].add(module.file.str());
    if (editions.size() < 2) return;
    std::string text = "modules of several editions:";
    const char* between = " ";
    for (const auto& [edition, files] : editions)
    {
        text += between + std::string(nameOf(edition)) + " (" + files.inWords() + ')';
        between = ", ";
    }
    myFindings.push_back({Severity::note, "mixed-editions", std::move(text), {}, {}});
}

void MergeReport::report(Severity severity, std::string_view name, std::string text, Place place,
                         Place other)
{
    myFindings.push_back(
        {severity, std::string(name), std::move(text), std::move(place), std::move(other)});
}

}  // namespace omt
