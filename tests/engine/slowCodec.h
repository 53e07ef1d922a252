// SPDX-License-Identifier: Apache-2.0
// SlowCodec decodes values straight from the model, name by name, and makes random ones the same
// way: what the compiled plan is compared with. It knows no plan and keeps nothing.
#pragma once

#include "omt/model/model.h"

#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

/// What decoding came to.
struct SlowValue
{
    std::string json;
    std::size_t octets = 0;
    bool isFaulty = false;
    bool hasNotes = false;
    std::string path;
    std::size_t offset = 0;
    std::size_t needed = 0;
    std::size_t left = 0;
};

class SlowCodec
{
public:
    using Octets = std::vector<std::uint8_t>;

    explicit SlowCodec(const omt::Model& model) : myModel(model) {}
    SlowValue decode(const std::string& type, const Octets& octets);
    Octets make(const std::string& type, std::mt19937_64& random);

private:
    struct Part;
    struct Tree
    {
        enum class Kind
        {
            none,
            leaf,
            record,
            array
        };
        Kind kind = Kind::none;
        std::size_t start = 0;
        std::string leaf;
        std::vector<Part> parts;
    };
    struct Part
    {
        Part(std::string name, Tree tree) : first(std::move(name)), second(std::move(tree)) {}
        std::string first;
        Tree second;
    };
    struct Fault
    {
        std::size_t offset, needed, left;
    };
    struct Around
    {
        std::size_t limit, reserve;
        /// The number of elements that a note on the field states.
        std::optional<std::int64_t> stated = std::nullopt;
    };
    struct Number
    {
        std::size_t size = 0;
        bool isLittle = false, isSigned = false, isFloat = false;
    };

    std::string target(const std::string& type) const;
    const omt::Definition* find(const std::string& type, omt::Kind kind) const;
    std::optional<Number> numberOf(const std::string& type) const;
    std::size_t boundary(const std::string& type);
    std::optional<std::size_t> fixedSize(const std::string& type);
    std::size_t leastSize(const std::string& type);
    std::size_t firstLeaf(const std::string& type);
    std::string lookOf(const std::string& element) const;

    void piece(const std::string& type, Tree& tree, Around around);
    void number(const std::string& type, Tree& tree, const Around& around);
    void record(const omt::FixedRecord& data, Tree& tree, const Around& around);
    void array(const omt::ArrayData& data, Tree& tree, const Around& around);
    void terminated(const omt::ArrayData& data, Tree& tree, const Around& around, std::size_t some);
    void loop(const omt::ArrayData& data, Tree& tree, const Around& around, std::size_t start,
              std::optional<std::size_t> count);
    void variant(const omt::VariantRecord& data, Tree& tree, const Around& around);
    void measured(const omt::VariantRecord& data, Tree& tree, const Around& around,
                  const omt::Alternative* alternative, bool isUnknown, std::size_t start);
    const omt::Alternative* alternativeOf(const omt::VariantRecord& data, std::int64_t number,
                                          bool& isUnknown) const;
    std::optional<std::int64_t> stated(const omt::RecordField& field,
                                       const std::map<std::string, std::int64_t>& numbers) const;

    void need(std::size_t size, const Around& around);
    void pad(std::size_t start, std::size_t boundary, const std::string& next,
             const Around& around);
    void zeros(std::size_t end, const Around& around);
    std::string hexadecimal(std::size_t from, std::size_t to) const;
    std::int64_t integer(const std::string& type, std::size_t at) const;
    std::string marking(const Tree& tree, std::size_t fault) const;
    std::string text(const Tree& tree, std::size_t fault) const;

    const omt::Model& myModel;
    Octets myOctets;
    std::size_t myAt = 0;
    bool myHasNotes = false;
    std::size_t myTailAt = 0, myTailSize = 0;
    std::vector<std::string> myPath;
    std::mt19937_64* myRandom = nullptr;
    bool myIsProbing = false;
    /// An extended variant whose length was larger than its alternative.
    std::size_t myDoubtEnd = 0, myDoubtOwn = 0;
    std::map<std::string, std::size_t> myBoundaries;
};
