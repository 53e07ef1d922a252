// SPDX-License-Identifier: Apache-2.0
// Reading and merging: against bare parsing, and as a model grows.
#include "generatedModel.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/standardMIM.h"
#include "omtReader/xmlEvolvedFileReader.h"
#include "omtReader/xmlFileReader.h"
#include "ratio.h"

#include <libxml/parser.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>

namespace
{

using ratios::secondsOf;

constexpr const char* theRPR = "evolved/RPR_FOM_v2.0_1516-2010.xml";

/// The smaller generated model takes about 5 ms to read; the larger one has ten times as much.
constexpr int theScale = 280;

using Tree = DtOMTTreePtr;

Tree readTree(const std::string& path)
{
    DtXMLFileReader reader;
    Tree tree(reader.readFile(DtString(path), nullptr));
    if (tree) return tree;
    std::fprintf(stderr, "%s: %s\n", path.c_str(), reader.getLastError().c_str());
    std::exit(1);
}

/// The MIM inside the library, alone and not merged into anything.
Tree readMIM()
{
    xmlDoc* document = nullptr;
    DtString error;
    DtXMLFileReader::openStream(reinterpret_cast<const char*>(HLAstandardMIM_xml),
                                HLAstandardMIM_xml_len, &document, error);
    xmlNode* root = xmlDocGetRootElement(document);
    Tree tree(DtXMLEvolvedFileReader(nullptr).processObjectModel(root));
    xmlFreeDoc(document);
    return tree;
}

std::string rprPath()
{
    return ratios::modelPath(theRPR).string();
}

/// A generated model in a file of its own, which goes with the process.
class ModelFile
{
public:
    explicit ModelFile(int scale)
        : myPath(std::filesystem::temp_directory_path() /
                 ("omt_ratios-" + std::to_string(getpid()) + "-" + std::to_string(scale) + ".xml"))
    {
        std::ofstream(myPath) << ratios::generatedModel(scale);
    }
    ModelFile(const ModelFile&) = delete;
    ModelFile& operator=(const ModelFile&) = delete;
    ~ModelFile()
    {
        std::error_code ignored;
        std::filesystem::remove(myPath, ignored);
    }
    std::string path() const { return myPath.string(); }

private:
    std::filesystem::path myPath;
};

template <int scale>
std::string generatedPath()
{
    static const ModelFile theFile(scale);
    return theFile.path();
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

template <int scale>
double readGenerated()
{
    return readAndFree(generatedPath<scale>());
}

template <int scale>
double mergeGenerated()
{
    const Tree source = readTree(generatedPath<scale>());
    const Tree target(new DtOMTTree);
    return secondsOf([&] { target->merge(source.get()); });
}

double readRPRAndMIM()
{
    const std::string path = rprPath();
    Tree rpr;
    Tree mim;
    return secondsOf(
        [&]
        {
            rpr = readTree(path);
            mim = readMIM();
        });
}

double mergeMIMIntoRPR()
{
    const Tree rpr = readTree(rprPath());
    const Tree mim = readMIM();
    return secondsOf([&] { rpr->merge(mim.get()); });
}

}  // namespace

std::vector<ratios::Ratio> ratios::readAndMergeRatios()
{
    return {
        {"read_rpr",     parseRPR,                 readRPR,                       theRPR },
        {"read_growth",  readGenerated<theScale>,  readGenerated<10 * theScale>,  nullptr},
        {"merge_growth", mergeGenerated<theScale>, mergeGenerated<10 * theScale>, nullptr},
        {"merge_mim",    readRPRAndMIM,            mergeMIMIntoRPR,               theRPR },
    };
}
