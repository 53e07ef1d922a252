// SPDX-License-Identifier: Apache-2.0
#include "omt/model/modelJson.h"

#include "omt/base/jsonWriter.h"
#include "omt/base/nameHash.h"
#include "omt/model/classNames.h"
#include "omt/model/datatypeReferences.h"
#include "omt/model/rows.h"

#include <algorithm>
#include <unordered_set>

namespace omt
{

namespace
{

/// Whose parts a kind of definition has, by the row that stands for them.
template <typename T, typename Visit>
void visitParts(const T&, const Row&, const Visit&)
{
}
template <typename Visit>
void visitParts(const Identification& of, const Row& row, const Visit& visit)
{
    if (row.parts == Kind::keyword) visit(of.keywords);
    if (row.parts == Kind::contact) visit(of.contacts);
    if (row.parts == Kind::reference) visit(of.references);
    if (row.parts == Kind::glyph) visit(of.glyphs);
}
template <typename Visit>
void visitParts(const ObjectClass& of, const Row& row, const Visit& visit)
{
    if (row.parts == Kind::directedInteraction) visit(of.directedInteractions);
    if (row.parts == Kind::attribute) visit(of.attributes);
}
template <typename Visit>
void visitParts(const InteractionClass& of, const Row&, const Visit& visit)
{
    visit(of.parameters);
}
template <typename Visit>
void visitParts(const EnumeratedData& of, const Row&, const Visit& visit)
{
    visit(of.enumerators);
}
template <typename Visit>
void visitParts(const FixedRecord& of, const Row&, const Visit& visit)
{
    visit(of.fields);
}
template <typename Visit>
void visitParts(const VariantRecord& of, const Row&, const Visit& visit)
{
    visit(of.alternatives);
}
template <typename Visit>
void visitParts(const ComplexRecord& of, const Row&, const Visit& visit)
{
    visit(of.components);
}
template <typename Visit>
void visitParts(const RoutingSpace& of, const Row&, const Visit& visit)
{
    visit(of.dimensions);
}

std::string_view wordOf(Aside::What what)
{
    switch (what)
    {
        case Aside::What::notes:
            return "notes";
        case Aside::What::attribute:
            return "attribute";
        case Aside::What::element:
            return "element";
        case Aside::What::comment:
            return "comment";
        case Aside::What::text:
            return "text";
    }
    return "";
}

/// Writes definitions by their rows. What a property does not say is absent.
class DefinitionWriter
{
public:
    DefinitionWriter(const Model& model, JsonWriter& json) : myModel(model), myJson(json) {}

    /// The properties, parts and asides of a definition, without the braces.
    template <typename T>
    void writeMembers(const T& definition)
    {
        bool isNamed = false;
        for (const Row& row : rowsOf(T::theKind))
        {
            isNamed = isNamed || row.oneText == &Definition::name;
            if (row.form == Row::Form::parts)
                visitParts(definition, row,
                           [&](const auto& parts)
                           { writeList(row.key, parts, definition.module); });
            else
                writeProperty(definition, row);
        }
        // Where the element itself is the name, no row has it.
        if (!isNamed && definition.name.isThere()) myJson.property("name", definition.name);
        writeAsides(definition, rowsOf(T::theKind));
    }

    /// Module and line, or the line alone where the module is that of what is around it.
    void writeOrigin(const Definition& definition, std::uint32_t moduleAround)
    {
        if (definition.module != moduleAround) myJson.property("module", definition.module);
        if (definition.line != 0) myJson.property("line", definition.line);
    }

    /// File and line, for a definition that stands alone.
    void writePlace(const Definition& definition)
    {
        const Place place = myModel.place(definition);
        if (!place.file.empty()) myJson.property("file", place.file);
        if (place.line != 0) myJson.property("line", place.line);
    }

    /// A table or a list of parts; absent where it is empty.
    template <typename Definitions>
    void writeList(std::string_view key, const Definitions& definitions,
                   std::uint32_t moduleAround = theNoModule)
    {
        if (definitions.empty()) return;
        myJson.key(key);
        myJson.beginArray();
        for (const auto& definition : definitions)
        {
            myJson.beginObject();
            writeMembers(definition);
            writeParent(definition);
            writeOrigin(definition, moduleAround);
            myJson.endObject();
        }
        myJson.endArray();
    }

    /// The notes that the definitions so far refer to and the model has.
    void writeNotes()
    {
        if (myNotes.empty()) return;
        myJson.key("notes");
        myJson.beginArray();
        // A note may refer to others, which then follow.
        for (std::size_t i = 0; i < myNotes.size(); ++i)
        {
            const Note& note = *myNotes[i];
            myJson.beginObject();
            writeMembers(note);
            writePlace(note);
            myJson.endObject();
        }
        myJson.endArray();
    }

    static constexpr std::uint32_t theNoModule = 0xFFFFFFFF;

private:
    void writeProperty(const Definition& definition, const Row& row)
    {
        if (row.oneText)
        {
            const Text& text = definition.*row.oneText;
            if (text.isThere()) myJson.property(row.key, text);
            return;
        }
        const List<Text>& texts = definition.*row.someTexts;
        if (!texts.isThere()) return;
        myJson.key(row.key);
        myJson.beginArray();
        for (const Text& text : texts) myJson.text(text);
        myJson.endArray();
    }

    void writeParent(const Definition&) {}
    void writeParent(const ClassDefinition& node)
    {
        if (node.parent != ClassDefinition::theNone) myJson.property("parent", node.parent);
    }

    void writeAsides(const Definition& definition, std::span<const Row> rows)
    {
        if (definition.asides.empty()) return;
        myJson.key("asides");
        myJson.beginArray();
        for (const Aside& aside : definition.asides)
        {
            myJson.beginObject();
            myJson.property("what", wordOf(aside.what));
            if (aside.property < rows.size())
                myJson.property("property", rows[aside.property].key);
            else if (aside.property == Aside::theEnd)
                myJson.property("isAtEnd", true);
            if (aside.item == Aside::theAround)
                myJson.property("isAround", true);
            else if (aside.item != 0)
                myJson.property("item", aside.item);
            if (aside.name.isThere()) myJson.property("name", aside.name);
            myJson.property("text", aside.text);
            if (aside.text.line() != 0) myJson.property("line", aside.text.line());
            myJson.endObject();
            if (aside.what == Aside::What::notes) addNotes(aside.text, definition);
        }
        myJson.endArray();
    }

    void addNotes(std::string_view labels, const Definition& user)
    {
        constexpr std::string_view theBlanks = " \t\r\n";
        while (!labels.empty())
        {
            const std::size_t end = std::min(labels.find_first_of(theBlanks), labels.size());
            const Note* const note = myModel.findNote(labels.substr(0, end), user);
            if (note && myNotesSeen.insert(note).second) myNotes.push_back(note);
            labels.remove_prefix(std::min(end + 1, labels.size()));
        }
    }

    const Model& myModel;
    JsonWriter& myJson;
    std::vector<const Note*> myNotes;
    std::unordered_set<const Note*> myNotesSeen;
};

// The whole model
// -----------------------------------------------------------------------------------

/// The numbers that programs know these editions by.
int numberOf(Edition edition)
{
    return static_cast<int>(edition) + 1;
}

template <typename Table, typename Parts>
std::size_t countParts(const Table& table, Parts parts)
{
    std::size_t count = 0;
    for (const auto& definition : table) count += (definition.*parts).size();
    return count;
}

constexpr std::string_view rootOf(const ObjectClass*)
{
    return "ObjectRoot";
}
constexpr std::string_view rootOf(const InteractionClass*)
{
    return "InteractionRoot";
}

template <typename Class>
bool isOfHla13(const Model& model, const Class& node)
{
    const std::vector<Module>& modules = model.modules();
    return node.module < modules.size() && modules[node.module].edition == Edition::hla13;
}

/// Whether a root is to be counted and named that no document declares: HLA 1.3 has it by itself,
/// and below it stands every class without a parent.
template <typename Class>
bool hasSilentRoot(const Model& model, const std::vector<Class>& table)
{
    const std::string_view root = rootOf(static_cast<const Class*>(nullptr));
    return std::any_of(model.modules().begin(), model.modules().end(),
                       [](const Module& module) { return module.edition == Edition::hla13; }) &&
           std::none_of(table.begin(), table.end(),
                        [&](const Class& node)
                        { return node.parent == ClassDefinition::theNone && node.name == root; });
}

template <typename Class>
std::size_t countClasses(const Model& model, const std::vector<Class>& table)
{
    return table.size() + (hasSilentRoot(model, table) ? 1 : 0);
}

void writeCounts(const Model& model, JsonWriter& json)
{
    const Tables& tables = model.tables();
    const std::pair<std::string_view, std::size_t> counts[] = {
        {"objectClasses", countClasses(model, tables.objectClasses)},
        {"attributes", countParts(tables.objectClasses, &ObjectClass::attributes)},
        {"interactionClasses", countClasses(model, tables.interactionClasses)},
        {"parameters", countParts(tables.interactionClasses, &InteractionClass::parameters)},
        {"basic", tables.basicData.size()},
        {"simple", tables.simpleData.size()},
        {"enumerated", tables.enumeratedData.size()},
        {"enumerators", countParts(tables.enumeratedData, &EnumeratedData::enumerators)},
        {"array", tables.arrayData.size()},
        {"fixed", tables.fixedRecords.size()},
        {"variant", tables.variantRecords.size()},
        {"complex", tables.complexRecords.size()},
        {"notes", tables.notes.size()},
        {"dimensions", tables.dimensions.size()},
        {"transportations", tables.transportations.size()},
        {"switches", tables.switches.size()},
        {"synchronizations", tables.synchronizationPoints.size()},
        {"tags", tables.tags.size()},
        {"updateRates", tables.updateRates.size()},
        {"reference", tables.referenceData.size()},
        {"directedInteractions",
         countParts(tables.objectClasses, &ObjectClass::directedInteractions)},
        {"routingSpaces", tables.routingSpaces.size()},
        {"services", tables.services.size()},
    };
    json.key("counts");
    json.beginObject();
    for (const auto& [key, count] : counts) json.property(key, count);
    json.endObject();
}

/// The order in which programs have always got the classes: module by module, the standard MIM
/// last, and in each a class after those below it; in HLA 1.3 as declared, the root last.
template <typename Class>
std::vector<std::uint32_t> listOrder(const Model& model, const std::vector<Class>& table)
{
    std::vector<std::uint32_t> order;
    order.reserve(table.size());
    // Backwards: a class, then its children from the last to the first; then turned round.
    std::vector<std::uint32_t> pending;
    for (std::uint32_t i = 0; i < table.size(); ++i)
        if (table[i].parent == ClassDefinition::theNone) pending.push_back(i);
    while (!pending.empty())
    {
        const std::uint32_t at = pending.back();
        pending.pop_back();
        order.push_back(at);
        pending.insert(pending.end(), table[at].children.begin(), table[at].children.end());
    }
    std::reverse(order.begin(), order.end());

    const std::vector<Module>& modules = model.modules();
    const auto isOld = [&](std::uint32_t i) { return isOfHla13(model, table[i]); };
    const auto isBuiltIn = [&](std::uint32_t i)
    { return table[i].module < modules.size() && modules[table[i].module].isBuiltIn; };
    std::vector<std::uint32_t> rank(table.size());
    for (std::uint32_t i = 0; i < order.size(); ++i) rank[order[i]] = i;
    const auto key = [&](std::uint32_t i)
    {
        const bool isLast = isOld(i) && table[i].parent == ClassDefinition::theNone &&
                            table[i].name == rootOf(&table[i]);
        return std::tuple(isBuiltIn(i), table[i].module, isLast, isOld(i) ? i : rank[i]);
    };
    std::sort(order.begin(), order.end(),
              [&](std::uint32_t a, std::uint32_t b) { return key(a) < key(b); });
    return order;
}

template <typename Class>
void writeNames(std::string_view key, const Model& model, const std::vector<Class>& table,
                JsonWriter& json)
{
    json.key(key);
    json.beginArray();
    const std::string_view root = rootOf(static_cast<const Class*>(nullptr));
    const bool isRootSilent = hasSilentRoot(model, table);
    for (const std::uint32_t i : listOrder(model, table))
    {
        std::string name = shortFullName(table, table[i]);
        if (isRootSilent && isOfHla13(model, table[i])) name.insert(0, 1, '.').insert(0, root);
        json.text(name);
    }
    if (isRootSilent) json.text(root);
    json.endArray();
}

void writeDatatypeNames(const Tables& tables, JsonWriter& json)
{
    json.key("datatypes");
    json.beginObject();
    NameSet seen;
    const auto writeTable = [&](const auto& table)
    {
        for (const auto& definition : table)
            if (!definition.name.empty() && seen.insert(definition.name).second)
                json.property(definition.name, wordOf(Datatype(definition)));
    };
    writeTable(tables.basicData);
    writeTable(tables.simpleData);
    writeTable(tables.referenceData);
    writeTable(tables.enumeratedData);
    writeTable(tables.arrayData);
    writeTable(tables.fixedRecords);
    writeTable(tables.variantRecords);
    writeTable(tables.complexRecords);
    json.endObject();
}

void writeModules(const std::vector<Module>& modules, DefinitionWriter& definitions,
                  JsonWriter& json)
{
    json.key("modules");
    json.beginArray();
    for (std::uint32_t i = 0; i < modules.size(); ++i)
    {
        const Module& module = modules[i];
        json.beginObject();
        json.property("file", module.file);
        json.property("edition", nameOf(module.edition));
        if (module.isBuiltIn) json.property("isBuiltIn", true);
        json.key("identification");
        json.beginObject();
        definitions.writeMembers(module.identification);
        definitions.writeOrigin(module.identification, i);
        json.endObject();
        definitions.writeList("sections", module.sections, i);
        json.endObject();
    }
    json.endArray();
}

void writeTables(const Tables& tables, DefinitionWriter& definitions, JsonWriter& json)
{
    json.key("tables");
    json.beginObject();
    definitions.writeList("services", tables.services);
    definitions.writeList("objectClasses", tables.objectClasses);
    definitions.writeList("interactionClasses", tables.interactionClasses);
    definitions.writeList("dimensions", tables.dimensions);
    definitions.writeList("times", tables.times);
    definitions.writeList("tags", tables.tags);
    definitions.writeList("synchronizationPoints", tables.synchronizationPoints);
    definitions.writeList("transportations", tables.transportations);
    definitions.writeList("switches", tables.switches);
    definitions.writeList("updateRates", tables.updateRates);
    definitions.writeList("basicData", tables.basicData);
    definitions.writeList("simpleData", tables.simpleData);
    definitions.writeList("referenceData", tables.referenceData);
    definitions.writeList("enumeratedData", tables.enumeratedData);
    definitions.writeList("arrayData", tables.arrayData);
    definitions.writeList("fixedRecords", tables.fixedRecords);
    definitions.writeList("variantRecords", tables.variantRecords);
    definitions.writeList("complexRecords", tables.complexRecords);
    definitions.writeList("routingSpaces", tables.routingSpaces);
    definitions.writeList("notes", tables.notes);
    json.endObject();
}

// One class, one datatype
// ---------------------------------------------------------------------------

constexpr std::string_view memberKey(const ObjectClass&)
{
    return "attribute";
}
constexpr std::string_view memberKey(const InteractionClass&)
{
    return "parameter";
}

template <typename Class, typename ForEachMember>
std::string oneClass(const Model& model, const std::vector<Class>& table, const Class& node,
                     JsonLayout layout, ForEachMember forEachMember)
{
    std::string text;
    JsonWriter json(text, layout.indentation);
    DefinitionWriter definitions(model, json);
    json.beginObject();
    json.property("kind", nameOf(Class::theKind));
    json.property("fullName", shortFullName(table, node));
    Class alone = node;  // its members follow, together with those that it inherits
    if constexpr (std::is_same_v<Class, ObjectClass>)
        alone.attributes = {};
    else
        alone.parameters = {};
    definitions.writeMembers(alone);
    definitions.writePlace(node);
    json.key("children");
    json.beginArray();
    for (const std::uint32_t child : node.children) json.text(table[child].name);
    json.endArray();
    json.key(memberKey(node));
    json.beginArray();
    forEachMember(
        [&](const Class& owner, const auto& member)
        {
            json.beginObject();
            definitions.writeMembers(member);
            json.property("class", shortFullName(table, owner));
            if (&owner != &node) json.property("isInherited", true);
            definitions.writePlace(member);
            json.endObject();
        });
    json.endArray();
    definitions.writeNotes();
    json.endObject();
    return text;
}

template <typename T>
bool writeAs(const Datatype& datatype, DefinitionWriter& definitions)
{
    const T* const definition = datatype.as<T>();
    if (definition) definitions.writeMembers(*definition);
    return definition != nullptr;
}

void writeDatatype(const Datatype& datatype, DefinitionWriter& definitions, JsonWriter& json)
{
    json.beginObject();
    json.property("kind", wordOf(datatype));
    (void)(writeAs<BasicData>(datatype, definitions) ||
           writeAs<SimpleData>(datatype, definitions) ||
           writeAs<ReferenceData>(datatype, definitions) ||
           writeAs<EnumeratedData>(datatype, definitions) ||
           writeAs<ArrayData>(datatype, definitions) ||
           writeAs<FixedRecord>(datatype, definitions) ||
           writeAs<VariantRecord>(datatype, definitions) ||
           writeAs<ComplexRecord>(datatype, definitions));
    definitions.writePlace(datatype.definition());
    json.endObject();
}

}  // namespace

std::string modelJson(const Model& model, JsonLayout layout)
{
    const Tables& tables = model.tables();
    std::string text;
    JsonWriter json(text, layout.indentation);
    DefinitionWriter definitions(model, json);
    json.beginObject();
    // A model of several modules has no name of its own, only theirs.
    const bool isAlone = tables.modules.size() == 1;
    json.property("name", isAlone ? tables.modules[0].identification.name : Text());
    json.property("version", isAlone ? tables.modules[0].identification.version : Text());
    json.property("hlaVersion", numberOf(model.edition()));
    writeCounts(model, json);
    writeNames("objectClasses", model, tables.objectClasses, json);
    writeNames("interactionClasses", model, tables.interactionClasses, json);
    writeDatatypeNames(tables, json);
    json.property("edition", nameOf(model.edition()));
    writeModules(tables.modules, definitions, json);
    writeTables(tables, definitions, json);
    json.endObject();
    return text;
}

std::string classJson(const Model& model, const ObjectClass& node, JsonLayout layout)
{
    return oneClass(model, model.objectClasses(), node, layout,
                    [&](const auto& visit) { model.forEachAttribute(node, visit); });
}

std::string classJson(const Model& model, const InteractionClass& node, JsonLayout layout)
{
    return oneClass(model, model.interactionClasses(), node, layout,
                    [&](const auto& visit) { model.forEachParameter(node, visit); });
}

std::string datatypeJson(const Model& model, const Datatype& datatype, JsonLayout layout)
{
    std::string text;
    JsonWriter json(text, layout.indentation);
    DefinitionWriter definitions(model, json);
    json.beginObject();
    json.property("name", datatype.definition().name);
    json.property("kind", wordOf(datatype));
    json.key("datatypes");
    json.beginObject();
    std::vector<Datatype> known = {datatype};
    std::vector<std::string_view> undefined;
    NameSet seen = {datatype.definition().name};
    for (std::size_t i = 0; i < known.size(); ++i)
    {
        const Datatype next = known[i];
        json.key(next.definition().name);
        writeDatatype(next, definitions, json);
        forEachReference(next,
                         [&](const Text& name, const Definition&, Kind)
                         {
                             if (!seen.insert(name).second) return;
                             const Datatype found = model.findDatatype(name);
                             if (found)
                                 known.push_back(found);
                             else
                                 undefined.push_back(name);
                         });
    }
    json.endObject();
    if (!undefined.empty())
    {
        json.key("undefined");
        json.beginArray();
        for (const std::string_view name : undefined) json.text(name);
        json.endArray();
    }
    definitions.writeNotes();
    json.endObject();
    return text;
}

}  // namespace omt
