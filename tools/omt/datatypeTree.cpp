// SPDX-License-Identifier: Apache-2.0
#include "datatypeTree.h"

#include "modelWords.h"
#include "omt/model/datatypeReferences.h"
#include "textTable.h"

#include <algorithm>
#include <set>

namespace
{

/// A line that is still to be written.
struct Pending
{
    std::string name;
    omt::Text dataType;
    std::size_t level;
};

std::string partName(const omt::Datatype& owner, const omt::Definition& part, omt::Kind kind)
{
    if (kind == omt::Kind::arrayData) return "[]";
    if (const auto* const variant = owner.as<omt::VariantRecord>(); variant && &part == variant)
        return variant->discriminant.str();
    return part.name.str();
}

/// How many elements an array has, in brackets.
std::string detailOf(const omt::Datatype& datatype)
{
    if (const auto* const simple = datatype.as<omt::SimpleData>())
        return simple->units == "NA" ? "" : simple->units.str();
    if (const auto* const array = datatype.as<omt::ArrayData>())
        return '[' + array->cardinality.str() + ']';
    if (const auto* const enumerated = datatype.as<omt::EnumeratedData>())
        return std::to_string(enumerated->enumerators.size()) + " enumerators";
    return "";
}

class Tree
{
public:
    explicit Tree(const omt::Model& model) : myModel(model) {}

    std::string text(const omt::Datatype& top)
    {
        mySeen.insert(top.definition().name);
        push(top, 0);
        while (!myPending.empty())
        {
            const Pending next = std::move(myPending.back());
            myPending.pop_back();
            addLine(next);
        }
        return myTable.isEmpty() ? "" : heading("Down to the leaves") + myTable.text();
    }

private:
    /// The parts of a composite datatype, the first one on top.
    void push(const omt::Datatype& owner, std::size_t level)
    {
        if (!representationOf(owner).empty()) return;
        const std::size_t before = myPending.size();
        omt::forEachReference(
            owner,
            [&](const omt::Text& name, const omt::Definition& part, omt::Kind kind) {
                myPending.push_back({partName(owner, part, kind), name, level});
            });
        std::reverse(myPending.begin() + static_cast<std::ptrdiff_t>(before), myPending.end());
    }

    void addLine(const Pending& next)
    {
        constexpr std::size_t theDeepest = 40;
        const std::size_t level = std::min(next.level, theDeepest);
        const omt::Datatype datatype = myModel.findDatatype(next.dataType);
        std::string remark;
        std::string representation;
        if (datatype)
        {
            const bool isNew = mySeen.insert(next.dataType).second;
            representation = representationOf(datatype);
            remark = detailOf(datatype);
            if (representation.empty() && datatype.kind() != omt::Kind::basicData)
            {
                if (!isNew) remark += remark.empty() ? "as above" : ", as above";
                if (isNew) push(datatype, next.level + 1);
            }
        }
        myTable.add({std::string(2 * level, ' ') + next.name, nameWithKind(myModel, next.dataType),
                     representation, remark});
    }

    const omt::Model& myModel;
    std::set<std::string_view> mySeen;
    std::vector<Pending> myPending;
    TextTable myTable{
        {exact("Part"), whole("Datatype"), whole("Representation"), wrap("")}
    };
};

}  // namespace

std::string representationOf(const omt::Datatype& datatype)
{
    if (const auto* const simple = datatype.as<omt::SimpleData>())
        return simple->representation.str();
    if (const auto* const reference = datatype.as<omt::ReferenceData>())
        return reference->representation.str();
    if (const auto* const enumerated = datatype.as<omt::EnumeratedData>())
        return enumerated->representation.str();
    return "";
}

std::string datatypeTree(const omt::Model& model, const omt::Datatype& datatype)
{
    return Tree(model).text(datatype);
}
