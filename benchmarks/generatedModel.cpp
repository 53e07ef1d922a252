// SPDX-License-Identifier: Apache-2.0
#include "generatedModel.h"

#include <string_view>

namespace
{

/// Writes a piece of text `count` times, each time with its number in place of every '#'.
std::string repeated(int count, std::string_view piece)
{
    std::string text;
    for (int i = 0; i < count; ++i)
    {
        const std::string number = std::to_string(i);
        for (const char c : piece)
        {
            if (c == '#')
                text += number;
            else
                text += c;
        }
    }
    return text;
}

std::string element(std::string_view name, const std::string& content)
{
    const std::string word(name);
    return "<" + word + ">\n" + content + "</" + word + ">\n";
}

constexpr std::string_view theObjectClass = R"(<objectClass>
  <name>Family#</name><sharing>PublishSubscribe</sharing><semantics>Family number #.</semantics>
  <attribute><name>Mass#</name><dataType>Simple#</dataType><updateType>Conditional</updateType>
    <updateCondition>On change</updateCondition><ownership>DivestAcquire</ownership>
    <sharing>PublishSubscribe</sharing><transportation>HLAreliable</transportation>
    <order>Receive</order><semantics>How heavy it is.</semantics></attribute>
  <attribute><name>Shape#</name><dataType>Record#</dataType><updateType>Static</updateType>
    <updateCondition>NA</updateCondition><ownership>NoTransfer</ownership>
    <sharing>PublishSubscribe</sharing><transportation>HLAreliable</transportation>
    <order>Receive</order><semantics>How it looks.</semantics></attribute>
  <objectClass><name>Member</name><sharing>PublishSubscribe</sharing>
    <attribute><name>Mood</name><dataType>Choice#</dataType><updateType>Periodic</updateType>
      <updateCondition>1 Hz</updateCondition><ownership>NoTransfer</ownership>
      <sharing>PublishSubscribe</sharing><transportation>HLAbestEffort</transportation>
      <order>TimeStamp</order><semantics>How it feels.</semantics></attribute>
  </objectClass>
</objectClass>
)";

constexpr std::string_view theInteractionClass = R"(<interactionClass>
  <name>Call#</name><sharing>PublishSubscribe</sharing>
  <transportation>HLAreliable</transportation><order>Receive</order>
  <parameter><name>Caller</name><dataType>Simple#</dataType></parameter>
  <parameter><name>Words</name><dataType>List#</dataType></parameter>
</interactionClass>
)";

constexpr std::string_view theSimple = R"(<simpleData>
  <name>Simple#</name><representation>HLAfloat64BE</representation><units>kg</units>
  <resolution>0.1</resolution><accuracy>NA</accuracy><semantics>A mass.</semantics>
</simpleData>
)";

constexpr std::string_view theEnumeration = R"(<enumeratedData>
  <name>Choice#</name><representation>HLAinteger32BE</representation>
  <enumerator><name>Yes</name><value>1</value></enumerator>
  <enumerator><name>No</name><value>2</value></enumerator>
  <enumerator><name>Perhaps</name><value>3</value></enumerator>
</enumeratedData>
)";

constexpr std::string_view theEnumerator =
    "<enumerator><name>Kind#</name><value>#</value></enumerator>\n";

constexpr std::string_view theArray = R"(<arrayData>
  <name>List#</name><dataType>Simple#</dataType><cardinality>Dynamic</cardinality>
  <encoding>HLAvariableArray</encoding><semantics>Masses.</semantics>
</arrayData>
)";

constexpr std::string_view theRecord = R"(<fixedRecordData>
  <name>Record#</name><encoding>HLAfixedRecord</encoding>
  <field><name>First</name><dataType>Simple#</dataType></field>
  <field><name>Second</name><dataType>List#</dataType></field>
</fixedRecordData>
)";

constexpr std::string_view theVariant = R"(<variantRecordData>
  <name>Variant#</name><discriminant>Is</discriminant><dataType>Choice#</dataType>
  <alternative><enumerator>Yes</enumerator><name>It</name><dataType>Simple#</dataType></alternative>
  <alternative><enumerator>HLAother</enumerator></alternative>
  <encoding>HLAvariantRecord</encoding>
</variantRecordData>
)";

constexpr std::string_view theNote =
    "<note><label>Note#</label><semantics>Said # times.</semantics></note>\n";

// A family and its member, with identifiers that are no family's.
constexpr std::string_view theObjectClass13 = R"(  (Class (ID #)
     (Name "Family#")
     (PSCapabilities PS)
     (Description "Family number #.")
     (Attribute (Name "Mass#")
                (DataType "double")
                (Cardinality "1")
                (Units "kg")
                (Accuracy "perfect")
                (AccuracyCondition "always")
                (UpdateType Conditional)
                (UpdateCondition "On change")
                (TransferAccept TA)
                (Description "How heavy it is.")
     )
     (Attribute (Name "Shape#")
                (DataType "Record#")
                (Cardinality "1")
                (UpdateType Static)
                (TransferAccept N)
                (Description "How it looks.")
     )
  )
  (Class (ID 90000#)
     (Name "Member")
     (SuperClass #)
     (Attribute (Name "Mood")
                (DataType "Choice#")
                (UpdateType Periodic)
     )
  )
)";

constexpr std::string_view theInteractionClass13 = R"(  (Interaction (ID #)
     (Name "Call#")
     (Parameter (Name "Caller") (DataType "string") (Cardinality "1"))
     (Parameter (Name "Words") (DataType "Record#") (Cardinality "0+"))
  )
)";

constexpr std::string_view theEnumeration13 = R"(  (EnumeratedDataType (Name "Choice#")
     (Enumeration (Enumerator "Yes") (Representation 1))
     (Enumeration (Enumerator "No") (Representation 2))
     (Enumeration (Enumerator "Perhaps") (Representation 3))
  )
)";

constexpr std::string_view theEnumerator13 =
    "     (Enumeration (Enumerator \"Kind#\") (Representation #))\n";

constexpr std::string_view theComplex13 = R"(  (ComplexDataType (Name "Record#")
     (ComplexComponent (FieldName "Count") (DataType "long") (Cardinality "1"))
     (ComplexComponent (FieldName "Parts") (DataType "double") (Cardinality "0+"))
  )
)";

constexpr std::string_view theNote13 = R"(  (Note (NoteNumber #) (NoteText "Said # times."))
)";

std::string datatypes(int scale)
{
    const std::string longEnumeration = element(
        "enumeratedData", "<name>Long</name><representation>HLAinteger32BE</representation>\n" +
                              repeated(10 * scale, theEnumerator));
    return element("simpleDataTypes", repeated(scale, theSimple)) +
           element("enumeratedDataTypes", repeated(scale, theEnumeration) + longEnumeration) +
           element("arrayDataTypes", repeated(scale, theArray)) +
           element("fixedRecordDataTypes", repeated(scale, theRecord)) +
           element("variantRecordDataTypes", repeated(scale, theVariant));
}

}  // namespace

std::string ratios::generatedModel(int scale)
{
    const std::string objects =
        element("objectClass", "<name>HLAobjectRoot</name>\n" + repeated(scale, theObjectClass));
    const std::string interactions =
        element("interactionClass",
                "<name>HLAinteractionRoot</name>\n" + repeated(scale, theInteractionClass));
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<objectModel xmlns=\"http://standards.ieee.org/IEEE1516-2010\">\n" +
           element("objects", objects) + element("interactions", interactions) +
           element("dataTypes", datatypes(scale)) + element("notes", repeated(scale, theNote)) +
           "</objectModel>\n";
}

std::string ratios::generatedModel13(int scale)
{
    return "(DIF v1.3)\n(ObjectModel (Name \"Generated\")\n" + repeated(scale, theObjectClass13) +
           repeated(scale, theInteractionClass13) + repeated(scale, theEnumeration13) +
           "  (EnumeratedDataType (Name \"Long\")\n" + repeated(10 * scale, theEnumerator13) +
           "  )\n" + repeated(scale, theComplex13) + repeated(scale, theNote13) + ")\n";
}
