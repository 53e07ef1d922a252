// SPDX-License-Identifier: Apache-2.0
// Makes a table of recorded updates: the attribute, how many octets it took, and the value.
#include "omt/omt.h"

#include <fstream>
#include <iomanip>
#include <iostream>
#include <sstream>

int main()
{
    const omt::Reading fom = omt::read({"models/HarbourBase.xml", "models/HarbourTraffic.xml"},
                                       omt::ReadOptions().withMim());
    const omt::Codec codec(fom.model);
    std::ifstream updates("updates.txt");
    omt::Value value;  // keeps its memory from one update to the next
    for (std::string update; std::getline(updates, update);)
    {
        std::istringstream line(update);
        std::string attribute;
        std::vector<std::uint8_t> octets;
        line >> attribute >> std::hex;
        for (unsigned octet = 0; line >> octet;) octets.push_back(static_cast<std::uint8_t>(octet));

        const std::optional<omt::Type> type = codec.findAttribute(attribute);
        if (!type) continue;
        type->decode(octets, value);
        std::cout << std::left << std::setw(22) << attribute << std::right << std::setw(3)
                  << octets.size() << "  " << value.json();
        std::cout << (type->units().empty() ? "" : " ") << type->units() << '\n';
    }
}
