// SPDX-License-Identifier: Apache-2.0
// Values of libomt beside code written by hand for their layouts: six layouts, and for each what
// decoding, one field, encoding, and JSON both ways take; compiling; growth; allocations.
#include "handWritten.h"
#include "modelFiles.h"
#include "omt/columns/columns.h"
#include "omt/omt.h"
#include "randomValues.h"
#include "ratio.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <deque>
#include <fstream>
#include <iterator>

namespace
{

using ratios::Maker;
using ratios::rpr;
using ratios::rprCodec;
using ratios::secondsOf;
using ratios::theRPR;
using Buffer = std::vector<std::uint8_t>;

// One thread measures; nothing is added by two at a time.
std::atomic<std::size_t> theRequests = 0;

// Calls ------------------------------------------------------------------------------------------

void tell(omt::ValueWriter& writer, const byHand::Position& value)
{
    writer.number(value.x);
    writer.number(value.y);
    writer.number(value.z);
}

void tell(omt::ValueWriter& writer, const byHand::Vector& value)
{
    writer.number(value.x);
    writer.number(value.y);
    writer.number(value.z);
}

void tell(omt::ValueWriter& writer, const byHand::Spatial& value)
{
    writer.integer(value.algorithm);
    tell(writer, value.location);
    writer.integer(value.isFrozen);
    tell(writer, value.orientation);
    tell(writer, value.velocity);
    tell(writer, value.acceleration);
    tell(writer, value.angularVelocity);
}

void tell(omt::ValueWriter& writer, const byHand::EntityType& value)
{
    writer.integer(value.kind);
    writer.integer(value.domain);
    writer.integer(value.country);
    writer.integer(value.category);
    writer.integer(value.subcategory);
    writer.integer(value.specific);
    writer.integer(value.extra);
}

void tell(omt::ValueWriter& writer, const byHand::Marking& value)
{
    writer.integer(value.encoding);
    writer.octets({value.data, sizeof value.data});
}

void tell(omt::ValueWriter& writer, const byHand::Parameters& value)
{
    writer.beginArray(value.count);
    for (std::size_t i = 0; i < value.count; ++i)
    {
        const byHand::Parameter& one = value.all[i];
        writer.integer(one.change);
        writer.integer(one.attachedTo);
        writer.integer(one.type);
        if (one.type == byHand::theArticulatedPart)
        {
            writer.integer(one.part);
            writer.integer(one.metric);
            writer.number(one.value);
            continue;
        }
        writer.integer(one.station);
        tell(writer, one.store);
    }
}

void tell(omt::ValueWriter& writer, const byHand::Environment& value)
{
    writer.beginArray(value.count);
    for (std::size_t i = 0; i < value.count; ++i)
    {
        const byHand::Environment::Record& one = value.all[i];
        writer.integer(one.index);
        writer.integer(one.type);
        tell(writer, one.first);
        if (one.type == byHand::theLine) tell(writer, one.second);
        if (one.type != byHand::theSphere) continue;
        writer.number(one.radius);
        writer.octets({one.padding, sizeof one.padding});
    }
}

void tell(omt::ValueWriter& writer, const byHand::Text& value)
{
    writer.text({value.units, value.count});
}

// Values -----------------------------------------------------------------------------------------

constexpr std::size_t theRoom = 8192;

/// Values of one layout in every form. That both sides agree about them is checked here, once.
template <typename Layout>
struct Values
{
    static constexpr std::size_t theCount = 64;

    Values() : type(rprCodec().type(Layout::theType)), field(type.field(Layout::theField))
    {
        Maker maker;
        Buffer room(theRoom);
        std::string text(theRoom, '\0');
        for (std::size_t i = 0; i < theCount; ++i)
        {
            maker.make(structs[i]);
            octets[i].assign(room.data(), structs[i].encode(room.data()));
            json[i].assign(text.data(), structs[i].writeJson(text.data()));
            type.decode(octets[i], values[i]);
            check(i);
        }
    }

    void check(std::size_t i)
    {
        Buffer again;
        Layout decoded{};
        Layout read{};
        double number = 0;
        Buffer byHand(theRoom);
        const bool isRight =
            values[i].isWhole() && values[i].json() == json[i] && !type.encode(json[i], again) &&
            again == octets[i] && decoded.decode(octets[i].data(), octets[i].size()) &&
            read.readJson(json[i]) && Layout::number(octets[i].data(), octets[i].size(), number) &&
            field.number(octets[i]) == number;
        byHand.resize(static_cast<std::size_t>(read.encode(byHand.data()) - byHand.data()));
        Buffer byCalls;
        omt::ValueWriter writer(type);
        tell(writer, read);
        if (isRight && byHand == octets[i] && !writer.finish(byCalls) && byCalls == octets[i])
            return;
        std::fprintf(stderr, "%s: the codec and the code by hand differ:\n%s\n%s\n",
                     Layout::theType, values[i].json().c_str(), json[i].c_str());
        std::exit(1);
    }

    omt::Type type;
    omt::Field field;
    Layout structs[theCount];
    Buffer octets[theCount];
    std::string json[theCount];
    omt::Value values[theCount];
};

template <typename Layout>
Values<Layout>& valuesOf()
{
    static const bool isFilled = (ratios::fillNames(), true);
    static_cast<void>(isFilled);
    static Values<Layout> theValues;
    return theValues;
}

/// Where results go, so that none is left out.
volatile double theSink = 0;

/// The seconds of a number of rounds over all values.
template <typename Layout, typename Call>
double rounds(std::size_t count, Call call)
{
    Values<Layout>& all = valuesOf<Layout>();
    double sum = 0;
    const double seconds = secondsOf(
        [&]
        {
            for (std::size_t round = 0; round < count; ++round)
                for (std::size_t i = 0; i < all.theCount; ++i) sum += call(all, i);
        });
    theSink = sum;
    return seconds;
}

constexpr std::size_t theQuick = 1000;
constexpr std::size_t theSlow = 50;

template <typename Layout>
struct Pieces
{
    using All = Values<Layout>;

    static double decodeByHand()
    {
        static Layout theStruct;
        return rounds<Layout>(theQuick,
                              [](All& all, std::size_t i)
                              {
                                  const Buffer& one = all.octets[i];
                                  return theStruct.decode(one.data(), one.size()) ? 1.0 : 0.0;
                              });
    }
    static double decode()
    {
        static omt::Value theValue;
        return rounds<Layout>(theQuick, [](All& all, std::size_t i)
                              { return all.type.decode(all.octets[i], theValue) ? 1.0 : 0.0; });
    }

    static double fieldByHand()
    {
        return rounds<Layout>(theQuick,
                              [](All& all, std::size_t i)
                              {
                                  const Buffer& one = all.octets[i];
                                  double number = 0;
                                  Layout::number(one.data(), one.size(), number);
                                  return number;
                              });
    }
    static double field()
    {
        return rounds<Layout>(theQuick, [](All& all, std::size_t i)
                              { return all.field.number(all.octets[i]).value_or(0); });
    }

    static double encodeByHand()
    {
        static Buffer theOctets(theRoom);
        return rounds<Layout>(
            theQuick, [](All& all, std::size_t i)
            { return static_cast<double>(*(all.structs[i].encode(theOctets.data()) - 1)); });
    }
    static double encode()
    {
        static Buffer theOctets(theRoom);
        return rounds<Layout>(theQuick,
                              [](All& all, std::size_t i)
                              {
                                  const omt::Octets octets = all.values[i].octets();
                                  std::copy(octets.begin(), octets.end(), theOctets.begin());
                                  return static_cast<double>(theOctets[octets.size() - 1]);
                              });
    }

    /// Every piece by a call.
    static double encodeByCalls()
    {
        static omt::ValueWriter theWriter(valuesOf<Layout>().type);
        return rounds<Layout>(theQuick,
                              [](All& all, std::size_t i)
                              {
                                  omt::Octets octets;
                                  tell(theWriter, all.structs[i]);
                                  if (theWriter.finish(octets)) return 0.0;
                                  return static_cast<double>(octets[octets.size() - 1]);
                              });
    }

    static double jsonByHand()
    {
        static std::string theText(theRoom, '\0');
        return rounds<Layout>(
            theSlow, [](All& all, std::size_t i)
            { return static_cast<double>(*(all.structs[i].writeJson(theText.data()) - 1)); });
    }
    static double json()
    {
        static std::string theText;
        return rounds<Layout>(theSlow,
                              [](All& all, std::size_t i)
                              {
                                  theText.clear();
                                  all.values[i].appendJson(theText);
                                  return static_cast<double>(theText.back());
                              });
    }

    static double fromJsonByHand()
    {
        static Buffer theOctets(theRoom);
        return rounds<Layout>(
            theSlow,
            [](All& all, std::size_t i)
            {
                static Layout theStruct;
                if (!theStruct.readJson(all.json[i])) return 0.0;
                return static_cast<double>(*(theStruct.encode(theOctets.data()) - 1));
            });
    }
    static double fromJson()
    {
        static Buffer theOctets;
        return rounds<Layout>(theSlow,
                              [](All& all, std::size_t i)
                              {
                                  theOctets.clear();
                                  if (all.type.encode(all.json[i], theOctets)) return 0.0;
                                  return static_cast<double>(theOctets.back());
                              });
    }

    /// How often memory is asked for by everything above, once it has grown.
    static double requests()
    {
        const auto once = []
        {
            decode();
            field();
            encode();
            encodeByCalls();
            json();
            fromJson();
        };
        once();
        const std::size_t before = theRequests;
        once();
        return static_cast<double>(theRequests - before);
    }
};

// The whole --------------------------------------------------------------------------------------

double readModel()
{
    std::ifstream file(ratios::modelPath(theRPR), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    return secondsOf(
        [&]
        {
            omt::Findings findings;
            omt::readModule({"model", text}, findings);
        });
}

double compile()
{
    rpr();
    return secondsOf([] { const omt::Codec compiled(rpr()); });
}

constexpr std::size_t theRecords = 1000000;

/// An array of so many records.
template <std::size_t size>
const Buffer& arrayOf()
{
    static const Buffer theOctets = []
    {
        const Values<byHand::Parameters>& all = valuesOf<byHand::Parameters>();
        Buffer octets;
        for (std::size_t i = 0; i < size / 4; ++i)
            octets.insert(octets.end(), all.octets[i % all.theCount].begin(),
                          all.octets[i % all.theCount].end());
        return octets;
    }();
    return theOctets;
}

/// Arrays with a million records in all, each to a value of its own or from this to a text of its
/// own: few touch as much memory as many.
template <std::size_t size, bool isToJson>
double arrays()
{
    constexpr std::size_t theArrays = theRecords / size;
    const Buffer& octets = arrayOf<size>();
    const omt::Type& type = valuesOf<byHand::Parameters>().type;
    static std::vector<omt::Value> theValues(theArrays, type.decode(octets));
    static std::vector<std::string> theTexts(isToJson ? theArrays : 0, theValues[0].json());
    return secondsOf(
        [&]
        {
            for (std::size_t i = 0; i < theArrays; ++i)
            {
                if (!isToJson)
                    type.decode(octets, theValues[i]);
                else
                {
                    theTexts[i].clear();
                    theValues[i].appendJson(theTexts[i]);
                }
            }
        });
}

/// A column of arrays with a million records in all.
template <std::size_t size>
double arrayColumn()
{
    constexpr std::size_t theRows = theRecords / size;
    static const omt::Columns theColumns(valuesOf<byHand::Parameters>().type);
    std::vector<std::int32_t> offsets{0};
    Buffer octets;
    for (std::size_t row = 0; row < theRows; ++row)
    {
        octets.insert(octets.end(), arrayOf<size>().begin(), arrayOf<size>().end());
        offsets.push_back(static_cast<std::int32_t>(octets.size()));
    }
    const void* buffers[] = {nullptr, offsets.data(), octets.data()};
    ArrowSchema schema{};
    schema.format = "z";
    schema.release = [](ArrowSchema*) {};
    ArrowArray array{};
    array.length = static_cast<std::int64_t>(theRows);
    array.n_buffers = 3;
    array.buffers = buffers;
    array.release = [](ArrowArray*) {};
    return secondsOf(
        [&]
        {
            ArrowArray batch{};
            std::size_t first = 0;
            const auto fault = theColumns.decode(schema, array, first, batch);
            if (fault || first != theRows) std::abort();
            batch.release(&batch);
        });
}

double one()
{
    return 1;
}

double requests()
{
    return Pieces<byHand::Spatial>::requests() + Pieces<byHand::EntityType>::requests() +
           Pieces<byHand::Marking>::requests() + Pieces<byHand::Parameters>::requests() +
           Pieces<byHand::Environment>::requests() + Pieces<byHand::Text>::requests();
}

template <typename Layout>
void add(const std::string& layout, std::vector<ratios::Ratio> (&rows)[6])
{
    using P = Pieces<Layout>;
    static std::deque<std::string> theNames;
    const auto name = [&layout](const char* what)
    { return theNames.emplace_back(what + ('_' + layout)).c_str(); };
    rows[0].push_back({name("codec_value"), P::decodeByHand, P::decode, theRPR, "codec_value"});
    rows[1].push_back({name("codec_field"), P::fieldByHand, P::field, theRPR, "codec_field"});
    rows[2].push_back({name("codec_encode"), P::encodeByHand, P::encode, theRPR, "codec_encode"});
    rows[3].push_back({name("codec_json"), P::jsonByHand, P::json, theRPR, "codec_json"});
    rows[4].push_back(
        {name("codec_from_json"), P::fromJsonByHand, P::fromJson, theRPR, "codec_from_json"});
    rows[5].push_back({name("codec_encode_calls"), P::encodeByHand, P::encodeByCalls, theRPR,
                       "codec_encode_calls"});
}

}  // namespace

std::vector<ratios::Ratio> ratios::codecEngineRatios()
{
    std::vector<Ratio> rows[6];
    add<byHand::Spatial>("spatial", rows);
    add<byHand::EntityType>("entity_type", rows);
    add<byHand::Marking>("marking", rows);
    add<byHand::Parameters>("parameters", rows);
    add<byHand::Environment>("environment", rows);
    add<byHand::Text>("text", rows);
    std::vector<Ratio> all{
        {"codec_compile", readModel, compile, theRPR}
    };
    for (const std::vector<Ratio>& some : rows) all.insert(all.end(), some.begin(), some.end());
    constexpr const char* theGrowth = "codec_growth";
    all.push_back(
        {"codec_growth_value", arrays<1000, false>, arrays<theRecords, false>, theRPR, theGrowth});
    all.push_back(
        {"codec_growth_json", arrays<1000, true>, arrays<theRecords, true>, theRPR, theGrowth});
    all.push_back(
        {"codec_growth_columns", arrayColumn<1000>, arrayColumn<theRecords>, theRPR, theGrowth});
    all.push_back({"codec_allocations", one, requests, theRPR});
    return all;
}

// Counts what the program asks for.
void* operator new(std::size_t size)
{
    theRequests.store(theRequests.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    if (void* const memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
