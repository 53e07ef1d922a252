// SPDX-License-Identifier: Apache-2.0
// Columns beside single values: random octets to Arrow arrays and back; batches that are split;
// what others hand over, sliced, in every layout, or with wrong buffers.
#include "omt/columns/columns.h"
#include "omt/omt.h"
#include "slowCodec.h"

#include <gmock/gmock.h>

#include <cstring>
#include <sstream>

namespace
{

using Bytes = std::vector<std::uint8_t>;
using Cell = std::optional<Bytes>;
using Text = std::optional<std::string>;

/// Holds a schema or an array, and releases it.
template <typename Struct>
struct Held : Struct
{
    Held() : Struct{} {}
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held() { clear(); }
    void clear()
    {
        if (this->release) this->release(this);
    }
};

/// A column of octets as somebody else would make it, with two rows before the first one.
struct Given
{
    Given(const std::string& format, const std::vector<Cell>& cells) : myFormat(format)
    {
        myRows = {
            Bytes{1, 2, 3},
            std::nullopt
        };
        myRows.insert(myRows.end(), cells.begin(), cells.end());
        const bool isFixed = format[0] == 'w';
        myValid.resize(myRows.size() / 8 + 1);
        for (std::size_t i = 0; i < myRows.size(); ++i)
        {
            const Bytes some = myRows[i].value_or(Bytes(isFixed ? 3 : 0));
            add(static_cast<std::uint64_t>(data.size()), format == "Z" ? 8 : 4);
            data.insert(data.end(), some.begin(), some.end());
            if (myRows[i]) myValid[i / 8] = static_cast<std::uint8_t>(myValid[i / 8] | 1U << i % 8);
        }
        add(data.size(), format == "Z" ? 8 : 4);
        mySizes = {static_cast<std::int64_t>(data.size())};
        if (format == "vz") addViews();
        data.push_back(0);
        schema.format = myFormat.c_str();
        schema.release = [](ArrowSchema*) {};
        array.length = static_cast<std::int64_t>(cells.size());
        array.offset = 2;
        myBuffers = {myValid.data(), offsets.data(), data.data(), mySizes.data()};
        if (isFixed) myBuffers[1] = data.data();
        array.n_buffers = isFixed ? 2 : format == "vz" ? 4 : 3;
        array.buffers = myBuffers.data();
        array.release = [](ArrowArray*) {};
    }
    void add(std::uint64_t number, std::size_t size)
    {
        for (std::size_t i = 0; i < size; ++i)
            offsets.push_back(static_cast<std::uint8_t>(number >> 8 * i));
    }
    void addViews()
    {
        offsets.clear();
        std::size_t at = 0;
        for (const Cell& row : myRows)
        {
            const Bytes some = row.value_or(Bytes());
            Bytes view(16);
            view[0] = static_cast<std::uint8_t>(some.size());
            view[1] = static_cast<std::uint8_t>(some.size() >> 8);
            std::copy_n(some.begin(), std::min<std::size_t>(some.size(), 12), view.begin() + 4);
            if (some.size() > 12) view[8] = view[9] = view[10] = view[11] = 0;
            if (some.size() > 12) std::memcpy(&view[12], &at, 4);
            offsets.insert(offsets.end(), view.begin(), view.end());
            at += some.size();
        }
    }

    ArrowSchema schema{};
    ArrowArray array{};
    Bytes offsets, data;

private:
    std::string myFormat;
    std::vector<Cell> myRows;
    Bytes myValid;
    std::vector<std::int64_t> mySizes;
    std::vector<const void*> myBuffers;
};

bool isSet(const void* bits, std::int64_t at)
{
    return static_cast<const std::uint8_t*>(bits)[at / 8] >> at % 8 & 1;
}

/// What must be so in any array: counts, offsets, lengths of children, places of labels.
void check(const ArrowSchema& schema, const ArrowArray& array, std::int64_t least = 0)
{
    const std::string format = schema.format;
    ASSERT_TRUE(array.release != nullptr && array.offset == 0 && array.length >= least) << format;
    std::int64_t nulls = 0;
    for (std::int64_t i = 0; array.buffers[0] && i < array.length; ++i)
        nulls += !isSet(array.buffers[0], i);
    EXPECT_EQ(array.null_count, nulls) << schema.name;
    const auto* const places =
        static_cast<const std::int32_t*>(array.n_buffers > 1 ? array.buffers[1] : nullptr);
    const bool hasOffsets = format == "+l" || format == "u" || format == "z";
    for (std::int64_t i = 0; hasOffsets && i < array.length; ++i)
        ASSERT_LE(places[i], places[i + 1]);
    for (std::int64_t i = 0; schema.dictionary && i < array.length; ++i)
        ASSERT_TRUE(places[i] >= 0 && places[i] < array.dictionary->length);
    ASSERT_EQ(schema.n_children, array.n_children);
    for (std::int64_t i = 0; i < array.n_children; ++i)
        check(*schema.children[i], *array.children[i],
              format == "+l" ? places[array.length] : array.length);
}

Text cellOf(const ArrowArray& array, std::int64_t row)
{
    if (array.buffers[0] && !isSet(array.buffers[0], row)) return std::nullopt;
    const auto* const places = static_cast<const std::int32_t*>(array.buffers[1]);
    const auto size = static_cast<std::size_t>(places[row + 1] - places[row]);
    return std::string(static_cast<const char*>(array.buffers[2]) + places[row], size);
}

/// One row of a column, decoded and encoded again.
struct Row
{
    Text octets, fault, encodingFault;
    bool isThere = false;
};

std::vector<Row> roundTrip(const omt::Columns& columns, const Given& given, std::size_t* batches)
{
    std::vector<Row> rows;
    Held<ArrowSchema> schema;
    columns.writeSchema(schema);
    for (std::size_t first = 0; first == 0 || first < std::size_t(given.array.length);)
    {
        Held<ArrowArray> batch;
        EXPECT_EQ(columns.decode(given.schema, given.array, first, batch), std::nullopt);
        if (testing::Test::HasFailure()) return rows;
        check(schema, batch);
        const ArrowArray& value = *batch.children[0];
        for (std::size_t done = 0; done < std::size_t(batch.length);)
        {
            Held<ArrowArray> again;
            const std::size_t from = done;
            EXPECT_EQ(columns.encode(*schema.children[0], value, done, again), std::nullopt);
            for (std::size_t row = from; row < done; ++row)
            {
                const auto i = static_cast<std::int64_t>(row - from);
                const bool isThere =
                    !value.buffers[0] || isSet(value.buffers[0], std::int64_t(row));
                rows.push_back({cellOf(*again.children[0], i),
                                cellOf(*batch.children[1], std::int64_t(row)),
                                cellOf(*again.children[1], i), isThere});
            }
        }
        if (batches) ++*batches;
        if (batch.length == 0) break;
    }
    return rows;
}

/// Every row is what the single value is.
void compare(const omt::Type& type, const std::vector<Cell>& cells, const std::vector<Row>& rows)
{
    ASSERT_EQ(cells.size(), rows.size());
    for (std::size_t i = 0; i < cells.size(); ++i)
    {
        const omt::Value value = cells[i] ? type.decode(*cells[i]) : omt::Value();
        ASSERT_EQ(rows[i].isThere, cells[i] && !value.fault()) << type.name() << ' ' << i;
        std::ostringstream fault;
        if (value.fault()) fault << *value.fault();
        if (!value.fault() && value.left() > 0) fault << value.left() << " octets are left over";
        ASSERT_EQ(rows[i].fault.value_or(""), fault.str()) << type.name();
        // Half of a surrogate pair has no place in UTF-8, the second number of a name no label, and
        // what follows a zero no text.
        const std::string json = value.json();
        Bytes octets;
        const auto has = [&json](const char* text) { return json.find(text) != std::string::npos; };
        const bool isOdd = has("\\ud") || has("{\"name\":") || has("\"rest\":");
        if (!rows[i].isThere || isOdd) continue;
        ASSERT_EQ(bool(type.encode(json, octets)), bool(rows[i].encodingFault))
            << type.name() << ": " << rows[i].encodingFault.value_or(json);
        if (!rows[i].octets) continue;
        ASSERT_EQ(type.decode(omt::Octets(*rows[i].octets)).json(), json) << type.name();
    }
}

TEST(ColumnsTest, AgreeWithSingleValues)
{
    const char* const folder = std::getenv("OMT_MODELS");
    if (!folder) GTEST_SKIP() << "OMT_MODELS is not set";
    std::mt19937_64 random(1516);
    const std::vector<std::string> sets[] = {
        {"evolved/RPR_FOM_v2.0_1516-2010.xml"},
        {"hla13/RPR2-D17.omd"},
        {"evolved/RPR-Foundation_v2.0.xml", "evolved/RPR-Enumerations_v2.0.xml",
         "evolved/RPR-Base_v2.0.xml", "2025/NETN-BASE.xml", "2025/NETN-ETR.xml"},
    };
    for (std::vector<std::string> files : sets)
    {
        for (std::string& file : files) file = std::string(folder) + '/' + file;
        const omt::Model model = omt::read(files, omt::ReadOptions().withMim()).model;
        const omt::Codec codec(model);
        SlowCodec slow(model);
        const omt::Tables& tables = model.tables();
        std::vector<std::string> names;
        for (const auto& one : tables.fixedRecords) names.emplace_back(one.name);
        for (const auto& one : tables.variantRecords) names.emplace_back(one.name);
        for (const auto& one : tables.arrayData) names.emplace_back(one.name);
        for (std::size_t i = 0; i < names.size(); ++i)
        {
            std::vector<Cell> cells(3);
            for (std::size_t row = 0; row < 140; ++row)
            {
                cells.push_back(row < 16 ? slow.make(names[i], random) : cells[row % 16 + 3]);
                if (row % 7 == 3 && !cells.back()->empty())
                    cells.back()->resize(random() % cells.back()->size());
                if (row % 7 == 5) cells.back()->push_back(1);
                if (cells.back()->size() > 512) cells.back()->resize(16);
            }
            const omt::Type type = codec.type(names[i]);
            omt::ColumnOptions options;
            options.labels = static_cast<omt::Labels>(i % 3);
            options.widensUnsigned = i % 2 == 0;
            options.mostInBatch = i % 5 == 0 ? 65536 : 0x7FFFFFFF;
            const char* const formats[] = {"z", "Z", "vz"};
            const Given given(formats[i % 3], cells);
            compare(type, cells, roundTrip(omt::Columns(type, options), given, nullptr));
            if (HasFailure()) return;
        }
    }
}

constexpr std::string_view theModel = R"(<objectModel
 xmlns='http://standards.ieee.org/IEEE1516-2010'><dataTypes><arrayDataTypes>
 <arrayData><name>Octets</name><dataType>HLAoctet</dataType><cardinality>Dynamic</cardinality>
  <encoding>HLAvariableArray</encoding></arrayData>
 <arrayData><name>Two</name><dataType>Octets</dataType><cardinality>2</cardinality>
  <encoding>HLAfixedArray</encoding></arrayData>
 <arrayData><name>Trees</name><dataType>Tree</dataType><cardinality>Dynamic</cardinality>
  <encoding>HLAvariableArray</encoding></arrayData></arrayDataTypes><fixedRecordDataTypes>
 <fixedRecordData><name>Empty</name><encoding>HLAfixedRecord</encoding></fixedRecordData>
 <fixedRecordData><name>Three</name><encoding>HLAfixedRecord</encoding>
  <field><name>A</name><dataType>HLAoctet</dataType></field>
  <field><name>B</name><dataType>HLAinteger16LE</dataType></field>
  <field><name>C</name><dataType>Empty</dataType></field></fixedRecordData>
 <fixedRecordData><name>Tree</name><encoding>HLAfixedRecord</encoding>
  <field><name>Leaf</name><dataType>HLAinteger32BE</dataType></field>
  <field><name>Below</name><dataType>Trees</dataType></field></fixedRecordData>
 </fixedRecordDataTypes></dataTypes></objectModel>)";

omt::Codec smallCodec()
{
    const std::vector<omt::Document> documents = {
        {"x.xml", theModel}
    };
    return omt::Codec(omt::readDocuments(documents, omt::ReadOptions().withMim()).model);
}

TEST(ColumnsTest, FormsAndBatches)
{
    const omt::Codec codec = smallCodec();
    const Bytes tree = {0, 0, 0, 7, 0, 0, 0, 1, 0, 0, 0, 8, 0, 0, 0, 0};
    const Bytes pair = {0, 0, 0, 2, 1, 2, 0, 0, 0, 0, 0, 1, 3};
    const std::vector<Cell> none, nulls(300), pairs(7, pair);
    const Bytes first = {1, 2, 3}, last = {0, 255, 9}, empty(4);
    const std::vector<Cell> three = {first, std::nullopt, last};
    const std::vector<Cell> trees = {tree, tree, Bytes{0}, tree};
    const std::vector<Cell> many(1000, Bytes{0, 0, 0, 1, 7});
    Bytes large(4004);
    large[2] = 0x0F, large[3] = 0xA0;
    struct Case
    {
        const char *what, *type, *format;
        std::vector<Cell> cells;
        std::uint32_t most;
        std::size_t batches;
    };
    const Case cases[] = {
        {"no rows",              "Tree",   "z",   none,  100,  1},
        {"octets of one size",   "Three",  "w:3", three, 100,  1},
        {"a datatype in itself", "Tree",   "Z",   trees, 1000, 1},
        {"a list is full",       "Two",    "z",   pairs, 13,   2},
        {"all rows null",        "Two",    "vz",  nulls, 4,    1},
        {"many blocks",          "Octets", "z",   many,  300,  4},
    };
    for (const Case& one : cases)
    {
        SCOPED_TRACE(one.what);
        const omt::Type type = codec.type(one.type);
        omt::ColumnOptions options;
        options.mostInBatch = one.most;
        std::size_t batches = 0;
        const Given given(one.format, one.cells);
        compare(type, one.cells, roundTrip(omt::Columns(type, options), given, &batches));
        EXPECT_EQ(batches, one.batches);
    }
    omt::ColumnOptions options;
    options.mostInBatch = 1000;
    const Given given("z", {empty, large, empty});
    const std::vector<Row> rows =
        roundTrip(omt::Columns(codec.type("Octets"), options), given, nullptr);
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[1].fault, "the value is too large for a batch");
    EXPECT_TRUE(rows[2].isThere);
}

// What takes one, two or more octets in UTF-8, or is escaped in JSON, at each place of texts that
// are written in parts.
TEST(ColumnsTest, TextsAreThoseOfValues)
{
    const std::u16string specials[] = {u"a",          u"\u00E9", u"\u07FF", u"\u20AC",
                                       u"\U0001F6A2", u"\"\n",   u""};
    for (const char* const name : {"HLAunicodeString", "HLAASCIIstring"})
    {
        const omt::Type type = smallCodec().type(name);
        const bool isWide = name[3] == 'u';
        std::vector<Cell> cells;
        for (const std::u16string& special : specials)
            for (std::size_t i = 0; i < 300; ++i)
            {
                std::u16string text(i * 7 % 73, u'b');
                text.append(special).append(std::u16string(i, u'c'));
                Bytes octets = {0, 0, static_cast<std::uint8_t>(text.size() >> 8),
                                static_cast<std::uint8_t>(text.size())};
                for (const char16_t unit : text)
                {
                    if (isWide) octets.push_back(static_cast<std::uint8_t>(unit >> 8));
                    octets.push_back(static_cast<std::uint8_t>(unit));
                }
                cells.emplace_back(octets);
            }
        const Given given("z", cells);
        Held<ArrowArray> batch;
        std::size_t first = 0;
        ASSERT_EQ(omt::Columns(type).decode(given.schema, given.array, first, batch), std::nullopt);
        for (std::size_t i = 0; i < cells.size(); ++i)
        {
            const omt::Value value = type.decode(*cells[i]);
            ASSERT_EQ(cellOf(*batch.children[0], std::int64_t(i)), value.root().text());
            Bytes again;
            ASSERT_FALSE(type.encode(value.json(), again));
            ASSERT_EQ(again, *cells[i]);
        }
    }
}

// Engines hand over columns in which all rows are null without buffers.
TEST(ColumnsTest, ColumnsOfNothingAreNull)
{
    const omt::Columns columns(smallCodec().type("Three"));
    Given nothing("z", std::vector<Cell>(300));
    nothing.schema.format = "n";
    nothing.array.n_buffers = 0;
    nothing.array.buffers = nullptr;
    Held<ArrowArray> decoded, encoded, encodedPart;
    std::size_t first = 0, again = 0, part = 0;
    ASSERT_EQ(columns.decode(nothing.schema, nothing.array, first, decoded), std::nullopt);
    ASSERT_EQ(columns.encode(nothing.schema, nothing.array, again, encoded), std::nullopt);
    for (const ArrowArray* const batch : {&decoded, &encoded})
        EXPECT_TRUE(batch->length == 300 && batch->children[0]->null_count == 300 &&
                    batch->children[1]->null_count == 300);
    // Where the datatype needs a field, the fault of the row says so.
    Held<ArrowSchema> schema;
    columns.writeSchema(schema);
    Given whole("z", {
                         Bytes{1, 0, 2, 0}
    });
    first = 0;
    decoded.clear();
    ASSERT_EQ(columns.decode(whole.schema, whole.array, first, decoded), std::nullopt);
    ArrowSchema* const value = schema.children[0];
    value->children[1]->format = "n";
    ASSERT_EQ(columns.encode(*value, *decoded.children[0], part, encodedPart), std::nullopt);
    EXPECT_THAT(cellOf(*encodedPart.children[1], 0), testing::Optional(testing::HasSubstr("B")));
}

TEST(ColumnsTest, RefusesWrongBuffers)
{
    const omt::Columns columns(smallCodec().type("Two"));
    struct Case
    {
        const char* what;
        void (*spoil)(Given&);
    };
    const Case cases[] = {
        {"released",             [](Given& one) { one.array.release = nullptr; }   },
        {"of numbers",           [](Given& one) { one.schema.format = "l"; }       },
        {"too few buffers",      [](Given& one) { one.array.n_buffers = 2; }       },
        {"no offsets",           [](Given& one) { one.array.buffers[1] = nullptr; }},
        {"no data",              [](Given& one) { one.array.buffers[2] = nullptr; }},
        {"a negative length",    [](Given& one) { one.array.length = -1; }         },
        {"an offset that falls", [](Given& one) { one.offsets[15] = 0xFF; }        },
        {"a negative offset",    [](Given& one) { one.offsets[11] = 0xFF; }        },
        {"the least offset",     [](Given& one) { one.offsets[11] = 0x80; }        },
    };
    for (const Case& one : cases)
    {
        Given given("z", {Bytes(8), Bytes(8)});
        one.spoil(given);
        std::size_t first = 0;
        ArrowArray batch{};
        EXPECT_NE(columns.decode(given.schema, given.array, first, batch), std::nullopt)
            << one.what;
        EXPECT_EQ(batch.release, nullptr) << one.what;
        EXPECT_NE(columns.encode(given.schema, given.array, first, batch), std::nullopt)
            << one.what;
    }
}

}  // namespace
