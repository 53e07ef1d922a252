// SPDX-License-Identifier: Apache-2.0
// Says what is wrong with octets, and shows what could be decoded all the same.
#include "omt/omt.h"

#include <iostream>
#include <map>

int main()
{
    const omt::Reading fom = omt::read({"models/HarbourBase.xml"}, omt::ReadOptions().withMim());
    const omt::Codec codec(fom.model);
    const omt::Type cargo = codec.type("CargoVariant");

    const std::map<std::string, std::vector<std::uint8_t>> cases = {
        {"cut short",   {0, 1, 0, 0, 0, 0, 1, 156, 0, 0}       },
        {"too long",    {0, 2, 0, 0, 69, 59, 128, 0, 255}      },
        {"padding",     {0, 2, 0, 1, 69, 59, 128, 0}           },
        {"large count", {0, 3, 0, 0, 127, 255, 255, 255, 0, 65}},
    };
    for (const auto& [what, octets] : cases)
    {
        const omt::Value value = cargo.decode(octets);
        std::cout << what << ": " << value.json() << '\n';
        if (value.fault()) std::cout << "  fault: " << *value.fault() << '\n';
        for (const omt::ValueNote& note : value.notes()) std::cout << "  note: " << note << '\n';
        if (value.left() > 0) std::cout << "  octets left over: " << value.left() << '\n';
    }
}
