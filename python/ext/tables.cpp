// SPDX-License-Identifier: Apache-2.0
#include "tables.h"

#include <cerrno>

namespace nb = nanobind;

namespace omtpy
{

namespace
{

/// The third struct of the interface: batches one after the other.
struct Stream
{
    int (*get_schema)(Stream*, ArrowSchema*);
    int (*get_next)(Stream*, ArrowArray*);
    const char* (*get_last_error)(Stream*);
    void (*release)(Stream*);
    void* private_data;
};

template <typename Struct>
Struct* inCapsule(nb::handle capsule, const char* name)
{
    void* const pointer = PyCapsule_GetPointer(capsule.ptr(), name);
    if (!pointer) throw nb::python_error();
    return static_cast<Struct*>(pointer);
}

/// What is taken out is not released by the capsule.
template <typename Struct>
void take(Struct* from, Struct& to)
{
    if (!from->release) throw nb::value_error("the column was taken already");
    to = *from;
    from->release = nullptr;
}

template <typename Struct>
nb::object capsule(std::unique_ptr<Struct> held, const char* name)
{
    const auto free = [](PyObject* one)
    {
        auto* const it = static_cast<Struct*>(PyCapsule_GetPointer(one, PyCapsule_GetName(one)));
        if (it->release) it->release(it);
        delete it;
    };
    PyObject* const made = PyCapsule_New(held.get(), name, free);
    if (!made)
    {
        if (held->release) held->release(held.get());
        throw nb::python_error();
    }
    held.release();
    return nb::steal(made);
}

// What came in --------------------------------------------------------------------------------

void readStream(Stream& stream, Column& column)
{
    const auto check = [&stream](int status)
    {
        if (status == 0) return;
        const char* const text = stream.get_last_error(&stream);
        throw nb::value_error(text ? text : "the stream of columns failed");
    };
    if (!stream.release) throw nb::value_error("the column was taken already");
    check(stream.get_schema(&stream, &column.schema->it));
    for (;;)
    {
        auto chunk = std::make_shared<Held<ArrowArray>>();
        check(stream.get_next(&stream, &chunk->it));
        if (!chunk->it.release) return;
        column.chunks.push_back(std::move(chunk));
    }
}

/// A column made of octets that Python holds.
struct Copied
{
    std::vector<std::uint8_t> valid;
    std::vector<std::int64_t> offsets{0};
    std::vector<std::uint8_t> octets;
    const void* buffers[3] = {};
};

void addRow(Copied& copied, nb::handle row)
{
    const std::size_t at = copied.offsets.size() - 1;
    if (at % 8 == 0) copied.valid.push_back(0);
    if (!row.is_none())
    {
        copied.valid.back() = static_cast<std::uint8_t>(copied.valid.back() | 1U << at % 8);
        Py_buffer view;
        if (PyObject_GetBuffer(row.ptr(), &view, PyBUF_SIMPLE) != 0) throw nb::python_error();
        const auto* const first = static_cast<const std::uint8_t*>(view.buf);
        copied.octets.insert(copied.octets.end(), first, first + view.len);
        PyBuffer_Release(&view);
    }
    copied.offsets.push_back(static_cast<std::int64_t>(copied.octets.size()));
}

void copyRows(nb::handle rows, Column& column)
{
    auto copied = std::make_unique<Copied>();
    for (nb::handle row : rows) addRow(*copied, row);
    copied->octets.push_back(0);
    copied->valid.push_back(0);
    copied->buffers[0] = copied->valid.data();
    copied->buffers[1] = copied->offsets.data();
    copied->buffers[2] = copied->octets.data();
    auto chunk = std::make_shared<Held<ArrowArray>>();
    chunk->it.length = static_cast<std::int64_t>(copied->offsets.size() - 1);
    chunk->it.null_count = -1;
    chunk->it.n_buffers = 3;
    chunk->it.buffers = copied->buffers;
    chunk->it.release = [](ArrowArray* array)
    {
        delete static_cast<Copied*>(array->private_data);
        array->release = nullptr;
    };
    chunk->it.private_data = copied.release();
    column.chunks.push_back(std::move(chunk));
    column.schema->it.format = "Z";
    column.schema->it.name = "";
    column.schema->it.release = [](ArrowSchema* schema) { schema->release = nullptr; };
}

// What goes out -------------------------------------------------------------------------------

/// A view of a batch, or of a child of it, that keeps the batch.
struct Shared
{
    Batch batch;
    std::vector<ArrowArray> children;
    std::vector<ArrowArray*> places;
    std::unique_ptr<ArrowArray> dictionary;
};

void releaseShared(ArrowArray* array)
{
    std::unique_ptr<Shared> shared(static_cast<Shared*>(array->private_data));
    for (ArrowArray& child : shared->children)
        if (child.release) child.release(&child);
    if (shared->dictionary && shared->dictionary->release)
        shared->dictionary->release(shared->dictionary.get());
    array->release = nullptr;
}

void share(const Batch& batch, const ArrowArray& from, ArrowArray& to)
{
    auto shared = std::make_unique<Shared>();
    shared->batch = batch;
    shared->children.resize(static_cast<std::size_t>(from.n_children));
    for (std::size_t i = 0; i < shared->children.size(); ++i)
    {
        share(batch, *from.children[i], shared->children[i]);
        shared->places.push_back(&shared->children[i]);
    }
    if (from.dictionary)
    {
        shared->dictionary = std::make_unique<ArrowArray>();
        share(batch, *from.dictionary, *shared->dictionary);
    }
    to = from;
    to.children = shared->places.data();
    to.dictionary = shared->dictionary.get();
    to.release = releaseShared;
    to.private_data = shared.release();
}

struct Reading
{
    Table table;
    std::size_t next = 0;
};

Reading& readingOf(Stream* stream)
{
    return *static_cast<Reading*>(stream->private_data);
}

/// Runs a step of a stream, which other languages call: no exception leaves it.
template <typename Step>
int guarded(const Step& step)
{
    try
    {
        step();
        return 0;
    }
    catch (...)
    {
        return ENOMEM;
    }
}

}  // namespace

Column takeColumn(nb::handle object)
{
    Column column;
    column.schema = std::make_shared<Held<ArrowSchema>>();
    if (nb::hasattr(object, "__arrow_c_array__"))
    {
        const nb::object given = object.attr("__arrow_c_array__")();
        if (!nb::isinstance<nb::tuple>(given) || nb::len(given) != 2)
            throw nb::type_error("__arrow_c_array__ gives two capsules");
        const nb::tuple pair(given);
        auto chunk = std::make_shared<Held<ArrowArray>>();
        take(inCapsule<ArrowSchema>(pair[0], "arrow_schema"), column.schema->it);
        take(inCapsule<ArrowArray>(pair[1], "arrow_array"), chunk->it);
        column.chunks.push_back(std::move(chunk));
    }
    else if (nb::hasattr(object, "__arrow_c_stream__"))
    {
        const nb::object held = object.attr("__arrow_c_stream__")();
        readStream(*inCapsule<Stream>(held, "arrow_array_stream"), column);
    }
    else
        copyRows(object, column);
    return column;
}

template <auto convert>
Table Table::make(const omt::Columns& columns, const Column& column, bool isEncoded)
{
    Table table(columns, isEncoded);
    std::optional<std::string> fault;
    {
        const nb::gil_scoped_release unlocked;
        for (const Batch& chunk : column.chunks)
        {
            const auto rows = static_cast<std::size_t>(std::max<std::int64_t>(chunk->it.length, 0));
            std::size_t first = 0;
            do
            {
                auto batch = std::make_shared<Held<ArrowArray>>();
                fault = (columns.*convert)(column.schema->it, chunk->it, first, batch->it);
                if (!fault) table.myBatches.push_back(std::move(batch));
            } while (!fault && first < rows);
            if (fault) break;
        }
    }
    if (fault) throw nb::value_error(fault->c_str());
    return table;
}

Table Table::decode(const omt::Columns& columns, const Column& column)
{
    return make<&omt::Columns::decode>(columns, column, false);
}

Table Table::encode(const omt::Columns& columns, const Column& column)
{
    return make<&omt::Columns::encode>(columns, column, true);
}

std::size_t Table::rows() const
{
    std::size_t rows = 0;
    for (const Batch& batch : myBatches) rows += static_cast<std::size_t>(batch->it.length);
    return rows;
}

void Table::writeSchema(ArrowSchema& schema) const
{
    if (myIsEncoded)
        omt::Columns::writeEncodedSchema(schema);
    else
        myColumns.writeSchema(schema);
}

nb::object Table::schemaCapsule() const
{
    auto schema = std::make_unique<ArrowSchema>();
    writeSchema(*schema);
    return capsule(std::move(schema), "arrow_schema");
}

nb::tuple Table::arrayCapsules() const
{
    if (!isOneBatch()) throw nb::value_error("there are several batches: take the stream");
    auto array = std::make_unique<ArrowArray>();
    share(myBatches[0], myBatches[0]->it, *array);
    return nb::make_tuple(schemaCapsule(), capsule(std::move(array), "arrow_array"));
}

nb::object Table::streamCapsule() const
{
    auto stream = std::make_unique<Stream>();
    stream->get_schema = [](Stream* one, ArrowSchema* schema)
    { return guarded([&] { readingOf(one).table.writeSchema(*schema); }); };
    stream->get_next = [](Stream* one, ArrowArray* array)
    {
        return guarded(
            [&]
            {
                Reading& reading = readingOf(one);
                *array = {};
                if (reading.next == reading.table.batches().size()) return;
                const Batch& batch = reading.table.batches()[reading.next++];
                share(batch, batch->it, *array);
            });
    };
    stream->get_last_error = [](Stream*) -> const char* { return "not enough memory"; };
    stream->release = [](Stream* one)
    {
        delete &readingOf(one);
        one->release = nullptr;
    };
    stream->private_data = new Reading{*this};
    return capsule(std::move(stream), "arrow_array_stream");
}

}  // namespace omtpy
