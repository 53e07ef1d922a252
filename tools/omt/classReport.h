// SPDX-License-Identifier: Apache-2.0
// Classes and members by the names that users give, and one of them as a page.
#pragma once

#include "omt/model/model.h"

#include <string>
#include <variant>

/// A class of either kind.
using ClassRef = std::variant<const omt::ObjectClass*, const omt::InteractionClass*>;

/// The class that a user means by its full name or by any end of it that no other class has.
/// Throws InputError where there is none, with the nearest names, or more than one, with all of
/// them.
ClassRef findClass(const omt::Model& model, const std::string& path);

/// The class that a user means, with its own and its inherited members; a member with all its
/// properties where the name is that of a class and a member. Throws InputError as findClass()
/// does.
std::string classReport(const omt::Model& model, const std::string& path);
