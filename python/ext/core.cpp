// SPDX-License-Identifier: Apache-2.0
// The module omtreader._core: models, codecs, fields and tables of libomt for Python.
#include "dicts.h"
#include "omt/base/nearestNames.h"
#include "omt/c.h"
#include "omt/check/check.h"
#include "omt/check/diff.h"
#include "omt/codec/layout.h"
#include "rows.h"
#include "tables.h"

#include <nanobind/stl/optional.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/string_view.h>
#include <nanobind/stl/vector.h>

#include <algorithm>
#include <sstream>

namespace nb = nanobind;

namespace
{

using omtpy::Table;

/// The octets of any object that has some, for as long as this lives.
class View
{
public:
    explicit View(nb::handle object)
    {
        if (PyObject_GetBuffer(object.ptr(), &myBuffer, PyBUF_SIMPLE) != 0)
            throw nb::python_error();
    }
    View(const View&) = delete;
    View& operator=(const View&) = delete;
    ~View() { PyBuffer_Release(&myBuffer); }

    omt::Octets octets() const { return {myBuffer.buf, static_cast<std::size_t>(myBuffer.len)}; }

private:
    Py_buffer myBuffer;
};

[[noreturn]] void raise(nb::object error)
{
    PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(error.ptr())), error.ptr());
    throw nb::python_error();
}

nb::list findingsOf(const omt::Findings& findings)
{
    const nb::object make = omtpy::typeNamed("Finding");
    nb::list all;
    for (const omt::Finding& one : findings)
    {
        std::ostringstream text;
        text << one;
        all.append(make(nb::str(omt::name(one.severity).data()), one.name, one.text, one.place.file,
                        one.place.line, text.str()));
    }
    return all;
}

// Codecs -------------------------------------------------------------------------------------

class Field;

constexpr std::uint32_t theMostInBatch = omt::ColumnOptions().mostInBatch;

class Codec
{
public:
    explicit Codec(const omt::Model& model)
        : myCodec(std::make_shared<const omt::Codec>(model)),
          myNames(std::make_shared<omtpy::Names>())
    {
    }

    nb::list findings() const { return findingsOf(myCodec->findings()); }

    nb::object decode(std::string_view name, nb::handle octets)
    {
        const View view(octets);
        return decodeAs(type(name), view.octets(), *myNames);
    }

    static nb::object decodeAs(const omt::Type& type, omt::Octets octets, omtpy::Names& names)
    {
        // Kept for its memory; Python's lock is held as long as it is used, but an object that is
        // made may run code of others, which may come here again.
        static thread_local omt::Value theKept;
        omt::Value value = std::move(theKept);
        type.decodeInPlace(octets, value);
        nb::object result = omtpy::toPython(value, names);
        if (value.fault() || value.left() > 0) fail(value, std::move(result));
        theKept = std::move(value);
        return result;
    }

    nb::bytes encode(std::string_view name, nb::handle value)
    {
        std::string json;
        omtpy::appendJson(value, json);
        return encodeJson(name, json);
    }

    nb::bytes encodeJson(std::string_view name, std::string_view json)
    {
        std::vector<std::uint8_t> octets;
        if (const auto error = type(name).encode(json, octets))
            raise(omtpy::typeNamed("EncodeError")(error->what, error->path));
        return nb::bytes(octets.data(), octets.size());
    }

    nb::str decodeJson(std::string_view name, nb::handle octets)
    {
        const View view(octets);
        omt::Value value;
        type(name).decodeInPlace(view.octets(), value);
        if (value.fault() || value.left() > 0) fail(value, omtpy::toPython(value, *myNames));
        const std::string json = value.json();
        return nb::str(json.data(), json.size());
    }

    Table decodeColumn(std::string_view name, nb::handle column, std::string_view labels,
                       bool widenUnsigned, std::uint32_t mostInBatch)
    {
        return Table::decode(columns(name, labels, widenUnsigned, mostInBatch),
                             omtpy::takeColumn(column));
    }

    Table encodeColumn(std::string_view name, nb::handle column)
    {
        return Table::encode(columns(name, "dictionary", false, theMostInBatch),
                             omtpy::takeColumn(column));
    }

    std::string layout(std::string_view name);

    /// The attributes and parameters that a path may mean, each with the class that declares it.
    nb::list members(std::string_view path) const
    {
        const omt::Model& model = myCodec->model();
        nb::list all;
        for (const omt::MemberUse& use : model.findMembers(path))
        {
            const std::string owner =
                use.attribute
                    ? model.fullName(static_cast<const omt::ObjectClass&>(*use.owner))
                    : model.fullName(static_cast<const omt::InteractionClass&>(*use.owner));
            all.append(owner + '.' + std::string(use.member().name));
        }
        return all;
    }

    /// A member where there is a period, else a datatype; found once.
    const omt::Type& type(std::string_view name)
    {
        const auto place = myTypes.find(std::string(name));
        if (place != myTypes.end()) return place->second;
        return myTypes.emplace(name, find(name)).first->second;
    }

    const std::shared_ptr<const omt::Codec>& codec() const { return myCodec; }
    const std::shared_ptr<omtpy::Names>& names() const { return myNames; }

private:
    omt::Type find(std::string_view name) const
    {
        if (std::optional<omt::Type> found = myCodec->findType(name)) return *found;
        try
        {
            return name.find('.') == name.npos ? myCodec->type(name) : myCodec->member(name);
        }
        catch (const omt::UnknownName& unknown)
        {
            raise(omtpy::typeNamed("UnknownName")(unknown.what()));
        }
    }

    omt::Columns columns(std::string_view name, std::string_view labels, bool widenUnsigned,
                         std::uint32_t mostInBatch)
    {
        constexpr std::string_view theLabels[] = {"dictionary", "string", "number"};
        const auto* const found = std::find(std::begin(theLabels), std::end(theLabels), labels);
        if (found == std::end(theLabels))
            throw nb::value_error("labels are \"dictionary\", \"string\" or \"number\"");
        omt::ColumnOptions options;
        options.labels = static_cast<omt::Labels>(found - theLabels);
        options.widensUnsigned = widenUnsigned;
        options.mostInBatch = std::min(mostInBatch, theMostInBatch);
        return omt::Columns(type(name), options);
    }

    [[noreturn]] static void fail(const omt::Value& value, nb::object partial)
    {
        const std::size_t left = value.left();
        const omt::Fault fault = value.fault()
                                     ? *value.fault()
                                     : omt::Fault{std::to_string(left) + " octets are left over",
                                                  "", value.octets().size(), 0, left};
        raise(omtpy::typeNamed("DecodeError")(fault.what, fault.path, fault.offset, fault.needed,
                                              fault.left, std::move(partial)));
    }

    std::shared_ptr<const omt::Codec> myCodec;
    std::shared_ptr<omtpy::Names> myNames;
    std::unordered_map<std::string, omt::Type> myTypes;
};

std::string Codec::layout(std::string_view name)
{
    std::ostringstream out;
    out << "offset  octets  name\n";
    for (const omt::LayoutRow& row : omt::layout(type(name)))
    {
        const std::string offset = row.offset ? std::to_string(*row.offset) : "-";
        const std::string size =
            std::to_string(row.leastSize) + (row.greatestSize == row.leastSize ? "" : "+");
        out << std::string(6 - std::min<std::size_t>(offset.size(), 6), ' ') << offset << "  "
            << std::string(6 - std::min<std::size_t>(size.size(), 6), ' ') << size << "  "
            << std::string(std::size_t{2} * row.depth, ' ') << row.name
            << (row.name.empty() ? "" : ": ") << row.type;
        if (!row.remark.empty()) out << " (" << row.remark << ')';
        out << '\n';
    }
    return out.str();
}

class Field
{
public:
    Field(const Codec& codec, omt::Field field)
        : myNames(codec.names()), myCodec(codec.codec()), myField(std::move(field))
    {
    }

    /// None where the octets do not have this part.
    nb::object operator()(nb::handle octets) const
    {
        const View view(octets);
        const omt::Octets value = view.octets();
        const omt::Type type = myField.type();
        switch (type.kind())
        {
            case omt::ValueKind::number:
                if (isInteger()) break;
                if (const std::optional<double> number = myField.number(value))
                    return nb::float_(*number);
                return nb::none();
            case omt::ValueKind::enumerated:
                if (const std::optional<std::string_view> label = myField.label(value))
                    return nb::borrow(myNames->label(*label, *myField.integer(value)));
                break;
            default:
                break;
        }
        const std::optional<omt::Octets> part = myField.octets(value);
        if (!part) return nb::none();
        return Codec::decodeAs(type, *part, *myNames);
    }

private:
    bool isInteger() const
    {
        const std::uint8_t zeros[8] = {};
        return myField.type()
            .decode(omt::Octets(zeros, *myField.type().size()))
            .root()
            .integer()
            .has_value();
    }

    std::shared_ptr<omtpy::Names> myNames;
    std::shared_ptr<const omt::Codec> myCodec;
    omt::Field myField;
};

/// The parts of a value that have a place of their own, by their paths from the top; some, where
/// there are very many.
std::vector<std::string> pathsIn(const omt::Type& type)
{
    constexpr std::size_t theMost = 4096;
    std::vector<std::string> paths;
    std::vector<std::string> above;
    for (const omt::LayoutRow& row : omt::layout(type))
    {
        above.resize(std::min<std::size_t>(row.depth, above.size()));
        const bool isTop = above.empty() || above.back().empty();
        above.push_back(isTop ? row.name : above.back() + '.' + row.name);
        const bool isPart = !row.name.empty() && above.back().find('[') == std::string::npos;
        if (isPart) paths.push_back(above.back());
        if (paths.size() == theMost) break;
    }
    return paths;
}

Field fieldOf(Codec& codec, std::string_view name, std::string_view path)
{
    if (std::optional<omt::Field> found = codec.type(name).findField(path))
        return Field(codec, *found);
    const std::vector<std::string> paths = pathsIn(codec.type(name));
    raise(omtpy::typeNamed("UnknownName")(std::string(name) + " has no \"" + std::string(path) +
                                          '"' +
                                          omt::didYouMean(path, {paths.begin(), paths.end()})));
}

// Models -------------------------------------------------------------------------------------

/// Copies of documents, which the caller may change meanwhile.
class Documents
{
public:
    explicit Documents(nb::handle documents)
    {
        std::vector<std::string> names;
        for (nb::handle one : documents)
        {
            const View view(one[1]);
            names.push_back(nb::cast<std::string>(one[0]));
            myTexts.emplace_back(reinterpret_cast<const char*>(view.octets().data()),
                                 view.octets().size());
        }
        for (std::size_t i = 0; i < myTexts.size(); ++i) myAll.push_back({names[i], myTexts[i]});
    }

    const std::vector<omt::Document>& all() const { return myAll; }

private:
    std::vector<std::string> myTexts;
    std::vector<omt::Document> myAll;
};

/// What was read, and what it was read from.
struct Model : omt::Reading
{
    nb::tuple documents;
    bool mim = false;

    nb::bytes standardMim() const
    {
        const std::string_view text = omt::standardMim(model.edition());
        return nb::bytes(text.data(), text.size());
    }
};

Model readDocuments(nb::handle documents, bool mim)
{
    const Documents read(documents);
    Model model;
    model.documents = nb::tuple(documents);
    model.mim = mim;
    const nb::gil_scoped_release unlocked;
    static_cast<omt::Reading&>(model) =
        omt::readDocuments(read.all(), omt::ReadOptions().withMim(mim));
    return model;
}

// Checks and differences ---------------------------------------------------------------------

nb::list checkDocuments(nb::handle documents, bool mim, std::vector<std::string> enable,
                        std::vector<std::string> disable)
{
    const Documents read(documents);
    omt::Findings findings;
    {
        const nb::gil_scoped_release unlocked;
        findings = omt::check(read.all(), {std::move(enable), std::move(disable)},
                              omt::ReadOptions().withMim(mim));
    }
    return findingsOf(findings);
}

nb::str textOf(std::string_view text)
{
    return nb::str(text.data(), text.size());
}

nb::object placeOf(const omt::Place& place)
{
    if (place.file.empty()) return nb::none();
    std::ostringstream text;
    text << place;
    return textOf(text.str());
}

nb::object wireOf(const std::optional<omt::WireChange>& wire)
{
    if (!wire) return nb::none();
    return omtpy::typeNamed("OctetChange")(textOf(omt::name(wire->wire)), wire->octet, wire->path,
                                           wire->why);
}

nb::list detailsOf(const std::vector<omt::Detail>& details)
{
    const nb::object make = omtpy::typeNamed("Detail");
    nb::list all;
    for (const omt::Detail& one : details)
        all.append(make(textOf(omt::name(one.change)), one.partKind, one.part, one.property,
                        one.before, one.after));
    return all;
}

nb::object diff(const Model& before, const Model& after)
{
    omt::Differences found;
    {
        const nb::gil_scoped_release unlocked;
        found = omt::diff(before.model, after.model);
    }
    const nb::object make = omtpy::typeNamed("Difference");
    const nb::object all = omtpy::typeNamed("Differences")();
    for (const omt::Difference& row : found.rows)
        all.attr("append")(make(textOf(omt::name(row.change)), row.kind, row.name, row.nameBefore,
                                detailsOf(row.details), wireOf(row.wire), placeOf(row.before),
                                placeOf(row.after)));
    for (const omt::Wire wire :
         {omt::Wire::same, omt::Wire::compatible, omt::Wire::unknown, omt::Wire::different})
        all.attr("octets")[textOf(omt::name(wire))] = found.octets[static_cast<std::size_t>(wire)];
    return all;
}

std::string reprOf(const Model& model)
{
    std::string text = "<omtreader.Model of ";
    for (nb::handle one : model.documents) text += nb::cast<std::string>(one[0]) + ", ";
    if (model.mim) text += "the standard MIM, ";
    return text + "findings: " + std::to_string(model.findings.size()) + ">";
}

void addCodec(nb::module_& module)
{
    nb::class_<Codec>(module, "Codec",
                      "Datatypes of a model, by member (\"BaseEntity.Spatial\") or by name.")
        .def_prop_ro("findings", &Codec::findings, "What no octets can be made of.")
        .def("decode", &Codec::decode, nb::arg("name"), nb::arg("octets"),
             "One value: dicts, lists, numbers, str, bytes, Enumerator. Raises DecodeError.")
        .def("encode", &Codec::encode, nb::arg("name"), nb::arg("value").none(),
             "The octets of a value. Raises EncodeError.")
        .def("decode_json", &Codec::decodeJson, nb::arg("name"), nb::arg("octets"),
             "One value as JSON. Raises DecodeError.")
        .def("encode_json", &Codec::encodeJson, nb::arg("name"), nb::arg("json"),
             "The octets of a value that is JSON. Raises EncodeError.")
        .def("field", fieldOf, nb::arg("name"), nb::arg("path"),
             "One part of a value, read without decoding the rest.")
        .def(
            "decode_column", &Codec::decodeColumn, nb::arg("name"), nb::arg("column"),
            nb::kw_only(), nb::arg("labels") = "dictionary", nb::arg("widen_unsigned") = false,
            nb::arg("most_in_batch") = theMostInBatch,
            "Decodes a column of octets to \"value\" and \"fault\", row by row the same.\n\n"
            "A batch ends before a text, or a list, of it would have more octets, or elements, than"
            "\n`most_in_batch`.")
        .def("encode_column", &Codec::encodeColumn, nb::arg("name"), nb::arg("column"),
             "Encodes a column of values to \"octets\" and \"fault\".")
        .def("layout", &Codec::layout, nb::arg("name"), "Where the octets of a datatype stand.")
        .def("members", &Codec::members, nb::arg("path"),
             "The members that a path may mean, as the class that declares each, a period and its "
             "name.");
}

}  // namespace

NB_MODULE(_core, module)
{
    // What a program still holds when it ends is no fault of the program.
    nb::set_leak_warnings(false);
    module.attr("__version__") = omt_version();
    // The words of _core.pyi, which a test compares.
    nb::class_<Model>(module, "Model", "What documents say, merged; made by load().")
        .def_prop_ro(
            "findings", [](const Model& model) { return findingsOf(model.findings); },
            "What was found in the documents.")
        .def_prop_ro(
            "is_sound", [](const Model& model) { return model.isSound(); },
            "Whether no finding is an error.")
        .def_ro("documents", &Model::documents, "What it was read from: names and octets.")
        .def_ro("mim", &Model::mim, "Whether the standard MIM was merged before the documents.")
        .def("standard_mim", &Model::standardMim, "The standard MIM of its edition.")
        .def(
            "codec", [](const Model& model) { return Codec(model.model); },
            "Compiles all datatypes.")
        .def("__repr__", reprOf)
        .def("__reduce__",
             [](const Model& model)
             {
                 return nb::make_tuple(nb::module_::import_("omtreader").attr("_read_again"),
                                       nb::make_tuple(model.documents, model.mim));
             });
    addCodec(module);
    nb::class_<omtpy::Rows>(
        module, "Rows",
        "Reads lines of a recording into columns, each (name, kind, rows, valid, offsets, data).")
        .def(nb::init<nb::bytes>(), nb::arg("start"))
        .def("read", &omtpy::Rows::read, nb::arg("block"), nb::arg("is_first"));
    nb::class_<Field>(module, "Field", "One part of the values of a type; made by Codec.field().")
        .def("__call__", &Field::operator(), nb::arg("octets"),
             "Reads the part out of a value; None where the value does not have it.");
    nb::class_<Table>(module, "Table",
                      "Batches of two columns; for whatever takes Arrow arrays or streams of them.")
        .def("__len__", &Table::rows)
        .def("__arrow_c_schema__", &Table::schemaCapsule)
        .def(
            "_array", [](const Table& table, nb::handle) { return table.arrayCapsules(); },
            nb::arg("requested_schema") = nb::none())
        // Some take the array wherever there is one, and never ask for the stream.
        .def_prop_ro(
            "__arrow_c_array__",
            [](nb::handle table) -> nb::object
            {
                if (!nb::cast<const Table&>(table).isOneBatch())
                    throw nb::attribute_error("there are several batches: take the stream");
                return table.attr("_array");
            },
            "Of a table of one batch; others do not have it.")
        .def(
            "__arrow_c_stream__",
            [](const Table& table, nb::handle) { return table.streamCapsule(); },
            nb::arg("requested_schema") = nb::none());
    module.def("read_documents", readDocuments, nb::arg("documents"), nb::arg("mim"));
    module.def("check_documents", checkDocuments, nb::arg("documents"), nb::arg("mim"),
               nb::arg("enable"), nb::arg("disable"));
    module.def("diff", diff, nb::arg("before"), nb::arg("after"),
               "What changed between two models, and which octets did.");
}
