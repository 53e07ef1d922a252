// SPDX-License-Identifier: Apache-2.0
// Columns of 100,000 values into Arrow arrays beside loops by hand that go row by row, decode a
// value and put what it holds into the same columns.
#include "omt/columns/columns.h"

#include "handWritten.h"
#include "modelFiles.h"
#include "omt/omt.h"
#include "randomValues.h"
#include "ratio.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

namespace
{

using ratios::Maker;
using ratios::rprCodec;
using ratios::theRPR;

constexpr std::size_t theRows = 100000;

// Values -----------------------------------------------------------------------------------------

/// A column of random values of a layout.
template <typename Layout>
struct Given
{
    Given()
    {
        Maker maker;
        Layout one{};
        std::uint8_t room[8192];
        for (std::size_t i = 0; i < theRows; ++i)
        {
            maker.make(one);
            octets.insert(octets.end(), room, one.encode(room));
            offsets.push_back(static_cast<std::int32_t>(octets.size()));
        }
        schema.format = "z";
        schema.release = [](ArrowSchema*) {};
        array.length = static_cast<std::int64_t>(theRows);
        array.n_buffers = 3;
        array.buffers = buffers;
        array.release = [](ArrowArray*) {};
        buffers[1] = offsets.data();
        buffers[2] = octets.data();
    }
    Given(const Given&) = delete;
    Given& operator=(const Given&) = delete;

    std::vector<std::uint8_t> octets;
    std::vector<std::int32_t> offsets{0};
    const void* buffers[3] = {};
    ArrowSchema schema{};
    ArrowArray array{};
};

template <typename Layout>
const Given<Layout>& given()
{
    static const Given<Layout> theGiven;
    return theGiven;
}

// By hand ----------------------------------------------------------------------------------------

/// A column, filled from the first row on.
template <typename Number>
struct Filled
{
    explicit Filled(std::size_t rows)
        : data(static_cast<Number*>(std::malloc(rows * sizeof(Number))))
    {
    }
    Filled(const Filled&) = delete;
    Filled& operator=(const Filled&) = delete;
    ~Filled() { std::free(data); }
    void add(Number number) { data[count++] = number; }

    Number* data;
    std::size_t count = 0;
};

using Octet = Filled<std::uint8_t>;
using Label = Filled<std::int32_t>;

/// From numbers to places in a table of labels.
class Places
{
public:
    explicit Places(const char* datatype)
    {
        const omt::Type type = rprCodec().type(datatype);
        for (std::uint32_t number = 0; number < 0x100000; ++number)
        {
            const std::uint8_t octets[] = {0, static_cast<std::uint8_t>(number >> 16),
                                           static_cast<std::uint8_t>(number >> 8),
                                           static_cast<std::uint8_t>(number)};
            const std::size_t size = *type.size();
            if (size == 1 && number > 255) break;
            const omt::Value value = type.decode(omt::Octets(octets + 4 - size, size));
            if (!value.root().label()) continue;
            if (number < std::size(myDense)) myDense[number] = myCount;
            mySparse.emplace(number, myCount++);
        }
    }
    std::int32_t operator[](std::uint32_t number) const
    {
        if (number < std::size(myDense)) return myDense[number];
        const auto place = mySparse.find(number);
        return place == mySparse.end() ? -1 : place->second;
    }

private:
    std::int32_t myCount = 0;
    std::int32_t myDense[256] = {};
    std::unordered_map<std::uint32_t, std::int32_t> mySparse;
};

struct Validity
{
    explicit Validity(std::size_t rows) : bits(rows / 8 + 1)
    {
        std::memset(bits.data, 0, rows / 8 + 1);
    }
    void set(std::size_t row)
    {
        bits.data[row / 8] = static_cast<std::uint8_t>(bits.data[row / 8] | 1U << row % 8);
    }
    Octet bits;
};

template <std::size_t count, typename Number>
struct Several
{
    explicit Several(std::size_t rows)
    {
        for (auto& one : all) one = std::make_unique<Filled<Number>>(rows);
    }
    void add(const byHand::Vector& one, std::size_t at)
    {
        all[at]->add(one.x), all[at + 1]->add(one.y), all[at + 2]->add(one.z);
    }
    void add(const byHand::Position& one, std::size_t at)
    {
        all[at]->add(one.x), all[at + 1]->add(one.y), all[at + 2]->add(one.z);
    }
    std::unique_ptr<Filled<Number>> all[count];
};

template <typename Layout>
struct Columns;

template <>
struct Columns<byHand::Spatial>
{
    void add(const byHand::Spatial& one, std::size_t row)
    {
        static const Places theAlgorithms("DeadReckoningAlgorithmEnum8"), theFlags("RPRboolean");
        algorithm.add(theAlgorithms[one.algorithm]);
        alternative.set(row);
        frozen.add(theFlags[one.isFrozen]);
        location.add(one.location, 0);
        vectors.add(one.orientation, 0);
        vectors.add(one.velocity, 3);
        vectors.add(one.acceleration, 6);
        vectors.add(one.angularVelocity, 9);
    }
    Label algorithm{theRows}, frozen{theRows};
    Validity alternative{theRows};
    Several<3, double> location{theRows};
    Several<12, float> vectors{theRows};
};

template <>
struct Columns<byHand::EntityType>
{
    explicit Columns(std::size_t rows = theRows)
        : kind(rows),
          domain(rows),
          category(rows),
          subcategory(rows),
          specific(rows),
          extra(rows),
          country(rows)
    {
    }
    void add(const byHand::EntityType& one, std::size_t)
    {
        kind.add(one.kind);
        domain.add(one.domain);
        country.add(one.country);
        category.add(one.category);
        subcategory.add(one.subcategory);
        specific.add(one.specific);
        extra.add(one.extra);
    }
    Octet kind, domain, category, subcategory, specific, extra;
    Filled<std::uint16_t> country;
};

/// Adds a character of Latin-1, or of up to U+07FF, in UTF-8, as columns of texts have to have it.
std::uint8_t* addCharacter(std::uint8_t* to, unsigned code)
{
    if (code < 0x80)
        *to++ = static_cast<std::uint8_t>(code);
    else
    {
        *to++ = static_cast<std::uint8_t>(0xC0 | code >> 6);
        *to++ = static_cast<std::uint8_t>(0x80 | (code & 0x3F));
    }
    return to;
}

template <>
struct Columns<byHand::Marking>
{
    void add(const byHand::Marking& one, std::size_t)
    {
        static const Places theEncodings("MarkingEncodingEnum8");
        encoding.add(theEncodings[one.encoding]);
        std::uint8_t* to = letters.data + letters.count;
        for (const std::uint8_t letter : one.data)
        {
            if (letter == 0) break;
            to = addCharacter(to, letter);
        }
        letters.count = static_cast<std::size_t>(to - letters.data);
        ends.add(static_cast<std::int32_t>(letters.count));
    }
    Label encoding{theRows};
    Octet letters{theRows * 22};
    Label ends{theRows + 1};
};

template <>
struct Columns<byHand::Parameters>
{
    static constexpr std::size_t theParts = 4 * theRows;
    void add(const byHand::Parameters& all, std::size_t)
    {
        static const Places theTypes("ParameterTypeEnum32"),
            theClasses("ArticulatedPartsTypeEnum32"), theMetrics("ArticulatedTypeMetricEnum32"),
            theStations("StationEnum32");
        for (std::size_t i = 0; i < all.count; ++i)
        {
            const byHand::Parameter& one = all.all[i];
            const std::size_t row = change.count;
            change.add(one.change);
            attachedTo.add(one.attachedTo);
            type.add(theTypes[one.type]);
            const bool isPart = one.type == 0;
            (isPart ? isArticulated : isAttached).set(row);
            part.add(isPart ? theClasses[one.part] : 0);
            metric.add(isPart ? theMetrics[one.metric] : 0);
            value.add(isPart ? one.value : 0);
            station.add(isPart ? 0 : theStations[one.station]);
            store.add(isPart ? byHand::EntityType{} : one.store, row);
        }
        ends.add(static_cast<std::int32_t>(change.count));
    }
    Label ends{theRows + 1}, type{theParts}, part{theParts}, metric{theParts}, station{theParts};
    Octet change{theParts};
    Filled<std::uint16_t> attachedTo{theParts};
    Validity isArticulated{theParts}, isAttached{theParts};
    Filled<float> value{theParts};
    Columns<byHand::EntityType> store{theParts};
};

template <>
struct Columns<byHand::Environment>
{
    static constexpr std::size_t theRecords = 3 * theRows;
    void add(const byHand::Environment& all, std::size_t)
    {
        static const Places theTypes("EnvironmentRecordTypeEnum32");
        for (std::size_t i = 0; i < all.count; ++i)
        {
            const byHand::Environment::Record& one = all.all[i];
            const std::size_t row = index.count;
            const bool isPoint = one.type == 655360, isLine = one.type == 786432;
            const bool isSphere = !isPoint && !isLine;
            index.add(one.index);
            type.add(theTypes[one.type]);
            (isPoint ? hasPoint : isLine ? hasLine : hasSphere).set(row);
            positions.add(isPoint ? one.first : byHand::Position{}, 0);
            positions.add(isLine ? one.first : byHand::Position{}, 3);
            positions.add(isLine ? one.second : byHand::Position{}, 6);
            positions.add(isSphere ? one.first : byHand::Position{}, 9);
            radius.add(isSphere ? one.radius : 0);
            for (const std::uint8_t octet : one.padding)
                if (isSphere) padding.add(octet);
            paddingEnds.add(static_cast<std::int32_t>(padding.count));
        }
        ends.add(static_cast<std::int32_t>(index.count));
    }
    Label ends{theRows + 1}, type{theRecords}, paddingEnds{theRecords + 1};
    Filled<std::uint32_t> index{theRecords};
    Validity hasPoint{theRecords}, hasLine{theRecords}, hasSphere{theRecords};
    Several<12, double> positions{theRecords};
    Filled<float> radius{theRecords};
    Octet padding{theRecords * 4};
};

template <>
struct Columns<byHand::Text>
{
    void add(const byHand::Text& one, std::size_t)
    {
        std::uint8_t* to = letters.data + letters.count;
        // None here takes more than two octets.
        for (std::size_t i = 0; i < one.count; ++i) to = addCharacter(to, one.units[i]);
        letters.count = static_cast<std::size_t>(to - letters.data);
        ends.add(static_cast<std::int32_t>(letters.count));
    }
    Octet letters{theRows * 40};
    Label ends{theRows + 1};
};

// Both -------------------------------------------------------------------------------------------

template <typename Layout>
double byHandSeconds()
{
    const Given<Layout>& all = given<Layout>();
    Columns<Layout>().add(Layout{}, 0);
    return ratios::secondsOf(
        [&]
        {
            Columns<Layout> columns;
            Validity valid(theRows);
            Layout one{};
            for (std::size_t i = 0; i < theRows; ++i)
            {
                const std::uint8_t* const first = all.octets.data() + all.offsets[i];
                if (!one.decode(first,
                                static_cast<std::size_t>(all.offsets[i + 1] - all.offsets[i])))
                    std::exit(1);
                valid.set(i);
                columns.add(one, i);
            }
        });
}

template <typename Layout>
double seconds()
{
    static const omt::Columns columns(rprCodec().type(Layout::theType));
    const Given<Layout>& all = given<Layout>();
    return ratios::secondsOf(
        [&]
        {
            ArrowArray batch{};
            std::size_t first = 0;
            const auto fault = columns.decode(all.schema, all.array, first, batch);
            if (fault || first != theRows || batch.children[1]->null_count != batch.length)
            {
                std::fprintf(stderr, "%s: the columns have faults\n", Layout::theType);
                std::exit(1);
            }
            batch.release(&batch);
        });
}

template <typename Layout>
void add(const char* name, std::vector<ratios::Ratio>& rows)
{
    rows.push_back({name, byHandSeconds<Layout>, seconds<Layout>, theRPR, "codec_columns"});
}

}  // namespace

std::vector<ratios::Ratio> ratios::columnsRatios()
{
    std::vector<Ratio> rows;
    add<byHand::Spatial>("codec_columns_spatial", rows);
    add<byHand::EntityType>("codec_columns_entity_type", rows);
    add<byHand::Marking>("codec_columns_marking", rows);
    add<byHand::Parameters>("codec_columns_parameters", rows);
    add<byHand::Environment>("codec_columns_environment", rows);
    add<byHand::Text>("codec_columns_text", rows);
    return rows;
}
