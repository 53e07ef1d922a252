// SPDX-License-Identifier: Apache-2.0
// Watches a federation: decodes what is reflected by its handles, tells what is faulty, and records
// all of it. The calls of the RTI are played here.
#include "omt/omt.h"

#include <filesystem>
#include <iostream>
#include <map>

// What an RTI answers when a federate asks for the handles of names.
static constexpr omt::Handle theVessel = 12;
static constexpr omt::Handle thePosition = 3;
static constexpr omt::Handle theCargo = 4;

class Monitor
{
public:
    Monitor(const omt::Codec& codec, const std::string& file) : myCodec(codec), myRecording(file)
    {
        myRecording.nameClass(theVessel, "Vessel");
        subscribe(theVessel, thePosition, "Vessel", "Position");
        subscribe(theVessel, theCargo, "Vessel", "Cargo");
    }

    void subscribe(omt::Handle node, omt::Handle attribute, const std::string& className,
                   const std::string& name)
    {
        myTypes.emplace(std::pair(node, attribute), myCodec.attribute(className + '.' + name));
        myRecording.nameMember(node, attribute, name);
    }

    void reflect(const omt::Update& update)
    {
        if (!myRecording.write(update)) std::cerr << myRecording.error().message() << '\n';
        for (const auto& [attribute, octets] : update.values)
        {
            const auto found = myTypes.find({update.classHandle, attribute});
            if (found == myTypes.end()) continue;
            found->second.decodeInPlace(octets, myValue);
            if (myValue.isWhole()) continue;
            std::cout << update.object << ", " << found->second.name() << ": ";
            if (myValue.fault())
                std::cout << *myValue.fault() << '\n';
            else
                std::cout << myValue.left() << " octets left over\n";
        }
        show(update);
    }

private:
    void show(const omt::Update& update) const
    {
        for (const auto& [attribute, octets] : update.values)
        {
            if (attribute != thePosition) continue;
            const std::optional<double> x = myX.number(octets);
            const std::optional<double> y = myY.number(octets);
            if (x && y) std::cout << update.object << " is at " << *x << ", " << *y << '\n';
        }
    }

    omt::Codec myCodec;
    omt::UpdateWriter myRecording;
    omt::Value myValue;  // keeps its memory from one reflection to the next
    std::map<std::pair<omt::Handle, omt::Handle>, omt::Type> myTypes;
    omt::Field myX = myCodec.attribute("Vessel.Position").field("X");
    omt::Field myY = myCodec.attribute("Vessel.Position").field("Y");
};

int main()
{
    const omt::Reading fom = omt::read({"models/HarbourBase.xml", "models/HarbourTraffic.xml"},
                                       omt::ReadOptions().withMim());
    if (!fom.isSound()) return 1;
    const omt::Codec codec(fom.model);
    Monitor monitor(codec,
                    (std::filesystem::temp_directory_path() / "watchFederation.csv").string());

    std::vector<std::uint8_t> position;
    if (const auto error =
            codec.attribute("Vessel.Position")
                .encode(R"({"X": 3770617.5, "Y": 446076.25, "Z": 5107686})", position))
        std::cerr << *error << '\n';
    const std::vector<std::uint8_t> cargo = {0, 1, 0, 0, 0, 0, 1, 156, 0, 0};

    omt::Update update;
    update.time = 12.5;
    update.object = "Tilda";
    update.classHandle = theVessel;
    update.values = {
        {thePosition, position},
        {theCargo,    cargo   }
    };
    monitor.reflect(update);
}
