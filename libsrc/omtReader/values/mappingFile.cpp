// SPDX-License-Identifier: Apache-2.0
// The datatype mapping file: its text to edits of a manager, and back.
//
//   file     "(" mapping* ")", comments from ";" to the end of a line
//   mapping  "(datatypeMap" datatype representation ")"
//          | "(attributeMap" attribute representation ")"      read, but never written
//          | "(delimiterMap" datatype delimiter ")"
//          | "(arrayBracketMap" datatype integer ")"
#include "omtReader/values/mappingFile.h"

#include "util/dtException.h"
#include "util/dtMessages.h"

namespace omtreader
{
namespace
{

void applyBracket(DtDatatypeManager& manager, const DtString& datatype, const DtlObjPtr& flag)
{
    manager.addArrayBracketMap(datatype, flag->fixnum() != 0);
}

template <void (DtDatatypeManager::*add)(const DtString&, const DtString&)>
void applyText(DtDatatypeManager& manager, const DtString& name, const DtlObjPtr& text)
{
    (manager.*add)(name, text->string());
}

struct Keyword
{
    const char* word;
    void (*apply)(DtDatatypeManager&, const DtString&, const DtlObjPtr&);
};

constexpr Keyword theKeywords[] = {
    {"datatypeMap",     applyText<&DtDatatypeManager::addRepMapping>      },
    {"attributeMap",    applyText<&DtDatatypeManager::addAttributeMapping>},
    {"delimiterMap",    applyText<&DtDatatypeManager::addDelimiterMap>    },
    {"arrayBracketMap", applyBracket                                      },
};

/// Strings have escapes while this lives.
struct Escapes
{
    Escapes() { DtSexpReadEscapeChar = "\\"; }
    Escapes(const Escapes&) = delete;
    Escapes& operator=(const Escapes&) = delete;
    ~Escapes() { DtSexpReadEscapeChar = nullptr; }
};

/// Whether initOMTData() makes this mapping anew.
bool isDerived(const DtString& representation)
{
    return representation == "---" || representation.startsWith("enum");
}

}  // namespace

bool readMappingList(DtlInputStream& stream, const DtString& fileName, DtlObjPtr& list)
{
    const Escapes escapes;
    DtSexpEnvironment environment;
    try
    {
        list = DtcRead(stream, environment.env());
        return !DtcEq(list, DtcIntern("eof", environment.env()));
    }
    catch (const DtException& problem)
    {
        DtWarn << fileName << ": " << problem.what() << "; no mapping was read\n";
        return false;
    }
}

void applyMappings(DtDatatypeManager& manager, DtlObjPtr list)
{
    for (; DtcListp(list); list = DtcCdr(list))
    {
        const DtlObjPtr mapping = DtcCar(list);
        for (const Keyword& keyword : theKeywords)
            if (DtcCar(mapping)->string() == keyword.word)
                keyword.apply(manager, DtcCadr(mapping)->string(), DtcCaddr(mapping));
    }
}

DtString mappingText(const ConversionSettings& settings)
{
    DtString text = ";;This file needs to always start with a parenthesis.\n(";
    const auto add = [&text](const char* head, const DtString& name, const DtString& tail)
    {
        text += head;
        text += name;
        text += tail;
    };
    for (const auto& [datatype, representation] : settings.mappings)
        if (!isDerived(representation))
            add("\n\t(datatypeMap \"", datatype, "\" \"" + representation + "\")");
    text += "\n";
    for (const auto& [datatype, delimiter] : settings.delimiters)
        add("\n\t(delimiterMap \"", datatype, "\" \"" + delimiter + "\")");
    text += "\n";
    for (const auto& [datatype, hasBrackets] : settings.brackets)
        add("\n\t(arrayBracketMap \"", datatype, hasBrackets ? "\" 1)" : "\" 0)");
    text += "\n)\n";
    return text;
}

}  // namespace omtreader
