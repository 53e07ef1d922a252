// SPDX-License-Identifier: Apache-2.0
// Decodes on several threads with one codec.
#include "omt/omt.h"

#include <iostream>
#include <thread>

static void decode(const omt::Type& cargo, int& decoded)
{
    const std::vector<std::uint8_t> octets = {0, 1, 0, 0, 0, 0, 1, 156, 0, 0, 2, 96, 0, 0, 0, 37};
    omt::Value value;  // one for each thread; it keeps its memory from one decode to the next
    for (int count = 0; count < 1000; ++count)
    {
        cargo.decode(octets, value);
        decoded += value["ContainerLoad.FortyFoot"].integer() == 608;
    }
}

int main()
{
    const omt::Reading fom = omt::read({"models/HarbourBase.xml"}, omt::ReadOptions().withMim());
    const omt::Codec codec(fom.model);
    const omt::Type cargo = codec.type("CargoVariant");

    int decoded[4] = {};
    std::vector<std::thread> threads;
    for (int& count : decoded) threads.emplace_back(decode, std::cref(cargo), std::ref(count));
    for (std::thread& thread : threads) thread.join();
    for (const int count : decoded) std::cout << count << ' ';
    std::cout << "values\n";
}
