// SPDX-License-Identifier: Apache-2.0
// The tree of a document in memory.
#pragma once

#include "../tests/xmlDocument.h"
#include "checks.h"
#include "memoryFile.h"
#include "omtReader/omtFileReader.h"
#include "omtReader/omtTreePtr.h"
#include "omtReader/xml1516FileReader.h"
#include "omtReader/xmlEvolvedFileReader.h"
#include "omtReader/xmlFileReader.h"

#include <string_view>

enum class Format
{
    asTold,
    is2010,
    is2000
};

/// The tree of an XML document; null if it cannot be parsed.
inline DtOMTTreePtr readXml(std::string_view text, Format format = Format::asTold)
{
    xmlDoc* opened = nullptr;
    DtString error;
    const auto length = static_cast<int>(text.size());
    if (DtXMLFileReader::openStream(text.data(), length, &opened, error) != DtFedReadSuccess)
    {
        require(!opened, "a document that was not opened is null");
        return nullptr;
    }
    const Document document(opened);
    xmlNode* root = xmlDocGetRootElement(opened);
    const bool isTold2010 = DtXMLFileReader::isEvolvedFormat(root);
    if (format == Format::is2010 || (format == Format::asTold && isTold2010))
        return DtOMTTreePtr(DtXMLEvolvedFileReader(nullptr).processObjectModel(root));
    return DtOMTTreePtr(DtXML1516FileReader(nullptr).processObjectModel(root));
}

/// The tree of an HLA 1.3 model; null if it is refused, for which there has to be a reason.
inline DtOMTTreePtr readHla13(std::string_view text)
{
    const MemoryFile file(text);
    DtOMTFileReader reader;
    try
    {
        DtOMTTreePtr tree(reader.readFile(file.name(), nullptr));
        require(tree && tree->objectClassRoot() && tree->interactionClassRoot(), "there are roots");
        return tree;
    }
    catch (const DtOMTReadException& problem)
    {
        require(!problem.message().empty() && problem.message() == reader.getLastError(),
                "what was thrown is the last error");
    }
    return nullptr;
}
