// SPDX-License-Identifier: Apache-2.0
#include "omt/columns/batchWriter.h"

#include "omt/codec/quickIndex.h"
#include "omt/codec/valueParts.h"
#include "omt/columns/utf8.h"

#include <bit>
#include <sstream>
#include <utility>

namespace omt
{

namespace
{

std::string strangerText(std::int64_t number, bool isUnsigned)
{
    return '#' + (isUnsigned ? std::to_string(static_cast<std::uint64_t>(number))
                             : std::to_string(number));
}

std::size_t bitOctets(std::size_t rows)
{
    return (rows + 7) / 8;
}

std::size_t countSet(Buffer& bits, std::size_t rows)
{
    if (bits.isEmpty()) return 0;
    bits.need(bitOctets(rows));
    std::size_t count = 0;
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < rows / 64; ++i)
    {
        std::memcpy(&word, bits.data() + 8 * i, sizeof word);
        count += static_cast<std::size_t>(std::popcount(word));
    }
    for (std::size_t i = rows / 64 * 64; i < rows; ++i) count += bits.data()[i / 8] >> i % 8 & 1;
    return count;
}

}  // namespace

std::uint32_t* Ends::room(std::size_t end, std::size_t expectedRows)
{
    constexpr std::size_t theWidth = sizeof(std::uint32_t);
    return reinterpret_cast<std::uint32_t*>(
        places.room(theWidth, (end + 1) * theWidth, (expectedRows + 1) * theWidth));
}

void Ends::end(std::size_t row, std::size_t newSize, std::size_t expectedRows)
{
    std::uint32_t* const to = room(row + 1, expectedRows);
    for (; rows < row; ++rows) to[rows + 1] = static_cast<std::uint32_t>(size);
    size = newSize;
    to[++rows] = static_cast<std::uint32_t>(size);
}

std::size_t Ends::before(std::size_t row) const
{
    return row < rows ? reinterpret_cast<const std::uint32_t*>(places.data())[row] : size;
}

void Cells::clear()
{
    *this = Cells();
}

BatchWriter::BatchWriter(const ColumnPlan& columns, std::size_t expectedRows)
    : myColumns(columns),
      myPlan(*columns.plan),
      myRoot(columns.columns[0].node),
      myExpectedRows(expectedRows),
      myCells(columns.columns.size())
{
    const Node& root = myPlan.nodes[myRoot];
    const bool isPlain = root.isFixed && root.size > 0 && root.empties == 0;
    if (isPlain && root.height < theDeepest) myFixedSize = root.size;
    std::size_t most = 0;
    for (const Column& column : columns.columns)
        if (column.shape == Shape::variant)
            most = std::max<std::size_t>(most, myPlan.nodes[column.node].parts);
    myChosen.resize(most + 2);
}

void BatchWriter::clear()
{
    for (Cells& cells : myCells) cells.clear();
    myFaults.clear();
    myRow = 0;
    myIsFull = false;
}

// Rows -------------------------------------------------------------------------------------------

void BatchWriter::add(const OctetCells::Block& block, std::size_t count)
{
    const std::size_t fixedSize = myFixedSize;
    const auto first = static_cast<std::uint32_t>(myRow);
    std::size_t filled = 0;
    for (std::size_t i = 0; i < count; ++i)
    {
        const std::size_t size = block.sizes[i];
        Piece& piece = myPieces[filled];
        piece.place = block.places[i];
        piece.row = first + static_cast<std::uint32_t>(i);
        piece.entry = theNone;
        if (size == fixedSize ||
            (size != OctetCells::Block::theNull && find(Octets(piece.place, size), piece)))
            ++filled;
    }
    myPieceCount = filled;
    myRow += count;
    myShare = myExpectedRows / std::max<std::size_t>(myRow, 1) + 1;
}

void BatchWriter::addFault(std::size_t row, std::string_view text)
{
    const Piece piece{nullptr, static_cast<std::uint32_t>(row), theNone};
    Column column;
    setBits(myFaults.valid, column, &piece, 1);
    myFaults.data.put(myFaults.ends.size, text);
    myFaults.ends.end(row, myFaults.ends.size + text.size(), 0);
    myIsFull = myIsFull || myFaults.ends.size > myColumns.options.mostInBatch;
}

void BatchWriter::addTooLarge()
{
    addFault(myRow++, "the value is too large for a batch");
}

// Finds the pieces of a value; false where there is none, which is a fault of the row.
bool BatchWriter::find(Octets octets, Piece& piece)
{
    if (findQuickly(octets, piece)) return true;
    const bool isWhole = findSlowly(octets, piece);
    const std::size_t left = octets.size() - mySlowIndex.octets;
    if (isWhole && left == 0) return true;
    std::ostringstream text;
    if (isWhole)
        text << left << " octets are left over";
    else
        text << *mySlowIndex.fault;
    addFault(piece.row, text.str());
    return isWhole;
}

// Values in which nothing is to be noted.
bool BatchWriter::findQuickly(Octets octets, Piece& piece)
{
    const Node& root = myPlan.nodes[myRoot];
    if (root.isFixed || octets.size() > theLargestSize) return false;
    const auto entry = static_cast<std::uint32_t>(myIndex.entries.size());
    piece.entry = entry;
    std::size_t size = theOdd;
    std::uint32_t count = 0;
    if (root.quick == QuickForm::fork)
        size =
            sizeOfFork<true>(myPlan, myPlan.forks[root.fork], octets.data(), octets.size(), count);
    else if (root.quick == QuickForm::list)
        size = sizeOfList<true>(root, octets.data(), octets.size(), count);
    if (size == octets.size())
    {
        myIndex.entries.push_back({0, static_cast<std::uint32_t>(size), count, entry + 1});
        return true;
    }
    QuickIndexer<true> quick(myPlan, octets, &myIndex);
    if (quick.piece(myRoot, 0, {octets.size(), 0, 0}) == octets.size()) return true;
    myIndex.entries.resize(entry);
    return false;
}

bool BatchWriter::findSlowly(Octets octets, Piece& piece)
{
    Indexer indexer(myPlan, octets, mySlowIndex);
    indexer.dropNotes();
    if (!indexer.run(myRoot)) return false;
    piece.entry = theNone;
    if (mySlowIndex.entries.empty()) return true;
    const auto base = static_cast<std::uint32_t>(myIndex.entries.size());
    piece.entry = base;
    for (Entry entry : mySlowIndex.entries)
    {
        entry.next += base;
        myIndex.entries.push_back(entry);
    }
    return true;
}

bool BatchWriter::write()
{
    if (myPieceCount > 0) run(0, myPieces.data(), myPieceCount, 0);
    myPieceCount = 0;
    myIndex.entries.clear();
    return !myIsFull;
}

// Columns ----------------------------------------------------------------------------------------

// Room for the rows of the batch is made at once; elements grow as they come.
std::size_t BatchWriter::expected(const Column& column, std::size_t rows) const
{
    return column.isOfRows ? myExpectedRows : rows * myShare;
}

void BatchWriter::setBits(Buffer& bits, const Column& column, const Piece* pieces,
                          std::size_t count) const
{
    const std::size_t rows = pieces[count - 1].row + std::size_t{1};
    std::uint8_t* const to = bits.need(bitOctets(rows) + 1, bitOctets(expected(column, rows)) + 1);
    std::size_t i = 0;
    while (i < count)
    {
        const std::uint32_t row = pieces[i].row;
        if (row % 8 == 0 && i + 8 <= count && pieces[i + 7].row == row + 7)
        {
            to[row / 8] = 0xFF;
            i += 8;
            continue;
        }
        to[row / 8] = static_cast<std::uint8_t>(to[row / 8] | 1U << row % 8);
        ++i;
    }
}

// Room for numbers of these rows; those before them and between them are zero.
std::uint8_t* BatchWriter::room(const Column& column, Cells& cells, const Piece* pieces,
                                std::size_t count) const
{
    const std::size_t end = pieces[count - 1].row + std::size_t{1};
    const std::size_t first = pieces[0].row;
    const std::size_t start = end - first == count ? first : end;
    return cells.data.room(start * column.width, end * column.width,
                           expected(column, end) * column.width);
}

void BatchWriter::run(std::uint32_t at, const Piece* pieces, std::size_t count, std::size_t offset)
{
    const Column& column = myColumns.columns[at];
    Cells& cells = myCells[at];
    if (column.isNullable) setBits(cells.valid, column, pieces, count);
    switch (column.shape)
    {
        case Shape::number:
            return column.write(myPlan.nodes[column.node], pieces, count, offset,
                                room(column, cells, pieces, count));
        case Shape::label:
            return labels(column, cells, pieces, count, offset);
        case Shape::list:
            return list(at, pieces, count, offset);
        case Shape::record:
            return record(column, pieces, count, offset);
        case Shape::variant:
            return variant(column, pieces, count, offset);
        case Shape::present:
            return setBits(cells.data, column, pieces, count);
        case Shape::labelText:
        case Shape::latin1:
        case Shape::utf16:
        case Shape::hinted:
        case Shape::octets:
        case Shape::json:
        case Shape::kept:
            break;
    }
    texts(column, cells, pieces, count, offset);
}

// Fields at fixed places first; from one of open size on, each row has places of its own.
void BatchWriter::record(const Column& column, const Piece* pieces, std::size_t count,
                         std::size_t offset)
{
    const Node& node = myPlan.nodes[column.node];
    std::uint32_t end = 0;
    for (std::uint32_t i = 0; i < node.parts; ++i)
    {
        const Part& part = myPlan.parts[node.first + i];
        const Node& child = myPlan.nodes[part.node];
        const bool isOpen = !child.isFixed || part.decider != theNone || part.offset == theNone;
        if (isOpen && node.quick != QuickForm::fork)
            return openFields(column, i, end, pieces, count);
        run(column.first + i, pieces, count, offset + part.offset);
        end = part.offset + child.size;
    }
}

void BatchWriter::openFields(const Column& column, std::uint32_t i, std::uint32_t end,
                             const Piece* pieces, std::size_t count)
{
    const Node& node = myPlan.nodes[column.node];
    std::array<std::uint32_t, theBlock> next;
    std::array<std::uint32_t, theBlock> place;
    Pieces children;
    for (std::size_t row = 0; row < count; ++row) next[row] = pieces[row].entry + 1;
    std::fill_n(place.begin(), count, end);
    for (; i < node.parts; ++i)
    {
        const Part& part = myPlan.parts[node.first + i];
        const Node& child = myPlan.nodes[part.node];
        std::size_t filled = 0;
        for (std::size_t row = 0; row < count; ++row)
        {
            std::uint32_t after = theNone;
            if (part.decider != theNone)
            {
                const Entry& decided = myIndex.entries[next[row]++];
                if (decided.count == 0) continue;
                after = decided.next;
            }
            Piece& piece = children[filled++];
            piece = {pieces[row].place, pieces[row].row, theNone};
            if (child.isFixed)
            {
                place[row] = static_cast<std::uint32_t>(
                    aligned(place[row] + node.phase, part.boundary) - node.phase);
                piece.place += place[row];
                place[row] += child.size;
            }
            else
            {
                const Entry& entry = myIndex.entries[next[row]];
                const std::uint32_t start = myIndex.entries[pieces[row].entry].offset;
                piece.entry = next[row];
                piece.place += entry.offset - start;
                place[row] = entry.end - start;
                next[row] = entry.next;
            }
            if (after != theNone) next[row] = after;
        }
        if (filled > 0) run(column.first + i, children.data(), filled, 0);
    }
}

// The rows of each alternative together. Which one a row has cannot be guessed, so that rows are
// counted and put in their places without a branch.
void BatchWriter::variant(const Column& column, const Piece* pieces, std::size_t count,
                          std::size_t offset)
{
    const Node& node = myPlan.nodes[column.node];
    run(column.first, pieces, count, offset);
    // The last places are those of octets that are kept, and of nothing.
    const std::uint32_t keptPlace = node.parts;
    std::array<std::uint32_t, theBlock> choices, kinds;
    std::array<std::size_t, theBlock> ends;
    std::size_t kindCount = 0;
    for (std::size_t i = 0; i < count; ++i)
    {
        const std::uint32_t choice = myIndex.entries[pieces[i].entry].count;
        choices[i] = choice < theUnknown ? choice : keptPlace + (choice - theUnknown);
        if (myChosen[choices[i]]++ == 0) kinds[kindCount++] = choices[i];
    }
    std::uint32_t at = 0;
    for (std::size_t k = 0; k < kindCount; ++k) at += std::exchange(myChosen[kinds[k]], at);
    Pieces children;
    for (std::size_t i = 0; i < count; ++i)
        children[myChosen[choices[i]]++] = {pieces[i].place + offset + node.body, pieces[i].row,
                                            pieces[i].entry + 1};
    // Alternatives may have variant records in them, which count anew.
    for (std::size_t k = 0; k < kindCount; ++k) ends[k] = std::exchange(myChosen[kinds[k]], 0);
    for (std::size_t k = 0, first = 0; k < kindCount; first = ends[k++])
    {
        Piece* const some = children.data() + first;
        if (kinds[k] < keptPlace)
            run(column.first + kinds[k], some, ends[k] - first, 0);
        else if (kinds[k] == keptPlace)
            kept(column, some, ends[k] - first, node.body);
    }
}

// Octets of unknown alternatives, which are found from the start of their variant record.
void BatchWriter::kept(const Column& column, Piece* pieces, std::size_t count, std::size_t body)
{
    for (std::size_t i = 0; i < count; ++i)
    {
        pieces[i].place -= body;
        --pieces[i].entry;
    }
    run(column.first + column.count - 1, pieces, count, 0);
}

BatchWriter::Run BatchWriter::runOf(const Node& node, const Piece& piece, std::size_t offset) const
{
    if (node.isFixed) return {piece.place + offset, node.count};
    const Entry& entry = myIndex.entries[piece.entry];
    if (node.form != Form::array) return {piece.place, entry.end - entry.offset};
    if (node.extent != Extent::counted) return {piece.place, entry.count};
    return {piece.place + aligned(4, myPlan.nodes[node.element].boundary), entry.count};
}

// Elements of many rows are written together.
void BatchWriter::list(std::uint32_t at, const Piece* pieces, std::size_t count, std::size_t offset)
{
    const Column& column = myColumns.columns[at];
    const Node& node = myPlan.nodes[column.node];
    Ends& ends = myCells[at].ends;
    const std::size_t last = pieces[count - 1].row + std::size_t{1};
    std::uint32_t* const to = ends.room(last, expected(column, last));
    Pieces children;
    std::size_t filled = 0;
    for (std::size_t i = 0; i < count; ++i)
    {
        const Run run = runOf(node, pieces[i], offset);
        const std::size_t size = ends.size;
        if (run.count > myColumns.options.mostInBatch - size)
        {
            myIsFull = true;
            break;
        }
        elements(at, pieces[i], run, size, children, filled);
        for (; ends.rows < pieces[i].row; ++ends.rows)
            to[ends.rows + 1] = static_cast<std::uint32_t>(size);
        ends.size = size + run.count;
        to[++ends.rows] = static_cast<std::uint32_t>(ends.size);
    }
    if (filled > 0) this->run(column.first, children.data(), filled, 0);
}

void BatchWriter::elements(std::uint32_t at, const Piece& piece, const Run& run, std::size_t row,
                           Pieces& children, std::size_t& filled)
{
    // An array of fixed size, which has no entry, may be one of no elements of any size.
    if (run.count == 0) return;
    const Column& column = myColumns.columns[at];
    const Node& node = myPlan.nodes[column.node];
    const bool isFixed = myPlan.nodes[node.element].isFixed;
    const std::size_t stride = node.stride;
    const std::uint8_t* place = run.first;
    std::uint32_t entry = isFixed ? theNone : piece.entry + 1;
    const std::uint8_t* const start =
        isFixed ? nullptr : piece.place - myIndex.entries[piece.entry].offset;
    for (std::size_t i = 0; i < run.count;)
    {
        const std::size_t end = std::min(run.count, i + theBlock - filled);
        for (; isFixed && i < end; ++i, place += stride)
            children[filled++] = {place, static_cast<std::uint32_t>(row + i), theNone};
        for (; i < end; ++i, entry = myIndex.entries[entry].next)
            children[filled++] = {start + myIndex.entries[entry].offset,
                                  static_cast<std::uint32_t>(row + i), entry};
        if (filled < theBlock) continue;
        this->run(column.first, children.data(), filled, 0);
        filled = 0;
    }
}

// Labels -----------------------------------------------------------------------------------------

std::int32_t BatchWriter::labelOf(const Column& column, Cells& cells, std::int64_t number)
{
    const LabelTable& table = myColumns.tables[column.labels];
    const auto next = static_cast<std::int32_t>(table.labels.size() + cells.strangers.size());
    const auto [place, isNew] = cells.strangerPlaces.try_emplace(number, next);
    if (isNew) cells.strangers.push_back(number);
    return place->second;
}

void BatchWriter::labels(const Column& column, Cells& cells, const Piece* pieces, std::size_t count,
                         std::size_t offset)
{
    const Node& node = myPlan.nodes[column.node];
    const LabelTable& table = myColumns.tables[column.labels];
    auto* const to = reinterpret_cast<std::int32_t*>(room(column, cells, pieces, count));
    const std::int32_t* const dense = table.dense.data();
    const std::size_t denseCount = table.dense.size();
    const auto write = [&](const auto& load)
    {
        for (std::size_t i = 0; i < count; ++i)
        {
            const auto number = static_cast<std::int64_t>(load(pieces[i].place + offset));
            const std::int32_t label = static_cast<std::uint64_t>(number) < denseCount
                                           ? dense[static_cast<std::size_t>(number)]
                                           : table.find(number);
            to[pieces[i].row] = label >= 0 ? label : labelOf(column, cells, number);
        }
    };
    const bool isUsual = node.scalar == Scalar::unsignedInteger && !node.isLittleEndian;
    if (isUsual && node.size == 1)
        write([](const std::uint8_t* octets) { return *octets; });
    else if (isUsual && node.size == 2)
        write(loadBig16);
    else if (isUsual && node.size == 4)
        write(loadBig32);
    else
        write([&node](const std::uint8_t* octets) { return loadInteger(node, octets); });
}

// Texts ------------------------------------------------------------------------------------------

void BatchWriter::texts(const Column& column, Cells& cells, const Piece* pieces, std::size_t count,
                        std::size_t offset)
{
    const Node& node = myPlan.nodes[column.node];
    const bool isLittleEndian =
        column.shape == Shape::utf16 && myPlan.nodes[node.element].isLittleEndian;
    // Appends what `put` writes, for each character into room for so many octets.
    const auto characters = [&](std::size_t width, const auto& put)
    {
        return [this, &cells, &node, offset, width, put](const Piece& piece)
        {
            const Run run = runOf(node, piece, offset);
            std::uint8_t* const to = room(cells, width * run.count);
            return static_cast<std::size_t>(put(to, run.first, run.count) - to);
        };
    };
    switch (column.shape)
    {
        case Shape::octets:
            return eachText(column, cells, pieces, count,
                            [&](const Piece& piece)
                            {
                                const Run run = runOf(node, piece, offset);
                                return append(cells, run.first, run.count);
                            });
        case Shape::latin1:
            return eachText(column, cells, pieces, count, characters(2, putLatin1));
        case Shape::hinted:
            return eachText(column, cells, pieces, count, characters(2, putText));
        case Shape::utf16:
            return eachText(
                column, cells, pieces, count,
                characters(3, [isLittleEndian](std::uint8_t* to, const std::uint8_t* units,
                                               std::size_t size)
                           { return putUtf16(to, units, size, isLittleEndian); }));
        default:
            return eachText(column, cells, pieces, count,
                            [&](const Piece& piece) { return text(column, cells, piece, offset); });
    }
}

// Rows that were left out end where those before them do.
template <typename Append>
void BatchWriter::eachText(const Column& column, Cells& cells, const Piece* pieces,
                           std::size_t count, const Append& append)
{
    Ends& ends = cells.ends;
    const std::size_t last = pieces[count - 1].row + std::size_t{1};
    std::uint32_t* const to = ends.room(last, expected(column, last));
    for (std::size_t i = 0; i < count; ++i)
    {
        for (; ends.rows < pieces[i].row; ++ends.rows)
            to[ends.rows + 1] = static_cast<std::uint32_t>(ends.size);
        ends.size += append(pieces[i]);
        to[++ends.rows] = static_cast<std::uint32_t>(ends.size);
        if (ends.size <= myColumns.options.mostInBatch) continue;
        myIsFull = true;
        return;
    }
}

// Room for the text of a row, and one octet more, so that there is a buffer even where all rows are
// empty.
std::uint8_t* BatchWriter::room(Cells& cells, std::size_t octets) const
{
    const std::size_t size = cells.ends.size + octets + 1;
    return cells.data.room(cells.ends.size, size, size * myShare) + cells.ends.size;
}

std::size_t BatchWriter::append(Cells& cells, const std::uint8_t* octets, std::size_t count) const
{
    std::uint8_t* const to = room(cells, count);
    if (count > 0) std::memcpy(to, octets, count);
    return count;
}

// Adds the text of a row after the others; gives its octets.
std::size_t BatchWriter::text(const Column& column, Cells& cells, const Piece& piece,
                              std::size_t offset)
{
    if (column.shape == Shape::kept)
    {
        const Entry& entry = myIndex.entries[piece.entry];
        const std::uint32_t body = myPlan.nodes[column.node].body;
        return append(cells, piece.place + offset + body,
                      entry.end - entry.offset - column.inEntry - body);
    }
    const Node& node = myPlan.nodes[column.node];
    myText.clear();
    if (column.shape == Shape::labelText)
    {
        const std::int64_t number = loadInteger(node, piece.place + offset);
        const LabelTable& table = myColumns.tables[column.labels];
        const std::int32_t label = table.find(number);
        if (label >= 0)
            myText = table.labels[static_cast<std::size_t>(label)];
        else
            myText = strangerText(number, node.scalar == Scalar::unsignedInteger);
    }
    else
    {
        const std::uint32_t place =
            node.isFixed ? 0 : myIndex.entries[piece.entry].offset + column.inEntry;
        appendJsonOf(myPlan, piece.place + offset - place, myIndex,
                     {column.node, place, node.isFixed ? theNone : piece.entry}, myText, {});
    }
    return append(cells, reinterpret_cast<const std::uint8_t*>(myText.data()), myText.size());
}

// The end ----------------------------------------------------------------------------------------

// A buffer into which nothing was written shares zeros with all others of the kind.
void BatchWriter::addBuffer(ArrayParts& parts, Buffer& buffer, std::size_t octets)
{
    if (!buffer.isEmpty())
    {
        buffer.need(octets);
        return parts.add(std::move(buffer));
    }
    if (!myZeros || myZeros->size() < octets)
    {
        myZeros = std::make_shared<Buffer>();
        myZeros->need(octets + 1);
    }
    parts.add(myZeros);
}

void BatchWriter::addEnds(ArrayParts& parts, Cells& cells, std::size_t rows)
{
    if (cells.ends.rows > 0 && cells.ends.rows < rows)
        cells.ends.end(rows - 1, cells.ends.size, rows);
    addBuffer(parts, cells.ends.places, (rows + 1) * sizeof(std::uint32_t));
}

void BatchWriter::writeLabels(const Column& column, const Cells& cells, bool isNeeded,
                              ArrowArray& dictionary) const
{
    const bool isUnsigned = myPlan.nodes[column.node].scalar == Scalar::unsignedInteger;
    std::vector<std::string> labels = myColumns.tables[column.labels].labels;
    for (const std::int64_t number : cells.strangers)
        labels.push_back(strangerText(number, isUnsigned));
    // Rows that are not there point at the first label.
    if (labels.empty() && isNeeded) labels.push_back(strangerText(0, true));
    writeTexts(labels, dictionary);
}

void BatchWriter::finishColumn(std::uint32_t at, std::size_t rows, ArrowArray& array)
{
    const Column& column = myColumns.columns[at];
    Cells& cells = myCells[at];
    auto parts = std::make_unique<ArrayParts>();
    const std::size_t nulls = column.isNullable ? rows - countSet(cells.valid, rows) : 0;
    addBuffer(*parts, cells.valid, bitOctets(rows));
    std::size_t children = rows;
    switch (column.shape)
    {
        case Shape::number:
        case Shape::label:
            addBuffer(*parts, cells.data, rows * column.width);
            if (column.shape == Shape::label)
                writeLabels(column, cells, rows > 0, parts->addDictionary());
            break;
        case Shape::present:
            addBuffer(*parts, cells.data, bitOctets(rows));
            break;
        case Shape::list:
            children = cells.ends.before(rows);
            addEnds(*parts, cells, rows);
            break;
        case Shape::record:
        case Shape::variant:
            break;
        case Shape::labelText:
        case Shape::latin1:
        case Shape::utf16:
        case Shape::hinted:
        case Shape::octets:
        case Shape::json:
        case Shape::kept:
            addEnds(*parts, cells, rows);
            addBuffer(*parts, cells.data, 1);
            break;
    }
    parts->setChildren(column.count);
    for (std::uint32_t i = 0; i < column.count; ++i)
        finishColumn(column.first + i, children, parts->children[i]);
    handOut(std::move(parts), rows, nulls, array);
}

void BatchWriter::finishFaults(std::size_t rows, ArrowArray& array)
{
    auto parts = std::make_unique<ArrayParts>();
    const std::size_t nulls = rows - countSet(myFaults.valid, rows);
    addBuffer(*parts, myFaults.valid, bitOctets(rows));
    addEnds(*parts, myFaults, rows);
    addBuffer(*parts, myFaults.data, 1);
    handOut(std::move(parts), rows, nulls, array);
}

void BatchWriter::finish(std::size_t rows, ArrowArray& batch)
{
    auto parts = std::make_unique<ArrayParts>();
    parts->buffers.push_back(nullptr);
    parts->setChildren(2);
    finishColumn(0, rows, parts->children[0]);
    finishFaults(rows, parts->children[1]);
    handOut(std::move(parts), rows, 0, batch);
}

}  // namespace omt
