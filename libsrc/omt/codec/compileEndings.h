// SPDX-License-Identifier: Apache-2.0
// EndingCompiler finds the datatypes whose octets, once written, need not be read to be sure of
// them.
#pragma once

#include "omt/codec/plan.h"

namespace omt
{

class EndingCompiler
{
public:
    explicit EndingCompiler(Plan& plan) : myPlan(plan) {}

    /// For nodes that are laid out; what is held comes before what holds it, except in arrays of
    /// any number.
    void run(const std::vector<std::uint32_t>& order);

private:
    Ending endingOf(const Node& node) const;
    Ending endingOfRecord(const Node& record) const;
    Ending endingOfVariant(const Node& variant) const;
    Ending endingOfArray(const Node& array) const;

    Plan& myPlan;
};

}  // namespace omt
