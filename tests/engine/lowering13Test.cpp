// SPDX-License-Identifier: Apache-2.0
// What becomes of HLA 1.3 in 1516: octets mean the same before and after.
#include "omt/codec/codec.h"
#include "omt/model/read.h"
#include "omt/model/write.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <set>

namespace
{

using Json = nlohmann::json;

/// A model of HLA 1.3 with one complex datatype for each form.
constexpr const char* theModel = R"omd((ObjectModel (Name "Forms")
 (EnumeratedDataType (Name "KindEnum8")
  (Enumeration (Enumerator "Brief") (Representation 1))
  (Enumeration (Enumerator "Full/Long") (Representation 2)))
 (ComplexDataType (Name "Aligned")
  (ComplexComponent (FieldName "A") (DataType "double") (Cardinality "1") (Units "m"))
  (ComplexComponent (FieldName "B") (DataType "long") (Cardinality "2"))
  (ComplexComponent (FieldName "C") (DataType "boolean") (Cardinality "1")))
 (ComplexDataType (Name "Unaligned")
  (ComplexComponent (FieldName "A") (DataType "octet") (Cardinality "1"))
  (ComplexComponent (FieldName "B") (DataType "float") (Cardinality "1"))
  (ComplexComponent (FieldName "C") (DataType "char") (Cardinality "2")))
 (ComplexDataType (Name "Counted")
  (ComplexComponent (FieldName "Count") (DataType "octet") (Cardinality "1"))
  (ComplexComponent (FieldName "Pad") (DataType "octet") (Cardinality "1"))
  (ComplexComponent (FieldName "Sizes") (DataType "short") (Cardinality "1+ (Count)"))
  (ComplexComponent (FieldName "Fill") (DataType "octet") (Cardinality "%4"))
  (ComplexComponent (FieldName "End") (DataType "unsigned long") (Cardinality "1")))
 (ComplexDataType (Name "Odd")
  (ComplexComponent (FieldName "A") (DataType "short") (Cardinality "1"))
  (ComplexComponent (FieldName "B") (DataType "octet") (Cardinality "1")))
 (ComplexDataType (Name "OddList")
  (ComplexComponent (FieldName "Items") (DataType "Odd") (Cardinality "0+")))
 (ComplexDataType (Name "Decided")
  (ComplexComponent (FieldName "Kind") (DataType "KindEnum8") (Cardinality "1"))
  (ComplexComponent (FieldName "Padding") (DataType "octet") (Cardinality "3"))
  (ComplexComponent (FieldName "Size") (DataType "long") (Cardinality "0-1 (Kind = Brief)"))
  (ComplexComponent (FieldName "Place") (DataType "Odd") (Cardinality "0-1 (Kind = Full/Long)")))
 (ComplexDataType (Name "Within")
  (ComplexComponent (FieldName "First") (DataType "long") (Cardinality "1"))
  (ComplexComponent (FieldName "Kind") (DataType "KindEnum8") (Cardinality "1"))
  (ComplexComponent (FieldName "Small") (DataType "octet") (Cardinality "0-1 (Kind = Brief)"))
  (ComplexComponent (FieldName "Last") (DataType "char") (Cardinality "1")))
 (ComplexDataType (Name "Apart")
  (ComplexComponent (FieldName "Kind") (DataType "KindEnum8") (Cardinality "1"))
  (ComplexComponent (FieldName "Size") (DataType "long") (Cardinality "0-1 (Kind = Brief)")))
 (Class (ID 1) (Name "Car")
  (Attribute (Name "Speeds") (DataType "float") (Cardinality "0+") (Units "m/s")
   (TransferAccept TA) (DeliveryCategory "best_effort") (MessageOrdering "timestamp")))))omd";

/// Names are compared without what an XML name may not hold; padding, which is no field any more
/// before an alternative, not at all.
void addLeaves(const Json& json, std::vector<std::string>& leaves)
{
    if (json.is_object())
    {
        for (const auto& [key, value] : json.items())
            if (key.substr(0, 7) != "Padding") addLeaves(value, leaves);
    }
    else if (json.is_array())
        for (const Json& each : json) addLeaves(each, leaves);
    else
    {
        std::string leaf = json.is_string() ? json.get<std::string>() : json.dump();
        leaf.erase(std::remove_if(leaf.begin(), leaf.end(),
                                  [](unsigned char c) { return std::isalnum(c) == 0; }),
                   leaf.end());
        leaves.push_back(leaf);
    }
}

std::multiset<std::string> leavesOf(const omt::Value& value)
{
    std::vector<std::string> leaves;
    // The library reads no text with half a surrogate pair.
    const Json json = Json::parse(value.json(), nullptr, false);
    addLeaves(json.is_discarded() ? Json(value.json()) : json, leaves);
    return {leaves.begin(), leaves.end()};
}

/// Any number of octets, small ones mostly, so that enumerators and counts are met.
std::vector<std::uint8_t> randomOctets(std::mt19937_64& random)
{
    std::vector<std::uint8_t> octets(random() % 2 == 0 ? random() % 64 : 256 + random() % 512);
    const std::uint64_t most = random() % 2 == 0 ? 3 : 256;
    for (std::uint8_t& octet : octets)
        octet = static_cast<std::uint8_t>(random() % 3 == 0 ? random() % most : 0);
    return octets;
}

/// The names of the datatypes that have parts.
std::set<std::string> structuresOf(const omt::Model& model)
{
    std::set<std::string> names;
    const auto add = [&names](const auto& table)
    {
        for (const auto& each : table) names.insert(each.name.str());
    };
    add(model.tables().complexRecords);
    add(model.tables().fixedRecords);
    add(model.tables().variantRecords);
    add(model.tables().arrayData);
    return names;
}

/// Compares datatypes of a model with what is written of it; gives how many of them hold octets
/// that they did not hold before.
std::size_t compare(const std::string& text, omt::Edition edition)
{
    omt::Findings ignored;
    const omt::Model before = omt::readModule({"old.omd", text}, ignored);
    const omt::Writing writing = omt::writeXml(before, edition);
    const omt::Model after = omt::readModule({"new.xml", writing.text}, ignored);
    std::set<std::string> octets;
    for (const omt::Finding& finding : writing.findings)
        if (finding.text.find("stay as octets") != std::string::npos)
        {
            const std::size_t begin = finding.text.find("` of `") + 6;
            octets.insert(finding.text.substr(begin, finding.text.find('`', begin) - begin));
        }
    const omt::Codec old(before);
    const omt::Codec now(after);
    EXPECT_LE(now.findings().size(), old.findings().size()) << now.findings().front().text;
    const std::size_t enough = before.edition() == omt::Edition::hla13 ? 200 : 30;
    std::mt19937_64 random(13);
    for (const std::string& name : structuresOf(before))
    {
        std::size_t whole = 0;
        for (int i = 0; i < 2000 && whole < enough; ++i)
        {
            const omt::Value one = old.type(name).decode(randomOctets(random));
            const omt::Octets octetsOfIt = one.octets();
            const omt::Value two = now.type(name).decode(octetsOfIt);
            if (one.fault() || octets.count(name) != 0) continue;
            ++whole;
            EXPECT_FALSE(two.fault()) << name;
            EXPECT_EQ(octetsOfIt.size(), two.octets().size()) << name;
            EXPECT_EQ(leavesOf(one), leavesOf(two)) << name << one.json() << two.json();
            if (testing::Test::HasFailure()) return 0;
        }
        EXPECT_TRUE(whole > 0 || octets.count(name) != 0) << name << " was never decoded";
    }
    return octets.size();
}

TEST(Lowering13Test, OctetsMeanTheSame)
{
    for (const omt::Edition edition : {omt::Edition::ieee2010, omt::Edition::ieee2025})
        EXPECT_EQ(compare(theModel, edition), 2U);  // Unaligned, Apart
}

TEST(Lowering13Test, AlmostAllOfThePublishedModelsArrives)
{
    const char* const models = std::getenv("OMT_MODELS");
    if (!models) GTEST_SKIP() << "OMT_MODELS is not set";
    const struct
    {
        const char* file;
        std::size_t octets;
    } cases[] = {
        {"/hla13/RPR2-D17.omd",      3}, // of 95
        {"/x2000/RPR2-D17.xml",      0},
        {"/x2000/Certi-Test-02.xml", 0},
    };
    for (const auto& one : cases)
    {
        SCOPED_TRACE(one.file);
        std::ifstream file(models + std::string(one.file), std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        EXPECT_EQ(compare(text, omt::Edition::ieee2010), one.octets);
    }
}

TEST(Lowering13Test, EveryFormIsWhatItWas)
{
    omt::Findings findings;
    const omt::Writing writing =
        omt::writeXml(omt::readModule({"old.omd", theModel}, findings), omt::Edition::ieee2010);
    std::string flat;
    for (const char c : writing.text)
        if (c != ' ' && c != '\n') flat += c;
    for (const char* const expected :
         {"<name>A</name><dataType>Float64M</dataType>", "<units>m/s</units>",
          "<semantics>RPRlengthlessArrayLength=Count</semantics>",
          "<encoding>RPRpaddingTo32Array</encoding>",
          "<encoding>UnpaddedLengthlessVarArray</encoding>",
          "<enumerator>Full_Long</enumerator><name>Place</name>",
          "<enumerator>HLAother</enumerator><name>Nothing</name>",
          "<enumerator>HLAother</enumerator><name>NA</name>",
          "<ownership>DivestAcquire</ownership>",
          "<transportation>HLAbestEffort</transportation><order>TimeStamp</order>"})
        EXPECT_THAT(flat, testing::HasSubstr(expected));
}

}  // namespace
