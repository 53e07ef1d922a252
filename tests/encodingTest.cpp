// SPDX-License-Identifier: Apache-2.0
// Lines back to the octets that they show: forms that are hard to cut, and every datatype of
// published models.
#include "modelText.h"
#include "omtReader/datatypeManager.h"
#include "omtReader/datatypeRep.h"
#include "omtReader/xmlFileReader.h"
#include "support.h"

#include <algorithm>
#include <iterator>
#include <random>
#include <sstream>

namespace
{

using Octets = DtDatatypeManager::Octets;

/// A manager that writes enumerators as it reads them, most significant octet first.
struct Symmetric : DtDatatypeManager
{
    explicit Symmetric(TreePtr ownModel) : model(std::move(ownModel))
    {
        fillDefaultDatatypeRepList();
        initOMTData(model.get());
        readStandardMappings();
    }
    void getValueFromEnumRep(const DtString& datatype, const DtString& text, Octets& out) override
    {
        const std::size_t start = out.size();
        DtDatatypeManager::getValueFromEnumRep(datatype, text, out);
        std::reverse(out.begin() + static_cast<std::ptrdiff_t>(start), out.end());
    }
    Octets encoded(const DtString& datatype, const DtString& text)
    {
        Octets out;
        getValueFromStringRep(datatype, text, out);
        return out;
    }
    std::string line(const DtString& datatype, const Octets& octets)
    {
        int consumed = 0;
        const auto length = static_cast<int>(octets.size());
        const DtString text = getStringRep(datatype, octets.data(), length, consumed);
        return text.str() + (consumed == length ? "" : " (not whole)");
    }

    TreePtr model;
};

std::string hexadecimal(const Octets& octets)
{
    std::ostringstream text;
    for (const char octet : octets) text << std::hex << (octet & 0xFF) << ' ';
    return text.str();
}

}  // namespace

TEST(EncodingTest, CutsWhereTheLineWasJoined)
{
    const char* const theModel =
        "simple B byte;simple S short;simple C char;enumerated E HLAoctet Five=5 Six=6;"
        "array Text C HLAnullTerminatedArray -;array Texts Text HLAvariableArray Dynamic;"
        "array Chars C HLAvariableArray Dynamic;array One C HLAfixedArray 2;array Two One "
        "HLAfixedArray 2;fixed Named a:Text b:Chars c:B;"
        "array Pad B RPRpaddingTo32Array -;array V B HLAvariableArray Dynamic;"
        "fixed Datum a:E b:S c:V;array Data Datum HLAvariableArray Dynamic;"
        "fixed Record a:B b:V p:Pad;array Records Record HLAvariableArray Dynamic;"
        "fixed Set a:E b:Records;array Sets Set HLAvariableArray Dynamic;"
        "array Pair V HLAfixedArray 2;array Pairs Pair HLAvariableArray Dynamic;"
        "fixed Own a:Datum b:Datum c:Set;"
        "complex Old k:E:1 t:Text:1 o:Datum:0-2_(k_=_5) z:B:0-1";
    Symmetric manager(modelOf(theModel));
    manager.addDelimiterMap("Datum", "|");
    // Datatype, line and octets.
    expectEach(
        {"Data:Five 1 5[Five|2|6] => 0 0 0 2 5 0 1 0 0 0 1 5 5 0 2 0 0 0 1 6 ",
         "Data:Five 1 5[7[8]][Six|2|6] => 0 0 0 2 5 0 1 0 0 0 3 5 7 8 6 0 2 0 0 0 1 6 ",
         "Texts:E[1[]][E[2[]]] => 0 0 0 2 45 31 0 45 32 0 ",
         "Texts:][[[x[]]][E[2[]]] => 0 0 0 2 5d 5b 78 0 45 32 0 ",
         "Text:#[][i[T[]]]] => 23 5d 69 54 0 ",
         "Texts:[[][ [][B[a[]]]] => 0 0 0 3 5b 0 20 0 42 61 0 ", "Two:A[B][C[D]] => 41 42 43 44 ",
         "Chars:][[[]]] => 0 0 0 3 5d 5b 5d ", "Chars:[[]] => 0 0 0 2 5b 5d ",
         "Named:A[ []] ][ [[]] 7 => 41 20 0 0 0 0 3 5d 20 5b 7 ",
         "Sets:Five 1 255 [17 3 [1 255 ]] => "
         "0 0 0 1 5 0 0 0 3 1 0 0 0 1 ff 11 0 0 0 1 3 1 0 0 0 1 ff ",
         "Sets:Five 1 2 [Six 3 4 [5 6 ]] => "
         "0 0 0 2 5 0 0 0 1 1 0 0 0 1 2 6 0 0 0 2 3 0 0 0 1 4 5 0 0 0 1 6 ",
         "Pairs:1[2][3[4]][5[6]] => "
         "0 0 0 2 0 0 0 2 1 2 0 0 0 2 3 4 0 0 0 1 5 0 0 0 1 6 ",
         "Own:Five 1 2 Six|3|4[5]|Five 6 7  => "
         "5 0 1 0 0 0 1 2 6 0 3 0 0 0 2 4 5 5 0 0 0 1 6 0 0 0 1 7 ",
         "Old:Five a[b[]] Five|1|2[Six|3|4]|9 => 5 61 62 0 5 0 1 0 0 0 1 2 6 0 3 0 0 0 1 4 9 ",
         "Old:Six x[] 9 => 6 78 0 9 "},
        [&](const DtString& input)
        {
            const std::string_view text = input.view();
            const DtString datatype = text.substr(0, text.find(':'));
            const std::string_view line = text.substr(text.find(':') + 1);
            const Octets octets = manager.encoded(datatype, line);
            EXPECT_EQ(manager.line(datatype, octets), line);
            return hexadecimal(octets);
        });
}

namespace
{

/// Makes up values of the datatypes of a model, by representations and not by cutting.
class RandomValues
{
public:
    explicit RandomValues(Symmetric& manager) : myManager(manager), myTree(*manager.model) {}

    /// Appends a value; false for a datatype of which none comes back: with variants, characters of
    /// 16 bits, an open end in front of other fields, without an enumerator, or with arrays of
    /// arrays, of which many share one line.
    bool append(const DtString& datatype, Octets& out, bool isLast = true, int depth = 0)
    {
        if (depth > 20) return false;
        switch (myManager.getDatatypeEnum(datatype))
        {
            case DtDatatypeManager::DtDatatypeSimple:
                return simple(datatype, out);
            case DtDatatypeManager::DtDatatypeEnumerated:
                return enumerated(datatype, out);
            case DtDatatypeManager::DtDatatypeFixed:
                return fixed(*myTree.getFixedDatatypeNode(datatype), out, isLast, depth);
            case DtDatatypeManager::DtDatatypeArray:
                return array(*myTree.getArrayDatatypeNode(datatype), out, isLast, depth);
            default:
                return false;
        }
    }

private:
    int below(int end) { return static_cast<int>(mySource() % static_cast<unsigned>(end)); }

    bool simple(const DtString& datatype, Octets& out)
    {
        const DtDatatypeRep* const rep = myManager.getSimpleDatatypeRep(datatype);
        if (!rep) return false;
        const std::string_view name = rep->datatype();
        DtString text = DtString(below(3) ? below(128) : below(3));
        if (name == "char") text = std::string(1, "aB[] 17|,"[below(9)]);
        if (name == "bool" || name == "hex" || name.substr(0, 3) == "utf" || name == "string")
            return false;
        const Octets octets = rep->valueFromStringRep(text);
        out.insert(out.end(), octets.begin(), octets.end());
        return true;
    }
    bool enumerated(const DtString& datatype, Octets& out)
    {
        const auto& node = *myTree.getEnumeratedDatatypeNode(datatype);
        const auto count =
            std::distance(node.getEnumerationNodeList(), node.getEnumerationNodeEnd());
        if (count == 0) return false;
        const DtEnumerationNode& one =
            **std::next(node.getEnumerationNodeList(), below(static_cast<int>(count)));
        const std::size_t start = out.size();
        for (int at = node.getExpectedEnumerationSize() - 1; at >= 0; --at)
            out.push_back(static_cast<char>(one.getNumber() >> 8 * at));
        return myManager.line(datatype, {out.begin() + static_cast<std::ptrdiff_t>(start),
                                         out.end()}) == one.getEnum().view();
    }
    bool fixed(DtFixedDatatypeNode& node, Octets& out, bool isLast, int depth)
    {
        const auto end = node.getComponentNodeEnd();
        for (auto it = node.getComponentNodeList(); it != end; ++it)
            if (!append((*it)->getDatatype(), out, isLast && std::next(it) == end, depth + 1))
                return false;
        return true;
    }
    bool array(const DtArrayDatatypeNode& node, Octets& out, bool isLast, int depth)
    {
        const DtDatatypeRep* const rep = myManager.getSimpleDatatypeRep(node.getDatatype());
        const bool isText = rep && std::string_view(rep->datatype()) == "char";
        const int form = node.getCardinalityType();
        int count = 1 + below(4);
        const auto* const inner = myTree.getArrayDatatypeNode(node.getDatatype());
        if (inner && inner->getCardinalityType() == 10) return false;
        if (form == 5) return true;
        if (form == 1) count = node.getCardinalityMinimum();
        if (form == 8 && !isLast) return false;
        if (form != 1 && form != 4 && form != 8 && form != 10) return false;
        if (form == 10) out.insert(out.end(), {0, 0, 0, static_cast<char>(count)});
        for (int at = 0; at < count; ++at)
            if (!append(node.getDatatype(), out, false, depth + 1)) return false;
        if (form == 4 && isText) out.push_back('\0');
        return form != 4 || isText;
    }

    Symmetric& myManager;
    DtOMTTree& myTree;
    std::mt19937 mySource{1};
};

std::vector<DtString> datatypesOf(DtOMTTree& tree)
{
    std::vector<DtString> names;
    const auto addAll = [&](auto it, auto end)
    {
        for (; it != end; ++it) names.push_back((*it)->getName());
    };
    addAll(tree.getFixedDatatypeNodeList(), tree.getFixedDatatypeEndNode());
    addAll(tree.getArrayDatatypeNodeList(), tree.getArrayDatatypeEndNode());
    return names;
}

}  // namespace

using RoundTripTest = ModelsTest;

TEST_F(RoundTripTest, EveryValueOfPublishedModelsComesBack)
{
    const struct
    {
        std::vector<const char*> files;
        int datatypes;  // that have values which can come back
    } theModels[] = {
        {{"evolved/RPR_FOM_v2.0_1516-2010.xml", "mim/HLAstandardMIM.xml"}, 140},
        {{"x2000/RPR2-D17.xml"},                                           143},
    };
    for (const auto& [files, datatypes] : theModels)
    {
        SCOPED_TRACE(files.front());
        const Messages messages;
        std::vector<DtFilename> paths;
        for (const char* file : files) paths.emplace_back(model(file).c_str());
        DtXMLFileReader reader;
        Symmetric manager(TreePtr(paths.size() == 1 ? reader.readFile(paths[0], nullptr)
                                                    : reader.readFiles(paths, nullptr)));
        ASSERT_TRUE(manager.model);
        RandomValues values(manager);
        int found = 0;
        for (const DtString& datatype : datatypesOf(*manager.model))
        {
            Octets octets;
            for (int times = 0; times < 40; ++times, octets.clear())
            {
                if (!values.append(datatype, octets)) break;
                if (times == 0) ++found;
                const std::string line = manager.line(datatype, octets);
                ASSERT_EQ(hexadecimal(manager.encoded(datatype, line)), hexadecimal(octets))
                    << datatype << ": " << line;
            }
        }
        EXPECT_EQ(found, datatypes);
    }
}
