// SPDX-License-Identifier: Apache-2.0
// Lines that are hard to cut back to the octets that they show.
#include "modelText.h"
#include "omtReader/datatypeManager.h"
#include "support.h"

#include <algorithm>
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
