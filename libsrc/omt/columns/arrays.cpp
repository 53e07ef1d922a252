// SPDX-License-Identifier: Apache-2.0
#include "omt/columns/arrays.h"

namespace omt
{

namespace
{

// Whoever takes a child away sets its release to null.
template <typename Struct>
void releaseHeld(Struct& held)
{
    if (held.release) held.release(&held);
}

template <typename Struct, typename Parts>
void releaseOurs(Struct* ours)
{
    delete static_cast<Parts*>(ours->private_data);
    ours->release = nullptr;
    ours->private_data = nullptr;
}

/// What a schema of ours owns.
struct SchemaParts
{
    SchemaParts(std::string ofFormat, std::string ofName, std::size_t count)
        : format(std::move(ofFormat)), name(std::move(ofName)), children(count)
    {
        for (ArrowSchema& child : children) childPlaces.push_back(&child);
    }
    SchemaParts(const SchemaParts&) = delete;
    SchemaParts& operator=(const SchemaParts&) = delete;
    ~SchemaParts()
    {
        for (ArrowSchema& child : children) releaseHeld(child);
        if (dictionary) releaseHeld(*dictionary);
    }

    std::string format;
    std::string name;
    std::vector<ArrowSchema> children;
    std::vector<ArrowSchema*> childPlaces;
    std::unique_ptr<ArrowSchema> dictionary;
};

void handOut(std::unique_ptr<SchemaParts> parts, ArrowSchema& schema)
{
    schema = {};
    schema.format = parts->format.c_str();
    schema.name = parts->name.c_str();
    schema.flags = ARROW_FLAG_NULLABLE;
    schema.n_children = static_cast<std::int64_t>(parts->children.size());
    schema.children = parts->childPlaces.empty() ? nullptr : parts->childPlaces.data();
    schema.dictionary = parts->dictionary.get();
    schema.release = releaseOurs<ArrowSchema, SchemaParts>;
    schema.private_data = parts.release();
}

void writeLeafSchema(const char* name, const char* format, ArrowSchema& schema)
{
    handOut(std::make_unique<SchemaParts>(format, name, 0), schema);
}

void writeColumnSchema(const ColumnPlan& plan, std::uint32_t at, ArrowSchema& schema)
{
    const Column& column = plan.columns[at];
    auto parts = std::make_unique<SchemaParts>(column.format, column.name, column.count);
    for (std::uint32_t i = 0; i < column.count; ++i)
        writeColumnSchema(plan, column.first + i, parts->children[i]);
    if (column.shape == Shape::label)
    {
        parts->dictionary = std::make_unique<ArrowSchema>();
        writeLeafSchema("", "u", *parts->dictionary);
    }
    handOut(std::move(parts), schema);
}

}  // namespace

ArrayParts::~ArrayParts()
{
    for (ArrowArray& child : children) releaseHeld(child);
    if (dictionary) releaseHeld(*dictionary);
}

void ArrayParts::add(Buffer&& buffer)
{
    buffers.push_back(buffer.data());
    owned.push_back(std::move(buffer));
}

void ArrayParts::add(const std::shared_ptr<Buffer>& buffer)
{
    buffers.push_back(buffer->data());
    shared.push_back(buffer);
}

void ArrayParts::setChildren(std::size_t count)
{
    children.resize(count);
    for (ArrowArray& child : children) childPlaces.push_back(&child);
}

ArrowArray& ArrayParts::addDictionary()
{
    dictionary = std::make_unique<ArrowArray>();
    return *dictionary;
}

void handOut(std::unique_ptr<ArrayParts> parts, std::size_t length, std::size_t nulls,
             ArrowArray& array)
{
    if (nulls == 0) parts->buffers[0] = nullptr;
    array = {};
    array.length = static_cast<std::int64_t>(length);
    array.null_count = static_cast<std::int64_t>(nulls);
    array.n_buffers = static_cast<std::int64_t>(parts->buffers.size());
    array.buffers = parts->buffers.data();
    array.n_children = static_cast<std::int64_t>(parts->children.size());
    array.children = parts->childPlaces.empty() ? nullptr : parts->childPlaces.data();
    array.dictionary = parts->dictionary.get();
    array.release = releaseOurs<ArrowArray, ArrayParts>;
    array.private_data = parts.release();
}

void writeBatchSchema(const ColumnPlan* plan, const char* name, const char* format,
                      ArrowSchema& schema)
{
    auto parts = std::make_unique<SchemaParts>("+s", "", 2);
    if (plan)
        writeColumnSchema(*plan, 0, parts->children[0]);
    else
        writeLeafSchema(name, format, parts->children[0]);
    writeLeafSchema("fault", "u", parts->children[1]);
    handOut(std::move(parts), schema);
    schema.flags = 0;
}

void writeTexts(const std::vector<std::string>& texts, ArrowArray& array)
{
    Buffer ends;
    Buffer letters;
    std::size_t size = 0;
    auto* const end =
        reinterpret_cast<std::uint32_t*>(ends.need((texts.size() + 1) * sizeof(std::uint32_t)));
    letters.need(1);
    for (std::size_t i = 0; i < texts.size(); ++i)
    {
        letters.put(size, texts[i]);
        size += texts[i].size();
        end[i + 1] = static_cast<std::uint32_t>(size);
    }
    auto parts = std::make_unique<ArrayParts>();
    parts->add(Buffer());
    parts->add(std::move(ends));
    parts->add(std::move(letters));
    handOut(std::move(parts), texts.size(), 0, array);
}

}  // namespace omt
