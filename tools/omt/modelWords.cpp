// SPDX-License-Identifier: Apache-2.0
#include "modelWords.h"

#include "omt/model/datatypeReferences.h"
#include "plainText.h"

#include <algorithm>
#include <array>
#include <set>

namespace
{

constexpr std::array<std::string_view, 13> theBaseNames = {
    "any",           "boolean", "char",  "double", "float",         "long",
    "long long",     "octet",   "short", "string", "unsigned long", "unsigned long long",
    "unsigned short"};

constexpr std::string_view theBlanks = " \t\r\n";

template <typename Visit>
void forEachLabel(const omt::Definition& definition, Visit visit)
{
    for (const omt::Aside& aside : definition.asides)
    {
        if (aside.what != omt::Aside::What::notes) continue;
        std::string_view rest = aside.text;
        while (!rest.empty())
        {
            const std::size_t end = std::min(rest.find_first_of(theBlanks), rest.size());
            if (end != 0) visit(rest.substr(0, end));
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    }
}

/// The names up to as many levels as a page can bear.
template <typename Class>
std::string fullName(const omt::Model& model, const Class& node)
{
    constexpr std::size_t theMostOctets = 1000;
    std::string text = node.name.str();
    for (const Class* at = model.parent(node); at; at = model.parent(*at))
    {
        if (text.size() > theMostOctets) return "..." + text;
        text.insert(0, 1, '.').insert(0, at->name.view());
    }
    return text;
}

}  // namespace

std::string editionText(omt::Edition edition)
{
    switch (edition)
    {
        case omt::Edition::hla13:
            return "HLA 1.3";
        case omt::Edition::ieee2000:
            return "IEEE 1516-2000";
        case omt::Edition::ieee2010:
            return "IEEE 1516-2010";
        case omt::Edition::ieee2025:
            return "IEEE 1516-2025";
    }
    return "";
}

std::string fullNameText(const omt::Model& model, const omt::ObjectClass& node)
{
    return fullName(model, node);
}

std::string fullNameText(const omt::Model& model, const omt::InteractionClass& node)
{
    return fullName(model, node);
}

bool isBaseDatatype(const omt::Model& model, std::string_view name)
{
    const auto& modules = model.modules();
    return std::find(theBaseNames.begin(), theBaseNames.end(), name) != theBaseNames.end() &&
           std::any_of(modules.begin(), modules.end(),
                       [](const omt::Module& module)
                       { return module.edition == omt::Edition::hla13; });
}

std::string nameWithKind(const omt::Model& model, std::string_view name)
{
    if (name.empty() || name == "NA") return std::string(name);
    const omt::Datatype datatype = model.findDatatype(name);
    const std::string kind = datatype                      ? std::string(omt::wordOf(datatype))
                             : isBaseDatatype(model, name) ? "base"
                                                           : "not in this model";
    return std::string(name) + " (" + kind + ')';
}

std::string joinedTexts(const omt::List<omt::Text>& texts, std::string_view separator)
{
    std::string all;
    for (const omt::Text& text : texts)
    {
        if (!all.empty()) all += separator;
        all += text.view();
    }
    return all;
}

std::string placeText(const omt::Model& model, const omt::Definition& definition)
{
    const omt::Place place = model.place(definition);
    if (place.file.empty() || place.line == 0) return place.file;
    return place.file + ':' + std::to_string(place.line);
}

std::string NoteList::numbers(const omt::Definition& definition)
{
    std::set<std::size_t> numbers;
    forEachLabel(definition,
                 [&](std::string_view label)
                 {
                     const omt::Note* const note = myModel.findNote(label, definition);
                     if (!note) return;
                     const auto [place, isNew] = myNumbers.emplace(note, myNotes.size() + 1);
                     if (isNew) myNotes.push_back(note);
                     numbers.insert(place->second);
                 });
    std::string text;
    for (const std::size_t number : numbers)
        text += (text.empty() ? "" : " ") + std::to_string(number);
    return text;
}

std::string NoteList::text() const
{
    TextTable table({whole(""), whole(""), wrap("")});
    for (std::size_t i = 0; i < myNotes.size(); ++i)
        table.add({std::to_string(i + 1), myNotes[i]->name.str(), myNotes[i]->semantics.str()});
    return table.isEmpty() ? "" : heading("Notes") + table.text();
}
