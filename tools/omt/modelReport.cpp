// SPDX-License-Identifier: Apache-2.0
#include "modelReport.h"

#include "classTree.h"
#include "datatypeTables.h"
#include "modelWords.h"
#include "paint.h"
#include "plainText.h"
#include "tableSection.h"

#include <algorithm>

namespace
{

using Row = std::vector<std::string>;

std::string contactText(const omt::Contact& contact)
{
    const std::string phones = joinedTexts(contact.telephones);
    const std::string emails = joinedTexts(contact.emails);
    std::vector<std::string> name;
    for (const std::string_view part : {contact.name.view(), contact.honorific.view(),
                                        contact.firstName.view(), contact.lastName.view()})
        if (!part.empty()) name.emplace_back(part);
    std::vector<std::string> parts;
    for (const std::string& part : {joined(name, " "), contact.organization.str(), phones, emails})
        if (!part.empty()) parts.push_back(part);
    const std::string text = joined(parts, ", ");
    return contact.type.empty() || text.empty() ? contact.type.str() + text
                                                : contact.type.str() + ": " + text;
}

void addTexts(PropertyList& list, const char* name, const omt::List<omt::Text>& texts)
{
    for (const omt::Text& text : texts) list.add(name, text);
}

std::string identificationText(const omt::Module& module, NoteList& notes)
{
    const omt::Identification& about = module.identification;
    PropertyList list;
    list.add("Version", about.version);
    list.add("Type", about.type);
    list.add("HLA version", editionText(module.edition));
    list.add("MOM version", about.momVersion);
    list.add("DTD version", about.dtdVersion);
    list.add("FED", about.fedName);
    list.add("Date", about.modificationDate);
    list.add("Purpose", about.purpose);
    list.add("Domain", about.applicationDomain);
    list.add("Sponsor", about.sponsor);
    list.add("Classification", about.securityClassification);
    list.add("Copyright", about.copyright);
    addTexts(list, "Restriction", about.releaseRestrictions);
    list.add("Description", about.description);
    list.add("Use limitation", about.useLimitation);
    addTexts(list, "Use history", about.useHistories);
    for (const omt::Keyword& one : about.keywords)
        list.add("Key word", one.taxonomy.empty()
                                 ? one.keywordValue.str()
                                 : one.taxonomy.str() + ": " + one.keywordValue.str());
    for (const omt::Contact& contact : about.contacts)
        list.add("Point of contact", contactText(contact));
    for (const omt::Reference& one : about.references)
        list.add(one.type.empty() ? "Reference" : oneLine(one.type), one.identification);
    list.add("Other", about.other);
    list.add("Notes", notes.numbers(about));
    return list.text();
}

/// The module that the user is after: the only one beside the standard MIM.
const omt::Module* onlyModule(const omt::Model& model)
{
    const omt::Module* found = nullptr;
    for (const omt::Module& module : model.modules())
    {
        if (module.isBuiltIn) continue;
        if (found) return nullptr;
        found = &module;
    }
    return found || model.modules().size() != 1 ? found : &model.modules().front();
}

std::string identification(const omt::Model& model)
{
    const omt::Module* const module = onlyModule(model);
    std::string name = "Merged object model";
    if (module) name = oneLine(module->identification.name);
    if (name.empty()) name = "Object model without a name";
    std::string text =
        bold(name) + '\n' + std::string(std::min<std::size_t>(columnsOf(name), 100), '=') + '\n';
    NoteList notes(model);
    if (module) text += identificationText(*module, notes) + notes.text();
    if (model.modules().size() < 2) return text;
    return text +
           section("Modules", {whole("Name"), whole("Version"), whole("HLA version"), wrap("File")},
                   model.modules(),
                   [](const omt::Module& one)
                   {
                       return Row{one.identification.name.str(), one.identification.version.str(),
                                  editionText(one.edition), one.file.str()};
                   });
}

template <typename Table, typename Parts>
std::size_t countParts(const Table& table, Parts parts)
{
    std::size_t count = 0;
    for (const auto& definition : table) count += (definition.*parts).size();
    return count;
}

using Count = std::pair<std::size_t, const char*>;

std::vector<Count> countsOf(const omt::Tables& tables)
{
    std::vector<Count> counts = {
        {tables.objectClasses.size(), "object classes"},
        {countParts(tables.objectClasses, &omt::ObjectClass::attributes), "attributes"},
        {tables.interactionClasses.size(), "interaction classes"},
        {countParts(tables.interactionClasses, &omt::InteractionClass::parameters), "parameters"},
        {tables.basicData.size(), "basic representations"},
        {tables.simpleData.size(), "simple datatypes"},
        {tables.enumeratedData.size(), "enumerated datatypes"},
        {countParts(tables.enumeratedData, &omt::EnumeratedData::enumerators), "enumerators"},
        {tables.arrayData.size(), "array datatypes"},
        {tables.fixedRecords.size(), "fixed records"},
        {tables.variantRecords.size(), "variant records"},
        {tables.complexRecords.size(), "complex datatypes"},
        {tables.notes.size(), "notes"},
        {tables.dimensions.size(), "dimensions"},
        {tables.transportations.size(), "transportations"},
        {tables.switches.size(), "switches"},
        {tables.synchronizationPoints.size(), "synchronization points"},
        {tables.tags.size(), "tags"},
        {tables.updateRates.size(), "update rates"},
    };
    const Count newer[] = {
        {tables.referenceData.size(), "reference datatypes"},
        {countParts(tables.objectClasses, &omt::ObjectClass::directedInteractions),
         "directed interactions"},
        {tables.routingSpaces.size(), "routing spaces"},
        {tables.services.size(), "services"},
    };
    for (const Count& count : newer)
        if (count.first != 0) counts.push_back(count);
    return counts;
}

/// Numbers and what they count, three on a line.
std::string counts(const omt::Model& model)
{
    constexpr std::size_t theCellsOnALine = 3;
    constexpr std::size_t theNumberWidth = 7;
    constexpr std::size_t theCellWidth = 33;
    std::string text;
    std::string line;
    std::size_t cells = 0;
    for (const auto& [count, name] : countsOf(model.tables()))
    {
        if (cells == theCellsOnALine)
        {
            text += line + '\n';
            line.clear();
            cells = 0;
        }
        const std::string number = std::to_string(count);
        line.resize(std::max(line.size(), theCellWidth * cells++), ' ');
        line.append(theNumberWidth - std::min(number.size(), theNumberWidth), ' ');
        line += number + ' ' + name;
    }
    return heading("Counts") + text + line + '\n';
}

std::string distributionTables(const omt::Tables& tables)
{
    return section("Dimensions",
                   {whole("Name"), wrap("Datatype"), whole("Upper bound"), wrap("Normalization"),
                    wrap("Unspecified")},
                   tables.dimensions,
                   [](const omt::Dimension& one)
                   {
                       return Row{one.name.str(), joinedTexts(one.dataTypes), one.upperBound.str(),
                                  one.normalization.str(), one.value.str()};
                   }) +
           section("Transportations", {whole("Name"), whole("Reliable"), wrap("Meaning")},
                   tables.transportations,
                   [](const omt::Transportation& one) {
                       return Row{one.name.str(), one.reliable.str(), one.semantics.str()};
                   }) +
           section("Update rates", {whole("Name"), whole("Per second"), wrap("Meaning")},
                   tables.updateRates,
                   [](const omt::UpdateRate& one) {
                       return Row{one.name.str(), one.rate.str(), one.semantics.str()};
                   });
}

std::string routingSpaces(const omt::Tables& tables)
{
    TextTable table({whole("Space"), whole("Dimension"), whole("Type"), whole("Range"),
                     whole("Units"), wrap("Normalization")});
    for (const omt::RoutingSpace& space : tables.routingSpaces)
    {
        table.add({space.name.str(), "", "", "", "", space.semantics.str()});
        for (const omt::RoutingDimension& one : space.dimensions)
            table.add({"", one.name.str(), one.type.str(),
                       one.minimum.str() + " to " + one.maximum.str(), one.units.str(),
                       one.normalization.str()});
    }
    return table.isEmpty()
               ? ""
               : heading(withCount("Routing spaces", tables.routingSpaces.size())) + table.text();
}

std::string federationTables(const omt::Tables& tables)
{
    return section("Switches", {whole("Name"), wrap("Setting")}, tables.switches,
                   [](const omt::Switch& one) {
                       return Row{one.name.str(), one.value.str()};
                   }) +
           section("Synchronization points",
                   {whole("Label"), whole("Tag datatype"), whole("Capability"), wrap("Meaning")},
                   tables.synchronizationPoints,
                   [](const omt::SynchronizationPoint& one) {
                       return Row{one.name.str(), one.dataType.str(), one.capability.str(),
                                  one.semantics.str()};
                   }) +
           section("User-supplied tags", {whole("Tag"), whole("Datatype"), wrap("Meaning")},
                   tables.tags,
                   [](const omt::Tag& one) {
                       return Row{one.name.str(), one.dataType.str(), one.semantics.str()};
                   }) +
           section("Time", {whole("Use"), whole("Datatype"), wrap("Meaning")}, tables.times,
                   [](const omt::Time& one) {
                       return Row{one.name.str(), one.dataType.str(), one.semantics.str()};
                   }) +
           section("Services", {whole("Name"), whole("Section"), whole("Callback"), whole("Used")},
                   tables.services,
                   [](const omt::Service& one) {
                       return Row{one.name.str(), one.section.str(), one.isCallback.str(),
                                  one.isUsed.str()};
                   });
}

}  // namespace

std::string modelReport(const omt::Model& model)
{
    const omt::Tables& tables = model.tables();
    return identification(model) + counts(model) + classTrees(model) + datatypeTables(model) +
           distributionTables(tables) + routingSpaces(tables) + federationTables(tables) +
           section("Notes", {whole("Label"), wrap("Text")}, tables.notes,
                   [](const omt::Note& one) {
                       return Row{one.name.str(), one.semantics.str()};
                   });
}
