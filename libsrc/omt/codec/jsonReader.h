// SPDX-License-Identifier: Apache-2.0
// JsonReader reads a value in JSON and writes its octets, in one pass; only fields that stand out
// of order are passed over first and read when their turn comes.
#pragma once

#include "omt/codec/fault.h"
#include "omt/codec/index.h"
#include "omt/codec/jsonScanner.h"
#include "omt/codec/octetRoom.h"

#include <memory_resource>
#include <optional>
#include <vector>

namespace omt
{

class JsonReader
{
public:
    JsonReader(const Plan& plan, std::string_view json, OctetRoom& octets)
        : myPlan(plan), myText(json), myOctets(octets), myBase(octets.size())
    {
    }

    /// Reads the value of a node; why there is none, or nothing.
    std::optional<ValueError> run(std::uint32_t node);

private:
    // Not set to zero, as only what was written is read.
    struct Frame
    {
        std::uint32_t node;
        std::uint32_t index;
    };
    /// The fields of one record while it is read.
    struct Fields
    {
        const Node& node;
        std::size_t start;
        /// Of myLooked, if fields look at others.
        std::size_t looked;
        std::uint32_t next = 0;
        /// Of mySlots, once a field stands out of order.
        std::size_t slots = theNoSlots;
    };
    /// What a variant record has while it is read.
    struct Choice
    {
        const Node& node;
        std::size_t start;
        const char* discriminant = nullptr;
        const char* contents = nullptr;
        /// The index of the alternative that is given, theNothing, or theUnknown for octets.
        std::uint32_t given = theNothing;
        bool isWritten = false;
    };
    static constexpr std::size_t theNoSlots = ~std::size_t{0};

    // Structure: jsonRead.cpp.
    bool piece(std::uint32_t id, std::uint32_t depth);
    bool script(const Node& record, std::uint32_t depth);
    const char* leaf(const ScriptStep& step, const char* at, std::uint8_t* octets) const;
    bool key(std::string_view& name, std::uint32_t depth);
    bool takesKey(const Part& part, bool isFirst);
    bool record(std::uint32_t id, std::uint32_t depth);
    bool alternative(Fields& fields, std::uint32_t depth);
    bool fieldByName(Fields& fields, std::uint32_t depth);
    std::string nearestParts(const Node& node, std::string_view name) const;
    bool keepForLater(Fields& fields, std::uint32_t i, std::uint32_t depth);
    bool isAbsent(const Fields& fields, const Part& part) const;
    bool passAbsent(Fields& fields, std::uint32_t depth);
    bool refuseAbsent(const Part& part, std::uint32_t depth);
    bool field(Fields& fields, std::uint32_t depth);
    bool checkStated(const Fields& fields, const Part& part, std::uint32_t depth);
    bool finish(Fields& fields, std::uint32_t depth);
    bool variant(std::uint32_t id, std::uint32_t depth);
    bool parts(Choice& choice, std::uint32_t depth);
    std::uint32_t takesPart(const Choice& choice, bool isFirst);
    bool partByName(const Choice& choice, std::uint32_t& i, std::uint32_t depth);
    bool part(Choice& choice, std::uint32_t i, std::uint32_t depth);
    bool finish(Choice& choice, std::uint32_t depth);
    bool body(const Choice& choice, std::uint32_t depth);
    bool array(std::uint32_t id, std::uint32_t depth);
    bool elements(const Node& node, std::size_t start, std::size_t& count, std::uint32_t depth);
    bool isZero(std::size_t start, std::size_t size);
    void pad(std::size_t start, std::uint32_t boundary)
    {
        myOctets.growTo(start + aligned(myOctets.size() - start, boundary));
    }

    // Numbers and texts: jsonReadLeaves.cpp.
    const char* quickNumber(const Node& node, const char* at, std::uint8_t* octets) const;
    const char* quickLabel(const Node& node, const char* at, std::uint8_t* octets) const;
    const char* quickText(const Node& array, const char* at, std::uint8_t* octets) const;
    bool number(const Node& node, std::uint32_t depth);
    bool label(const Node& node, std::uint32_t depth);
    bool namedNumber(const Node& node, std::uint32_t depth);
    bool integer(const Node& node, std::string_view text, std::uint32_t depth);
    bool ranged(const Node& node, std::int64_t number, std::uint32_t depth);
    bool outside(const Node& node, std::string_view text, std::uint32_t depth);
    bool floating(const Node& node, std::uint32_t depth);
    bool specialFloating(const Node& node, std::uint32_t depth);
    bool nan(const Node& node, std::uint32_t depth);
    std::string_view unescaped(const RawText& raw);
    bool hexadecimal(std::size_t& count, std::uint32_t depth);
    bool characters(const Node& array, std::size_t& count, std::uint32_t depth);
    bool hintedText(const Node& array, std::size_t& count, std::uint32_t depth);
    bool lettersOf(const Node& array, std::size_t& count, std::uint32_t depth);
    bool textAndRest(const Node& array, std::size_t& count, std::uint32_t depth);
    void store(const Node& node, std::uint64_t bits);

    /// Says what is wrong with the piece at this depth, where its value or key begins; false.
    bool fail(const std::string& what, std::uint32_t depth);
    /// The same at the letter that is reached.
    bool failHere(const std::string& what, std::uint32_t depth);
    std::string quoted(Name name) const;

    const Plan& myPlan;
    JsonScanner myText;
    OctetRoom& myOctets;
    std::size_t myBase;
    std::optional<ValueError> myError;
    /// Where the value or key begins that is read.
    const char* myToken = nullptr;
    /// Enough for the two lists below, unless records are very long.
    std::byte myFirstMemory[1024];
    std::pmr::monotonic_buffer_resource myMemory{myFirstMemory, sizeof myFirstMemory};
    /// For the fields of the records that are open: where those stand that were out of order, and
    /// what others look at.
    std::pmr::vector<const char*> mySlots{&myMemory};
    std::pmr::vector<Looked> myLooked{&myMemory};
    /// How many elements the last array had.
    std::size_t myCount = 0;
    std::string myScratch;
    Frame myFrames[theDeepest + 2];
};

}  // namespace omt
