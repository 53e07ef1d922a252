// SPDX-License-Identifier: Apache-2.0
// modelJson() gives a model, a class of it or a datatype of it as JSON.
#pragma once

#include "omt/model/model.h"

#include <string>

namespace omt
{

/// How JSON is laid out.
struct JsonLayout
{
    /// Blanks for each level; with 0 everything stands on one line.
    unsigned indentation = 0;
};

/// Everything that a model holds, as docs/model-json.md describes it: names and counts, then every
/// definition with all its properties, what stands beside them, and where they stand. The text
/// grows with the model: full names of classes are cut to their last 1000 octets, and nothing that
/// is shared is repeated.
OMT_EXPORT std::string modelJson(const Model& model, JsonLayout layout = {});

/// One class of the model: its properties, its members and those that it inherits, each with the
/// class that declares it, and the notes that they refer to.
OMT_EXPORT std::string classJson(const Model& model, const ObjectClass& node,
                                 JsonLayout layout = {});
OMT_EXPORT std::string classJson(const Model& model, const InteractionClass& node,
                                 JsonLayout layout = {});

/// One datatype of the model and every datatype that it is made of, down to the representations,
/// each once, and the notes that they refer to.
OMT_EXPORT std::string datatypeJson(const Model& model, const Datatype& datatype,
                                    JsonLayout layout = {});

}  // namespace omt
