// SPDX-License-Identifier: Apache-2.0
#include "convertCommand.h"

#include "conversionLosses.h"
#include "modelInput.h"
#include "omtReader/interactionClassFedNode.h"
#include "omtReader/objectClassFedNode.h"
#include "omtReader/xmlEvolvedFileWriter.h"
#include "outputFile.h"
#include "util/dtMessages.h"

#include <memory>

namespace
{

struct ConvertChoice
{
    ModelChoice model;
    std::string file;
    CLI::Option* fileOption = nullptr;
};

struct Word
{
    const char* before;
    const char* now;
};

// Who may take an attribute over: the letters of HLA 1.3, and the words of IEEE 1516-2010.
constexpr Word theOwnershipWords[] = {
    {"T",  "Divest"       },
    {"A",  "Acquire"      },
    {"TA", "DivestAcquire"},
    {"N",  "NoTransfer"   },
};

/// Gives the roots the names that programs of today look for.
void renameRoots(DtOMTTree& tree)
{
    tree.objectClassRoot()->setName("HLAobjectRoot");
    tree.interactionClassRoot()->setName("HLAinteractionRoot");
    DtWarn << "the roots \"ObjectRoot\" and \"InteractionRoot\" are written as "
              "\"HLAobjectRoot\" and \"HLAinteractionRoot\"\n";
}

void rewordOwnership(DtOMTTree& tree)
{
    std::size_t count = 0;
    const auto reword = [&count](DtAttributeFedNode& attribute)
    {
        for (const Word& word : theOwnershipWords)
            if (attribute.getTransferAccept() == word.before)
            {
                attribute.setTransferAccept(word.now);
                ++count;
                return;
            }
    };
    for (auto node = tree.getObjectClassNodeBegin(); node != tree.getObjectClassNodeEnd(); ++node)
        for (DtAttributeFedNode* attribute : (*node)->getAttributes()) reword(*attribute);
    if (count > 0)
        DtWarn << "ownership: the letters of " << count
               << (count == 1 ? " attribute" : " attributes") << " are written as words\n";
}

Result convert(const ConvertChoice& choice)
{
    const DtOMTTreePtr tree = readModel(choice.model);
    if (tree->hlaVersion() == DtHla13)
    {
        renameRoots(*tree);
        rewordOwnership(*tree);
    }
    const DtString text = DtXMLEvolvedFileWriter(tree.get()).writeIndentedString();
    if (*choice.fileOption) writeOutputFile(choice.file, text.view());
    reportLosses(*tree);
    return {*choice.fileOption ? "" : text.str()};
}

}  // namespace

Command addConvertCommand(CLI::App& app)
{
    CLI::App* const command =
        app.add_subcommand("convert", "Write an object model of any format as IEEE 1516-2010 XML");
    auto choice = std::make_shared<ConvertChoice>();
    addModelArguments(*command, choice->model);
    choice->fileOption =
        command
            ->add_option("-o,--output", choice->file,
                         "Write to a file, which is replaced; may be one of the model's own")
            ->type_name("FILE");
    command->footer(
        "Several modules become one model. What is lost on the way is listed on standard error, a\n"
        "line for each kind of it; the exit status is 0 all the same.\n"
        "\n"
        "Examples:\n"
        "  omt convert Harbour.omd -o Harbour.xml\n"
        "  omt convert HarbourBase.xml HarbourTraffic.xml --mim > Harbour.xml");
    return {command, [choice] { return convert(*choice); }};
}
