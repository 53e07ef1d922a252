// SPDX-License-Identifier: Apache-2.0
#include "modelFiles.h"

#include "omtReader/xmlFileReader.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

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
             ("omt_ratios-" + std::to_string(getpid()) + "-" + name))
{
    std::ofstream(myPath) << text;
}

ratios::ModelFile::~ModelFile()
{
    std::error_code ignored;
    std::filesystem::remove(myPath, ignored);
}
