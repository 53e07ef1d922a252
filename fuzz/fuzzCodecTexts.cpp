// SPDX-License-Identifier: Apache-2.0
// Texts that a codec reads: JSON of a value of one of a few datatypes, which the first octet
// chooses, hints, and tables and codes of entity types.
#include "codecLaws.h"
#include "omt/omt.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace
{

constexpr std::string_view theModel =
    R"(<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010"><dataTypes>
<enumeratedDataTypes><enumeratedData><name>Kind</name><representation>HLAoctet</representation>
<enumerator><name>A</name><value>1</value></enumerator><enumerator><name>B</name><value>2</value>
<value>7</value></enumerator><enumerator><name>C</name><value>3</value></enumerator>
</enumeratedData></enumeratedDataTypes><arrayDataTypes><arrayData><name>MarkingArray11</name>
<dataType>HLAoctet</dataType><cardinality>11</cardinality></arrayData><arrayData><name>Texts</name>
<dataType>HLAunicodeString</dataType><cardinality>Dynamic</cardinality></arrayData><arrayData>
<name>Kinds</name><dataType>Kind</dataType><cardinality>[0..3]</cardinality>
<encoding>RPRnullTerminatedArray</encoding></arrayData><arrayData><name>Trees</name>
<dataType>Tree</dataType><cardinality>Dynamic</cardinality></arrayData><arrayData>
<name>Pad</name><dataType>HLAoctet</dataType><cardinality>Dynamic</cardinality>
<encoding>RPRpaddingTo64Array</encoding></arrayData></arrayDataTypes><fixedRecordDataTypes>
<fixedRecordData><name>Tree</name><field><name>K</name><dataType>Kind</dataType></field><field>
<name>Inside</name><dataType>Trees</dataType></field></fixedRecordData><fixedRecordData>
<name>All</name><field><name>M</name><dataType>MarkingArray11</dataType></field><field><name>T</name>
<dataType>Texts</dataType></field><field><name>K</name><dataType>Kinds</dataType></field><field>
<name>P</name><dataType>Pad</dataType></field><field><name>X</name><dataType>HLAfloat64BE</dataType>
</field><field><name>V</name><dataType>Sized</dataType></field><field><name>W</name>
<dataType>Choice</dataType></field></fixedRecordData></fixedRecordDataTypes><variantRecordDataTypes>
<variantRecordData><name>Choice</name><discriminant>D</discriminant><dataType>Kind</dataType>
<alternative><enumerator>A</enumerator><name>S</name><dataType>HLAinteger16BE</dataType>
</alternative><alternative><enumerator>B</enumerator><name>L</name><dataType>HLAfloat32BE</dataType>
</alternative></variantRecordData><variantRecordData><name>Sized</name>
<discriminant>D</discriminant><dataType>Kind</dataType><alternative><enumerator>A</enumerator>
<name>S</name><dataType>HLAinteger64BE</dataType></alternative>
<encoding>HLAextendableVariantRecord</encoding></variantRecordData></variantRecordDataTypes>
</dataTypes></objectModel>)";

omt::Codec makeCodec()
{
    const std::vector<omt::Document> documents = {
        {"model", theModel}
    };
    return omt::Codec(omt::readDocuments(documents, omt::ReadOptions().withMim()).model);
}

void checkTable(std::string_view text)
{
    const omt::EntityTableReading reading = omt::EntityTable::read(text, "table");
    for (const omt::EntityTable::Row& row : reading.table.rows())
    {
        const omt::EntityTable::Row* const found = reading.table.find(row.codes);
        if (found == &row && row.codes.matches(row.codes)) continue;
        std::fputs("broken: a row is the best one for its codes\n", stderr);
        std::abort();
    }
    std::string complaint;
    if (!omt::EntityCodes::read(text, complaint) && complaint.empty()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const omt::Codec theCodec = makeCodec();
    constexpr const char* theTypes[] = {"All", "Choice", "Sized", "Trees", "Kinds"};
    if (size == 0) return 0;
    // A copy of just this size lets a sanitizer see the end.
    const std::vector<char> octets(data + 1, data + size);
    const std::string_view text(octets.data(), octets.size());
    const std::size_t which = *data % (std::size(theTypes) + 2);
    if (which == std::size(theTypes)) return checkTable(text), 0;
    if (which > std::size(theTypes))
    {
        const omt::HintsReading reading = omt::readHints(text, "hints");
        if (reading.findings.empty() || reading.hints.hints.empty()) return 0;
        std::abort();
    }
    CodecLaws laws;
    const std::string broken = laws.checkText(theCodec.type(theTypes[which]), text);
    if (broken.empty()) return 0;
    std::fprintf(stderr, "broken: %s\n", broken.c_str());
    std::abort();
}
