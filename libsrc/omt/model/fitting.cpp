// SPDX-License-Identifier: Apache-2.0
#include "omt/model/fitting.h"

#include "omt/model/compare.h"
#include "omt/model/lowering13.h"
#include "omt/model/xmlWriter.h"

#include <algorithm>
#include <utility>

namespace omt
{

Fitting::Fitting(const Model& model, Edition edition, Findings& findings)
    : myModel(model),
      myEdition(edition),
      myFindings(findings),
      myBuilder(model),
      hasOneModule(model.modules().size() == 1)
{
}

const Tables& Fitting::fit()
{
    Lowering13(myModel, myBuilder, myEdition, myFindings).lower();
    fitIdentification();
    fitSections();
    fitServices();
    fitTables();
    fitClasses();
    fitNotes();
    fitRows();
    reportLostNotes();
    return tables();
}

Edition Fitting::editionOf(const Definition& definition) const
{
    const std::vector<Module>& modules = myModel.modules();
    return definition.module < modules.size() ? modules[definition.module].edition : myEdition;
}

bool Fitting::isUnchanged() const
{
    return hasOneModule && myModel.modules().front().edition == myEdition;
}

void Fitting::lose(const Definition& definition, const Text& property, const std::string& what)
{
    myFindings.push_back(
        {Severity::warning, "lost",
         what + " is lost: " + std::string(nameOf(myEdition)) + " has no place for it",
         myModel.place(definition, property)});
}

void Fitting::change(const Definition& definition, const Text& property, std::string sentence)
{
    myFindings.push_back(
        {Severity::note, "changed", std::move(sentence), myModel.place(definition, property)});
}

std::string Fitting::describe(const Definition& definition, Kind kind)
{
    std::string text(nameOf(kind));
    if (!definition.name.empty()) text += " `" + cutText(definition.name) + '`';
    return text;
}

/// Several modules become one: the first that is no standard MIM gives its identification, and
/// refers to the others by name, as the schemas foresee.
void Fitting::fitIdentification()
{
    std::vector<Module>& modules = tables().modules;
    if (modules.size() < 2) return;
    const auto isOwn = [](const Module& module) { return !module.isBuiltIn; };
    const auto first = std::find_if(modules.begin(), modules.end(), isOwn);
    if (first == modules.end()) return;
    Identification whole = first->identification;
    std::vector<Reference> references(whole.references.begin(), whole.references.end());
    for (const Module& module : modules)
    {
        const Identification& other = module.identification;
        if (&module == &*first || !isOwn(module)) continue;
        const std::string name = other.name.empty() ? module.file.str() : other.name.str();
        change(
            other, other.name,
            "the identification of `" + name + "` is not written; its name stands as a reference");
        const auto isSame = [&](const Reference& each)
        { return each.type == "Composed_From" && each.identification == name; };
        if (std::any_of(references.begin(), references.end(), isSame)) continue;
        Reference reference;
        reference.module = whole.module;
        reference.type = myBuilder.text("Composed_From");
        reference.identification = myBuilder.text(name, other.name.line());
        references.push_back(reference);
    }
    whole.references = myBuilder.list(references);
    modules.front().identification = whole;
}

namespace
{

bool endsWith(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

/// Where the schema of a document stands; another edition has another one.
bool isSchemaPlace(const Aside& aside)
{
    return aside.what == Aside::What::attribute &&
           (endsWith(aside.name, ":schemaLocation") ||
            endsWith(aside.name, ":noNamespaceSchemaLocation"));
}

}  // namespace

/// What stands on the root and on the tables of all modules. The XML attributes of several roots
/// become those of one.
void Fitting::fitSections()
{
    Seen seen;
    bool isPlaced = isUnchanged();
    for (Module& module : tables().modules)
    {
        std::vector<Section> sections(module.sections.begin(), module.sections.end());
        for (Section& section : sections)
        {
            std::vector<Aside> asides;
            const bool isRoot = section.name.empty();
            // Comments before the root say whose document it was.
            const bool isForeign = isRoot && module.isBuiltIn;
            for (const Aside& aside : section.asides)
                if (!isForeign && !(isRoot && isLeftOut(section, aside, seen)))
                    asides.push_back(aside);
            if (isRoot && !std::exchange(isPlaced, true)) addSchemaPlace(asides, seen);
            section.asides = myBuilder.list(asides);
        }
        if (sections.empty() && !std::exchange(isPlaced, true))
        {
            std::vector<Aside> asides;
            addSchemaPlace(asides, seen);
            sections.emplace_back().asides = myBuilder.list(asides);
        }
        module.sections = myBuilder.list(sections);
    }
}

/// Whether an XML attribute of a root is there already, or says where the schema of another edition
/// stands.
bool Fitting::isLeftOut(const Section& root, const Aside& aside, Seen& seen)
{
    if (aside.what != Aside::What::attribute) return false;
    if (!isUnchanged() && isSchemaPlace(aside)) return true;
    const auto [first, isFirst] = seen.try_emplace(aside.name, aside.text);
    if (!isFirst && first->second != aside.text)
        lose(root, aside.text, "the XML attribute `" + aside.name.str() + "`");
    return !isFirst;
}

void Fitting::addSchemaPlace(std::vector<Aside>& asides, Seen& seen)
{
    constexpr std::string_view thePrefix = "xmlns:xsi";
    const auto add = [&](std::string_view name, std::string_view text)
    {
        Aside aside;
        aside.what = Aside::What::attribute;
        aside.name = myBuilder.text(name);
        aside.text = myBuilder.text(text);
        asides.push_back(aside);
        seen.emplace(aside.name, aside.text);
    };
    const std::string year = isNew() ? "2025" : "2010";
    if (seen.count(thePrefix) == 0) add(thePrefix, "http://www.w3.org/2001/XMLSchema-instance");
    add("xsi:schemaLocation", std::string(namespaceOf(myEdition)) +
                                  " http://standards.ieee.org/downloads/1516/1516.2-" + year +
                                  "/IEEE1516-DIF-" + year + ".xsd");
}

}  // namespace omt
