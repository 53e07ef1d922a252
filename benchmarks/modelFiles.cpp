// SPDX-License-Identifier: Apache-2.0
#include "modelFiles.h"

#include "omtReader/xmlFileReader.h"
#include "ratio.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>

std::filesystem::path ratios::modelPath(const char* file)
{
    const char* const folder = std::getenv("OMT_MODELS");
    if (!folder) return {};
    const auto path = std::filesystem::path(folder) / file;
    return std::filesystem::exists(path) ? path : std::filesystem::path();
}

DtOMTTreePtr ratios::readTree(const std::string& path)
{
    DtXMLFileReader reader;
    DtOMTTreePtr tree(reader.readFile(DtString(path), nullptr));
    if (tree) return tree;
    std::fprintf(stderr, "%s: %s\n", path.c_str(), reader.getLastError().c_str());
    std::exit(1);
}

ratios::ModelFile::ModelFile(const std::string& name, const std::string& text)
    : myPath(std::filesystem::temp_directory_path() /
             ("omt-benchmark-" + std::to_string(getpid()) + "-" + name))
{
    std::ofstream(myPath) << text;
}

ratios::ModelFile::~ModelFile()
{
    std::error_code ignored;
    std::filesystem::remove(myPath, ignored);
}

std::string ratios::generatedPath(int scale)
{
    static std::map<int, ModelFile> theFiles;
    auto file = theFiles.find(scale);
    if (file == theFiles.end())
        file = theFiles.try_emplace(scale, std::to_string(scale) + ".xml", generatedModel(scale))
                   .first;
    return file->second.path();
}
