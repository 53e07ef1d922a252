// SPDX-License-Identifier: Apache-2.0
// The laws of codecs on values of published models, before a page that cannot be read, with numbers
// at their edges; HLA 1.3 beside the XML edition.
#include "../../fuzz/codecLaws.h"
#include "../../fuzz/writerLaws.h"
#include "omt/codec/layout.h"
#include "omt/omt.h"
#include "slowCodec.h"
#include "slowCodec13.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <set>

namespace
{

using Bytes = std::vector<std::uint8_t>;

std::string folder()
{
    const char* const name = std::getenv("OMT_MODELS");
    return name ? std::string(name) + '/' : "";
}

/// Memory that ends at a page that cannot be read, and nor can the one before it.
class GuardedMemory
{
public:
    GuardedMemory()
    {
        const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
        mySize = (theLargest / page + 1) * page;
        void* const all =
            ::mmap(nullptr, mySize + 2 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        myStart = static_cast<std::uint8_t*>(all) + page;
        ::mprotect(myStart, mySize, PROT_READ | PROT_WRITE);
    }

    /// A copy that ends where reading ends.
    omt::Octets place(omt::Octets octets)
    {
        EXPECT_LE(octets.size(), mySize);
        std::uint8_t* const at = myStart + mySize - octets.size();
        if (octets.size() > 0) std::memmove(at, octets.data(), octets.size());
        return {at, octets.size()};
    }
    std::string_view place(std::string_view text)
    {
        const omt::Octets placed = place(omt::Octets(text));
        return {reinterpret_cast<const char*>(placed.data()), placed.size()};
    }

private:
    static constexpr std::size_t theLargest = 1 << 20;
    std::uint8_t* myStart;
    std::size_t mySize;
};

/// Places and sizes of the numbers in a value.
void collect(const omt::Item& item, omt::Octets all,
             std::vector<std::pair<std::size_t, std::size_t>>& numbers)
{
    if (item.number())
        numbers.emplace_back(item.octets().data() - all.data(), item.octets().size());
    for (std::size_t i = 0; i < item.size(); ++i)
        if (item[i]) collect(item[i], all, numbers);
}

class Proof
{
public:
    explicit Proof(const omt::Model& model) : myCodec(model), mySlow(model) {}

    const omt::Codec& codec() const { return myCodec; }

    /// A random value of a datatype, and where it is whole the same with each number at its edges,
    /// all of them before a guarded page.
    void run(const std::string& name)
    {
        SCOPED_TRACE(name);
        const omt::Type type = myCodec.type(name);
        const Bytes octets = mySlow.make(name, myRandom);
        const omt::Octets placed = myMemory.place(octets);
        EXPECT_EQ(myLaws.check(type, placed), "");
        const bool isPlain = myLaws.isPlain();
        EXPECT_EQ(myLaws.checkCuts(type, placed, isPlain), "");
        if (isPlain) atEdges(type, octets);
        myWhole += isPlain ? 1 : 0;
        for (std::size_t size = 0; size < octets.size(); size += octets.size() / 100 + 1)
        {
            const omt::Octets cut = myMemory.place({octets.data(), size});
            EXPECT_EQ(myLaws.check(type, cut), "") << "cut at " << size;
        }
        EXPECT_EQ(myLaws.checkText(type, myMemory.place(type.decode(octets).json())), "");
    }

    std::size_t whole() const { return myWhole; }

private:
    // Zeros, ones, the least and the largest, and numbers that are none; where one of them is a
    // count or chooses an alternative, the value may be another or none.
    void atEdges(const omt::Type& type, const Bytes& octets)
    {
        constexpr std::uint8_t theEdges[][2] = {
            {0x00, 0x00},
            {0xFF, 0xFF},
            {0x7F, 0xFF},
            {0x80, 0x00},
            {0x7F, 0xF0},
            {0xFF, 0x80}
        };
        std::vector<std::pair<std::size_t, std::size_t>> numbers;
        const omt::Value value = type.decode(octets);
        collect(value.root(), value.octets(), numbers);
        const std::size_t step = numbers.size() / 40 + 1;
        for (std::size_t i = 0; i < numbers.size(); i += step)
            for (const auto& [first, others] : theEdges)
            {
                Bytes edge = octets;
                std::memset(edge.data() + numbers[i].first, others, numbers[i].second);
                edge[numbers[i].first] = first;
                EXPECT_EQ(myLaws.check(type, myMemory.place(edge)), "") << numbers[i].first;
            }
    }

    const omt::Codec myCodec;
    SlowCodec mySlow;
    CodecLaws myLaws;
    GuardedMemory myMemory;
    std::mt19937_64 myRandom{15162};
    std::size_t myWhole = 0;
};

TEST(CodecLawsTest, HoldForAllMembersOfThePublishedModel)
{
    if (folder().empty()) GTEST_SKIP() << "OMT_MODELS is not set";
    const std::vector<std::string> files = {folder() + "evolved/RPR_FOM_v2.0_1516-2010.xml"};
    const omt::Model alone = omt::read(files).model;
    const omt::Model model = omt::read(files, omt::ReadOptions().withMim()).model;
    Proof proof(model);
    std::size_t members = 0;
    std::set<std::string> types;
    const auto add = [&](const std::string& owner, const omt::Member& member, bool isAttribute)
    {
        ++members;
        const std::string path = owner + '.' + member.name.str();
        const std::optional<omt::Type> type =
            isAttribute ? proof.codec().findAttribute(path) : proof.codec().findParameter(path);
        ASSERT_TRUE(type) << path;
        EXPECT_EQ(type->name(), member.dataType.view());
        types.insert(member.dataType.str());
    };
    for (const omt::ObjectClass& one : alone.objectClasses())
        for (const omt::Attribute& each : one.attributes) add(alone.fullName(one), each, true);
    for (const omt::InteractionClass& one : alone.interactionClasses())
        for (const omt::Parameter& each : one.parameters) add(alone.fullName(one), each, false);
    EXPECT_EQ(members, 588u);
    for (const std::string& type : types) proof.run(type);
    EXPECT_EQ(proof.whole(), types.size());
}

TEST(CodecLawsTest, HoldForAllDatatypesOfPublishedModels)
{
    if (folder().empty()) GTEST_SKIP() << "OMT_MODELS is not set";
    const std::vector<std::string> sets[] = {
        {folder() + "evolved/RPR_FOM_v2.0_1516-2010.xml"},
        {folder() + "2025/RestaurantFOMmodule-2025.xml",
         folder() + "2025/RestaurantExtensionFOMmodule-2025.xml"}
    };
    for (const std::vector<std::string>& files : sets)
    {
        const omt::Model model = omt::read(files, omt::ReadOptions().withMim()).model;
        Proof proof(model);
        const auto run = [&proof](const auto& table)
        {
            for (const auto& data : table) proof.run(data.name.str());
        };
        const omt::Tables& tables = model.tables();
        run(tables.basicData), run(tables.arrayData), run(tables.fixedRecords);
        run(tables.variantRecords);
    }
}

TEST(CodecLawsTest, AgreesWithASlowDecoderOfHla13)
{
    if (folder().empty()) GTEST_SKIP() << "OMT_MODELS is not set";
    const omt::Model model = omt::read({folder() + "hla13/RPR2-D17.omd"}).model;
    omt::CodecOptions options;
    options.hasBuiltInHints = false;
    const omt::Codec codec(model, options);
    SlowCodec13 slow(model);
    std::mt19937_64 random(1998);
    std::size_t whole = 0;
    for (const omt::ComplexRecord& data : model.tables().complexRecords)
        for (int i = 0; i < 60; ++i)
        {
            // Small and printable octets: counts that fit, no NaN, nothing to escape.
            Bytes octets(random() % 120);
            for (std::uint8_t& octet : octets)
                octet = static_cast<std::uint8_t>(random() % 3 != 0 ? random() % 4
                                                                    : 'A' + random() % 26);
            std::size_t left = 0;
            const std::string json = slow.decode(data.name.str(), octets, left);
            const omt::Value value = codec.type(data.name).decode(octets);
            EXPECT_EQ(value.fault() ? "" : value.json(), json) << data.name;
            EXPECT_TRUE(value.fault() || value.left() == left) << data.name;
            const bool isPlain = value.isWhole() && value.notes().empty();
            EXPECT_EQ(isPlain ? checkWriting(codec.type(data.name), value, json) : "", "")
                << data.name;
            whole += json.empty() ? 0 : 1;
        }
    EXPECT_GE(whole, 1000u);
}

// Where two editions say the same, they mean the same octets.
TEST(CodecLawsTest, EditionsAgreeWhereLayoutsDo)
{
    if (folder().empty()) GTEST_SKIP() << "OMT_MODELS is not set";
    const omt::Model xml =
        omt::read({folder() + "x2000/RPR2-D17.xml"}, omt::ReadOptions().withMim()).model;
    const omt::Codec newer(xml);
    const omt::Codec older(omt::read({folder() + "hla13/RPR2-D17.omd"}).model);
    const auto placesOf = [](const omt::Type& type)
    {
        std::string all;
        for (const omt::LayoutRow& row : omt::layout(type))
            all += row.name + ' ' + row.kind + ' ' + std::to_string(row.offset.value_or(9999)) +
                   ' ' + std::to_string(row.leastSize) + ' ' +
                   std::to_string(row.greatestSize.value_or(9999)) + '\n';
        return all;
    };
    SlowCodec slow(xml);
    std::mt19937_64 random(13);
    std::size_t same = 0;
    for (const omt::FixedRecord& record : xml.tables().fixedRecords)
    {
        const std::optional<omt::Type> one = newer.findType(record.name);
        const std::optional<omt::Type> two = older.findType(record.name);
        if (!one || !two || placesOf(*one) != placesOf(*two)) continue;
        ++same;
        for (int i = 0; i < 20; ++i)
        {
            // Enumerations have signs in one edition only.
            Bytes octets = slow.make(record.name.str(), random);
            for (std::uint8_t& octet : octets) octet = octet & 0x7F;
            const omt::Value value = two->decode(octets);
            EXPECT_EQ(one->decode(octets).json(), value.json()) << record.name;
            Bytes again;
            EXPECT_FALSE(two->encode(value.json(), again)) << record.name;
            EXPECT_EQ(again, octets) << record.name;
        }
    }
    EXPECT_GE(same, 30u);
}

}  // namespace
