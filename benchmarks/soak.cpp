// SPDX-License-Identifier: Apache-2.0
// Decodes random values of all attributes of a model, and fails if the memory grows.
//
//   omt_soak DECODES MODEL...
//
// The models are 1516-2010 modules, which are merged with the standard MIM.
#include "omtReader/datatypeManager.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/stringTree.h"
#include "omtReader/xmlFileReader.h"
#include "util/dtMessages.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>

namespace
{

int fail(const DtString& sentence)
{
    std::fprintf(stderr, "omt_soak: %s\n", sentence.c_str());
    return 1;
}

long residentKilobytes()
{
    long pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

/// As line and as tree. Every second value begins with a count or discriminant that makes sense.
void decodeRandom(DtDatatypeManager& manager, const DtString& datatype, std::mt19937& source)
{
    unsigned char octets[200];
    for (unsigned char& octet : octets) octet = static_cast<unsigned char>(source());
    if (source() % 2) octets[0] = octets[1] = octets[2] = 0, octets[3] %= 8;
    const int length = static_cast<int>(source() % (sizeof octets + 1));
    int consumed = 0;
    manager.getStringRep(datatype, octets, length, consumed);
    const std::unique_ptr<DtStringTree> tree(manager.createStringTreeRep(
        datatype, octets, length, consumed, nullptr, 0, nullptr, nullptr));
}

/// Whether the memory stays as it is after the first tenth.
bool isSteady(DtDatatypeManager& manager, const std::vector<DtString>& datatypes, long decodes)
{
    std::mt19937 source(1);
    const auto start = std::chrono::steady_clock::now();
    long before = 0;
    for (long done = 1; done <= decodes; ++done)
    {
        decodeRandom(manager, datatypes[static_cast<std::size_t>(done) % datatypes.size()], source);
        if (done % (decodes / 10) != 0) continue;
        std::printf("%ld decodes: %ld KB\n", done, residentKilobytes());
        std::fflush(stdout);
        if (before == 0) before = residentKilobytes();
    }
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    const long growth = residentKilobytes() - before;
    std::printf("%.0f decodes each second; %ld KB of growth after the first tenth\n",
                static_cast<double>(decodes) / time.count(), growth);
    return growth <= 4096;
}

}  // namespace

int main(int argc, char* argv[])
{
    const long decodes = argc > 2 ? std::atol(argv[1]) : 0;
    if (decodes < 10) return fail("Usage: omt_soak DECODES MODEL..., from 10 decodes up");
    DtSetMessageSink([](auto, auto) {});
    std::vector<DtFilename> models{"HLAstandardMIM.xml"};
    models.insert(models.end(), argv + 2, argv + argc);
    DtXMLFileReader reader;
    const DtOMTTreePtr tree(reader.readFiles(models, nullptr));
    if (!tree) return fail(reader.getLastError());
    std::vector<DtString> datatypes;
    for (auto it = tree->getObjectClassNodeBegin(); it != tree->getObjectClassNodeEnd(); ++it)
        for (const auto* each : (*it)->getAttributes()) datatypes.push_back(each->getDatatype());
    if (datatypes.empty()) return fail("The models have no attributes");

    DtDatatypeManager manager;
    manager.fillDefaultDatatypeRepList();
    manager.initOMTData(tree.get());
    manager.readStandardMappings();
    if (isSteady(manager, datatypes, decodes)) return 0;
    return fail("The memory grew by more than 4096 KB after the first tenth");
}
