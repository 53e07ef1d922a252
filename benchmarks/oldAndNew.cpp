// SPDX-License-Identifier: Apache-2.0
// Reading HLA 1.3 models and writing 1516-2010 ones: against XML, and as a model grows.
#include "modelFiles.h"
#include "omtReader/omtFileReader.h"
#include "omtReader/xmlEvolvedFileWriter.h"
#include "ratio.h"

#include <libxml/parser.h>

#include <memory>

namespace
{

using ratios::secondsOf;
using ratios::theScale;

constexpr const char* theRPR13 = "hla13/RPR2-D17.omd";

double secondsPerOctet(double seconds, const std::string& path)
{
    return seconds / static_cast<double>(std::filesystem::file_size(path));
}

double readAndFree13(const std::string& path)
{
    return secondsOf([&] { DtOMTTreePtr(DtOMTFileReader().readFile(DtString(path), nullptr)); });
}

double readRPR()
{
    const std::string path = ratios::modelPath(ratios::theRPR).string();
    return secondsPerOctet(secondsOf([&] { ratios::readTree(path); }), path);
}

double readRPR13()
{
    const std::string path = ratios::modelPath(theRPR13).string();
    return secondsPerOctet(readAndFree13(path), path);
}

template <int scale>
double readGenerated13()
{
    static const ratios::ModelFile theFile(std::to_string(scale) + ".omd",
                                           ratios::generatedModel13(scale));
    return readAndFree13(theFile.path());
}

double write(DtOMTTree& tree)
{
    return secondsOf([&] { DtXMLEvolvedFileWriter(&tree).writeString(); });
}

DtOMTTree& treeOfRPR()
{
    static const DtOMTTreePtr theTree =
        ratios::readTree(ratios::modelPath(ratios::theRPR).string());
    return *theTree;
}

/// The document that the writer makes of the RPR FOM.
xmlDoc* documentOfRPR()
{
    static const DtString theText = DtXMLEvolvedFileWriter(&treeOfRPR()).writeString();
    static const std::unique_ptr<xmlDoc, void (*)(xmlDoc*)> theDocument(
        xmlReadMemory(theText.c_str(), static_cast<int>(theText.length()), nullptr, nullptr, 0),
        xmlFreeDoc);
    return theDocument.get();
}

double dumpRPR()
{
    xmlDoc* const document = documentOfRPR();
    return secondsOf(
        [&]
        {
            xmlChar* text = nullptr;
            int length = 0;
            xmlDocDumpFormatMemory(document, &text, &length, 1);
            xmlFree(text);
        });
}

double writeRPR()
{
    return write(treeOfRPR());
}

template <int scale>
double writeGenerated()
{
    static const DtOMTTreePtr theTree = ratios::readTree(ratios::generatedPath(scale));
    return write(*theTree);
}

}  // namespace

std::vector<ratios::Ratio> ratios::oldAndNewRatios()
{
    return {
        {"read_13",        readRPR,                   readRPR13,                      theRPR13},
        {"read_13_growth", readGenerated13<theScale>, readGenerated13<10 * theScale>, nullptr },
        {"write_rpr",      dumpRPR,                   writeRPR,                       theRPR  },
        {"write_growth",   writeGenerated<theScale>,  writeGenerated<10 * theScale>,  nullptr },
    };
}
