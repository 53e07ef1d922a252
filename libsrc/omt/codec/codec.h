// SPDX-License-Identifier: Apache-2.0
// Codec compiles the datatypes of a model once; its types turn octets into values and back.
#pragma once

#include "omt/base/finding.h"
#include "omt/codec/hints.h"
#include "omt/codec/type.h"
#include "omt/codec/value.h"
#include "omt/model/model.h"

namespace omt
{

/// What a codec needs to know besides the model.
struct CodecOptions
{
    /// Of the user; they count before the built-in ones. One that does not fit the model is a
    /// finding.
    Hints hints;
    /// Whether the hints for the RPR FOM apply, where names and shapes fit.
    bool hasBuiltInHints = true;
    /// Whether padding in fixed records counts from the start of the whole value, as some write it,
    /// and not from that of the record. The two differ in the alternatives of extended variant
    /// records only, which alone begin anywhere.
    bool isPaddedFromStart = false;
};

/// All datatypes of a model, ready to decode and encode. Immutable; any number of threads may share
/// it, and copying it copies nothing.
class OMT_EXPORT Codec
{
public:
    /// Takes time by the size of the model.
    explicit Codec(const Model& model);
    Codec(const Model& model, const CodecOptions& options);

    /// What it was made of.
    const Model& model() const { return myModel; }

    /// What cannot be decoded, and why; such values are octets.
    const Findings& findings() const { return *myFindings; }

    /// A datatype or basic data representation by its name. Throws UnknownName.
    Type type(std::string_view name) const;
    /// An attribute, a parameter, either, by "CLASS.MEMBER", where CLASS is any part at the end of
    /// the class's full name that means one class; members may be inherited. Throws UnknownName.
    Type attribute(std::string_view path) const;
    Type parameter(std::string_view path) const;
    Type member(std::string_view path) const;
    /// The same without throwing.
    std::optional<Type> findType(std::string_view name) const;
    std::optional<Type> findAttribute(std::string_view path) const;
    std::optional<Type> findParameter(std::string_view path) const;
    std::optional<Type> findMember(std::string_view path) const;

    /// The plan as JSON, for others to interpret: version, types by number, names.
    /// docs/values-json.md says what its members mean.
    std::string json() const;

private:
    enum class Which
    {
        attribute,
        parameter,
        either
    };
    std::optional<Type> find(std::string_view path, Which which) const;
    Type get(std::string_view path, Which which) const;
    std::string fullNames(const std::vector<MemberUse>& uses) const;
    std::vector<std::string_view> namesNear(std::string_view path, Which which) const;

    Model myModel;
    std::shared_ptr<const Plan> myPlan;
    std::shared_ptr<const Findings> myFindings;
};

}  // namespace omt
