// SPDX-License-Identifier: Apache-2.0
#include "sexp/dtSexpEnvironment.h"

#include "sexp/dtlStorage.h"

DtSexpEnvironment::DtSexpEnvironment() : myStorage(new DtlStorage)
{
    myStorage->hold();
}

DtSexpEnvironment::~DtSexpEnvironment()
{
    myStorage->letGo();
}

DtlObjPtr DtSexpEnvironment::intern(const DtString& name)
{
    return myStorage->reference(myStorage->intern(name.view()));
}
