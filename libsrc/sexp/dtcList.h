// SPDX-License-Identifier: Apache-2.0
// Reading s-expressions, and the functions on what was read.
#pragma once

#include "sexp/dtlInputStream.h"
#include "sexp/dtSexpEnvironment.h"

/// Points to the character that begins an escape in a string: ``\" \' \\ \n \r \t``, and one to
/// three octal digits as in `\050`; before anything else it is an ordinary character. Null, as
/// it is at first, means that strings have no escapes. It holds for every reading of this thread.
extern OMTREADER_EXPORT thread_local const char* DtSexpReadEscapeChar;

/// The next form of the stream; at its end the symbol "eof" of the environment.
///
/// A form is a list in parentheses, a string in double quotes, a number (decimal digits with an
/// optional sign; beyond 64 bits the nearest limit), or a symbol, which is anything else up to a
/// blank, parenthesis, double quote or ";". A ";" begins a comment, up to the end of the line.
/// Throws DtException with the line as its location for a ")" too many, and for a list or string
/// that does not end.
OMTREADER_EXPORT DtlObjPtr DtcRead(DtlInputStream& stream, DtSexpEnvironment& env);

/// The one symbol of this name in the environment.
OMTREADER_EXPORT DtlObjPtr DtcIntern(const DtString& name, DtSexpEnvironment& env);
/// A symbol of its own, to be compared with DtcEqual.
OMTREADER_EXPORT DtlObjPtr DtcMakeSymbol(const DtString& name);

/// The first element of a list, the list after it, the second element and the third; the empty
/// list where there is none.
OMTREADER_EXPORT DtlObjPtr DtcCar(const DtlObjPtr& list);
OMTREADER_EXPORT DtlObjPtr DtcCdr(const DtlObjPtr& list);
OMTREADER_EXPORT DtlObjPtr DtcCadr(const DtlObjPtr& list);
OMTREADER_EXPORT DtlObjPtr DtcCaddr(const DtlObjPtr& list);

/// Whether it is a list of at least one element.
OMTREADER_EXPORT bool DtcListp(const DtlObjPtr& object);
OMTREADER_EXPORT bool DtcStringp(const DtlObjPtr& object);
/// Whether it is the empty list.
OMTREADER_EXPORT bool DtcNull(const DtlObjPtr& object);

/// Whether both are the same object.
OMTREADER_EXPORT bool DtcEq(const DtlObjPtr& a, const DtlObjPtr& b);
/// Whether both are of the same kind and content, down to the last element.
OMTREADER_EXPORT bool DtcEqual(const DtlObjPtr& a, const DtlObjPtr& b);
