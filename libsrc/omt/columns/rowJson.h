// SPDX-License-Identifier: Apache-2.0
// RowJson writes rows of Arrow arrays as the JSON of values, which the codec then encodes and
// checks.
#pragma once

#include "omt/codec/plan.h"
#include "omt/columns/octetCells.h"

#include <vector>

namespace omt
{

class RowJson
{
public:
    explicit RowJson(const Plan& plan) : myPlan(plan) {}

    /// Returns why a column is none of values of a node.
    std::optional<std::string> open(const ArrowSchema& schema, const ArrowArray& array,
                                    std::uint32_t node);

    enum class Result : std::uint8_t
    {
        written,
        null,
        /// Something in the buffers is wrong.
        wrong
    };
    /// Appends a row below the length of the array.
    Result append(std::size_t row, std::string& json) const
    {
        return cell(mySources[0], row, json);
    }

private:
    enum class Cell : std::uint8_t
    {
        nothing,
        boolean,
        integer,
        unsignedInteger,
        single,
        real,
        decimal,
        text,
        octets,
        list,
        fixedList,
        record
    };
    struct Source
    {
        Cell form = Cell::nothing;
        /// Octets of a number, or of an offset of a list; elements of a list of a fixed size.
        std::size_t width = 0;
        /// theNone for what is kept of an alternative.
        std::uint32_t node = theNone;
        const ArrowArray* array = nullptr;
        std::string name;
        OctetCells cells;
        std::uint32_t first = 0;
        std::uint32_t count = 0;
        /// Of labels.
        std::uint32_t dictionary = theNone;
    };

    std::optional<std::string> fill(std::uint32_t at, const ArrowSchema& schema,
                                    const ArrowArray& array, std::size_t rows, std::size_t depth);
    std::optional<std::string> fillChildren(std::uint32_t at, const ArrowSchema& schema,
                                            const ArrowArray& array, std::size_t depth);
    static bool setForm(std::string_view format, Source& source);
    bool fits(const Source& source) const;
    std::optional<std::uint32_t> partOf(std::uint32_t node, std::string_view name) const;

    Result cell(const Source& source, std::size_t row, std::string& json) const;
    Result record(const Source& source, std::size_t row, std::string& json) const;
    Result list(const Source& source, std::size_t row, std::string& json) const;
    Result label(const Source& source, std::size_t row, std::string& json) const;
    Result text(const Source& source, std::size_t row, std::string& json) const;
    Result number(const Source& source, const std::uint8_t* place, std::string& json) const;
    void real(const Source& source, const std::uint8_t* place, std::string& json) const;

    const Plan& myPlan;
    std::vector<Source> mySources;
};

}  // namespace omt
