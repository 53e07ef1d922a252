// SPDX-License-Identifier: Apache-2.0
// Decodes on several threads that share one tree, with one receiver of all messages.
#include "omtReader/datatypeManager.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/xmlFileReader.h"
#include "util/dtMessages.h"

#include <iostream>
#include <thread>

static void decode(DtOMTTree& tree, int& decoded)
{
    DtDatatypeManager manager;
    manager.setImplicitPadding(true);
    manager.fillDefaultDatatypeRepList();
    manager.initOMTData(&tree);
    manager.readFile("harbour.map");
    const char octets[] = {0, 1, 0, 0, 0, 0, 1, '\x9C', 0, 0, 2, '\x60', 0, 0, 0, '\x25'};
    for (int count = 0; count < 1000; ++count)
    {
        int consumed = 0;
        if (manager.getStringRep("CargoVariant", octets, sizeof octets, consumed) ==
            "Containers 412 608 37")
            ++decoded;
    }
    DtWarn << "1000 values are enough\n";
}

int main()
{
    int messages = 0;  // needs no lock: the sink is called for one message at a time
    DtSetMessageSink([&messages](DtMessageLevel, std::string_view) { ++messages; });
    DtXMLFileReader reader;
    const DtOMTTreePtr tree(reader.readFiles(
        {"models/HarbourBase.xml", "models/HarbourTraffic.xml", "HLAstandardMIM.xml"}, nullptr));
    if (!tree) return 1;
    tree->prepareForSharing();

    int decoded[4] = {};
    std::vector<std::thread> threads;
    for (int& count : decoded) threads.emplace_back(decode, std::ref(*tree), std::ref(count));
    for (std::thread& thread : threads) thread.join();
    DtSetMessageSink({});
    for (const int count : decoded) std::cout << count << ' ';
    std::cout << "values, " << messages << " messages\n";
}
