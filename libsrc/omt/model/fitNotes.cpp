// SPDX-License-Identifier: Apache-2.0
// Fits notes: labels are XML names, each once in the document, and references name one that is
// there.
#include "omt/base/xmlText.h"
#include "omt/model/compare.h"
#include "omt/model/fitting.h"
#include "omt/model/parts.h"

#include <algorithm>
#include <type_traits>

namespace omt
{

namespace
{

std::string keyOf(std::uint32_t module, std::string_view label)
{
    return std::to_string(module) + ' ' + std::string(label);
}

bool isNumber(std::string_view label)
{
    return !label.empty() &&
           std::all_of(label.begin(), label.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// Calls `visit` with a definition, with its parts, and the kind of each.
template <typename T, typename Visit>
void forEachPart(const T& definition, const Visit& visit)
{
    visit(definition, T::theKind);
    forEachPartList<T>(
        [&](auto list)
        {
            using Part = std::decay_t<decltype(*(definition.*list).begin())>;
            if constexpr (!std::is_same_v<Part, Text>)
                for (const Part& part : definition.*list) visit(part, Part::theKind);
        });
}

}  // namespace

void Fitting::fitNotes()
{
    for (Note& note : tables().notes)
    {
        const std::string label = note.name.str();
        const std::string made = madeLabel(label);
        myLabels.try_emplace(keyOf(note.module, label), made);
        myLabels.try_emplace(label, made);
        if (made == label) continue;
        change(note, note.name, "the label of note `" + label + "` is written as `" + made + "`");
        note.name = text(made, note.name);
    }
}

/// A label that is an XML name, and no one else's.
std::string Fitting::madeLabel(std::string_view label)
{
    const std::string wanted = isXmlName(label)  ? std::string(label)
                               : isNumber(label) ? "Note" + std::string(label)
                               : label.empty()   ? "Note"
                                                 : asXmlName(label);
    return myIds.free(wanted);
}

/// The labels that an aside refers to, as they are written; a label that nothing has is left out.
std::string Fitting::fittedLabels(const Aside& aside, const Definition& user)
{
    constexpr std::string_view theBlanks = " \t\r\n";
    std::string labels;
    std::string_view rest = aside.text;
    for (std::size_t at = 0; (at = rest.find_first_not_of(theBlanks)) != std::string_view::npos;)
    {
        const std::size_t end = std::min(rest.find_first_of(theBlanks, at), rest.size());
        const std::string label(rest.substr(at, end - at));
        rest.remove_prefix(end);
        auto found = myLabels.find(keyOf(user.module, label));
        if (found == myLabels.end()) found = myLabels.find(label);
        if (found != myLabels.end())
            labels += (labels.empty() ? "" : " ") + found->second;
        else
            myFindings.push_back(
                {Severity::warning, "lost",
                 "the reference to note `" + label + "` is lost: there is no such note",
                 myModel.place(user, aside.text)});
    }
    return labels;
}

/// What is not written has no place for its references to notes either.
void Fitting::reportLostNotes()
{
    const auto report = [&](const Definition& user, Kind kind)
    {
        for (const Aside& aside : user.asides)
        {
            if (aside.what != Aside::What::notes || aside.text.empty()) continue;
            if (!myNoteReferences.insert(aside.text.view().data()).second) continue;
            std::string what = "the reference to note `" + cutText(aside.text) + "` at ";
            if (aside.property < rowsOf(kind).size())
                what += std::string(rowsOf(kind)[aside.property].key) + " of ";
            myFindings.push_back({Severity::warning, "lost",
                                  what + describe(user, kind) + " is lost, as that is not written",
                                  myModel.place(user, aside.text)});
        }
    };
    for (const Module& module : myModel.modules())
    {
        forEachPart(module.identification, report);
        for (const Section& section : module.sections) report(section, Kind::section);
    }
    forEachNamedTable(
        [&](auto table)
        {
            for (const auto& definition : myModel.tables().*table) forEachPart(definition, report);
        });
    for (const Note& note : myModel.tables().notes) report(note, Kind::note);
}

}  // namespace omt
