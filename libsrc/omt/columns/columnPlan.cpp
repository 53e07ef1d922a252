// SPDX-License-Identifier: Apache-2.0
#include "omt/columns/columnPlan.h"

#include "omt/codec/index.h"

#include <algorithm>
#include <unordered_map>

namespace omt
{

namespace
{

constexpr std::size_t theMostColumns = 16384;
/// Others refuse to read what is deeper than 64; labels and the batch itself take some.
constexpr std::size_t theMostLevels = 60;

/// Builds the tree of columns downwards, and gives up where there are too many.
class Builder
{
public:
    Builder(const Plan& plan, ColumnPlan& columns) : myPlan(plan), myColumns(columns) {}

    void build(std::uint32_t node)
    {
        Column root;
        root.name = "value";
        root.isNullable = true;
        root.node = node;
        myColumns.columns = {root};
        if (fill(0)) return;
        myColumns.columns = {root};
        setLeaf(myColumns.columns[0], Shape::json, "u");
    }

private:
    /// Decides what a column of a node is; false where there are too many columns.
    bool fill(std::uint32_t at)
    {
        Column& column = myColumns.columns[at];
        const std::uint32_t id = column.node;
        const Node& node = myPlan.nodes[id];
        const bool isAgain = std::find(myPath.begin(), myPath.end(), id) != myPath.end();
        if (isNested(node) && (isAgain || myPath.size() >= theMostLevels))
        {
            setLeaf(column, Shape::json, "u");
            return true;
        }
        myPath.push_back(id);
        const bool isWhole = fillForm(at, node);
        myPath.pop_back();
        return isWhole;
    }

    bool fillForm(std::uint32_t at, const Node& node)
    {
        Column& column = myColumns.columns[at];
        switch (node.form)
        {
            case Form::number:
                setNumber(column, node);
                return true;
            case Form::octets:
                setLeaf(column, Shape::octets, "z");
                return true;
            case Form::array:
                return fillArray(at, node);
            case Form::variant:
                column.shape = Shape::variant;
                column.format = "+s";
                return fillParts(at, node);
            case Form::record:
                break;
        }
        if (node.parts == 0)
        {
            setLeaf(column, Shape::present, "b");
            return true;
        }
        column.shape = Shape::record;
        column.format = "+s";
        return fillParts(at, node);
    }

    bool fillArray(std::uint32_t at, const Node& node)
    {
        Column& column = myColumns.columns[at];
        switch (node.look)
        {
            case Look::latin1:
                setLeaf(column, Shape::latin1, "u");
                return true;
            case Look::utf16:
                setLeaf(column, Shape::utf16, "u");
                return true;
            case Look::text:
                setLeaf(column, Shape::hinted, "u");
                return true;
            case Look::hexadecimal:
                setLeaf(column, Shape::octets, "z");
                return true;
            case Look::elements:
                break;
        }
        column.shape = Shape::list;
        column.format = "+l";
        if (!addChildren(at, 1)) return false;
        Column& element = myColumns.columns[myColumns.columns[at].first];
        element.name = "item";
        element.node = node.element;
        element.isOfRows = false;
        return fill(myColumns.columns[at].first);
    }

    // The fields of a record; those of a variant record may all be null but the first.
    bool fillParts(std::uint32_t at, const Node& node)
    {
        const bool isVariant = node.form == Form::variant;
        const bool hasKept = isVariant && node.length != Length::none;
        if (!addChildren(at, node.parts + (hasKept ? 1ULL : 0ULL))) return false;
        const std::uint32_t first = myColumns.columns[at].first;
        for (std::uint32_t i = 0; i < node.parts; ++i)
        {
            const Part& part = myPlan.parts[node.first + i];
            Column& child = myColumns.columns[first + i];
            child.name = myPlan.text(part.name);
            child.node = part.node;
            child.isNullable = isVariant ? i > 0 : part.decider != theNone;
            if (!isVariant && node.quick == QuickForm::fork && i + 1 == node.parts)
                child.inEntry = part.offset;
            if (!fill(first + i)) return false;
        }
        if (!hasKept) return true;
        Column& kept = myColumns.columns[first + node.parts];
        kept.name = "octets";
        kept.isNullable = true;
        kept.node = myColumns.columns[at].node;
        kept.inEntry = myColumns.columns[at].inEntry;
        setLeaf(kept, Shape::kept, "z");
        return true;
    }

    bool addChildren(std::uint32_t at, std::uint64_t count)
    {
        const std::size_t size = myColumns.columns.size();
        if (count > theMostColumns - std::min(size, theMostColumns)) return false;
        Column child;
        child.isOfRows = myColumns.columns[at].isOfRows;
        myColumns.columns.resize(size + count, child);
        myColumns.columns[at].first = static_cast<std::uint32_t>(size);
        myColumns.columns[at].count = static_cast<std::uint32_t>(count);
        return true;
    }

    static void setLeaf(Column& column, Shape shape, const char* format)
    {
        column.shape = shape;
        column.format = format;
    }

    void setNumber(Column& column, const Node& node)
    {
        const bool isLabel = node.table != theNone && myColumns.options.labels != Labels::number;
        if (isLabel)
        {
            const bool isText = myColumns.options.labels == Labels::string;
            setLeaf(column, isText ? Shape::labelText : Shape::label, isText ? "u" : "i");
            column.width = 4;
            column.labels = tableOf(node.table);
            return;
        }
        constexpr const char* theSigned[] = {"c", "s", "i", "l"};
        constexpr const char* theUnsigned[] = {"C", "S", "I", "L"};
        constexpr const char* theWidened[] = {"s", "i", "l", "d:20,0"};
        std::size_t power = node.size <= 1 ? 0 : node.size <= 2 ? 1 : node.size <= 4 ? 2 : 3;
        const bool isSigned = node.scalar == Scalar::signedInteger;
        const bool isWidened =
            node.scalar == Scalar::unsignedInteger && myColumns.options.widensUnsigned;
        column.shape = Shape::number;
        column.format = node.scalar == Scalar::floating ? node.size == 4 ? "f" : "g"
                        : isWidened                     ? theWidened[power]
                                    : (isSigned ? theSigned : theUnsigned)[power];
        column.width = static_cast<std::uint8_t>(1U << (isWidened ? power + 1 : power));
        column.write = numberWriter(node, column.width);
    }

    std::uint32_t tableOf(std::uint32_t enumeration)
    {
        const auto [place, isNew] =
            myTables.try_emplace(enumeration, static_cast<std::uint32_t>(myColumns.tables.size()));
        if (!isNew) return place->second;
        const Enumeration& from = myPlan.enumerations[enumeration];
        LabelTable& table = myColumns.tables.emplace_back();
        table.names = &from;
        NameMap<std::int32_t> labels;
        for (const Enumeration::Entry& entry : from.entries)
        {
            const std::string_view name = myPlan.text(entry.name);
            const auto next = static_cast<std::int32_t>(labels.size());
            const auto [label, isFirst] = labels.try_emplace(name, next);
            if (isFirst) table.labels.emplace_back(name);
            table.ofEntries.push_back(label->second);
        }
        for (const std::uint32_t entry : from.dense)
            table.dense.push_back(entry == theNone ? -1 : table.ofEntries[entry]);
        return place->second;
    }

    const Plan& myPlan;
    ColumnPlan& myColumns;
    std::vector<std::uint32_t> myPath;
    std::unordered_map<std::uint32_t, std::uint32_t> myTables;
};

// Numbers ----------------------------------------------------------------------------------------

template <typename Wire>
Wire swapped(Wire bits)
{
    if constexpr (sizeof(Wire) == 2) return __builtin_bswap16(bits);
    if constexpr (sizeof(Wire) == 4) return __builtin_bswap32(bits);
    if constexpr (sizeof(Wire) == 8) return __builtin_bswap64(bits);
    return bits;
}

/// Calls `store(row, place)` for all pieces; most blocks fill rows that follow each other, four at
/// a time.
template <typename Store>
void forEachRow(const Piece* pieces, std::size_t count, std::size_t offset, const Store& store)
{
    const std::size_t first = pieces[0].row;
    std::size_t i = 0;
    if (pieces[count - 1].row - first == count - 1)
        for (; i + 4 <= count; i += 4)
        {
            store(first + i, pieces[i].place + offset);
            store(first + i + 1, pieces[i + 1].place + offset);
            store(first + i + 2, pieces[i + 2].place + offset);
            store(first + i + 3, pieces[i + 3].place + offset);
        }
    for (; i < count; ++i) store(pieces[i].row, pieces[i].place + offset);
}

/// Wire and row have the same sign, or the wire has none.
template <typename Wire, typename Row, bool isSwapped>
void writeNumbers(const Node&, const Piece* pieces, std::size_t count, std::size_t offset,
                  void* rows)
{
    Row* const to = static_cast<Row*>(rows);
    forEachRow(pieces, count, offset,
               [to](std::size_t row, const std::uint8_t* place)
               {
                   Wire bits;
                   std::memcpy(&bits, place, sizeof bits);
                   to[row] = static_cast<Row>(isSwapped ? swapped(bits) : bits);
               });
}

/// Integers of 3, 5, 6 or 7 octets, into rows of any width.
template <typename Row>
void writeOdd(const Node& node, const Piece* pieces, std::size_t count, std::size_t offset,
              void* rows)
{
    Row* const to = static_cast<Row*>(rows);
    forEachRow(pieces, count, offset,
               [&](std::size_t row, const std::uint8_t* place)
               { to[row] = static_cast<Row>(loadInteger(node, place)); });
}

/// Unsigned numbers as decimals: 128 bits, the lower ones first.
void writeDecimals(const Node& node, const Piece* pieces, std::size_t count, std::size_t offset,
                   void* rows)
{
    std::uint64_t* const to = static_cast<std::uint64_t*>(rows);
    forEachRow(pieces, count, offset,
               [&](std::size_t row, const std::uint8_t* place)
               {
                   to[2 * row] = loadBits(node, place);
                   to[2 * row + 1] = 0;
               });
}

template <typename Wire, typename Row>
WriteNumbers inOrder(const Node& node)
{
    return node.isLittleEndian ? writeNumbers<Wire, Row, false> : writeNumbers<Wire, Row, true>;
}

}  // namespace

bool isNested(const Node& node)
{
    if (node.form == Form::record) return node.parts > 0;
    return node.form == Form::variant || (node.form == Form::array && node.look == Look::elements);
}

WriteNumbers numberWriter(const Node& node, std::uint8_t width)
{
    if (width == 16) return writeDecimals;
    const bool isWide = width > node.size;
    switch (node.size)
    {
        case 1:
            return isWide ? writeNumbers<std::uint8_t, std::uint16_t, false>
                          : writeNumbers<std::uint8_t, std::uint8_t, false>;
        case 2:
            return isWide ? inOrder<std::uint16_t, std::uint32_t>(node)
                          : inOrder<std::uint16_t, std::uint16_t>(node);
        case 4:
            return isWide ? inOrder<std::uint32_t, std::uint64_t>(node)
                          : inOrder<std::uint32_t, std::uint32_t>(node);
        case 8:
            return inOrder<std::uint64_t, std::uint64_t>(node);
        default:
            return width == 4 ? writeOdd<std::uint32_t> : writeOdd<std::uint64_t>;
    }
}

ColumnPlan::ColumnPlan(std::shared_ptr<const Plan> ofPlan, std::uint32_t node,
                       const ColumnOptions& some)
    : plan(std::move(ofPlan)), options(some)
{
    Builder(*plan, *this).build(node);
}

}  // namespace omt
