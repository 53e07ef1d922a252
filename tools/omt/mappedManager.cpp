// SPDX-License-Identifier: Apache-2.0
// A mapping file is looked at before the library reads it: the library takes a missing file, and
// anything that is no mapping, without a word.
#include "mappedManager.h"

#include "inputFile.h"
#include "messages.h"
#include "modelInput.h"
#include "omt/base/nearestNames.h"
#include "omtReader/doubleLEDatatypeRep.h"
#include "omtReader/floatLEDatatypeRep.h"
#include "sexp/dtcList.h"

#include <algorithm>

namespace
{

constexpr const char* theMappingWords[] = {"datatypeMap", "attributeMap", "delimiterMap",
                                           "arrayBracketMap"};
constexpr const char* theOrphanMark = "---";

bool isMapping(const DtlObjPtr& object)
{
    const DtString& word = DtcCar(object)->string();
    return std::any_of(std::begin(theMappingWords), std::end(theMappingWords),
                       [&word](const char* known) { return word == known; });
}

}  // namespace

void addConversionArguments(CLI::App& command, ConversionChoice& choice)
{
    choice.mapOption = command
                           .add_option("--map", choice.mapFile,
                                       "Mapping file, instead of the mapping that is built in")
                           ->type_name("FILE");
    choice.delimiterOption =
        command
            .add_option("--delimiter", choice.delimiter,
                        "Between the fields of a line; a blank unless the mapping file says more")
            ->type_name("TEXT");
    command.add_flag(
        "--no-padding", choice.isUnpadded,
        "Values stand behind each other, not at multiples of their alignment; those of "
        "HLA 1.3 always do");
}

void setFloatPrecision(int digits)
{
    DtFloatDatatypeRep::defaultFloatPrecision = digits;
    DtFloatLEDatatypeRep::defaultFloatPrecision = digits;
    DtDoubleDatatypeRep::defaultFloatPrecision = digits;
    DtDoubleLEDatatypeRep::defaultFloatPrecision = digits;
}

void MappedManager::prepare(DtOMTTree& tree, const ConversionChoice& choice)
{
    // HLA 1.3 has no rule of padding: its models have components for it.
    setImplicitPadding(!choice.isUnpadded && tree.hlaVersion() != DtHla13);
    fillDefaultDatatypeRepList();
    initOMTData(&tree);
    if (*choice.mapOption)
        readMappings(choice.mapFile);
    else
        readStandardMappings();
    if (*choice.delimiterOption) setDefaultDelimiter(choice.delimiter);
}

void MappedManager::readMappings(const std::string& file)
{
    checkReadable(file);
    const NameMap before(getRepMapList(), getRepMapListEnd());
    myFile = file;
    myHasMappings = false;
    std::vector<std::string> warnings;
    {
        const HeldWarnings held;
        readFile(file);
        warnings = held.list();
    }
    if (!myHasMappings && !warnings.empty()) throw InputError(warnings.front());
    if (!myHasMappings) throw InputError(file + ": there is no list of mappings in the file");
    for (const std::string& warning : warnings) DtWarn << warning << "\n";
    reportUnknownRepresentations(file, before);
}

bool MappedManager::processMappings(DtlObjPtr& mappings)
{
    myHasMappings = DtcListp(mappings) || DtcNull(mappings);
    if (!myFile.empty())
        for (DtlObjPtr rest = mappings; DtcListp(rest); rest = DtcCdr(rest))
            if (!isMapping(DtcCar(rest)))
                DtWarn << myFile << ": \"" << DtcCar(DtcCar(rest))->string()
                       << "\" begins no mapping; that entry does nothing\n";
    return DtDatatypeManager::processMappings(mappings);
}

void MappedManager::reportUnknownRepresentations(const std::string& file, const NameMap& before)
{
    std::vector<std::string> known;
    for (auto it = getNameRepMapList(); it != getNameRepMapListEnd(); ++it)
        if (it->second) known.push_back(it->first.str());
    std::vector<std::string> reported;
    for (auto it = getRepMapList(); it != getRepMapListEnd(); ++it)
    {
        const auto old = before.find(it->first);
        const bool isNew = old == before.end() || old->second != it->second;
        const std::string& name = it->second.str();
        if (!isNew || name == theOrphanMark ||
            std::find(known.begin(), known.end(), name) != known.end() ||
            std::find(reported.begin(), reported.end(), name) != reported.end())
            continue;
        reported.push_back(name);
        DtWarn << file << ": " << it->first << " is mapped, but there is "
               << omt::unknownName("representation", name, known) << "\n";
    }
}
