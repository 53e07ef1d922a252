// SPDX-License-Identifier: Apache-2.0
#include "sexp/dtSexpEnvironment.h"

DtSexpEnvironment::DtSexpEnvironment() = default;
DtSexpEnvironment::~DtSexpEnvironment() = default;

const DtlObjPtr& DtSexpEnvironment::intern(const DtString& name)
{
    DtlObjPtr& symbol = mySymbols[name];
    if (!symbol) symbol = DtlObj::makeSymbol(name);
    return symbol;
}
