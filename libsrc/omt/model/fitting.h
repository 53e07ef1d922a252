// SPDX-License-Identifier: Apache-2.0
// Fitting turns the tables of any model into ones that the schema of an edition accepts.
#pragma once

#include "omt/base/nameHash.h"
#include "omt/model/freeNames.h"
#include "omt/model/modelBuilder.h"
#include "omt/model/rows.h"
#include "omt/model/seenNames.h"

#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace omt
{

/// Works on a copy of the tables, subject by subject, and says what is lost or made on the way.
class Fitting
{
public:
    /// For 1516-2010 or 1516-2025.
    Fitting(const Model& model, Edition edition, Findings& findings);

    /// The tables as they are written, good as long as this and the model live. Classes need not
    /// stand after their parents.
    const Tables& fit();

private:
    // The subjects, each in a file of its own.
    void fitIdentification();
    void fitSections();
    void fitServices();
    void fitTables();
    void fitClasses();
    void fitNotes();
    void fitRows();

    /// XML attributes of the root, by name.
    using Seen = NameMap<std::string_view>;
    bool isLeftOut(const Section& root, const Aside& aside, Seen& seen);
    void addSchemaPlace(std::vector<Aside>& asides, Seen& seen);

    template <typename T, typename Rows>
    void fitNamed(std::vector<T>& table, const Rows& rows);
    void fitValue(Switch& each);
    void fitDimensions();
    void fitReferenceData();

    template <typename T>
    void joinRoots(std::vector<T>& table, std::string_view rootName);
    template <typename T>
    void joinSiblings(std::vector<T>& table);
    template <typename T, typename Part>
    void dropTwins(T& node, List<Part> T::*list);
    void moveDimensions(ObjectClass& node);

    std::string madeLabel(std::string_view label);
    std::string fittedLabels(const Aside& aside, const Definition& user);

    template <typename T>
    void fitDefinitions(std::vector<T>& table);
    template <typename T>
    void fitParts(T& definition);
    bool isFitting(const Definition& definition, Kind kind) const;
    bool fitDefinition(Definition& definition, Kind kind);
    bool fitTexts(Definition& definition, Kind kind, const Row& row);
    bool fitText(Definition& definition, Kind kind, const Row& row, Text& text);
    bool fitAsides(Definition& definition, Kind kind);
    bool isKept(const Definition& definition, Kind kind, const Aside& aside, bool isPlaced);
    bool isWritten(const Definition& definition, Kind kind, const Aside& aside) const;
    void moveItems(Definition& definition, Kind kind, const Row& row,
                   const std::vector<std::uint32_t>& places);
    void reportLostNotes();
    bool fitEnumerators(Alternative& alternative);
    bool isNotWritten(const Section& section) const;
    Text madeName(const Text& name);
    void takeNames();

    // What all share.
    bool isNew() const { return myEdition == Edition::ieee2025; }
    /// Whether the document is one module in its own edition.
    bool isUnchanged() const;
    Edition editionOf(const Definition& definition) const;
    Tables& tables() { return myBuilder.tables(); }
    const Tables& tables() const { return myBuilder.tables(); }
    Text text(std::string_view octets, const Text& at) { return myBuilder.text(octets, at.line()); }
    /// Something that the document does not carry; `what` begins the sentence.
    void lose(const Definition& definition, const Text& property, const std::string& what);
    /// Something that stands otherwise than it was read.
    void change(const Definition& definition, const Text& property, std::string sentence);
    static std::string describe(const Definition& definition, Kind kind);

    const Model& myModel;
    Edition myEdition;
    Findings& myFindings;
    ModelBuilder myBuilder;
    bool hasOneModule = false;
    std::size_t myMovedDimensions = 0;
    /// Names of the definitions that stand side by side.
    SeenNames mySeen;

    OwnNameMap<std::string> myNames;
    FreeNames myTaken;
    bool isTakenFilled = false;
    /// Labels of notes and identifiers of elements that are in use.
    FreeNames myIds;
    /// What labels have become: by module and label, and by label alone for the first.
    OwnNameMap<std::string> myLabels;
    /// References to notes that are written or were reported, by where the model has their texts.
    std::unordered_set<const char*> myNoteReferences;
};

}  // namespace omt
