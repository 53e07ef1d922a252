// SPDX-License-Identifier: Apache-2.0
// ScriptCompiler writes down how fields of fixed size stand in JSON, so that nobody has to walk
// through them.
#pragma once

#include "omt/codec/plan.h"

namespace omt
{

/// Takes time linear in the plan: what one record comes to is bounded.
class ScriptCompiler
{
public:
    explicit ScriptCompiler(Plan& plan) : myPlan(plan) {}

    /// For the nodes with these indices, after all of them are laid out. The pool of texts is
    /// complete afterwards.
    void run(const std::vector<std::uint32_t>& order);

private:
    void measureLabels(Node& node) const;
    LabelPlaces labelsOf(const Node& number);
    void write(Node& node);
    bool addFields(Node& record);
    bool addNode(std::uint32_t id, std::uint32_t offset);
    bool addLeaf(std::uint32_t id, std::uint32_t offset, Leaf leaf, std::uint64_t longest);
    void addStep(std::string_view before, std::uint32_t id, std::uint32_t offset, Leaf leaf);
    bool addRecord(const Node& record, std::uint32_t offset);
    bool addArray(std::uint32_t id, std::uint32_t offset);
    void addKey(const Part& part, std::uint32_t i);
    bool addVariant(const Node& variant, std::uint32_t offset);

    Plan& myPlan;
    std::vector<ScriptStep> mySteps;
    /// The text before the next step.
    std::string myBefore;
    std::uint64_t myRoom = 0;
};

}  // namespace omt
