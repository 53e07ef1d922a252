// SPDX-License-Identifier: Apache-2.0
#include "omt/recording/updateWriter.h"

#include "omt/recording/flatColumns.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <map>
#include <mutex>

namespace omt
{

namespace
{

constexpr std::string_view theHeader = "time,event,kind,object,class,member,octets,sender,tag\n";
constexpr std::string_view theKinds[] = {"update", "interaction", "discover", "remove"};

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

template <typename Number>
void appendNumber(Number number, std::string& out)
{
    char digits[32];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

void appendDigits(Octets octets, std::string& out)
{
    constexpr char theDigits[] = "0123456789abcdef";
    for (const std::uint8_t octet : octets)
    {
        out += theDigits[octet >> 4];
        out += theDigits[octet & 0xF];
    }
}

void appendName(const std::string* name, Handle handle, std::string& out)
{
    if (name) return appendCell(*name, ',', out);
    out += '#';
    appendNumber(handle, out);
}

/// Writes all or nothing: what a full disk took of it is cut off again.
std::error_code writeWhole(int file, std::string_view text)
{
    const off_t before = ::lseek(file, 0, SEEK_END);
    std::size_t written = 0;
    while (written < text.size())
    {
        const ssize_t count = ::write(file, text.data() + written, text.size() - written);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0)
        {
            const std::error_code error =
                count < 0 ? lastError() : std::make_error_code(std::errc::no_space_on_device);
            // A pipe has no place to go back to; its reader sees half a row.
            if (written > 0 && before >= 0) static_cast<void>(::ftruncate(file, before) == 0);
            return error;
        }
        written += static_cast<std::size_t>(count);
    }
    return {};
}

/// Makes a file that was opened end with a whole line, the header where it has none.
std::error_code beginFile(int file)
{
    struct stat status;
    if (::fstat(file, &status) != 0) return lastError();
    if (!S_ISREG(status.st_mode) || status.st_size == 0) return writeWhole(file, theHeader);
    char last = '\n';
    if (::pread(file, &last, 1, status.st_size - 1) < 0) return lastError();
    return last == '\n' ? std::error_code() : writeWhole(file, "\n");
}

}  // namespace

struct UpdateWriter::Parts
{
    mutable std::mutex mutex;
    int file = -1;
    std::error_code error;
    std::uint64_t event = 0;
    std::map<Handle, std::string> classes;
    std::map<std::pair<Handle, Handle>, std::string> members;
    std::string rows;

    void addRow(const Update& update, const Update::MemberValue* value);
};

UpdateWriter::UpdateWriter(const std::string& file) : myParts(std::make_unique<Parts>())
{
    myParts->file = ::open(file.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    myParts->error = myParts->file < 0 ? lastError() : beginFile(myParts->file);
}

UpdateWriter::~UpdateWriter()
{
    if (myParts->file >= 0) ::close(myParts->file);
}

void UpdateWriter::nameClass(Handle classHandle, std::string name)
{
    const std::lock_guard lock(myParts->mutex);
    myParts->classes[classHandle] = std::move(name);
}

void UpdateWriter::nameMember(Handle classHandle, Handle member, std::string name)
{
    const std::lock_guard lock(myParts->mutex);
    myParts->members[{classHandle, member}] = std::move(name);
}

void UpdateWriter::Parts::addRow(const Update& update, const Update::MemberValue* value)
{
    const auto owner = classes.find(update.classHandle);
    appendNumber(update.time, rows);
    rows += ',';
    appendNumber(event, rows);
    rows += ',';
    rows += theKinds[static_cast<std::size_t>(update.kind)];
    rows += ',';
    appendCell(update.object, ',', rows);
    rows += ',';
    appendName(owner == classes.end() ? nullptr : &owner->second, update.classHandle, rows);
    rows += ',';
    if (value)
    {
        const auto member = members.find({update.classHandle, value->member});
        appendName(member == members.end() ? nullptr : &member->second, value->member, rows);
    }
    rows += ',';
    if (value) appendDigits(value->octets, rows);
    rows += ',';
    appendCell(update.sender, ',', rows);
    rows += ',';
    appendDigits(update.tag, rows);
    rows += '\n';
}

bool UpdateWriter::write(const Update& update)
{
    const std::lock_guard lock(myParts->mutex);
    if (myParts->file < 0) return false;
    ++myParts->event;
    myParts->rows.clear();
    for (const Update::MemberValue& value : update.values) myParts->addRow(update, &value);
    if (update.values.empty()) myParts->addRow(update, nullptr);
    const std::error_code error = writeWhole(myParts->file, myParts->rows);
    if (error) myParts->error = error;
    return !error;
}

std::error_code UpdateWriter::error() const
{
    const std::lock_guard lock(myParts->mutex);
    return myParts->error;
}

}  // namespace omt
