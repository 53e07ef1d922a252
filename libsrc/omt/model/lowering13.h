// SPDX-License-Identifier: Apache-2.0
// Lowering13 turns the definitions of HLA 1.3 into ones that 1516 has, with the same octets.
#pragma once

#include "omt/base/nameHash.h"
#include "omt/model/freeNames.h"
#include "omt/model/modelBuilder.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace omt
{

/// How often a component occurs: "4", "0+", "1-5", "0-1 (Kind = Bulk)", "1+ (Count)", "%8".
struct Occurrence
{
    static constexpr std::uint32_t theOpen = 0xFFFFFFFF;

    std::uint32_t least = 1;
    std::uint32_t most = 1;
    /// "%8": octets up to a multiple of 8.
    std::uint32_t padding = 0;
    /// The component that decides, and the value that it then has; or that counts, without a value.
    std::string_view decider;
    std::string_view value;
};

/// What the text of a cardinality of HLA 1.3 says, or nothing for any other text.
std::optional<Occurrence> occurrence(std::string_view cardinality);

/// Works in the tables of a builder on what comes from modules of HLA 1.3.
///
/// HLA 1.3 pads nothing by itself, 1516 pads every field up to the boundary of its datatype. So a
/// component stays what it is only where its offset is a multiple of that boundary anyway; any
/// other becomes octets.
class Lowering13
{
public:
    Lowering13(const Model& model, ModelBuilder& builder, Edition edition, Findings& findings)
        : myModel(model), myBuilder(builder), myEdition(edition), myFindings(findings)
    {
    }

    void lower();

private:
    /// A number of octets, known modulo 1, 2, 4 or 8.
    struct Extent
    {
        std::uint32_t modulus = 8;
        std::uint32_t rest = 0;

        void add(const Extent& more);
        void repeat(const Extent& element);
        bool isMultipleOf(std::uint32_t boundary) const
        {
            return modulus % boundary == 0 && rest % boundary == 0;
        }
    };
    /// What is known of a datatype: the name that it has in 1516, its octets and their boundary.
    struct Laid
    {
        std::string name;
        Extent extent;
        std::uint32_t boundary = 1;
        /// The octets where there are always as many.
        std::optional<std::uint64_t> size;
        /// Whether it takes all octets up to the end of the value.
        bool isTail = false;
    };
    /// One component on its way into a record.
    struct Piece
    {
        std::string type;
        Extent extent;
        std::uint32_t boundary = 1;
        std::optional<std::uint64_t> size;
        bool isTail = false;
        /// Octets up to a multiple of so many.
        std::uint32_t padding = 0;
        /// What the note on the field says, if it states a count.
        std::string count;
    };

    void lowerIdentification(Module& module);
    void lowerClasses();
    template <typename T>
    void lowerClass(T& node, std::string_view rootName, std::string_view rootBefore);
    template <typename T>
    void lowerMembers(List<T>& members);
    void lowerMember(Member& member);
    void lowerRoutingSpaces();
    void replaceSpaces(const Definition& user, List<Text>& dimensions);
    void lowerEnumerations();
    Text todaysTransportation(const Text& transportation);

    // Datatypes
    bool isOf13(const Definition& definition) const;
    const Laid* laid(std::string_view name);
    const Laid* laidPrimitive(std::string_view name);
    std::string simpleName(std::string_view type, const Member* member);
    std::string basicName(std::string_view type);
    std::string copyFromMim(std::string_view name);
    std::string arrayName(const std::string& element, std::string_view suffix,
                          std::string_view cardinality, std::string_view encoding);
    std::string octets(std::uint64_t count);
    std::string tailOctets();

    // Complex datatypes
    void lowerComplex();
    void lowerComplex(const ComplexRecord& record);
    void addFields(const ComplexRecord& record, Laid& whole);
    std::optional<Piece> piece(const ComplexRecord& record, std::size_t index);
    std::optional<Piece> repeated(const Laid& element, const Occurrence& how);
    std::optional<Laid> element(const Member& member);
    void loseUnits(const Member& member);
    static bool isSimple(std::string_view type);
    void place(const Component& from, const Piece& piece, Laid& whole);
    void placeOctets(const ComplexRecord& record, std::size_t first, std::size_t count,
                     std::optional<std::uint64_t> size, Laid& whole);

    struct Run;
    std::optional<Run> findRun(const ComplexRecord& record, std::size_t decider) const;
    bool placeVariant(const ComplexRecord& record, const Run& run, Laid& whole, bool isWhole);
    void addVariant(const ComplexRecord& record, const Run& run,
                    const std::vector<Alternative>& alternatives, bool isWhole, const Laid& whole);
    std::string emptyRecord();

    List<Aside> asidesFor(const Definition& from, Kind kind, Kind to);
    void lose(const Definition& definition, const Text& property, std::string sentence);

    const Model& myModel;
    ModelBuilder& myBuilder;
    Edition myEdition;
    Findings& myFindings;
    OwnNameMap<Laid> myLaid;
    OwnNameMap<std::string> myMade;
    OwnNameMap<std::vector<Text>> mySpaces;
    std::size_t myReplaced = 0;
    FreeNames myNames;
    NameSet myBusy;
    /// Of the record that is being lowered: its fields, and the last component that each name
    /// decides about.
    std::vector<RecordField> myFields;
    NameMap<std::size_t> myLastDecided;
    NameSet myFieldNames;
    Model myMim;
    std::uint32_t myModule = 0;
};

}  // namespace omt
