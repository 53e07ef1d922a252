// SPDX-License-Identifier: Apache-2.0
// Converts a model of HLA 1.3 to a 1516-2010 document.
#include "omtReader/interactionClassFedNode.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/omtFileReader.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/xmlEvolvedFileWriter.h"
#include "omtReader/xmlFileReader.h"

#include <filesystem>
#include <iostream>
#include <iterator>

static DtOMTTreePtr read(const char* path)
{
    try
    {
        return DtOMTTreePtr(DtOMTFileReader().readFile(path, nullptr));
    }
    catch (const DtOMTReadException& exception)
    {
        std::cout << path << ": " << exception.what() << '\n';
        return nullptr;
    }
}

static void print(DtOMTTree& tree)
{
    const auto count = [](auto begin, auto end) { return std::distance(begin, end); };
    std::cout << tree.getName() << ": "
              << count(tree.getObjectClassNodeBegin(), tree.getObjectClassNodeEnd())
              << " object classes, "
              << count(tree.getComplexDatatypeNodeList(), tree.getComplexDatatypeEndNode())
              << " complex datatypes\n";
}

int main()
{
    read("harbour.map");  // which is no model
    const DtOMTTreePtr old = read("models/Harbour.omd");
    if (!old) return 1;
    print(*old);

    old->objectClassRoot()->setName("HLAobjectRoot");
    old->interactionClassRoot()->setName("HLAinteractionRoot");
    const std::filesystem::path path = std::filesystem::temp_directory_path() / "Harbour.xml";
    DtXMLEvolvedFileWriter(old.get()).writeFile(path.c_str());
    DtXMLFileReader reader;  // reading it again tells whether it was written
    const DtOMTTreePtr converted(reader.readFile(path.string(), nullptr));
    std::filesystem::remove(path);
    if (!converted) return 1;
    print(*converted);
}
