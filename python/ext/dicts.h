// SPDX-License-Identifier: Apache-2.0
// Values to Python objects and back.
#pragma once

#include "omt/omt.h"

#include <nanobind/nanobind.h>

#include <string>
#include <unordered_map>
#include <vector>

namespace omtpy
{

/// Objects for names of fields and enumerators, which are made once. Names of a codec stand at the
/// same address always, so that address finds them. For holders of the interpreter's lock only.
class Names
{
public:
    Names();

    /// Borrowed.
    PyObject* key(std::string_view name);
    PyObject* label(std::string_view name, std::int64_t number);

private:
    nanobind::object myEnumerator;
    std::unordered_map<const char*, nanobind::object> myKeys;
    std::unordered_map<const char*, nanobind::object> myLabels;
};

/// What was decoded of a value: dicts, lists, numbers, texts, bytes; None where that is nothing.
nanobind::object toPython(const omt::Value& value, Names& names);

/// Appends a Python object as JSON; throws TypeError for what no value can be.
void appendJson(nanobind::handle object, std::string& json);

/// A class of omtreader._types.
nanobind::object typeNamed(const char* name);

}  // namespace omtpy
