// SPDX-License-Identifier: Apache-2.0
// Maker gives random values of the layouts in handWritten.h, and the model that they are of.
#pragma once

#include "handWritten.h"
#include "omt/omt.h"

#include <algorithm>
#include <iterator>
#include <random>

namespace ratios
{

/// The RPR FOM 2.0 and the MIM, read when first asked for.
const omt::Model& rpr();
const omt::Codec& rprCodec();
/// Fills byHand::names() from the model.
void fillNames();

/// Random values of all layouts, as they come in exercises.
class Maker
{
public:
    void make(byHand::Spatial& value)
    {
        value = {4, flag(), position(), vector(), vector(), vector(), vector()};
    }
    void make(byHand::EntityType& value)
    {
        value = {below(5),  below(5), static_cast<std::uint16_t>(below(226)), below(60), below(30),
                 below(20), below(4)};
    }
    void make(byHand::Marking& value)
    {
        value = {static_cast<std::uint8_t>(1 + flag()), {}};
        std::generate(std::begin(value.data), std::end(value.data),
                      [this] { return static_cast<std::uint8_t>('A' + below(26)); });
    }
    void make(byHand::Parameters& value)
    {
        constexpr std::uint32_t theParts[] = {1024, 1056, 4096, 4128, 4416};
        value.count = std::size(value.all);
        for (byHand::Parameter& one : value.all)
        {
            one = {below(200),     below(9),   flag(),           theParts[below(5)],
                   1U + below(15), vector().x, 512U + below(20), {}};
            make(one.store);
        }
    }
    void make(byHand::Environment& value)
    {
        constexpr std::uint32_t theTypes[] = {655360, 65536, 786432};
        value.count = std::size(value.all);
        for (std::uint32_t i = 0; i < value.count; ++i)
            value.all[i] = {i, theTypes[i], position(), position(), vector().x, {}};
    }
    void make(byHand::Text& value)
    {
        value.count = std::size(value.units);
        for (char16_t& unit : value.units)
            unit = static_cast<char16_t>(below(12) == 0 ? 0xE0 + below(30) : 'a' + below(26));
    }

private:
    std::uint8_t below(unsigned end) { return static_cast<std::uint8_t>(myRandom() % end); }
    std::uint8_t flag() { return below(2); }
    byHand::Position position()
    {
        std::uniform_real_distribution<double> metres(-6.4e6, 6.4e6);
        return {metres(myRandom), metres(myRandom), metres(myRandom)};
    }
    byHand::Vector vector()
    {
        std::uniform_real_distribution<float> some(-300, 300);
        return {some(myRandom), some(myRandom), some(myRandom)};
    }
    std::mt19937 myRandom{1516};
};

}  // namespace ratios
