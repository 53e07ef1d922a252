// SPDX-License-Identifier: Apache-2.0
// Changes one field of a value, and no other octet.
#include "omt/omt.h"

#include <iomanip>
#include <iostream>

static void print(omt::Octets octets)
{
    for (const std::uint8_t octet : octets)
        std::cout << std::hex << std::setw(2) << std::setfill('0') << int{octet};
    std::cout << '\n';
}

int main()
{
    const omt::Reading fom = omt::read({"models/HarbourBase.xml"}, omt::ReadOptions().withMim());
    const omt::Codec codec(fom.model);
    // The octet of padding between the two fields is not zero.
    const std::vector<std::uint8_t> octets = {0x42, 0xAA, 0, 7};
    omt::Value berth = codec.attribute("Berth.Identifier").decode(octets);
    for (const omt::ValueNote& note : berth.notes()) std::cout << note << '\n';

    if (const auto error = berth.set("Number", 8)) std::cout << *error << '\n';
    if (const auto error = berth.set("Number", 70000)) std::cout << *error << '\n';
    print(berth.octets());
}
