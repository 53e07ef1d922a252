// SPDX-License-Identifier: Apache-2.0
// Which value the user means: that of an attribute, of a parameter, or of a datatype alone.
#pragma once

#include "argumentWords.h"
#include "engineInput.h"
#include "omt/omt.h"

#include <optional>
#include <string>

/// The model, and what the user named; one of the names is not empty.
struct TargetChoice
{
    ArgumentWords words;
    EngineChoice model;
    std::string member;
    std::string attribute;
    std::string parameter;
    std::string datatype;
    /// A file of the user's hints; may be empty.
    std::string hints;
    bool isPaddedFromStart = false;

    bool isNamed() const
    {
        return !(member.empty() && attribute.empty() && parameter.empty() && datatype.empty());
    }
};

/// What was meant by it.
struct ValueTarget
{
    /// What messages and tables call the value.
    std::string name;
    omt::Type type;
    omt::Model model = {};
};

/// Adds the words, --mim, what names the value, and what a codec needs to know besides the model,
/// to a subcommand. It takes one name, or none where `mayBeNone`.
void addTargetArguments(CLI::App& command, TargetChoice& choice, const std::string& words,
                        bool mayBeNone = false);

/// Reads the model and looks up what was named; what is noteworthy about it goes to standard error.
/// Nothing where a file could not be read, which was said already. Throws omt::UnknownName, with
/// the nearest names.
std::optional<ValueTarget> findTarget(const TargetChoice& choice);

/// The codec of the model, what is noteworthy about the model written to standard error. Nothing
/// where a file could not be read.
std::optional<omt::Codec> readCodec(const TargetChoice& choice);

/// A part of the value as messages name it.
std::string nameIn(const ValueTarget& target, const std::string& path);

/// Why a value could not be decoded to its end, or which octets are left over; empty where neither
/// is so.
std::string complaintOf(const ValueTarget& target, const omt::Value& value);
