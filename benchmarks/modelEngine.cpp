// SPDX-License-Identifier: Apache-2.0
// Models of libomt: reading and writing against libxml2, merging against reading, checking against
// reading and compiling, growth, memory.
#include "modelFiles.h"
#include "omt/check/check.h"
#include "omt/codec/codec.h"
#include "omt/model/read.h"
#include "omt/model/write.h"
#include "ratio.h"

#include <libxml/parser.h>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace
{

using ratios::generatedPath;
using ratios::secondsOf;
using ratios::theRPR;
using ratios::theScale;

constexpr const char* theModules[] = {"evolved/RPR-Foundation_v2.0.xml",
                                      "evolved/RPR-Enumerations_v2.0.xml",
                                      "evolved/RPR-Base_v2.0.xml",
                                      "evolved/RPR-Physical_v2.0.xml",
                                      "evolved/RPR-Aggregate_v2.0.xml",
                                      "evolved/RPR-Warfare_v2.0.xml",
                                      "evolved/RPR-Communication_v2.0.xml",
                                      "evolved/RPR-DER_v2.0.xml",
                                      "evolved/RPR-Logistics_v2.0.xml",
                                      "evolved/RPR-Minefield_v2.0.xml",
                                      "evolved/RPR-SE_v2.0.xml",
                                      "evolved/RPR-SIMAN_v2.0.xml",
                                      "evolved/RPR-UA_v2.0.xml",
                                      "evolved/RPR-Switches_v2.0.xml"};

std::string textOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

const std::string& rprText()
{
    static const std::string theText = textOf(ratios::modelPath(theRPR).string());
    return theText;
}

double parseRPR()
{
    const std::string& text = rprText();
    return secondsOf(
        [&]
        { xmlFreeDoc(xmlReadMemory(text.data(), static_cast<int>(text.size()), "", nullptr, 0)); });
}

void readText(const std::string& text)
{
    omt::Findings findings;
    omt::readModule({"model", text}, findings);
}

double readRPR()
{
    return secondsOf([] { readText(rprText()); });
}

template <int scale>
double readGenerated()
{
    const std::string text = textOf(generatedPath(scale));
    return secondsOf([&] { readText(text); });
}

std::vector<omt::Model> readModules()
{
    omt::Findings findings;
    std::vector<omt::Model> models;
    models.push_back(omt::readModule({"MIM", omt::standardMim(omt::Edition::ieee2010)}, findings));
    for (const char* const file : theModules)
    {
        const std::string text = textOf(ratios::modelPath(file).string());
        models.push_back(omt::readModule({file, text}, findings));
    }
    return models;
}

double readAllModules()
{
    return secondsOf([] { readModules(); });
}

double mergeAllModules()
{
    const std::vector<omt::Model> models = readModules();
    return secondsOf(
        [&]
        {
            omt::Findings findings;
            omt::merge(models, findings);
        });
}

/// What libxml2 takes to write the same document.
double dumpRPR()
{
    const std::string& text = rprText();
    xmlDoc* const document =
        xmlReadMemory(text.data(), static_cast<int>(text.size()), "", nullptr, XML_PARSE_NOBLANKS);
    const double seconds = secondsOf(
        [&]
        {
            xmlChar* written = nullptr;
            int size = 0;
            xmlDocDumpFormatMemory(document, &written, &size, 1);
            xmlFree(written);
        });
    xmlFreeDoc(document);
    return seconds;
}

double writeText(const std::string& text)
{
    omt::Findings findings;
    const omt::Model model = omt::readModule({"model", text}, findings);
    return secondsOf([&] { omt::writeXml(model, omt::Edition::ieee2010); });
}

double writeRPR()
{
    return writeText(rprText());
}

template <int scale>
double writeGenerated()
{
    return writeText(textOf(generatedPath(scale)));
}

double compileRPR()
{
    return secondsOf(
        []
        {
            omt::Findings findings;
            omt::Codec(omt::readModule({"model", rprText()}, findings));
        });
}

/// With the standard MIM and all rules, reading included.
double checkText(const std::string& text)
{
    omt::CheckOptions options;
    options.enable = {"lint"};
    return secondsOf(
        [&]
        {
            omt::check(
                {
                    {"model", text}
            },
                options, omt::ReadOptions().withMim());
        });
}

double checkRPR()
{
    return checkText(rprText());
}

template <int scale>
double checkGenerated()
{
    return checkText(textOf(generatedPath(scale)));
}

// Octets in the place of seconds -----------------------------------------------------------------

double octetsOfRPR()
{
    return static_cast<double>(rprText().size());
}

double octetsKept()
{
    const auto used = []
    {
        const struct mallinfo2 info = mallinfo2();
        return info.uordblks + info.hblkhd;
    };
    omt::Findings findings;
    const std::size_t before = used();
    const omt::Model model = omt::readModule({"model", rprText()}, findings);
    return static_cast<double>(used() - before);
}

/// A line of /proc/self/status, in octets.
double statusOf(const std::string& name)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.compare(0, name.size(), name) == 0)
            return std::stod(line.substr(name.size() + 1)) * 1024;
    return 0;
}

/// What a process of its own gains at most while it reads the file.
double octetsAtPeak()
{
    const std::string path = ratios::modelPath(theRPR).string();
    int ends[2] = {};
    if (pipe(ends) != 0) return 0;
    const pid_t child = fork();
    if (child == 0)
    {
        malloc_trim(0);
        std::ofstream("/proc/self/clear_refs") << 5;
        const double before = statusOf("VmHWM");
        const omt::Reading reading = omt::read({path});
        const double gained = statusOf("VmHWM") - before;
        _exit(write(ends[1], &gained, sizeof gained) == sizeof gained ? 0 : 1);
    }
    double gained = 0;
    if (read(ends[0], &gained, sizeof gained) != sizeof gained) gained = 0;
    close(ends[0]);
    close(ends[1]);
    waitpid(child, nullptr, 0);
    return gained;
}

}  // namespace

std::vector<ratios::Ratio> ratios::modelEngineRatios()
{
    constexpr Work readSmaller = readGenerated<theScale>;
    constexpr Work readLarger = readGenerated<10 * theScale>;
    constexpr Work writeSmaller = writeGenerated<theScale>;
    constexpr Work writeLarger = writeGenerated<10 * theScale>;
    constexpr Work checkSmaller = checkGenerated<theScale>;
    constexpr Work checkLarger = checkGenerated<10 * theScale>;
    return {
        {"model_read",         parseRPR,       readRPR,         theRPR       },
        {"model_growth",       readSmaller,    readLarger,      nullptr      },
        {"model_write",        dumpRPR,        writeRPR,        theRPR       },
        {"model_write_growth", writeSmaller,   writeLarger,     nullptr      },
        {"model_merge",        readAllModules, mergeAllModules, theModules[0]},
        {"check",              compileRPR,     checkRPR,        theRPR       },
        {"check_growth",       checkSmaller,   checkLarger,     nullptr      },
        {"model_memory",       octetsOfRPR,    octetsKept,      theRPR       },
        {"model_memory_peak",  octetsOfRPR,    octetsAtPeak,    theRPR       },
    };
}
