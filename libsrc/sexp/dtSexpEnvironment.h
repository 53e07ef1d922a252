// SPDX-License-Identifier: Apache-2.0
// The table of symbols that readings share.
#pragma once

#include "sexp/dtlObj.h"

/// Holds one object for each symbol that was read or interned in it.
///
/// Objects that were read stay valid when their environment is gone.
class OMTREADER_EXPORT DtSexpEnvironment
{
public:
    DtSexpEnvironment();
    DtSexpEnvironment(const DtSexpEnvironment&) = delete;
    DtSexpEnvironment& operator=(const DtSexpEnvironment&) = delete;
    ~DtSexpEnvironment();

    /// What DtcRead and DtcIntern take.
    DtSexpEnvironment& env() { return *this; }

    /// The one symbol of this name, made at the first call.
    DtlObjPtr intern(const DtString& name);

private:
    friend class DtlReader;
    DtlStorage* myStorage;
};
