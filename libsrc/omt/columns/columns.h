// SPDX-License-Identifier: Apache-2.0
// Columns turns whole columns of octets into nested Arrow arrays, and back.
#pragma once

#include "omt/codec/type.h"
#include "omt/columns/arrow.h"

namespace omt
{

struct ColumnPlan;

/// What numbers with names become.
enum class Labels : std::uint8_t
{
    /// Places in a table of names that each batch has; numbers without a name are "#17" in it.
    dictionary,
    /// Texts: the names themselves, or "#17".
    string,
    /// The numbers, of the width and sign that they have in the octets.
    number
};

struct ColumnOptions
{
    Labels labels = Labels::dictionary;
    /// For engines without unsigned numbers: each becomes the next wider signed one, those of 64
    /// bits decimals of 20 digits.
    bool widensUnsigned = false;
    /// The most octets of texts, and elements of lists, of one column of a batch; at most 2^31 - 1.
    /// Where one would pass this a batch ends, so that its offsets of 32 bits suffice.
    std::uint32_t mostInBatch = 0x7FFFFFFF;
};

/// The columns of a datatype. Immutable; any number of threads may share one and decode at the same
/// time. Copies share everything.
///
/// Records are structs, arrays lists, characters texts (UTF-8; half of a surrogate pair is U+FFFD),
/// octets binary, and those that a hint says are text the text before the first zero. A variant
/// record is a struct with the discriminant and all alternatives, of which all but one are null,
/// and with "octets" where those of unknown alternatives may be kept. A record without fields is a
/// boolean, which is true where it is there. What holds its own datatype again is JSON text from
/// there on, and so is what would be more than 60 levels deep; a datatype of more than 16,384
/// columns is JSON text as a whole.
class OMT_EXPORT Columns
{
public:
    /// Takes time by the number of columns.
    explicit Columns(const Type& type, const ColumnOptions& options = {});

    /// The type of decoded batches: a struct of "value" and "fault", a text. The caller releases
    /// it.
    void writeSchema(ArrowSchema& schema) const;
    /// Decodes a column of octets (binary with offsets of 32 or 64 bits, binary views, binary of a
    /// fixed size, or the type null, where all rows are null) from row `first` on. The batch
    /// becomes the caller's, to release; it has one row for each row of the column, up to the end,
    /// or to where the batch would be too large, and `first` becomes the row after it. Where octets
    /// are no value, "value" is null and "fault" says why; where octets are left over, "value" is
    /// there and "fault" says how many. A row that is null is null in both.
    ///
    /// Returns why the column is none of octets, or what is wrong with its buffers; then nothing is
    /// made. Allocates by columns and by the logarithm of rows, except for faults.
    std::optional<std::string> decode(const ArrowSchema& schema, const ArrowArray& column,
                                      std::size_t& first, ArrowArray& batch) const;

    /// The type of encoded batches: a struct of "octets", binary, and "fault", a text.
    static void writeEncodedSchema(ArrowSchema& schema);
    /// Encodes a column of values from row `first` on, in the same way. Any column fits that says
    /// what the JSON of the values says: any width of numbers and offsets, labels of any form.
    /// Where a row is no value, "octets" is null and "fault" says why.
    std::optional<std::string> encode(const ArrowSchema& schema, const ArrowArray& column,
                                      std::size_t& first, ArrowArray& batch) const;

private:
    std::shared_ptr<const ColumnPlan> myPlan;
    Type myType;
};

}  // namespace omt
