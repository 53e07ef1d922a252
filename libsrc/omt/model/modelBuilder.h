// SPDX-License-Identifier: Apache-2.0
// ModelBuilder makes a model, from nothing or from another.
#pragma once

#include "omt/base/arena.h"
#include "omt/model/model.h"

namespace omt
{

/// A model that can still be changed.
///
/// The tables are plain data and may be edited in any way; texts and lists are made by the builder,
/// which keeps them. Reading, merging and converting build their models with it. Not for two
/// threads at a time.
class OMT_EXPORT ModelBuilder
{
public:
    ModelBuilder();
    /// Starts from a copy of the tables of a model; texts and lists are shared with it, so change a
    /// list by giving the definition another one.
    explicit ModelBuilder(const Model& model);

    Tables& tables() { return *myTables; }
    const Tables& tables() const { return *myTables; }

    /// A copy of a text, kept by the models that are built.
    Text text(std::string_view octets, std::uint32_t line = 0)
    {
        return myArena->text(octets, line);
    }
    /// A copy of a row of values as a list of a definition.
    template <typename T>
    List<T> list(const std::vector<T>& values)
    {
        return myArena->list(values);
    }
    template <typename T>
    List<T> list(const T* values, std::size_t count)
    {
        return myArena->list(values, count);
    }
    /// A copy of a list, for one whose values are to be changed.
    template <typename T>
    List<T> copy(const List<T>& values)
    {
        return myArena->list(values.begin(), values.size());
    }
    /// A list, and one more value at its end. Takes time by the length of the list.
    template <typename T>
    List<T> appended(const List<T>& values, const T& last)
    {
        std::vector<T> all(values.begin(), values.end());
        all.push_back(last);
        return list(all);
    }
    /// Adds a module without definitions and gives its index.
    std::uint32_t addModule(std::string_view file, Edition edition);
    /// Gives a datatype, or a basic data representation, another name, wherever it is defined or
    /// referred to by a datatype, a representation or a dimension; how many places that were. Takes
    /// time by the size of the model.
    std::size_t renameDatatype(std::string_view from, std::string_view to);
    /// Keeps alive what another model's texts and lists live in, so that definitions copied from it
    /// may stand in this one.
    void share(const Model& model);

    /// The model. Throws std::invalid_argument where a class does not stand after its parent. The
    /// builder is empty afterwards.
    Model build();

private:
    std::shared_ptr<Tables> myTables;
    std::shared_ptr<Arena> myArena;
    std::vector<std::shared_ptr<const void>> myMemory;
    std::size_t myOctetsShared = 0;
};

}  // namespace omt
