// SPDX-License-Identifier: Apache-2.0
// Columns of Python: taken from what speaks the Arrow interface, and given to it.
#pragma once

#include "omt/columns/columns.h"

#include <nanobind/nanobind.h>

#include <memory>
#include <vector>

namespace omtpy
{

/// Holds a struct of the interface, and releases it.
template <typename Struct>
class Held
{
public:
    Held() = default;
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held()
    {
        if (it.release) it.release(&it);
    }

    Struct it{};
};

using Batch = std::shared_ptr<Held<ArrowArray>>;

/// A column as it came in.
struct Column
{
    std::shared_ptr<Held<ArrowSchema>> schema;
    std::vector<Batch> chunks;
};

/// Takes an object with __arrow_c_array__ or __arrow_c_stream__, or an iterable of octets and None.
Column takeColumn(nanobind::handle object);

/// Batches of one type, which may be handed out any number of times.
class Table
{
public:
    /// Decodes or encodes all rows of a column, without the interpreter's lock.
    static Table decode(const omt::Columns& columns, const Column& column);
    static Table encode(const omt::Columns& columns, const Column& column);

    std::size_t rows() const;
    nanobind::object schemaCapsule() const;
    /// Of a table of one batch; else of its stream alone.
    nanobind::tuple arrayCapsules() const;
    bool isOneBatch() const { return myBatches.size() == 1; }
    nanobind::object streamCapsule() const;

    void writeSchema(ArrowSchema& schema) const;
    const std::vector<Batch>& batches() const { return myBatches; }

private:
    template <auto convert>
    static Table make(const omt::Columns& columns, const Column& column, bool isEncoded);
    Table(omt::Columns columns, bool isEncoded)
        : myColumns(std::move(columns)), myIsEncoded(isEncoded)
    {
    }

    omt::Columns myColumns;
    bool myIsEncoded;
    std::vector<Batch> myBatches;
};

}  // namespace omtpy
