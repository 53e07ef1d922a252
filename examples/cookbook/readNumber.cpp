// SPDX-License-Identifier: Apache-2.0
// Reads one number out of the octets of a value.
#include "omt/omt.h"

#include <iostream>

int main()
{
    const omt::Reading fom = omt::read({"models/HarbourBase.xml", "models/HarbourTraffic.xml"},
                                       omt::ReadOptions().withMim());
    for (const omt::Finding& finding : fom.findings) std::cerr << finding << '\n';
    const omt::Codec codec(fom.model);
    const omt::Field field = codec.attribute("Vessel.Cargo").field("ContainerLoad.FortyFoot");

    const std::vector<std::uint8_t> cargoes[] = {
        {0, 1, 0, 0, 0, 0, 1, 156, 0, 0, 2, 96, 0, 0, 0, 37},
        {0, 2, 0, 0, 69, 59, 128, 0},
    };
    for (const std::vector<std::uint8_t>& octets : cargoes)
        if (const std::optional<double> number = field.number(octets))
            std::cout << "containers of forty feet: " << *number << '\n';
        else
            std::cout << "no containers\n";
}
