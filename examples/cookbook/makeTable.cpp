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
    std::ifstream updates("updates.csv");
    std::string update;
    std::getline(updates, update);  // the header: time,event,kind,object,class,member,octets
    omt::Value value;               // keeps its memory from one update to the next
    while (std::getline(updates, update))
    {
        std::istringstream line(update);
        std::string cells[7];
        for (std::string& cell : cells) std::getline(line, cell, ',');
        const std::string attribute = cells[4] + '.' + cells[5];
        std::vector<std::uint8_t> octets;
        line = std::istringstream(cells[6]);
        line >> std::hex;
        for (unsigned octet = 0; line >> octet;) octets.push_back(static_cast<std::uint8_t>(octet));

        const std::optional<omt::Type> type = codec.findAttribute(attribute);
        if (!type) continue;
        type->decode(octets, value);
        std::cout << std::left << std::setw(22) << attribute << std::right << std::setw(3)
                  << octets.size() << "  " << value.json();
        std::cout << (type->units().empty() ? "" : " ") << type->units() << '\n';
    }
}
