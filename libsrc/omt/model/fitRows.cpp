// SPDX-License-Identifier: Apache-2.0
// Fits every property by its row: the edition has a word for it, and its schema accepts the text.
#include "omt/base/xmlText.h"
#include "omt/model/compare.h"
#include "omt/model/fitting.h"
#include "omt/model/parts.h"
#include "omt/model/schemaValues.h"

#include <algorithm>
#include <numeric>
#include <type_traits>
#include <utility>

namespace omt
{

namespace
{

/// Which of a property's texts an aside belongs to where that text is not written.
constexpr std::uint32_t theNoPlace = Aside::theAround - 1;

}  // namespace

void Fitting::fitRows()
{
    std::vector<Module>& modules = tables().modules;
    for (Module& module : modules)
    {
        // One identification is written, that of the first.
        if (&module == &modules.front())
        {
            fitDefinition(module.identification, Kind::identification);
            fitParts(module.identification);
        }
        std::vector<Section> sections(module.sections.begin(), module.sections.end());
        sections.erase(std::remove_if(sections.begin(), sections.end(),
                                      [this](const Section& each) { return isNotWritten(each); }),
                       sections.end());
        fitDefinitions(sections);
        module.sections = myBuilder.list(sections);
    }
    // Enumerators before the alternatives that name them.
    fitDefinitions(tables().enumeratedData);
    forEachNamedTable(
        [this](auto table)
        {
            using T = typename std::decay_t<decltype(tables().*table)>::value_type;
            if constexpr (!std::is_same_v<T, EnumeratedData>) fitDefinitions(tables().*table);
        });
    fitDefinitions(tables().notes);
}

/// The schema wants a root class where there is a table of classes; references are of 2025.
bool Fitting::isNotWritten(const Section& section) const
{
    return (section.name == "objects" && tables().objectClasses.empty()) ||
           (section.name == "interactions" && tables().interactionClasses.empty()) ||
           (section.name == "dataTypes/referenceDataTypes" && !isNew());
}

template <typename T>
void Fitting::fitDefinitions(std::vector<T>& table)
{
    for (T& definition : table)
    {
        if (!isFitting(definition, T::theKind)) fitDefinition(definition, T::theKind);
        fitParts(definition);
    }
}

/// Lists are shared with the model; one of which a part changes is copied.
template <typename T>
void Fitting::fitParts(T& definition)
{
    forEachPartList<T>(
        [&](auto list)
        {
            using Part = std::decay_t<decltype(*(definition.*list).begin())>;
            if constexpr (!std::is_same_v<Part, Text>)
            {
                std::vector<Part> changed;
                const List<Part>& parts = definition.*list;
                for (std::size_t i = 0; i < parts.size(); ++i)
                {
                    if (isFitting(std::as_const(parts)[i], Part::theKind)) continue;
                    Part part = parts[i];
                    if (!fitDefinition(part, Part::theKind)) continue;
                    if (changed.empty()) changed.assign(parts.begin(), parts.end());
                    changed[i] = part;
                }
                if (!changed.empty()) definition.*list = myBuilder.list(changed);
            }
        });
}

/// Whether fitDefinition() would find nothing to do, which for nearly all definitions this tells
/// without a copy of them.
bool Fitting::isFitting(const Definition& definition, Kind kind) const
{
    if (!definition.asides.empty() || (kind == Kind::alternative && !myNames.empty())) return false;
    for (const Row& row : rowsOf(kind))
    {
        const bool hasWord = !row.words.in(myEdition).empty() || row.form == Row::Form::content;
        const auto isFit = [&](const Text& text)
        { return hasWord && isAccepted(text, row.value, myEdition); };
        if (row.oneText)
        {
            const Text& text = definition.*row.oneText;
            const bool isNeeded = (row.isRequired && isNew()) || row.value == ValueForm::identifier;
            if (text.isThere() ? !isFit(text) : isNeeded) return false;
        }
        else if (row.someTexts)
        {
            const List<Text>& texts = definition.*row.someTexts;
            if (!std::all_of(texts.begin(), texts.end(), isFit)) return false;
        }
    }
    return true;
}

/// Whether anything of the definition itself has changed.
bool Fitting::fitDefinition(Definition& definition, Kind kind)
{
    bool isChanged = false;
    for (const Row& row : rowsOf(kind))
    {
        if (row.oneText)
        {
            Text& text = definition.*row.oneText;
            if (text.isThere() || (row.isRequired && isNew()) || row.value == ValueForm::identifier)
                isChanged = fitText(definition, kind, row, text) || isChanged;
        }
        else if (row.someTexts && (definition.*row.someTexts).isThere())
            isChanged = fitTexts(definition, kind, row) || isChanged;
    }
    if (kind == Kind::alternative && !myNames.empty())
        isChanged = fitEnumerators(static_cast<Alternative&>(definition)) || isChanged;
    if (!definition.asides.empty()) isChanged = fitAsides(definition, kind) || isChanged;
    return isChanged;
}

bool Fitting::fitTexts(Definition& definition, Kind kind, const Row& row)
{
    const List<Text>& texts = definition.*row.someTexts;
    std::size_t i = 0;
    Text text;
    const auto fitNext = [&]
    {
        text = texts[i];
        return fitText(definition, kind, row, text);
    };
    // Nearly all lists stay as they are, without a copy.
    while (i < texts.size() && !fitNext()) ++i;
    if (i == texts.size()) return false;
    std::vector<Text> fitted(texts.begin(), texts.begin() + i);
    std::vector<std::uint32_t> places(i);
    std::iota(places.begin(), places.end(), 0U);
    for (;;)
    {
        places.push_back(text.isThere() ? static_cast<std::uint32_t>(fitted.size()) : theNoPlace);
        if (text.isThere()) fitted.push_back(text);
        if (++i == texts.size()) break;
        fitNext();
    }
    if (fitted.size() != places.size()) moveItems(definition, kind, row, places);
    definition.*row.someTexts = fitted.empty() ? List<Text>() : myBuilder.list(fitted);
    return true;
}

/// Asides go with the texts that they stand on, of which some are not written.
void Fitting::moveItems(Definition& definition, Kind kind, const Row& row,
                        const std::vector<std::uint32_t>& places)
{
    std::vector<Aside> asides(definition.asides.begin(), definition.asides.end());
    const auto property = static_cast<std::size_t>(&row - rowsOf(kind).data());
    for (Aside& aside : asides)
        if (aside.property == property && aside.item < places.size())
            aside.item = places[aside.item];
    definition.asides = myBuilder.list(asides);
}

/// Whether a text has changed: it is another one, or not there any more.
bool Fitting::fitText(Definition& definition, Kind kind, const Row& row, Text& text)
{
    const Text before = text;
    const bool isOptional = row.value != ValueForm::identifier || kind == Kind::alternative ||
                            row.oneText != static_cast<Text Definition::*>(&Definition::name);
    if (row.words.in(myEdition).empty() && row.form != Row::Form::content)
    {
        if (saysSomething(text.view()))
            lose(definition, before, std::string(row.key) + " of " + describe(definition, kind));
        text = {};
        return true;
    }
    if (!text.isThere() && isOptional && !(row.isRequired && isNew())) return false;
    if (isAccepted(text, row.value, myEdition)) return false;
    const bool isName = row.value == ValueForm::identifier || row.value == ValueForm::reference;
    const bool isNeeded = !isOptional || (row.isRequired && isNew());
    if (isName && (isNeeded || saysSomething(text.view())))
    {
        text = madeName(text);
        change(definition, before,
               std::string(row.key) + " `" + cutText(before) + "` of " + std::string(nameOf(kind)) +
                   " is written as `" + text.str() + '`');
        return true;
    }
    const std::optional<std::string> nearest = accepted(text, row.value, myEdition);
    const bool isTranslated = todaysWord(text, row.value).has_value();
    text = nearest ? myBuilder.text(*nearest, before.line()) : Text();
    if (isTranslated) return true;
    const std::string what =
        std::string(row.key) + " `" + cutText(before) + "` of " + describe(definition, kind);
    if (nearest)
        change(definition, before, what + " is written as `" + cutText(*nearest) + '`');
    else if (saysSomething(before.view()))
        lose(definition, before, what);
    else
        change(definition, before, what + " is left out, as the schema does not accept it");
    return true;
}

// Names
// ----------------------------------------------------------------------------------------

/// A name that XML accepts, the same wherever the definition is referred to, and no one else's.
Text Fitting::madeName(const Text& name)
{
    const auto [known, isNewName] = myNames.try_emplace(name.str());
    if (isNewName)
    {
        if (!std::exchange(isTakenFilled, true)) takeNames();
        known->second = myTaken.free(name.empty() ? "Unnamed" : asXmlName(name));
    }
    return text(known->second, name);
}

/// Enumerators that have another name now, in "A, [B .. C]".
bool Fitting::fitEnumerators(Alternative& alternative)
{
    const std::string_view all = alternative.enumerator;
    std::string fitted;
    for (std::size_t at = 0; at < all.size();)
    {
        const std::size_t begin = std::min(all.find_first_not_of(", []\t\r\n", at), all.size());
        fitted += all.substr(at, begin - at);
        std::size_t end = std::min(all.find_first_of(",[]", begin), all.size());
        end = std::min(all.find("..", begin), end);
        std::string_view name = all.substr(begin, end - begin);
        name = name.substr(0, name.find_last_not_of(" \t\r\n") + 1);
        const auto known = myNames.find(std::string(name));
        fitted += known == myNames.end() ? name : known->second;
        fitted += all.substr(begin + name.size(), end - begin - name.size());
        at = end + (all.substr(end, 2) == ".." ? 2 : 0);
        fitted += all.substr(end, at - end);
    }
    if (fitted == all) return false;
    alternative.enumerator = text(fitted, alternative.enumerator);
    return true;
}

/// The names of all definitions and of their parts.
void Fitting::takeNames()
{
    forEachNamedTable(
        [this](auto table)
        {
            for (const auto& definition : tables().*table)
            {
                myTaken.take(definition.name.str());
                forEachPartList<std::decay_t<decltype(definition)>>(
                    [&](auto list)
                    {
                        using Part = std::decay_t<decltype(*(definition.*list).begin())>;
                        if constexpr (!std::is_same_v<Part, Text>)
                            for (const Part& part : definition.*list) myTaken.take(part.name.str());
                    });
            }
        });
}

// Asides
// ---------------------------------------------------------------------------------------

/// Whether any aside has changed. Of another edition's documents only what stands in a namespace of
/// its own is kept. Comments at a property that is not written go to the definition; references to
/// notes there are reported once all that is written is known.
bool Fitting::fitAsides(Definition& definition, Kind kind)
{
    std::vector<Aside> asides;
    bool isChanged = false;
    for (Aside aside : std::as_const(definition.asides))
    {
        const std::string_view before = aside.text;
        const bool isPlaced = isWritten(definition, kind, aside);
        bool isDropped = !isKept(definition, kind, aside, isPlaced);
        if (aside.what == Aside::What::comment && !isPlaced)
        {
            aside.property = Aside::theWhole;
            isChanged = true;
        }
        if (aside.what == Aside::What::notes && !isDropped)
        {
            myNoteReferences.insert(before.data());
            const std::string labels = fittedLabels(aside, definition);
            isDropped = labels.empty();
            if (labels != before) aside.text = text(labels, aside.text);
            isChanged = isChanged || labels != before;
        }
        isChanged = isChanged || isDropped;
        if (!isDropped) asides.push_back(aside);
    }
    if (isChanged) definition.asides = myBuilder.list(asides);
    return isChanged;
}

/// Whether that is written which an aside stands on.
bool Fitting::isWritten(const Definition& definition, Kind kind, const Aside& aside) const
{
    if (aside.property >= rowsOf(kind).size()) return true;
    const Row& row = rowsOf(kind)[aside.property];
    if (row.isXmlAttribute) return false;
    if (row.oneText) return (definition.*row.oneText).isThere();
    if (!row.someTexts || !(definition.*row.someTexts).isThere()) return false;
    return aside.item == Aside::theAround ? !row.around(myEdition).empty()
                                          : aside.item < (definition.*row.someTexts).size();
}

bool Fitting::isKept(const Definition& definition, Kind kind, const Aside& aside, bool isPlaced)
{
    if (aside.what == Aside::What::comment) return true;
    if (aside.what == Aside::What::notes) return isPlaced;
    const bool isAttribute = aside.what == Aside::What::attribute;
    if (isAttribute && aside.name == "idtag")
    {
        if (isXmlName(aside.text) && myIds.take(aside.text.str())) return true;
        lose(definition, aside.text,
             "the identifier `" + aside.text.str() +
                 "`, which is no name "
                 "or there twice,");
        return false;
    }
    const bool isForeign =
        aside.name.view().find(':') != std::string_view::npos ||
        (!isAttribute && aside.text.view().find("xmlns=") < aside.text.view().find('>'));
    // What HLA 1.3 has beside its properties is no XML.
    const bool isXml = editionOf(definition) != Edition::hla13;
    if (isXml && isPlaced && (isForeign || isUnchanged())) return true;
    const std::string_view what = isAttribute                       ? "the XML attribute "
                                  : aside.what == Aside::What::text ? "the text "
                                                                    : "the element ";
    const std::string_view shown =
        aside.what == Aside::What::text ? aside.text.view() : aside.name.view();
    lose(definition, aside.text,
         std::string(what) + '`' + cutText(shown) + "` of " + describe(definition, kind));
    return false;
}

}  // namespace omt
