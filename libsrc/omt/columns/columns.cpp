// SPDX-License-Identifier: Apache-2.0
#include "omt/columns/columns.h"

#include "omt/columns/batchWriter.h"
#include "omt/columns/octetCells.h"
#include "omt/columns/rowJson.h"

#include <algorithm>
#include <sstream>

namespace omt
{

namespace
{

/// Rows of which one batch takes as many as it can.
class Decoding
{
public:
    Decoding(const ColumnPlan& plan, const OctetCells& cells, std::size_t first)
        : myCells(cells),
          myFirst(first),
          myRows(std::min<std::size_t>(cells.rows() - first, theLargestSize)),
          myWriter(plan, myRows)
    {
    }

    std::optional<std::string> run(std::size_t& first, ArrowArray& batch)
    {
        // What stays in the cache.
        constexpr std::size_t theMostOctets = 1 << 18;
        std::size_t done = 0;
        // A block that is too large for an empty batch goes row by row.
        std::size_t size = theBlock;
        while (done < myRows)
        {
            const std::size_t added =
                myCells.read(myFirst + done, std::min(size, myRows - done), theMostOctets, myBlock);
            if (added == 0) return "row " + std::to_string(myFirst + done) + ": wrong offsets";
            myWriter.add(myBlock, added);
            if (myWriter.write())
            {
                done += added;
                continue;
            }
            if (done > 0) break;
            myWriter.clear();
            if (added == 1)
            {
                myWriter.addTooLarge();
                done = 1;
            }
            size = 1;
        }
        myWriter.finish(done, batch);
        first = myFirst + done;
        return std::nullopt;
    }

private:
    const OctetCells& myCells;
    std::size_t myFirst;
    std::size_t myRows;
    OctetCells::Block myBlock;
    BatchWriter myWriter;
};

/// A column of texts or octets of which rows may be null.
class Texts
{
public:
    explicit Texts(std::size_t rows) : myRows(rows) {}

    std::size_t size() const { return myEnds.size; }
    void add(std::size_t row, std::string_view text)
    {
        std::uint8_t* const valid = myValid.need(row / 8 + 1, myRows / 8 + 1);
        valid[row / 8] = static_cast<std::uint8_t>(valid[row / 8] | 1U << row % 8);
        myData.put(myEnds.size, text);
        myEnds.end(row, myEnds.size + text.size(), myRows);
        ++myCount;
    }
    void finish(std::size_t rows, ArrowArray& array)
    {
        auto parts = std::make_unique<ArrayParts>();
        if (myEnds.rows < rows) myEnds.end(rows - 1, myEnds.size, rows);
        myValid.need(rows / 8 + 1);
        myEnds.places.need(sizeof(std::uint32_t));
        myData.need(1);
        parts->add(std::move(myValid));
        parts->add(std::move(myEnds.places));
        parts->add(std::move(myData));
        handOut(std::move(parts), rows, rows - myCount, array);
    }

private:
    std::size_t myRows;
    std::size_t myCount = 0;
    Buffer myValid;
    Buffer myData;
    Ends myEnds;
};

}  // namespace

Columns::Columns(const Type& type, const ColumnOptions& options)
    : myPlan(std::make_shared<const ColumnPlan>(type.myPlan, type.myNode, options)), myType(type)
{
}

void Columns::writeSchema(ArrowSchema& schema) const
{
    writeBatchSchema(myPlan.get(), "value", "", schema);
}

void Columns::writeEncodedSchema(ArrowSchema& schema)
{
    writeBatchSchema(nullptr, "octets", "z", schema);
}

std::optional<std::string> Columns::decode(const ArrowSchema& schema, const ArrowArray& column,
                                           std::size_t& first, ArrowArray& batch) const
{
    OctetCells cells;
    if (std::optional<std::string> fault = cells.open(schema, column)) return fault;
    if (first > cells.rows()) return "there is no row " + std::to_string(first);
    return Decoding(*myPlan, cells, first).run(first, batch);
}

std::optional<std::string> Columns::encode(const ArrowSchema& schema, const ArrowArray& column,
                                           std::size_t& first, ArrowArray& batch) const
{
    RowJson source(*myPlan->plan);
    if (std::optional<std::string> fault = source.open(schema, column, myType.myNode)) return fault;
    const auto end = static_cast<std::size_t>(column.length);
    if (first > end) return "there is no row " + std::to_string(first);
    const std::size_t rows = std::min<std::size_t>(end - first, theLargestSize);
    const std::size_t most = myPlan->options.mostInBatch;
    Texts octets(rows);
    Texts faults(rows);
    std::string json;
    std::vector<std::uint8_t> value;
    std::size_t row = 0;
    for (; row < rows; ++row)
    {
        json.clear();
        value.clear();
        const RowJson::Result result = source.append(first + row, json);
        if (result == RowJson::Result::null) continue;
        std::optional<ValueError> error = myType.encode(json, value);
        if (result == RowJson::Result::wrong) error = ValueError{"the buffers are wrong", ""};
        if (!error && value.size() > most) error = ValueError{"too large for a batch", ""};
        std::ostringstream text;
        if (error)
        {
            error->line = 0;
            text << *error;
        }
        const std::size_t size = octets.size() + faults.size() + value.size() + text.str().size();
        if (row > 0 && size > most) break;
        if (error)
            faults.add(row, text.str());
        else
            octets.add(row, {reinterpret_cast<const char*>(value.data()), value.size()});
    }
    auto parts = std::make_unique<ArrayParts>();
    parts->buffers.push_back(nullptr);
    parts->setChildren(2);
    octets.finish(row, parts->children[0]);
    faults.finish(row, parts->children[1]);
    handOut(std::move(parts), row, 0, batch);
    first += row;
    return std::nullopt;
}

}  // namespace omt
