// SPDX-License-Identifier: Apache-2.0
// Records what a federate receives: the calls of its RTI are played here, two threads of them.
#include "omt/omt.h"

#include <iostream>
#include <thread>

// What an RTI answers when a federate asks for the handles of names.
static constexpr omt::Handle theBerth = 12;
static constexpr omt::Handle theOccupied = 3;

// One reflection, as a callback of the RTI would have it.
static void reflect(omt::UpdateWriter& recording, double time, const std::string& object,
                    bool isOccupied)
{
    const std::uint8_t octets[] = {0, 0, 0, isOccupied};
    omt::Update update;
    update.time = time;
    update.object = object;
    update.classHandle = theBerth;
    update.values = {
        {theOccupied, {octets, sizeof octets}}
    };
    if (!recording.write(update))
        std::cerr << "not recorded: " << recording.error().message() << '\n';
}

int main(int argc, char* argv[])
{
    if (argc != 2)
    {
        std::cerr << "usage: recordUpdates FILE.csv\n";
        return 2;
    }
    omt::UpdateWriter recording(argv[1]);
    if (recording.error())
    {
        std::cerr << argv[1] << ": " << recording.error().message() << '\n';
        return 1;
    }
    recording.nameClass(theBerth, "HLAobjectRoot.PortEntity.Berth");
    recording.nameMember(theBerth, theOccupied, "Occupied");
    const auto play = [&recording](const char* object)
    {
        for (int second = 0; second < 10; ++second)
            reflect(recording, second, object, second % 2 != 0);
    };
    std::thread other(play, "Berth 7");
    play("Berth 8");
    other.join();
    return recording.error() ? 1 : 0;
}
