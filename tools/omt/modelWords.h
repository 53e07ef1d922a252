// SPDX-License-Identifier: Apache-2.0
// What the pages of `omt show` say about the definitions of a model.
#pragma once

#include "omt/model/model.h"
#include "textTable.h"

#include <string>
#include <unordered_map>
#include <vector>

/// "IEEE 1516-2010" and so on.
std::string editionText(omt::Edition edition);

/// A class by its full name, of a very long one the end.
std::string fullNameText(const omt::Model& model, const omt::ObjectClass& node);
std::string fullNameText(const omt::Model& model, const omt::InteractionClass& node);

/// Whether a datatype is one that HLA 1.3 defines and its models only refer to.
bool isBaseDatatype(const omt::Model& model, std::string_view name);

/// A datatype with its kind in parentheses, or with a remark that the model does not define it.
std::string nameWithKind(const omt::Model& model, std::string_view name);

std::string joinedTexts(const omt::List<omt::Text>& texts, std::string_view separator = ", ");

/// "FILE:LINE"; empty for a definition that no file has.
std::string placeText(const omt::Model& model, const omt::Definition& definition);

/// The notes that a page refers to.
class NoteList
{
public:
    explicit NoteList(const omt::Model& model) : myModel(model) {}

    /// The numbers in this list of all notes on a definition and on its properties, for a cell.
    std::string numbers(const omt::Definition& definition);
    /// The notes under a heading; empty where there are none.
    std::string text() const;

private:
    const omt::Model& myModel;
    std::vector<const omt::Note*> myNotes;
    std::unordered_map<const omt::Note*, std::size_t> myNumbers;
};

/// Object classes with their attributes and interaction classes with their parameters under common
/// names.
inline constexpr const char* kindWord(const omt::ObjectClass&)
{
    return "object class";
}
inline constexpr const char* kindWord(const omt::InteractionClass&)
{
    return "interaction class";
}
inline constexpr const char* memberWord(const omt::ObjectClass&)
{
    return "attribute";
}
inline constexpr const char* memberWord(const omt::InteractionClass&)
{
    return "parameter";
}
inline const omt::List<omt::Attribute>& membersOf(const omt::ObjectClass& node)
{
    return node.attributes;
}
inline const omt::List<omt::Parameter>& membersOf(const omt::InteractionClass& node)
{
    return node.parameters;
}
