// SPDX-License-Identifier: Apache-2.0
// The first octets choose a model with datatypes of every kind that hold each other in any way; the
// last of its datatypes decodes the others, and obeys the laws of codecs.
#include "codecLaws.h"
#include "omt/model/modelBuilder.h"
#include "omt/omt.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace
{

constexpr std::string_view theNumbers[] = {
    "HLAoctet",     "HLAinteger16BE", "HLAinteger32LE", "HLAinteger64BE", "HLAfloat32BE",
    "HLAfloat64LE", "HLAASCIIchar",   "HLAunicodeChar", "HLAbyte",        "Kind"};
constexpr std::string_view theEncodings[] = {"HLAvariableArray",          "HLAfixedArray",
                                             "RPRlengthlessArray",        "RPRnullTerminatedArray",
                                             "RPRpaddingTo32Array",       "RPRpaddingTo64Array",
                                             "UnpaddedLengthlessVarArray"};
constexpr std::string_view theCardinalities[] = {"Dynamic", "3", "[1..2]", "0", "2,2"};
constexpr std::string_view theVariants[] = {"HLAvariantRecord", "RPRextendedVariantRecord",
                                            "HLAextendableVariantRecord"};
constexpr std::string_view theChoices[] = {"A", "B", "[A .. C]", "HLAother", "C, D"};
constexpr std::string_view theConditions[] = {"1", "3", "0-2", "0+", "%4", "(P0 = 1)", "(P0)"};

/// Makes datatypes T0, T1, ... of octets, one for each pair at least.
class ModelMaker
{
public:
    ModelMaker(const std::uint8_t*& at, const std::uint8_t* end) : myAt(at), myEnd(end) {}

    omt::Model make()
    {
        constexpr unsigned theMostTypes = 12;
        myBuilder.addModule("made", take() % 4 == 0 ? omt::Edition::hla13 : omt::Edition::ieee2010);
        addKind();
        myCount = 1 + take() % theMostTypes;
        for (unsigned i = 0; i < myCount; ++i)
        {
            const omt::Text name = text("T" + std::to_string(i));
            switch (take() % 5)
            {
                case 0:
                case 1:
                    addRecord(name);
                    break;
                case 2:
                    addVariant(name);
                    break;
                case 3:
                    addArray(name);
                    break;
                default:
                    addComplex(name);
            }
        }
        return myBuilder.build();
    }
    std::string last() const { return "T" + std::to_string(myCount - 1); }

private:
    unsigned take() { return myAt == myEnd ? 0 : *myAt++; }
    omt::Text text(const std::string& letters) { return myBuilder.text(letters); }
    template <std::size_t size>
    omt::Text pick(const std::string_view (&words)[size])
    {
        return myBuilder.text(words[take() % size]);
    }
    /// A number, or any of the others, also later ones and the datatype itself.
    omt::Text type()
    {
        const unsigned which = take();
        return which % 2 == 0 ? myBuilder.text(theNumbers[which / 2 % std::size(theNumbers)])
                              : text("T" + std::to_string(which / 2 % myCount));
    }

    void addKind()
    {
        omt::EnumeratedData kind;
        kind.name = text("Kind");
        kind.representation = text("HLAoctet");
        std::vector<omt::Enumerator> names;
        for (const char* const name : {"A", "B", "C", "D"})
        {
            omt::Enumerator& one = names.emplace_back();
            one.name = text(name);
            const auto number = static_cast<char>('0' + names.size());
            one.values = myBuilder.list<omt::Text>({text({number}), text({'1', number})});
        }
        kind.enumerators = myBuilder.list(names);
        myBuilder.tables().enumeratedData.push_back(kind);
        for (const std::string_view name : {"HLAASCIIchar", "HLAunicodeChar", "HLAbyte"})
        {
            omt::SimpleData& simple = myBuilder.tables().simpleData.emplace_back();
            simple.name = myBuilder.text(name);
            simple.representation = text(name == "HLAunicodeChar" ? "HLAoctetPairBE" : "HLAoctet");
        }
    }

    void addRecord(const omt::Text& name)
    {
        std::vector<omt::RecordField> fields(take() % 5);
        for (std::size_t i = 0; i < fields.size(); ++i)
        {
            fields[i].name = text("F" + std::to_string(i));
            fields[i].dataType = type();
        }
        omt::FixedRecord& record = myBuilder.tables().fixedRecords.emplace_back();
        record.name = name;
        record.fields = myBuilder.list(fields);
    }

    void addVariant(const omt::Text& name)
    {
        std::vector<omt::Alternative> alternatives(take() % 4);
        for (std::size_t i = 0; i < alternatives.size(); ++i)
        {
            alternatives[i].name = text("A" + std::to_string(i));
            alternatives[i].enumerator = pick(theChoices);
            alternatives[i].dataType = type();
        }
        omt::VariantRecord& variant = myBuilder.tables().variantRecords.emplace_back();
        variant.name = name;
        variant.discriminant = text("D");
        variant.dataType = text(take() % 4 == 0 ? "HLAinteger16BE" : "Kind");
        variant.encoding = pick(theVariants);
        variant.alternatives = myBuilder.list(alternatives);
    }

    void addArray(const omt::Text& name)
    {
        omt::ArrayData& array = myBuilder.tables().arrayData.emplace_back();
        array.name = name;
        array.dataType = type();
        array.encoding = pick(theEncodings);
        array.cardinality = pick(theCardinalities);
    }

    void addComplex(const omt::Text& name)
    {
        std::vector<omt::Component> components(take() % 4);
        for (std::size_t i = 0; i < components.size(); ++i)
        {
            components[i].name = text("P" + std::to_string(i));
            components[i].dataType = type();
            components[i].cardinality = pick(theConditions);
        }
        omt::ComplexRecord& complex = myBuilder.tables().complexRecords.emplace_back();
        complex.name = name;
        complex.components = myBuilder.list(components);
    }

    omt::ModelBuilder myBuilder;
    const std::uint8_t*& myAt;
    const std::uint8_t* myEnd;
    unsigned myCount = 1;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::uint8_t* at = data;
    omt::CodecOptions options;
    options.isPaddedFromStart = size > 0 && *at++ % 8 == 0;
    ModelMaker maker(at, data + size);
    const omt::Model model = maker.make();
    const omt::Codec codec(model, options);
    const omt::Type type = codec.type(maker.last());
    // A copy of just this size lets a sanitizer see the end.
    const std::vector<std::uint8_t> octets(at, data + size);
    CodecLaws laws;
    std::string broken = laws.check(type, octets);
    if (broken.empty()) broken = laws.checkColumns(type, octets);
    if (broken.empty()) broken = laws.checkCuts(type, octets, false);
    if (broken.empty()) return 0;
    std::fprintf(stderr, "broken: %s\n", broken.c_str());
    std::abort();
}
