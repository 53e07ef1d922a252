// SPDX-License-Identifier: Apache-2.0
// Makes objects from the characters of a stream.
#pragma once

#include "sexp/dtlInputStream.h"
#include "sexp/dtSexpEnvironment.h"

#include <string>
#include <vector>

/// Reads forms from a stream; lists inside lists take no stack.
class DtlReader
{
public:
    DtlReader(DtlInputStream& stream, DtSexpEnvironment& environment);

    /// The next form, or the symbol "eof". Throws DtException; see DtcRead.
    DtlObjPtr read();

private:
    /// A list whose closing parenthesis is still to come.
    struct OpenList
    {
        std::size_t firstElement;
        std::size_t line;
    };

    template <typename Matches>
    std::string_view takeWhile(Matches matches);
    int skipBlanks();
    void readNext(int first);
    void closeList();
    const DtlObj* readString();
    char readEscape(char escape);
    char readOctal();
    const DtlObj* readAtom();

    DtlInputStream& myStream;
    DtlStorage& myStorage;
    /// The elements so far of all open lists, those of the innermost last.
    std::vector<const DtlObj*> myElements;
    std::vector<OpenList> myOpenLists;
    std::string myText;  // of the atom that is being read
};
