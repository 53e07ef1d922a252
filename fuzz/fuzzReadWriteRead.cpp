// SPDX-License-Identifier: Apache-2.0
// Any octets as a model in one of the three formats: read, written, and read again.
//
// What begins as an s-expression does is HLA 1.3, all else XML.
#include "omtReader/xmlEvolvedFileWriter.h"
#include "readModel.h"
#include "treeChecks.h"

namespace
{

constexpr std::string_view theAddition = "Valid FDD";

/// Reads a document, and takes off what the writer puts after the name.
DtOMTTreePtr readWritten(const DtString& document)
{
    DtOMTTreePtr tree = readXml(document.view());
    require(tree != nullptr, "what is written can be read");
    const std::string_view name = tree->getName().view();
    require(name.substr(name.size() - theAddition.size()) == theAddition, "the name is kept");
    tree->setName(DtString(name.substr(0, name.size() - theAddition.size())));
    return tree;
}

DtOMTTreePtr readAny(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    if (begin == text.npos || (text[begin] != '(' && text[begin] != ';')) return readXml(text);
    DtOMTTreePtr tree = readHla13(text);
    if (!tree) return nullptr;
    // The names without which no reader of XML takes them.
    tree->objectClassRoot()->setName("HLAobjectRoot");
    tree->interactionClassRoot()->setName("HLAinteractionRoot");
    return tree;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    beQuiet();
    const DtOMTTreePtr tree = readAny({reinterpret_cast<const char*>(data), size});
    if (!tree) return 0;
    const DtString first = DtXMLEvolvedFileWriter(tree.get()).writeString();
    const std::size_t before = heldMemory();
    const DtOMTTreePtr again = readWritten(first);
    checkSize(*again, before, first.length());
    require(countNodes(*again) <= countNodes(*tree), "nothing is made up");
    const DtString second = DtXMLEvolvedFileWriter(again.get()).writeString();
    const DtOMTTreePtr third = readWritten(second);
    require(DtXMLEvolvedFileWriter(third.get()).writeString() == second,
            "what was read from a written document stays the same");
    return 0;
}
