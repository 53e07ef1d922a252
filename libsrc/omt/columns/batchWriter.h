// SPDX-License-Identifier: Apache-2.0
// BatchWriter decodes rows into the columns of one batch, a block of rows at a time: the pieces of
// all rows are found first, and then column after column is written.
#pragma once

#include "omt/codec/octets.h"
#include "omt/codec/walk.h"
#include "omt/columns/arrays.h"
#include "omt/columns/octetCells.h"

#include <array>

namespace omt
{

/// The rows that are found and written together; few enough for their pieces to stay in the cache.
constexpr std::size_t theBlock = OctetCells::Block::theMost;

/// The rows of a column of texts, octets or lists so far: where each ends.
struct Ends
{
    /// For rows up to `rows`; those that were left out are empty.
    Buffer places;
    std::size_t rows = 0;
    /// Where the last one ends.
    std::size_t size = 0;

    /// Room for rows up to `end`, the first of them from index 1 on.
    std::uint32_t* room(std::size_t end, std::size_t expectedRows);
    /// Ends a row at a size, and rows that were left out before it where the last one ended.
    void end(std::size_t row, std::size_t newSize, std::size_t expectedRows);
    /// Where the rows before this one end.
    std::size_t before(std::size_t row) const;
};

/// What is written of one column.
struct Cells
{
    Buffer valid;
    Buffer data;
    Ends ends;
    /// Numbers without a label, in the order of the places after the labels.
    std::vector<std::int64_t> strangers;
    std::unordered_map<std::int64_t, std::int32_t, NumberHash> strangerPlaces;

    void clear();
};

class BatchWriter
{
public:
    BatchWriter(const ColumnPlan& columns, std::size_t expectedRows);

    /// The rows of the next block.
    void add(const OctetCells::Block& block, std::size_t count);
    /// A row that no batch has room for.
    void addTooLarge();
    /// Writes the rows of the block; false where a column would grow too large for the batch.
    bool write();

    /// Forgets all rows.
    void clear();
    /// Makes a batch of the first rows.
    void finish(std::size_t rows, ArrowArray& batch);

private:
    /// A row of elements or characters.
    struct Run
    {
        const std::uint8_t* first;
        std::size_t count;
    };
    using Pieces = std::array<Piece, theBlock>;

    bool find(Octets octets, Piece& piece);
    void addFault(std::size_t row, std::string_view text);
    bool findQuickly(Octets octets, Piece& piece);
    bool findSlowly(Octets octets, Piece& piece);

    void run(std::uint32_t at, const Piece* pieces, std::size_t count, std::size_t offset);
    void record(const Column& column, const Piece* pieces, std::size_t count, std::size_t offset);
    void openFields(const Column& column, std::uint32_t i, std::uint32_t end, const Piece* pieces,
                    std::size_t count);
    void variant(const Column& column, const Piece* pieces, std::size_t count, std::size_t offset);
    void kept(const Column& column, Piece* pieces, std::size_t count, std::size_t body);
    void list(std::uint32_t at, const Piece* pieces, std::size_t count, std::size_t offset);
    void elements(std::uint32_t at, const Piece& piece, const Run& run, std::size_t row,
                  Pieces& children, std::size_t& filled);
    void labels(const Column& column, Cells& cells, const Piece* pieces, std::size_t count,
                std::size_t offset);
    void texts(const Column& column, Cells& cells, const Piece* pieces, std::size_t count,
               std::size_t offset);
    template <typename Append>
    void eachText(const Column& column, Cells& cells, const Piece* pieces, std::size_t count,
                  const Append& append);
    std::size_t text(const Column& column, Cells& cells, const Piece& piece, std::size_t offset);
    std::uint8_t* room(const Column& column, Cells& cells, const Piece* pieces,
                       std::size_t count) const;
    std::uint8_t* room(Cells& cells, std::size_t octets) const;
    std::size_t append(Cells& cells, const std::uint8_t* octets, std::size_t count) const;

    void setBits(Buffer& bits, const Column& column, const Piece* pieces, std::size_t count) const;
    std::int32_t labelOf(const Column& column, Cells& cells, std::int64_t number);
    Run runOf(const Node& node, const Piece& piece, std::size_t offset) const;
    std::size_t expected(const Column& column, std::size_t rows) const;

    void finishColumn(std::uint32_t at, std::size_t rows, ArrowArray& array);
    void addBuffer(ArrayParts& parts, Buffer& buffer, std::size_t octets);
    void addEnds(ArrayParts& parts, Cells& cells, std::size_t rows);
    void finishFaults(std::size_t rows, ArrowArray& array);
    void writeLabels(const Column& column, const Cells& cells, bool isNeeded,
                     ArrowArray& dictionary) const;

    const ColumnPlan& myColumns;
    const Plan& myPlan;
    std::uint32_t myRoot;
    /// The size of all values that have nothing odd about them; as large as no row where they
    /// differ.
    std::size_t myFixedSize = OctetCells::Block::theNull - 1;
    std::size_t myExpectedRows;
    std::vector<Cells> myCells;
    Cells myFaults;
    Index myIndex;
    Index mySlowIndex;
    Pieces myPieces;
    std::size_t myPieceCount = 0;
    /// For variant(): how many rows have each alternative. Zero outside of it.
    std::vector<std::uint32_t> myChosen;
    std::size_t myRow = 0;
    /// How many times as many rows there will be as there are.
    std::size_t myShare = 1;
    bool myIsFull = false;
    std::string myText;
    std::shared_ptr<Buffer> myZeros;
};

}  // namespace omt
