// SPDX-License-Identifier: Apache-2.0
// Makes a value out of calls, in the order of its fields.
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
    const omt::Reading fom = omt::read({"models/HarbourBase.xml", "models/HarbourTraffic.xml"},
                                       omt::ReadOptions().withMim());
    const omt::Codec codec(fom.model);
    omt::ValueWriter cargo(codec.attribute("Vessel.Cargo"));
    omt::Octets octets;

    cargo.label("Containers");
    cargo.integer(412);
    cargo.integer(608);
    cargo.integer(37);
    if (const auto error = cargo.finish(octets)) std::cout << *error << '\n';
    print(octets);

    cargo.label("Containers");
    cargo.integer(412);
    cargo.number(60.8);
    if (const auto error = cargo.finish(octets)) std::cout << *error << '\n';
}
