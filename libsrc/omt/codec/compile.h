// SPDX-License-Identifier: Apache-2.0
// Compiler turns the datatypes of a model into a plan, in time linear in the model.
//
// First every datatype becomes a node that names its parts, whatever these are. Then the order in
// which they hold each other, octet boundaries and sizes follow, without recursion.
#pragma once

#include "omt/base/finding.h"
#include "omt/codec/codec.h"
#include "omt/codec/plan.h"
#include "omt/codec/typeText.h"
#include "omt/model/compare.h"
#include "omt/model/model.h"

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace omt
{

class Compiler
{
public:
    Compiler(const Model& model, const CodecOptions& options, Findings& findings)
        : myModel(model), myOptions(options), myFindings(findings)
    {
    }

    Plan compile();

    /// The name of the node of an HLA 1.3 attribute or parameter with this cardinality.
    static std::string repeatedName(std::string_view datatype, std::string_view cardinality);

private:
    using Id = std::uint32_t;

    // Datatypes to nodes: compile.cpp.
    template <typename T>
    void announce(const std::vector<T>& table);
    void announceStandard();
    Id addNode(std::string_view name);
    Id addNumber(std::string_view name, const Representation& what);
    void build(Id id, Datatype type);
    void build(Id id, const BasicData& data);
    void buildAlias(Id id, const Definition& data, const Text& representation);
    void build(Id id, const EnumeratedData& data);
    void build(Id id, const ArrayData& data);
    void build(Id id, const FixedRecord& data);
    void build(Id id, const VariantRecord& data);
    void build(Id id, const ComplexRecord& data);
    bool setExtent(Node& node, Encoding how, const Cardinality& dimension) const;
    void addEnumerators(Enumeration& table, const EnumeratedData& data);
    void sortEnumeration(Enumeration& table) const;
    void buildMembers();

    // Variant records and HLA 1.3: compileRecords.cpp.
    const Enumeration* enumerationOf(Id id) const;
    bool addChoices(Id id, const VariantRecord& data, std::vector<Part>& parts);
    bool addChoice(const VariantRecord& data, const Alternative& alternative,
                   const EnumeratorRange& range, std::uint32_t index, Choices& choices);
    bool takeChoices(std::size_t count);
    bool closeChoices(Choices& choices, const Enumeration* names);
    void addCount(const FixedRecord& data, std::size_t field, std::vector<Part>& parts);
    bool addSteps(std::string_view text, std::vector<Part>& parts, std::size_t field);
    Id addRepeated(Id element, const ComponentCardinality& how, bool isPadding);
    Id addPhased(Id alternative, Id discriminant);
    Part component(const ComplexRecord& data, std::size_t index, std::vector<Part>& parts);
    void setDecider(const Component& data, const ComponentCardinality& how,
                    std::vector<Part>& parts, Part& part);
    void storeParts(Id id, const std::vector<Part>& parts);
    void nameParts(const Definition& data, std::vector<Part>& parts,
                   const std::vector<std::string_view>& names);

    // Order, boundaries, sizes: compileLayout.cpp.
    void findOrder();
    bool raiseBoundary(Id id, std::uint8_t boundary);
    void findBoundaries();
    std::uint8_t boundaryOf(Id id) const;
    void layOut(Id id);
    void layOutRecord(Node& node);
    void layOutVariant(Node& node);
    void layOutArray(Id id);
    void setRest(Node& node);
    void finishArrays();

    // What decoding looks at first: compileShapes.cpp.
    /// Padding octets from the start of a node, in order.
    using Holes = std::vector<std::uint32_t>;
    void findShapes();
    void findShape(Node& node);
    void findList(Node& node) const;
    void setElements(Node& node) const;
    bool addHoles(Holes& holes, std::uint32_t from, std::uint32_t to) const;
    bool addHoles(Holes& holes, std::uint32_t at, const Node& child) const;
    bool addHoles(Holes& holes, const Node& node, std::uint32_t fields) const;
    void addGaps(const Holes& holes, std::uint32_t size);
    bool setGaps(Node& node, const Holes& holes, std::uint32_t size);
    std::uint32_t commonSize(const Node& variant) const;
    void setEven(Fork& fork) const;
    bool setFork(Node& node, std::uint32_t lead);
    void setLead(Node& node);
    void addTargets(const Node& variant);
    void addSlots(const Node& variant);

    /// Calls `visit` for the nodes that one holds without an array of any number between.
    template <typename Visit>
    void forEachHeld(Id id, const Visit& visit) const;

    // Hints: compileHints.cpp.
    void gatherHints();
    void addHints(const Hints& hints, bool isBuiltIn);
    void splitHinted(const Definition& record, std::vector<Part>& parts);
    void applyHints();
    void applyText(Id id, std::size_t hint);
    void setRole(Id id, std::size_t hint);
    bool isEntityType(const Node& node) const;
    bool isPosition(const Node& node) const;
    std::uint32_t addTable(const Hints& hints, const std::string& name);
    void spreadRoles();
    void complain(std::size_t hint, const std::string& why);

    Id resolve(const Definition& data, const Text& name);
    /// Follows simple datatypes to what they stand for.
    Id target(Id id) const;
    void makeOctets(Id id);
    void find(Severity severity, std::string_view name, const Definition& data,
              const Text* property, std::string text);

    /// A hint, where it comes from, and the nodes it is about.
    struct Hinted
    {
        const Hint* hint;
        const Hints* from;
        bool isBuiltIn;
        std::vector<Id> nodes;
    };

    const Model& myModel;
    const CodecOptions& myOptions;
    Findings& myFindings;
    Plan myPlan;
    /// Where nodes come from; what their names stand for, where they are only another name.
    std::vector<Datatype> mySources;
    std::vector<Id> myAliases;
    std::vector<Id> myOrder;
    /// What arrays of a node look like.
    std::vector<Look> myLooks;
    /// How many numbers alternatives may still have that are not written out: those inside of
    /// ranges, and enumerators without an alternative.
    std::size_t myChoicesLeft = 4'000'000;
    /// Records that begin after a length, by record and the octets before it.
    std::map<std::pair<Id, std::uint32_t>, Id> myPhased;
    Hints myBuiltIn;
    std::vector<Hinted> myHinted;
    std::unordered_map<const NumberTable*, std::uint32_t> myTables;
    /// Hints about fields, by the names of their records.
    NameMap<std::vector<std::size_t>> myFieldHints;
};

}  // namespace omt
