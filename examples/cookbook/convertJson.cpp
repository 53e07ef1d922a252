// SPDX-License-Identifier: Apache-2.0
// Turns a value into JSON, and JSON into the octets of a value.
#include "omt/omt.h"

#include <iomanip>
#include <iostream>

int main()
{
    const omt::Reading fom = omt::read({"models/HarbourBase.xml"}, omt::ReadOptions().withMim());
    const omt::Codec codec(fom.model);
    const omt::Type cargo = codec.type("CargoVariant");

    const std::vector<std::uint8_t> octets = {0, 1, 0, 0, 0, 0, 1, 156, 0, 0, 2, 96, 0, 0, 0, 37};
    std::cout << cargo.decode(octets).json() << '\n';

    for (const char* json : {R"({"LiquidLoad": 3000, "Kind": "LiquidBulk"})",
                             R"({"LiquidLoad": "much", "Kind": "LiquidBulk"})"})
    {
        std::vector<std::uint8_t> encoded;
        if (const std::optional<omt::ValueError> error = cargo.encode(json, encoded))
            std::cout << *error;
        for (const std::uint8_t octet : encoded)
            std::cout << std::hex << std::setw(2) << std::setfill('0') << int{octet};
        std::cout << '\n';
    }
}
