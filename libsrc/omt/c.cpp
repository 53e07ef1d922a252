// SPDX-License-Identifier: Apache-2.0
#include "omt/c.h"

#include "omt/base/jsonWriter.h"
#include "omt/columns/columns.h"
#include "omt/omt.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <sstream>

struct omt_model
{
    omt::Reading reading;
};

struct omt_codec
{
    omt::Codec codec;
};

struct omt_type
{
    omt::Type type;
};

struct omt_columns
{
    omt::Columns columns;
};

struct omt_update_writer
{
    omt::UpdateWriter writer;
};

namespace
{

/// A copy that C frees; null where there is no memory for it.
template <typename Octets>
auto* copyOf(const Octets& octets)
{
    auto* const copy = static_cast<char*>(std::malloc(octets.size() + 1));
    if (!copy) return copy;
    if (octets.size() > 0) std::memcpy(copy, octets.data(), octets.size());
    copy[octets.size()] = '\0';
    return copy;
}

omt_status tell(omt_status status, const std::string& text, char** error)
{
    if (error) *error = copyOf(text);
    return status;
}

/// Runs what a function does. No exception leaves it.
template <typename Call>
omt_status guarded(char** error, const Call& call)
{
    if (error) *error = nullptr;
    try
    {
        return call();
    }
    catch (const omt::UnknownName& unknown)
    {
        return tell(OMT_UNKNOWN_NAME, unknown.what(), error);
    }
    catch (const std::bad_alloc&)
    {
        return tell(OMT_NO_MEMORY, "not enough memory", error);
    }
    catch (const std::exception& other)
    {
        return tell(OMT_MISUSE, other.what(), error);
    }
}

/// Whether all that is needed was given.
template <typename... Arguments>
bool areGiven(Arguments*... arguments)
{
    return (... && (arguments != nullptr));
}

omt_status misuse(char** error)
{
    return tell(OMT_MISUSE, "an argument is null or out of range", error);
}

template <typename Text>
omt_status give(const Text& text, char** result)
{
    *result = copyOf(text);
    if (!*result) throw std::bad_alloc();
    return OMT_OK;
}

void writePlace(const omt::Place& place, omt::JsonWriter& json)
{
    json.property("file", place.file);
    json.property("line", place.line);
}

std::string findingsJson(const omt::Findings& findings)
{
    std::string text;
    omt::JsonWriter json(text);
    json.beginArray();
    for (const omt::Finding& one : findings)
    {
        json.beginObject();
        json.property("severity", omt::name(one.severity));
        json.property("name", one.name);
        json.property("text", one.text);
        writePlace(one.place, json);
        if (one.other)
        {
            json.key("other");
            json.beginObject();
            writePlace(*one.other, json);
            json.endObject();
        }
        json.endObject();
    }
    json.endArray();
    return text;
}

template <typename Note>
void writeNote(const Note& note, omt::JsonWriter& json)
{
    json.property("what", note.what);
    json.property("path", note.path);
    json.property("offset", note.offset);
}

std::string valueJson(const omt::Value& value)
{
    std::string text;
    omt::JsonWriter json(text);
    json.beginObject();
    if (const std::string inside = value.json(); !inside.empty())
    {
        json.key("value");
        json.raw(inside);
    }
    json.property("octets", value.octets().size());
    json.property("left", value.left());
    json.key("faults");
    json.beginArray();
    if (const std::optional<omt::Fault>& fault = value.fault())
    {
        json.beginObject();
        writeNote(*fault, json);
        json.property("needed", fault->needed);
        json.property("left", fault->left);
        json.endObject();
    }
    json.endArray();
    json.key("notes");
    json.beginArray();
    for (const omt::ValueNote& note : value.notes())
    {
        json.beginObject();
        writeNote(note, json);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    return text;
}

std::string_view textOrNone(const char* text)
{
    return text ? std::string_view(text) : std::string_view();
}

/// Whether all that an update points to is there.
bool isWhole(const omt_update& update)
{
    const auto kind = static_cast<int>(update.kind);
    if (kind < 0 || kind > OMT_KIND_REMOVE) return false;
    if (update.value_count > 0 && !update.values) return false;
    if (update.tag_size > 0 && !update.tag) return false;
    return std::all_of(update.values, update.values + update.value_count,
                       [](const omt_member_value& one) { return one.size == 0 || one.octets; });
}

omt::Update updateOf(const omt_update& given)
{
    omt::Update update;
    update.kind = static_cast<omt::UpdateKind>(given.kind);
    update.time = given.time;
    update.object = textOrNone(given.object);
    update.classHandle = given.class_handle;
    update.sender = textOrNone(given.sender);
    update.tag = {given.tag, given.tag_size};
    for (std::size_t i = 0; i < given.value_count; ++i)
    {
        const omt_member_value& one = given.values[i];
        update.values.push_back({
            one.member, {one.octets, one.size}
        });
    }
    return update;
}

/// One batch of decoding or encoding.
template <auto call>
omt_status convert(const omt_columns* columns, const ArrowSchema* schema, const ArrowArray* column,
                   std::size_t* first, ArrowArray* batch, char** error)
{
    return guarded(error,
                   [&]
                   {
                       if (batch) *batch = {};
                       if (!areGiven(columns, schema, column, first, batch)) return misuse(error);
                       const std::optional<std::string> fault =
                           (columns->columns.*call)(*schema, *column, *first, *batch);
                       return fault ? tell(OMT_NO_VALUE, *fault, error) : OMT_OK;
                   });
}

}  // namespace

const char* omt_version(void)
{
    return OMT_VERSION;
}

void omt_free(void* memory)
{
    std::free(memory);
}

omt_status omt_read_files(const char* const* paths, size_t count, int mim, omt_model** model,
                          char** error)
{
    return guarded(error,
                   [&]
                   {
                       if (model) *model = nullptr;
                       if (!areGiven(paths, model)) return misuse(error);
                       const std::vector<std::string> files(paths, paths + count);
                       *model =
                           new omt_model{omt::read(files, omt::ReadOptions().withMim(mim != 0))};
                       return OMT_OK;
                   });
}

omt_status omt_read_documents(const omt_document* documents, size_t count, int mim,
                              omt_model** model, char** error)
{
    return guarded(
        error,
        [&]
        {
            if (model) *model = nullptr;
            if (!areGiven(documents, model)) return misuse(error);
            std::vector<omt::Document> all;
            for (std::size_t i = 0; i < count; ++i)
            {
                const omt_document& one = documents[i];
                if (!one.name || (one.size > 0 && !one.octets)) return misuse(error);
                all.push_back({
                    one.name, {static_cast<const char*>(one.octets), one.size}
                });
            }
            *model = new omt_model{omt::readDocuments(all, omt::ReadOptions().withMim(mim != 0))};
            return OMT_OK;
        });
}

void omt_model_free(omt_model* model)
{
    delete model;
}

int omt_model_is_sound(const omt_model* model)
{
    return model && model->reading.isSound() ? 1 : 0;
}

omt_status omt_model_findings(const omt_model* model, char** json, char** error)
{
    return guarded(error,
                   [&]
                   {
                       if (json) *json = nullptr;
                       if (!areGiven(model, json)) return misuse(error);
                       return give(findingsJson(model->reading.findings), json);
                   });
}

omt_status omt_codec_new(const omt_model* model, omt_codec** codec, char** error)
{
    return guarded(error,
                   [&]
                   {
                       if (codec) *codec = nullptr;
                       if (!areGiven(model, codec)) return misuse(error);
                       *codec = new omt_codec{omt::Codec(model->reading.model)};
                       return OMT_OK;
                   });
}

void omt_codec_free(omt_codec* codec)
{
    delete codec;
}

omt_status omt_codec_findings(const omt_codec* codec, char** json, char** error)
{
    return guarded(error,
                   [&]
                   {
                       if (json) *json = nullptr;
                       if (!areGiven(codec, json)) return misuse(error);
                       return give(findingsJson(codec->codec.findings()), json);
                   });
}

omt_status omt_find_member(const omt_codec* codec, const char* path, omt_type** type, char** error)
{
    return guarded(error,
                   [&]
                   {
                       if (type) *type = nullptr;
                       if (!areGiven(codec, path, type)) return misuse(error);
                       *type = new omt_type{codec->codec.member(path)};
                       return OMT_OK;
                   });
}

omt_status omt_find_type(const omt_codec* codec, const char* name, omt_type** type, char** error)
{
    return guarded(error,
                   [&]
                   {
                       if (type) *type = nullptr;
                       if (!areGiven(codec, name, type)) return misuse(error);
                       *type = new omt_type{codec->codec.type(name)};
                       return OMT_OK;
                   });
}

void omt_type_free(omt_type* type)
{
    delete type;
}

omt_status omt_decode_json(const omt_type* type, const void* octets, size_t size, char** json,
                           char** error)
{
    return guarded(error,
                   [&]
                   {
                       if (json) *json = nullptr;
                       if (!areGiven(type, json) || (size > 0 && !octets)) return misuse(error);
                       omt::Value value;
                       type->type.decodeInPlace({octets, size}, value);
                       return give(valueJson(value), json);
                   });
}

omt_status omt_encode_json(const omt_type* type, const char* json, size_t json_size, void** octets,
                           size_t* size, char** error)
{
    return guarded(error,
                   [&]
                   {
                       if (octets) *octets = nullptr;
                       if (size) *size = 0;
                       if (!areGiven(type, json, octets, size)) return misuse(error);
                       std::vector<std::uint8_t> all;
                       if (const auto wrong = type->type.encode({json, json_size}, all))
                       {
                           std::ostringstream text;
                           text << *wrong;
                           return tell(OMT_NO_VALUE, text.str(), error);
                       }
                       *octets = copyOf(all);
                       if (!*octets) throw std::bad_alloc();
                       *size = all.size();
                       return OMT_OK;
                   });
}

omt_status omt_columns_new(const omt_type* type, omt_labels labels, int widen,
                           omt_columns** columns, char** error)
{
    return guarded(error,
                   [&]
                   {
                       if (columns) *columns = nullptr;
                       const auto number = static_cast<int>(labels);
                       const bool isLabels = number >= 0 && number <= OMT_LABELS_NUMBER;
                       if (!areGiven(type, columns) || !isLabels) return misuse(error);
                       omt::ColumnOptions options;
                       options.labels = static_cast<omt::Labels>(number);
                       options.widensUnsigned = widen != 0;
                       *columns = new omt_columns{omt::Columns(type->type, options)};
                       return OMT_OK;
                   });
}

void omt_columns_free(omt_columns* columns)
{
    delete columns;
}

omt_status omt_columns_schema(const omt_columns* columns, ArrowSchema* schema, char** error)
{
    return guarded(error,
                   [&]
                   {
                       if (schema) *schema = {};
                       if (!areGiven(columns, schema)) return misuse(error);
                       columns->columns.writeSchema(*schema);
                       return OMT_OK;
                   });
}

omt_status omt_columns_encoded_schema(ArrowSchema* schema, char** error)
{
    return guarded(error,
                   [&]
                   {
                       if (!schema) return misuse(error);
                       *schema = {};
                       omt::Columns::writeEncodedSchema(*schema);
                       return OMT_OK;
                   });
}

omt_status omt_decode_column(const omt_columns* columns, const ArrowSchema* schema,
                             const ArrowArray* column, size_t* first, ArrowArray* batch,
                             char** error)
{
    return convert<&omt::Columns::decode>(columns, schema, column, first, batch, error);
}

omt_status omt_encode_column(const omt_columns* columns, const ArrowSchema* schema,
                             const ArrowArray* column, size_t* first, ArrowArray* batch,
                             char** error)
{
    return convert<&omt::Columns::encode>(columns, schema, column, first, batch, error);
}

omt_status omt_update_writer_new(const char* file, omt_update_writer** writer, char** error)
{
    return guarded(
        error,
        [&]
        {
            if (writer) *writer = nullptr;
            if (!areGiven(file, writer)) return misuse(error);
            std::unique_ptr<omt_update_writer> made(new omt_update_writer{omt::UpdateWriter(file)});
            if (const std::error_code wrong = made->writer.error())
                return tell(OMT_NO_FILE, file + (": " + wrong.message()), error);
            *writer = made.release();
            return OMT_OK;
        });
}

void omt_update_writer_free(omt_update_writer* writer)
{
    delete writer;
}

omt_status omt_name_class(omt_update_writer* writer, uint64_t class_handle, const char* name,
                          char** error)
{
    return guarded(error,
                   [&]
                   {
                       if (!areGiven(writer, name)) return misuse(error);
                       writer->writer.nameClass(class_handle, name);
                       return OMT_OK;
                   });
}

omt_status omt_name_member(omt_update_writer* writer, uint64_t class_handle, uint64_t member,
                           const char* name, char** error)
{
    return guarded(error,
                   [&]
                   {
                       if (!areGiven(writer, name)) return misuse(error);
                       writer->writer.nameMember(class_handle, member, name);
                       return OMT_OK;
                   });
}

omt_status omt_write_update(omt_update_writer* writer, const omt_update* update, char** error)
{
    return guarded(error,
                   [&]
                   {
                       if (!areGiven(writer, update) || !isWhole(*update)) return misuse(error);
                       if (writer->writer.write(updateOf(*update))) return OMT_OK;
                       return tell(OMT_NO_FILE, writer->writer.error().message(), error);
                   });
}
