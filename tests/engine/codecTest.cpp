// SPDX-License-Identifier: Apache-2.0
// The codec beside a slow one over random values of published models, and values that the standard
// or the RPR FOM give.
#include "omt/codec/jsonFloats.h"
#include "omt/omt.h"
#include "slowCodec.h"

#include <gmock/gmock.h>

#include <atomic>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <new>
#include <random>
#include <sstream>

namespace
{

std::atomic<std::size_t> theAllocations = 0;

using Bytes = std::vector<std::uint8_t>;

Bytes bytes(std::string_view text)
{
    Bytes all;
    std::string digits;
    for (const char letter : text)
        if (letter != ' ') digits += letter;
    for (std::size_t i = 0; i < digits.size(); i += 2)
        all.push_back(static_cast<std::uint8_t>(std::stoul(digits.substr(i, 2), nullptr, 16)));
    return all;
}

/// Reads published models; nothing where the folder is not given.
std::optional<omt::Model> published(const std::string& files)
{
    const char* const folder = std::getenv("OMT_MODELS");
    if (!folder) return std::nullopt;
    std::vector<std::string> paths;
    std::istringstream all(files);
    for (std::string file; all >> file;) paths.push_back(std::string(folder) + '/' + file);
    return omt::read(paths, omt::ReadOptions().withMim()).model;
}

std::string printed(const std::optional<omt::Fault>& fault)
{
    if (!fault) return "";
    return fault->path + " at " + std::to_string(fault->offset) + " needs " +
           std::to_string(fault->needed) + " has " + std::to_string(fault->left);
}

std::string printed(const SlowValue& value)
{
    if (!value.isFaulty) return "";
    return value.path + " at " + std::to_string(value.offset) + " needs " +
           std::to_string(value.needed) + " has " + std::to_string(value.left);
}

/// Collects what a visitor is told in the form of JSON, numbers and names only.
struct Leaves : omt::Visitor
{
    void integer(std::int64_t number, bool isUnsigned) override
    {
        all += isUnsigned ? std::to_string(static_cast<std::uint64_t>(number))
                          : std::to_string(number);
        all += ';';
    }
    void label(std::string_view name, std::int64_t) override { all += std::string(name) + ';'; }
    void number(double number) override { all += std::to_string(number) + ';'; }
    std::string all;
};

/// The same by items, and each number by its path and by a Field.
void collect(const omt::Type& type, const omt::Item& item, const std::string& path,
             const Bytes& octets, std::string& all, std::vector<std::string>& paths)
{
    if (item.kind() == omt::ValueKind::number || item.kind() == omt::ValueKind::enumerated)
    {
        const omt::Field field = type.field(path);
        paths.push_back(path);
        if (item.label())
            all += std::string(*item.label()) + ';';
        else if (item.integer())
            item.appendJson(all), all += ";";
        else
            all += std::to_string(*item.number()) + ';';
        EXPECT_EQ(field.octets(octets)->data() - octets.data(),
                  item.octets().data() - octets.data())
            << path;
        return;
    }
    if (item.kind() == omt::ValueKind::text || item.kind() == omt::ValueKind::octets) return;
    for (std::size_t i = 0; i < item.size(); ++i)
    {
        const std::string name(item.name(i));
        const std::string step = name.empty()   ? '[' + std::to_string(i) + ']'
                                 : path.empty() ? name
                                                : '.' + name;
        collect(type, item[i], path + step, octets, all, paths);
    }
}

class Agreement
{
public:
    /// A long run has many values of each datatype, numbers too, and cuts at each octet.
    Agreement(const omt::Model& model, bool isLong)
        : myModel(model), myCodec(model), mySlow(model), myIsLong(isLong)
    {
    }

    void run(std::size_t count)
    {
        for (const auto& name : names())
        {
            const omt::Type type = myCodec.type(name);
            for (std::size_t i = 0; i < count && !testing::Test::HasFailure(); ++i)
            {
                const Bytes whole = mySlow.make(name, myRandom);
                myPaths.clear();
                compare(type, whole);
                roundTrip(type, whole);
                garble(type, whole);
            }
        }
    }

private:
    std::vector<std::string> names() const
    {
        std::vector<std::string> all;
        const auto add = [&all](const auto& table)
        {
            for (const auto& data : table) all.push_back(data.name.str());
        };
        const omt::Tables& tables = myModel.tables();
        if (myIsLong) add(tables.basicData), add(tables.simpleData), add(tables.enumeratedData);
        add(tables.arrayData), add(tables.fixedRecords), add(tables.variantRecords);
        return all;
    }

    void compare(const omt::Type& type, const Bytes& octets)
    {
        const std::string name(type.name());
        const SlowValue slow = mySlow.decode(name, octets);
        type.decodeInPlace(octets, myValue);
        std::string json = myValue.json();
        EXPECT_EQ(json, slow.json) << name;
        EXPECT_EQ(printed(myValue.fault()), printed(slow)) << name;
        EXPECT_EQ(myValue.octets().size(), slow.octets) << name;
        EXPECT_EQ(!myValue.notes().empty() && !slow.isFaulty, slow.hasNotes) << name;
        compareFields(type, octets);
        if (!testing::Test::HasFailure()) return;
        std::string dump;
        char two[4];
        for (const std::uint8_t one : octets) dump += (std::snprintf(two, 4, "%02x ", one), two);
        FAIL() << dump;
    }

    // A field is where the item is, and nowhere if a fault stands before its end.
    void compareFields(const omt::Type& type, const Bytes& octets)
    {
        constexpr std::size_t theMost = 12;
        for (std::size_t i = 0; i < myPaths.size(); i += myPaths.size() / theMost + 1)
        {
            const omt::Item item = myValue[myPaths[i]];
            const omt::Field field = type.field(myPaths[i]);
            const auto place = field.octets(octets);
            const bool isThere = item && item.octets().size() == item.type().size();
            EXPECT_EQ(place.has_value(), isThere) << type.name() << ' ' << myPaths[i];
            EXPECT_TRUE(!place || !isThere || place->data() == item.octets().data()) << myPaths[i];
            const omt::Item there = isThere ? item : omt::Item();
            EXPECT_EQ(field.integer(octets), there.integer()) << type.name() << ' ' << myPaths[i];
            EXPECT_EQ(std::to_string(field.number(octets).value_or(-0.5)),
                      std::to_string(there.number().value_or(-0.5)));
            Bytes again = octets;
            const double number = there.number().value_or(-0.5);
            EXPECT_TRUE(!(std::abs(number) < 0x1p53) ||
                        !field.write(again.data(), again.size(), number) ||
                        (there && again == octets))
                << type.name() << ' ' << myPaths[i];
        }
    }

    // What decodes without a note encodes to the same octets.
    void roundTrip(const omt::Type& type, const Bytes& octets)
    {
        type.decode(octets, myValue);
        if (!myValue.isWhole() || !myValue.notes().empty()) return;
        const std::string name(type.name());
        Bytes again;
        const auto error = type.encode(myValue.json(), again);
        EXPECT_FALSE(error) << name << ' ' << *error << myValue.json();
        EXPECT_TRUE(error || again == octets) << name << myValue.json();
        if (octets.size() > 400 || !myValue.root()) return;
        Leaves leaves;
        myValue.visit(leaves);
        std::string items;
        type.decodeInPlace(octets, myValue);
        myPaths.clear();
        collect(type, myValue.root(), "", octets, items, myPaths);
        EXPECT_EQ(leaves.all, items) << name;
    }

    void garble(const omt::Type& type, const Bytes& whole)
    {
        const std::size_t step = whole.size() / (myIsLong ? 1000 : 12) + 1;
        for (std::size_t size = 0; size < whole.size() && !testing::Test::HasFailure();
             size += step)
            compare(type, Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
        for (int i = 0; i < 8 && !whole.empty() && !testing::Test::HasFailure(); ++i)
        {
            Bytes other = whole;
            for (int j = 0; j <= i / 3; ++j)
                other[myRandom() % std::min<std::size_t>(other.size(), 40)] =
                    static_cast<std::uint8_t>(i % 2 == 0 ? myRandom() : myRandom() % 9);
            if (i == 7) other.insert(other.end(), 1 + myRandom() % 8, 0);
            compare(type, other);
        }
    }

    const omt::Model& myModel;
    const omt::Codec myCodec;
    SlowCodec mySlow;
    const bool myIsLong;
    omt::Value myValue;
    /// Of the numbers of the last whole value.
    std::vector<std::string> myPaths;
    std::mt19937_64 myRandom{20100818};
};

TEST(CodecTest, AgreesWithASlowDecoder)
{
    if (!std::getenv("OMT_MODELS")) GTEST_SKIP() << "OMT_MODELS is not set";
    const char* const count = std::getenv("OMT_CODEC_VALUES");
    // Files of a set are joined by blanks.
    const char* const sets[] = {
        "evolved/RPR_FOM_v2.0_1516-2010.xml",
        "evolved/RestaurantFOMmodule.xml",
        "x2000/RPR2-D17.xml",
        "2025/HLAstandardMIM-2025.xml",
        "2025/RestaurantFOMmodule-2025.xml 2025/RestaurantExtensionFOMmodule-2025.xml",
        "evolved/RPR-Foundation_v2.0.xml evolved/RPR-Enumerations_v2.0.xml "
        "evolved/RPR-Base_v2.0.xml evolved/RPR-SE_v2.0.xml 2025/NETN-BASE.xml 2025/NETN-SMC.xml "
        "2025/NETN-ORG.xml 2025/NETN-ETR.xml 2025/NETN-COM.xml 2025/NETN-SE.xml "
        "2025/NETN-METOC.xml",
    };
    for (const char* const files : sets)
    {
        SCOPED_TRACE(files);
        const omt::Model model = *published(files);
        Agreement(model, count != nullptr).run(count ? std::stoul(count) : 1);
    }
}

TEST(CodecTest, DecodesPublishedValues)
{
    const std::optional<omt::Model> rpr = published("evolved/RPR_FOM_v2.0_1516-2010.xml");
    const std::optional<omt::Model> restaurant = published("evolved/RestaurantFOMmodule.xml");
    if (!rpr) GTEST_SKIP() << "OMT_MODELS is not set";
    struct Case
    {
        const char* member;
        const char* octets;
        const char* json;
        const char* fault;
    };
    const Case cases[] = {
        {"BaseEntity.IsPartOf",
         "00 01 00 02 00 03 48 4c 41 34 32 00 00 03 00 02 00 02 00 00 00 10 00 00 3f c0 00 00 c0 "
         "00 00 00 3f 00 00 00",                                      "{\"HostEntityIdentifier\":{\"FederateIdentifier\":{\"SiteID\":1,\"ApplicationID\":2},"
         "\"EntityNumber\":3},\"HostRTIObjectIdentifier\":\"HLA42\",\"Relationship\":{\"Nature\":"
         "\"FuelCarriedAsCargo\",\"Position\":\"Inside\"},\"NamedLocation\":{"
         "\"StationNumber\":2,\"StationName\":{\"StationName\":\"OnStationXYZ\","
         "\"RelativeLocation\":{\"BodyXDistance\":1.5,\"BodyYDistance\":-2,\"BodyZDistance\":0.5}}"
         "}}",                                     ""                                         },
        {"SetData.VariableDatumSet",
         "00 00 00 01 00 00 00 00 00 00 27 10 00 00 00 40 00 00 00 01 00 00 00 00 01 02 03 04 05 "
         "06 07 08",                                                  "[{\"DatumID\":\"Entity_Identification\",\"DatumLength\":64,\"DatumValue\":["
         "72623859790382856]}]",                               ""                                         },
 // Two elements to the end, each with as many numbers as one of its fields says.
        {"AggregateEntity.SilentEntities",
         "00 05 00 02 01 02 00 03 04 05 06 07 00 00 00 09 00 00 00 0a 00 01 00 00 01 02 00 03 04 "
         "05 "
         "06 08",                                                     "[{\"NumberOfEntitiesOfThisType\":5,\"NumberOfAppearanceRecords\":2,\"EntityType\":{"
         "\"EntityKind\":1,\"Domain\":2,\"CountryCode\":3,\"Category\":4,\"Subcategory\":5,"
         "\"Specific\":6,\"Extra\":7},\"EntityAppearance\":[9,10]},{"
         "\"NumberOfEntitiesOfThisType\":1,\"NumberOfAppearanceRecords\":0,\"EntityType\":{"
         "\"EntityKind\":1,\"Domain\":2,\"CountryCode\":3,\"Category\":4,\"Subcategory\":5,"
         "\"Specific\":6,\"Extra\":8},\"EntityAppearance\":[]}]", ""                                         },
        {"BaseEntity.Spatial",             "0f 00 00 00",             "",          "DeadReckoningAlgorithm at 0 needs 1 has 4"},
        {"Waiter.Efficiency",              "00 00 00 02 00 00 00 05",
         "{\"ValIndex\":\"Journeyman\",\"Rating\":5}",                             ""                                         },
    };
    for (const Case& one : cases)
    {
        const bool isRpr = std::string_view(one.member).substr(0, 6) != "Waiter";
        const omt::Codec codec(isRpr ? *rpr : *restaurant);
        const Bytes octets = bytes(one.octets);
        const omt::Value value = codec.member(one.member).decode(octets);
        EXPECT_EQ(value.json(), one.json) << one.member;
        EXPECT_EQ(printed(value.fault()), one.fault) << one.member;
        EXPECT_TRUE(value.fault() || value.left() == 0) << one.member;
    }
}

TEST(CodecTest, AllocatesNothingOnceGrown)
{
    const std::optional<omt::Model> rpr = published("evolved/RPR_FOM_v2.0_1516-2010.xml");
    if (!rpr) GTEST_SKIP() << "OMT_MODELS is not set";
    const omt::Codec codec(*rpr);
    SlowCodec slow(*rpr);
    std::mt19937_64 random(1);
    for (const char* const name :
         {"SpatialVariantStruct", "EntityTypeStruct", "EnvironmentRecStruct",
          "VariableDatumStructArray", "SilentEntityStruct", "MarkingStruct", "IsPartOfStruct"})
    {
        const omt::Type type = codec.type(name);
        const Bytes octets = slow.make(name, random);
        omt::Value value;
        std::string json;
        Bytes again;
        // Past an array whose count other fields state, a field indexes the value, which allocates.
        const omt::Value first = type.decode(octets);
        const bool isStated = std::string_view(name) == "SilentEntityStruct";
        const bool isArray = first.root().kind() == omt::ValueKind::array;
        const omt::Field field =
            type.field(isArray ? "[0]" : first.root().name(isStated ? 0 : first.root().size() - 1));
        const auto once = [&]
        {
            type.decode(octets, value);
            json.clear();
            value.appendJson(json);
            static_cast<void>(field.octets(octets));
            again.clear();
            EXPECT_FALSE(type.encode(json, again));
            EXPECT_FALSE(type.read(json, value));
        };
        once();
        once();
        const std::size_t before = theAllocations;
        once();
        EXPECT_EQ(theAllocations - before, 0u) << name;
    }
}

/// The bits of a number, near others of few digits and of few bits, for any exponent.
template <typename Bits>
Bits randomBits(std::mt19937_64& random)
{
    const auto bits = static_cast<Bits>(random());
    return random() % 2 == 0 ? bits : bits & ~Bits{0} << random() % (7 * sizeof bits);
}

template <typename Number, typename Bits>
void expectUsualText(std::mt19937_64& random, double factor)
{
    for (int i = 0; i < 100000; ++i)
    {
        // Every other one of the size that values mostly have.
        const auto any = std::bit_cast<Number>(randomBits<Bits>(random));
        const auto usual =
            static_cast<Number>(std::ldexp(random() % 1000000, i % 40 - 30) * factor);
        const Number number = i % 2 == 0 ? any : usual;
        if (!std::isfinite(number)) continue;
        char text[omt::theShortestRoom];
        char expected[omt::theShortestRoom];
        const std::string_view shown(text, omt::writeShortest(text, number));
        ASSERT_EQ(shown, std::string_view(expected,
                                          std::to_chars(expected, std::end(expected), number).ptr));
    }
}

TEST(CodecTest, NumbersHaveTheShortestText)
{
    std::mt19937_64 random(7);
    for (const double factor : {1.0, -1.0, 0.1, 1e-3, 3.7})
    {
        expectUsualText<double, std::uint64_t>(random, factor);
        expectUsualText<float, std::uint32_t>(random, factor);
    }
}

}  // namespace

// Counts what the program asks for.
void* operator new(std::size_t size)
{
    ++theAllocations;
    if (void* const memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    ++theAllocations;
    return std::malloc(size);
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
