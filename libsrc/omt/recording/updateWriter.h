// SPDX-License-Identifier: Apache-2.0
// UpdateWriter appends what a federate receives to a recording.
#pragma once

#include "omt/base/export.h"
#include "omt/codec/octets.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace omt
{

/// What a federate makes of a handle of its RTI: any number that stands for no other handle of the
/// same kind.
using Handle = std::uint64_t;

enum class UpdateKind : std::uint8_t
{
    update,
    interaction,
    discover,
    remove
};

/// What was received at once: all attributes of a reflection, or all parameters of an interaction.
struct Update
{
    UpdateKind kind = UpdateKind::update;
    /// In the unit of the federation's time; of receive order, what the federate holds right.
    double time = 0;
    /// The name of the object instance; empty for an interaction.
    std::string_view object;
    Handle classHandle = 0;
    /// The federate that sent it, where that is known.
    std::string_view sender;
    /// The user-supplied tag.
    Octets tag;

    /// One attribute or parameter.
    struct MemberValue
    {
        Handle member = 0;
        Octets octets;
    };
    /// None for an object that was discovered or removed.
    std::vector<MemberValue> values;
};

/// Writes a recording as docs/recordings.md has it, in CSV. Any number of threads may write to one.
///
/// The rows of an update go to the file together in one call of the system, so that they are whole
/// whatever becomes of the process; nothing is held back. Nothing throws but for want of memory.
class OMT_EXPORT UpdateWriter
{
public:
    /// Appends to a file, which is made where there is none. A last line without an end, as a crash
    /// of the machine may leave, gets one, so that no row is joined to it. error() says why there
    /// is no file.
    explicit UpdateWriter(const std::string& file);
    ~UpdateWriter();
    UpdateWriter(const UpdateWriter&) = delete;
    UpdateWriter& operator=(const UpdateWriter&) = delete;

    /// The name of a class, whole or any end of it that means one class.
    void nameClass(Handle classHandle, std::string name);
    /// The name of an attribute or parameter, for this class only: handles of the same member may
    /// differ between classes.
    void nameMember(Handle classHandle, Handle member, std::string name);

    /// Appends a row for each value, or one where there is none; a handle without a name is "#" and
    /// its number. False if the disk takes no more: then none of the rows is there, and error()
    /// says why. Later calls try again.
    bool write(const Update& update);

    /// Of the last call that failed; none as long as none did.
    std::error_code error() const;

private:
    struct Parts;
    std::unique_ptr<Parts> myParts;
};

}  // namespace omt
