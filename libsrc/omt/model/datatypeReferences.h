// SPDX-License-Identifier: Apache-2.0
// forEachReference() names what a datatype is made of.
#pragma once

#include "omt/model/model.h"

namespace omt
{

/// Calls `visit` for each place in which a datatype names another, in their order: the name found
/// there, and the field, alternative or component that has it. A representation, the element of an
/// array and the discriminant of a variant record stand in the datatype's own definition, which is
/// given instead. Empty names are left out.
OMT_EXPORT void forEachReference(
    const Datatype& datatype,
    const std::function<void(const Text& name, const Definition& part, Kind kindOfPart)>& visit);

/// "basic", "simple", "reference", "enumerated", "array", "fixed", "variant" or "complex", as the
/// JSON of a model has it.
OMT_EXPORT std::string_view wordOf(const Datatype& datatype);

}  // namespace omt
