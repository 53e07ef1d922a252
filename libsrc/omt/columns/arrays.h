// SPDX-License-Identifier: Apache-2.0
// Makes what is handed out: arrays that own their buffers, and the types of columns.
#pragma once

#include "omt/columns/buffer.h"
#include "omt/columns/columnPlan.h"

#include <memory>

namespace omt
{

/// What an array of ours owns.
struct ArrayParts
{
    ArrayParts() = default;
    ArrayParts(const ArrayParts&) = delete;
    ArrayParts& operator=(const ArrayParts&) = delete;
    ~ArrayParts();

    /// Adds a buffer to keep.
    void add(Buffer&& buffer);
    /// Adds one that others use too.
    void add(const std::shared_ptr<Buffer>& buffer);
    /// Room for children, which are empty yet.
    void setChildren(std::size_t count);
    ArrowArray& addDictionary();

    /// Buffers are added before they are handed out.
    std::vector<Buffer> owned;
    std::vector<std::shared_ptr<Buffer>> shared;
    std::vector<const void*> buffers;
    std::vector<ArrowArray> children;
    std::vector<ArrowArray*> childPlaces;
    std::unique_ptr<ArrowArray> dictionary;
};

/// Hands out an array; a null count of 0 means that it needs no validity.
void handOut(std::unique_ptr<ArrayParts> parts, std::size_t length, std::size_t nulls,
             ArrowArray& array);

/// A struct of a column of the plan, or one of this name and format where there is none, and of
/// "fault".
void writeBatchSchema(const ColumnPlan* plan, const char* name, const char* format,
                      ArrowSchema& schema);

/// An array of texts.
void writeTexts(const std::vector<std::string>& texts, ArrowArray& array);

}  // namespace omt
