// SPDX-License-Identifier: Apache-2.0
// OpenDefinitions keeps the definitions of a document that are being read until all their parts are
// there.
#pragma once

#include "omt/model/modelBuilder.h"

#include <vector>

namespace omt
{

/// A definition that is being read.
struct OpenDefinition
{
    Kind kind = Kind::section;
    /// For classes and tables the index of the definition, which moves while others are added.
    std::uint32_t place = 0;
    Definition* fixed = nullptr;
    /// Where its attributes or parameters and its directed interactions begin.
    std::uint32_t members = 0;
    std::uint32_t directed = 0;
};

/// What open definitions have so far. Parts stand in stacks of their kind, those of the innermost
/// definition last, and become lists in the builder when it is finished.
class OpenDefinitions
{
public:
    explicit OpenDefinitions(ModelBuilder& builder);

    /// Makes a definition where it stays until it is finished.
    OpenDefinition start(Kind kind, std::uint32_t module);
    /// Opens the last contact or reference again; starts one where there is none.
    OpenDefinition startOrGoOn(Kind kind, std::uint32_t module);
    /// Good until another definition is started.
    Definition& definition(const OpenDefinition& open);
    /// Hands a definition the parts that were read within it.
    void finish(const OpenDefinition& open);
    /// Hands a module what stands around its definitions.
    void finish(Module& module);

private:
    ModelBuilder& myBuilder;
    std::vector<Section> mySections;
    std::vector<Keyword> myKeywords;
    std::vector<Contact> myContacts;
    std::vector<Reference> myReferences;
    std::vector<Glyph> myGlyphs;
    std::vector<DirectedInteraction> myDirected;
    std::vector<Attribute> myAttributes;
    std::vector<Parameter> myParameters;
    std::vector<Enumerator> myEnumerators;
    std::vector<RecordField> myFields;
    std::vector<Alternative> myAlternatives;
    std::uint32_t myObjectClass = ClassDefinition::theNone;
    std::uint32_t myInteractionClass = ClassDefinition::theNone;
};

}  // namespace omt
