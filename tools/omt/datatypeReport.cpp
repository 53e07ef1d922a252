// SPDX-License-Identifier: Apache-2.0
#include "datatypeReport.h"

#include "datatypeTree.h"
#include "datatypeUses.h"
#include "errors.h"
#include "modelWords.h"
#include "omt/base/nearestNames.h"
#include "textTable.h"

namespace
{

/// Writes the definition of a datatype: a list of properties, then its parts.
struct Page
{
    const omt::Model& model;
    NoteList notes{model};
    std::string text;

    std::string typed(const omt::Text& name) const { return nameWithKind(model, name); }

    void begin(PropertyList& list, const omt::Definition& node, const omt::Text& semantics)
    {
        list.add("Meaning", semantics);
        list.add("Notes", notes.numbers(node));
        list.add("Declared at", placeText(model, node));
        text += list.text();
    }

    void write(const omt::BasicData& node)
    {
        PropertyList list;
        list.add("Kind", "basic data representation");
        list.add("Size in bits", node.size);
        list.add("Endian", node.endian);
        list.add("Interpretation", node.interpretation);
        list.add("Encoding", node.encoding);
        begin(list, node, {});
    }

    void write(const omt::SimpleData& node)
    {
        PropertyList list;
        list.add("Kind", "simple datatype");
        list.add("Representation", typed(node.representation));
        list.add("Units", node.units);
        list.add("Resolution", node.resolution);
        list.add("Accuracy", node.accuracy);
        begin(list, node, node.semantics);
    }

    void write(const omt::ReferenceData& node)
    {
        PropertyList list;
        list.add("Kind", "reference datatype");
        list.add("Representation", typed(node.representation));
        list.add("Refers to class", node.referenceClass);
        list.add("By attribute", node.referencedAttribute);
        begin(list, node, node.semantics);
    }

    void write(const omt::EnumeratedData& node)
    {
        PropertyList list;
        list.add("Kind", "enumerated datatype");
        list.add("Representation", typed(node.representation));
        list.add("Auto sequence", node.autoSequence);
        list.add("Start value", node.startValue);
        begin(list, node, node.semantics);
        TextTable table({whole("Number"), whole("Name"), wrap("Notes")});
        for (const omt::Enumerator& one : node.enumerators)
            table.add({joinedTexts(one.values), one.name.str(), notes.numbers(one)});
        text += heading("Enumerators") + table.text();
    }

    void write(const omt::ArrayData& node)
    {
        PropertyList list;
        list.add("Kind", "array datatype");
        list.add("Element", typed(node.dataType));
        list.add("Cardinality", node.cardinality);
        list.add("Encoding", node.encoding);
        begin(list, node, node.semantics);
    }

    void write(const omt::FixedRecord& node)
    {
        PropertyList list;
        list.add("Kind", "fixed record datatype");
        list.add("Encoding", node.encoding);
        begin(list, node, node.semantics);
        TextTable table({whole("Name"), whole("Datatype"), wrap("Notes"), wrap("Meaning")});
        for (const omt::RecordField& one : node.fields)
            table.add(
                {one.name.str(), typed(one.dataType), notes.numbers(one), one.semantics.str()});
        text += heading("Fields") + table.text();
    }

    void write(const omt::VariantRecord& node)
    {
        PropertyList list;
        list.add("Kind", "variant record datatype");
        list.add("Discriminant", node.discriminant.str() + ": " + typed(node.dataType));
        list.add("Encoding", node.encoding);
        begin(list, node, node.semantics);
        TextTable table(
            {wrap("Enumerator"), whole("Name"), whole("Datatype"), wrap("Notes"), wrap("Meaning")});
        for (const omt::Alternative& one : node.alternatives)
            table.add({one.enumerator.str(), one.name.str(), typed(one.dataType),
                       notes.numbers(one), one.semantics.str()});
        text += heading("Alternatives") + table.text();
    }

    void write(const omt::ComplexRecord& node)
    {
        PropertyList list;
        list.add("Kind", "complex datatype");
        begin(list, node, node.semantics);
        TextTable table({whole("Name"), whole("Datatype"), whole("Cardinality"), wrap("Units"),
                         wrap("Accuracy"), wrap("Accurate when"), wrap("Notes"), wrap("Meaning")});
        for (const omt::Component& one : node.components)
            table.add({one.name.str(), typed(one.dataType), one.cardinality.str(), one.units.str(),
                       one.accuracy.str(), one.accuracyCondition.str(), notes.numbers(one),
                       one.semantics.str()});
        text += heading("Components") + table.text();
    }

    template <typename T>
    bool writeIf(const omt::Datatype& datatype)
    {
        const T* const node = datatype.as<T>();
        if (node) write(*node);
        return node != nullptr;
    }
};

std::string definition(const omt::Model& model, const omt::Datatype& datatype)
{
    Page page{model, NoteList(model), heading(datatype.definition().name, '=')};
    (void)(page.writeIf<omt::BasicData>(datatype) || page.writeIf<omt::SimpleData>(datatype) ||
           page.writeIf<omt::ReferenceData>(datatype) ||
           page.writeIf<omt::EnumeratedData>(datatype) || page.writeIf<omt::ArrayData>(datatype) ||
           page.writeIf<omt::FixedRecord>(datatype) || page.writeIf<omt::VariantRecord>(datatype) ||
           page.writeIf<omt::ComplexRecord>(datatype));
    return page.text + datatypeTree(model, datatype) + page.notes.text();
}

template <typename T>
void addNames(std::vector<std::string_view>& names, const std::vector<T>& table)
{
    for (const T& definition : table) names.push_back(definition.name);
}

}  // namespace

omt::Datatype findDatatype(const omt::Model& model, const std::string& name)
{
    const omt::Datatype found = model.findDatatype(name);
    if (found) return found;
    const omt::Tables& tables = model.tables();
    std::vector<std::string_view> names;
    addNames(names, tables.basicData);
    addNames(names, tables.simpleData);
    addNames(names, tables.referenceData);
    addNames(names, tables.enumeratedData);
    addNames(names, tables.arrayData);
    addNames(names, tables.fixedRecords);
    addNames(names, tables.variantRecords);
    addNames(names, tables.complexRecords);
    const bool isNamed = !directUses(model, name).isEmpty();
    throw InputError(omt::unknownName("datatype", name, names) +
                     (isNamed ? " The model refers to it; a module or --mim may be missing" : ""));
}

std::string datatypeReport(const omt::Model& model, const std::string& name)
{
    std::string text;
    if (!model.findDatatype(name) && isBaseDatatype(model, name))
    {
        PropertyList list;
        list.add("Kind", "base datatype of HLA 1.3");
        text = heading(name, '=') + list.text();
    }
    else
        text = definition(model, findDatatype(model, name));
    const TextTable used = directUses(model, name);
    text += used.isEmpty() ? "\nNothing in the model refers to it.\n"
                           : heading("Used by") + used.text();
    return text.substr(1);
}
