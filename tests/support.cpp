// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include "treeTables.h"

#include <stdlib.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <utility>

Messages::Messages(DtMessageLevel level) : myLevelBefore(DtNotifyLevel())
{
    DtSetNotifyLevel(level);
    mySinkBefore = DtSetMessageSink([this](DtMessageLevel, std::string_view message)
                                    { myTexts.emplace_back(message); });
}

Messages::~Messages()
{
    DtSetMessageSink(std::move(mySinkBefore));
    DtSetNotifyLevel(myLevelBefore);
}

std::vector<std::string> Messages::take()
{
    return std::exchange(myTexts, {});
}

std::vector<char> octets(std::string_view hexadecimal)
{
    std::vector<char> result;
    std::istringstream pieces{std::string(hexadecimal)};
    for (unsigned octet; pieces >> std::hex >> octet;) result.push_back(static_cast<char>(octet));
    EXPECT_EQ(result.size(), (hexadecimal.size() + 1) / 3) << "no octets: " << hexadecimal;
    return result;
}

void expectEach(std::initializer_list<std::string> cases,
                const std::function<std::string(const DtString&)>& result)
{
    for (const std::string& text : cases)
    {
        const std::string input = text.substr(0, text.find(" => "));
        EXPECT_EQ(input + " => " + result(input), text);
    }
}

TemporaryFolder::TemporaryFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "omtReaderXXXXXX").string();
    if (mkdtemp(name.data())) myPath = name;
    EXPECT_FALSE(myPath.empty()) << "no temporary folder " << name;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    if (!myPath.empty()) std::filesystem::remove_all(myPath, ignored);
}

std::string TemporaryFolder::write(const std::string& name, std::string_view content) const
{
    const std::filesystem::path file = myPath / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
    return file.string();
}

void ModelsTest::SetUp()
{
    if (!std::getenv("OMT_MODELS")) GTEST_SKIP() << "OMT_MODELS is not set";
}

std::string ModelsTest::model(const std::string& name)
{
    const char* const folder = std::getenv("OMT_MODELS");
    return (std::filesystem::path(folder ? folder : "") / name).string();
}

namespace
{

/// Writes ".path.field = value" lines; the path grows while the lines of a nested node are written.
class Dump
{
public:
    explicit Dump(DtOMTTree& tree);
    std::string text() const { return myText.str(); }

private:
    /// A line for each value, under its name out of names with a blank between.
    void write(std::string_view names, const auto&... values)
    {
        const auto writeOne = [&](const auto& value)
        {
            const std::size_t end = std::min(names.find(' '), names.size());
            myText << myPath << '.' << names.substr(0, end) << " = " << value << '\n';
            names.remove_prefix(std::min(end + 1, names.size()));
        };
        (..., writeOne(values));
    }

    /// All entries of a range, each under its number.
    void entries(const char* table, auto begin, auto end)
    {
        const std::string before = myPath;
        for (std::size_t number = 0; begin != end; ++begin, ++number)
        {
            myPath = before + '.' + table + '[' + std::to_string(number) + ']';
            entry(*begin);
        }
        myPath = before;
    }

    void entry(auto* node) { entry(*node); }

    // Whatever this kind of node can be asked for, so that no kind needs a list of its own.
    void entry(auto& n)
    {
        if constexpr (requires { n.getNote(); })
            write("name uniqueName note", n.getName(), n.getUniqueName(), n.getNote());
        if constexpr (requires { n.getFullName(); }) fieldsInClasses(n);
        fieldsOfDatatypes(n);
        fieldsOfTables(n);
    }

    void fieldsInClasses(auto& n)
    {
        const DtFedNode* const parent = n.getParentObject();
        write("parent fullName sharing", parent ? parent->getName() : "(none)", n.getFullName(),
              n.getSharing());
        if constexpr (requires { n.getOrder(); })
            write("transportation order", n.getTransportation(), n.getOrder());
        if constexpr (requires { n.getDimensions(); })
            for (const DtString& name : n.getDimensions()) write("dimensions", name);
        if constexpr (requires { n.getUpdateType(); })
            write("updateType updateCondition transferAccept", n.getUpdateType(),
                  n.getUpdateCondition(), n.getTransferAccept());
        if constexpr (requires { n.getDescriptor(); }) fieldsOfClasses(n);
    }

    void fieldsOfClasses(auto& n)
    {
        write("descriptor identifier parentIdentifier", n.getDescriptor(), n.getIdentifier(),
              n.getParentIdentifier());
        for (const auto* child : childrenOf(n)) write("child", child->getFullName());
        const auto& members = membersOf(n);
        const bool areAttributes = requires { n.getAttributes(); };
        entries(areAttributes ? "attribute" : "parameter", members.begin(), members.end());
    }

    void fieldsOfDatatypes(auto& n)
    {
        if constexpr (requires { n.getDatatype(); }) write("datatype", n.getDatatype());
        if constexpr (requires { n.getDescription(); }) write("description", n.getDescription());
        if constexpr (requires { n.getCardinality(); })
            write("cardinality cardinalityType cardinalityMinimum cardinalityMaximum",
                  n.getCardinality(), n.getCardinalityType(), n.getCardinalityMinimum(),
                  n.getCardinalityMaximum());
        if constexpr (requires { n.getMultiDimCardinality(); })
            for (const std::int32_t size : n.getMultiDimCardinality()) write("size", size);
        if constexpr (requires { n.getAccuracy(); }) write("accuracy", n.getAccuracy());
        if constexpr (requires { n.getAccuracyCondition(); })
            write("accuracyCondition", n.getAccuracyCondition());
        if constexpr (requires { n.getConditionalValue(); })
            write("conditionalComponent conditionalValue", n.getConditionalComponent(),
                  n.getConditionalValue());
        if constexpr (requires { n.getEncoding(); }) write("encoding", n.getEncoding());
        if constexpr (requires { n.getRepresentation(); })
            write("representation", n.getRepresentation());
        if constexpr (requires { n.getDiscriminant(); }) write("discriminant", n.getDiscriminant());
        if constexpr (requires { n.getEnumerator(); }) write("enumerator", n.getEnumerator());
        if constexpr (requires { n.getComponentNodeList(); })
            entries("component", n.getComponentNodeList(), n.getComponentNodeEnd());
        if constexpr (requires { n.getEnumerationNodeList(); })
            entries("enumerator", n.getEnumerationNodeList(), n.getEnumerationNodeEnd());
    }

    void fieldsOfTables(auto& n)
    {
        if constexpr (requires { n.getUnits(); })
            write("units resolution", n.getUnits(), n.getResolution());
        if constexpr (requires { n.getEnum(); }) write("enum number", n.getEnum(), n.getNumber());
        if constexpr (requires { n.getExpectedEnumerationSize(); })
            write("expectedEnumerationSize", n.getExpectedEnumerationSize());
        if constexpr (requires { n.getSize(); })
            write("size endian interpretation", n.getSize(), n.getEndian(), n.getInterpretation());
        if constexpr (requires { n.getLabel(); })
            write("text label number", n.getText(), n.getLabel(), n.getNumber());
        if constexpr (requires { n.getEnabled(); }) write("enabled", n.getEnabled());
        if constexpr (requires { n.getReliable(); }) write("reliable", n.getReliable());
        if constexpr (requires { n.getUpperBound(); })
            write("upperBound normalization value", n.getUpperBound(), n.getNormalization(),
                  n.getValue());
        if constexpr (requires { n.getCapability(); }) write("capability", n.getCapability());
        if constexpr (requires { n.rate(); }) write("rate semantics", n.rate(), n.semantics());
        if constexpr (requires { n.lastName; })
            write("honorificName firstName lastName orgName phone email type", n.honorificName,
                  n.firstName, n.lastName, n.orgName, n.phone, n.email, n.type);
        if constexpr (requires { n.identification; })
            write("type identification", n.type, n.identification);
    }

    std::ostringstream myText;
    std::string myPath;
};

Dump::Dump(DtOMTTree& t)
{
    write(
        "hlaVersion name versionNo type purpose applicationDomain sponsorOrgName modificationDate "
        "securityClassification releaseRestriction description MOMVersion reference other "
        "useLimitation useHistory",
        t.hlaVersion(), t.getName(), t.getVersionNo(), t.getType(), t.getPurpose(),
        t.getApplicationDomain(), t.getSponsorOrgName(), t.getModificationDate(),
        t.getSecurityClassification(), t.getReleaseRestriction(), t.getDescription(),
        t.getMOMVersion(), t.getReference(), t.getOther(), t.getUseLimitation(), t.getUseHistory());
    const DtTimeRepNode& time = *t.getTimeRepNode();
    write("fedTimeDatatype fedTimeSemantics lookaheadDatatype lookaheadSemantics",
          time.getFedTimeDatatype(), time.getFedTimeSemantics(), time.getLookaheadDatatype(),
          time.getLookaheadSemantics());
    const DtFedNode* const roots[] = {t.objectClassRoot(), t.interactionClassRoot()};
    for (const DtFedNode* root : roots) write("root", root ? root->getFullName() : "(none)");
    entries("POC", t.getPOCList(), t.getPOCEndNode());
    entries("references", t.getReferences().begin(), t.getReferences().end());
    forEachTable(t,
                 [this](const char* table, auto begin, auto end) { entries(table, begin, end); });
}

}  // namespace

std::string dump(DtOMTTree& tree)
{
    return Dump(tree).text();
}
