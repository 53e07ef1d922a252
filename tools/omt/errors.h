// SPDX-License-Identifier: Apache-2.0
// What ends a command without a result.
#pragma once

#include <stdexcept>

/// What is wrong with the input, and where: one sentence for the user. Exit status 1.
class InputError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Arguments that do not go together, or that say nothing. Exit status 2.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};
