// SPDX-License-Identifier: Apache-2.0
// Reading and merging: against bare parsing, and as a model grows.
#include "modelFiles.h"
#include "omtReader/standardMIM.h"
#include "omtReader/xmlEvolvedFileReader.h"
#include "omtReader/xmlFileReader.h"
#include "ratio.h"

#include <libxml/parser.h>

namespace
{

using ratios::secondsOf;

using ratios::generatedPath;
using ratios::readTree;
using ratios::theRPR;
using ratios::theScale;

/// The MIM inside the library, alone and not merged into anything.
DtOMTTreePtr readMIM()
{
    xmlDoc* document = nullptr;
    DtString error;
    DtXMLFileReader::openStream(reinterpret_cast<const char*>(HLAstandardMIM_xml),
                                HLAstandardMIM_xml_len, &document, error);
    xmlNode* root = xmlDocGetRootElement(document);
    DtOMTTreePtr tree(DtXMLEvolvedFileReader(nullptr).processObjectModel(root));
    xmlFreeDoc(document);
    return tree;
}

std::string rprPath()
{
    return ratios::modelPath(theRPR).string();
}

double readAndFree(const std::string& path)
{
    return secondsOf([&] { readTree(path); });
}

double parseRPR()
{
    const std::string path = rprPath();
    return secondsOf([&] { xmlFreeDoc(xmlReadFile(path.c_str(), nullptr, 0)); });
}

double readRPR()
{
    return readAndFree(rprPath());
}

double readGenerated(int scale)
{
    return readAndFree(generatedPath(scale));
}

double mergeGenerated(int scale)
{
    const DtOMTTreePtr source = readTree(generatedPath(scale));
    const DtOMTTreePtr target(new DtOMTTree);
    return secondsOf([&] { target->merge(source.get()); });
}

template <double (*work)(int scale), int scale>
double scaled()
{
    return work(scale);
}

double readRPRAndMIM()
{
    const std::string path = rprPath();
    DtOMTTreePtr rpr;
    DtOMTTreePtr mim;
    return secondsOf(
        [&]
        {
            rpr = readTree(path);
            mim = readMIM();
        });
}

double mergeMIMIntoRPR()
{
    const DtOMTTreePtr rpr = readTree(rprPath());
    const DtOMTTreePtr mim = readMIM();
    return secondsOf([&] { rpr->merge(mim.get()); });
}

}  // namespace

std::vector<ratios::Ratio> ratios::readAndMergeRatios()
{
    constexpr Work readSmaller = scaled<readGenerated, theScale>;
    constexpr Work readLarger = scaled<readGenerated, 10 * theScale>;
    constexpr Work mergeSmaller = scaled<mergeGenerated, theScale>;
    constexpr Work mergeLarger = scaled<mergeGenerated, 10 * theScale>;
    return {
        {"read_rpr",     parseRPR,      readRPR,         theRPR },
        {"read_growth",  readSmaller,   readLarger,      nullptr},
        {"merge_growth", mergeSmaller,  mergeLarger,     nullptr},
        {"merge_mim",    readRPRAndMIM, mergeMIMIntoRPR, theRPR },
    };
}

std::vector<ratios::Growth> ratios::readAndMergeGrowth()
{
    return {
        {"Reading", "times every kind of definition", theScale / 8, readGenerated },
        {"Merging", "times every kind of definition", theScale / 8, mergeGenerated},
    };
}
