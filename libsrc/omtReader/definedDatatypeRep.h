// SPDX-License-Identifier: Apache-2.0
// The base of representations of whole records.
#pragma once

#include "omtReader/datatypeRep.h"

class DtDatatypeManager;
class DtObjectHistory;  // a host's own; it is only handed on, and may be null
class DtStringTree;

/// A representation that shows a record, such as a position, as a whole and as a small tree.
///
/// The manager shows by it the datatype that has the very name that datatype() gives, see
/// DtDatatypeManager::addDefinedDatatypeRep(): where a model calls the record something else, a
/// host derives a class that gives this name.
///
/// The operations below may look at earlier values of the same object in its history, which may be
/// null.
class OMTREADER_EXPORT DtDefinedDatatypeRep : public DtDatatypeRep
{
public:
    using DtDatatypeRep::stringRep;
    virtual ~DtDefinedDatatypeRep();

    /// The record in one line.
    virtual DtString stringRep(const void* position, int* consumed,
                               DtObjectHistory* history) const = 0;
    /// The record as a new tree, which is the caller's.
    virtual DtStringTree* createTreeRep(const void* position, int* consumed,
                                        DtObjectHistory* history) const = 0;
    /// The numbers of the record as they are, without interpretation.
    virtual DtString originalStringRep(const void* position, int* consumed,
                                       DtObjectHistory* history) const = 0;

    /// Where the object was last known to be: three 64-bit numbers in network order, X, Y and Z,
    /// geocentric and in metres, which stay the history's. Always null for now, as no history says
    /// which of its attributes is a position; callers cope with that.
    const void* locationPtr(DtDatatypeManager& manager, DtObjectHistory* history) const;

protected:
    explicit DtDefinedDatatypeRep(bool isAligned);
};
