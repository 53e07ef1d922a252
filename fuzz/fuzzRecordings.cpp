// SPDX-License-Identifier: Apache-2.0
// Any octets as a recording: the first one says what comes out, "c" CSV of one member, else JSON
// lines with all that may stand beside a value; the rest is the recording. Rows come out one for
// each that goes in, whole lines, whatever pieces they are decoded in.
#include "checks.h"
#include "omt/omt.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace
{

constexpr std::string_view theModel = R"(<objectModel
xmlns="http://standards.ieee.org/IEEE1516-2010"><objects><objectClass><name>HLAobjectRoot</name>
<objectClass><name>Ship</name><attribute><name>Name</name><dataType>HLAunicodeString</dataType>
</attribute><attribute><name>Kind</name><dataType>EntityTypeStruct</dataType></attribute><attribute>
<name>Load</name><dataType>Load</dataType></attribute></objectClass></objectClass></objects><dataTypes>
<fixedRecordDataTypes><fixedRecordData><name>EntityTypeStruct</name><encoding>HLAfixedRecord</encoding>
<field><name>EntityKind</name><dataType>HLAoctet</dataType></field><field><name>Domain</name><dataType>
HLAoctet</dataType></field><field><name>CountryCode</name><dataType>HLAinteger16BE</dataType></field>
<field><name>Category</name><dataType>HLAoctet</dataType></field><field><name>Subcategory</name>
<dataType>HLAoctet</dataType></field><field><name>Specific</name><dataType>HLAoctet</dataType></field>
<field><name>Extra</name><dataType>HLAoctet</dataType></field></fixedRecordData></fixedRecordDataTypes>
<variantRecordDataTypes><variantRecordData><name>Load</name><discriminant>Is</discriminant><dataType>
HLAboolean</dataType><alternative><enumerator>HLAtrue</enumerator><name>Tonnes</name><dataType>
HLAfloat64BE</dataType></alternative><encoding>HLAvariantRecord</encoding></variantRecordData>
</variantRecordDataTypes></dataTypes></objectModel>)";

const omt::Codec& codec()
{
    static const omt::Codec theCodec(omt::readDocuments(
                                         {
                                             {"model", theModel}
    },
                                         omt::ReadOptions().withMim())
                                         .model);
    return theCodec;
}

/// The lines of a recording decoded by copies, so many at a time.
std::string decodedInPieces(const omt::UpdateDecoder& decoder, std::string_view rows,
                            std::size_t lines)
{
    std::string result;
    while (!rows.empty())
    {
        std::size_t end = 0;
        for (std::size_t i = 0; i < lines && end < rows.size(); ++i)
            end = std::min(rows.find('\n', end), rows.size() - 1) + 1;
        omt::UpdateDecoder(decoder).decode(rows.substr(0, end), result);
        rows.remove_prefix(end);
    }
    return result;
}

/// Half of a surrogate pair, which values may hold and this parser refuses, as another character.
std::string withoutSurrogates(std::string line)
{
    for (std::size_t at = line.find("\\ud"); at != std::string::npos; at = line.find("\\ud", at))
        line[at + 2] = '1';
    return line;
}

void checkLines(std::string_view text, bool areJson)
{
    while (!text.empty())
    {
        const std::size_t end = text.find('\n');
        require(end != std::string_view::npos, "a line ends");
        require(
            !areJson || nlohmann::json::accept(withoutSurrogates(std::string(text.substr(0, end)))),
            "a line is JSON");
        text.remove_prefix(end + 1);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // A copy of just this size lets a sanitizer see the end.
    const std::string input(reinterpret_cast<const char*>(data), size);
    if (input.empty()) return 0;
    omt::UpdateOptions options;
    options.asCsv = input.front() == 'c';
    if (options.asCsv) options.member = "Ship.Load";
    options.entities = omt::EntityTable::read("h\n1,Platform,3,Surface,,,,,,,,\n", "table").table;
    options.withGeodetics = true;
    omt::UpdateDecoder decoder(codec(), options);

    std::string_view rows(input);
    rows.remove_prefix(1);
    std::string header;
    if (decoder.begin(rows, header)) return 0;
    const omt::UpdateDecoder begun(decoder);
    std::string result;
    decoder.decode(rows, result);
    checkLines(result, !options.asCsv);
    const auto lines = static_cast<std::uint64_t>(std::count(result.begin(), result.end(), '\n'));
    require(lines == decoder.counts().written, "what is written is counted");
    require(decoder.counts().faults <= decoder.counts().rows, "a fault is of a row");
    require(decodedInPieces(begun, rows, 1) == result, "rows do not depend on each other");
    return 0;
}
